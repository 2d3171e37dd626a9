// The painting operators. What is drawn goes through PaintPath of the machine, as in the plain dialect.
#include "complete/PaintOperators.h"

#include <algorithm>

#include "complete/ClipOperators.h"
#include "complete/CompleteDialect.h"
#include "complete/PathBridge.h"
#include "complete/PatternOperators.h"
#include "complete/RectangleOperands.h"
#include "complete/ShadingColor.h"
#include "complete/ShowOperators.h"
#include "graphics/GraphState.h"
#include "graphics/MatrixOperators.h"
#include "graphics/PaintOperators.h"
#include "graphics/PathBuilder.h"
#include "interp/Operands.h"

namespace {

/// Closes the subpaths of a path that have an area and are open (PLRM, fill).
void CloseSubpaths(CGraphState& state) {
    const CPath& path = state.m_Path;
    const std::int32_t count = path.GetCount();
    constexpr std::int32_t LEAST = 3;  // records that make an area
    const auto isEnd = [&](std::int32_t i) { return i == count || path.At(i).nOp == PATH_MOVE; };
    std::int32_t start = 0;
    const auto isOpen = [&](std::int32_t end) { return end - start >= LEAST && path.At(end - 1).nOp != PATH_CLOSE; };
    std::int32_t open = 0;
    std::int32_t lastOpen = -1;
    for (std::int32_t i = 1; i <= count; ++i) {
        if (!isEnd(i)) continue;
        if (isOpen(i)) {
            ++open;
            lastOpen = i;
        }
        start = i;
    }
    if (open == 0) return;
    if (open == 1 && lastOpen == count) {
        point_2d first;
        if (state.GetSubpathStart(first) != 0) state.AddPathPoint(&first, PATH_CLOSE);
        return;
    }
    const CPath source = path;
    state.ClearPath();
    start = 0;
    for (std::int32_t i = 0; i < count;) {
        const tagPLPoint& record = source.At(i);
        point_2d points[3] = {record.pt};
        const bool isCurve = record.nOp == PATH_CURVE;
        for (std::int32_t k = 1; isCurve && k < 3; ++k) points[k] = source.At(i + k).pt;
        state.AddPathPoint(points, record.nOp);
        i += isCurve ? 3 : 1;
        if (i < count && source.At(i).nOp != PATH_MOVE) continue;
        if (i - start >= LEAST && source.At(i - 1).nOp != PATH_CLOSE) {
            const point_2d first = source.At(start).pt;
            state.AddPathPoint(&first, PATH_CLOSE);
        }
        start = i;
    }
}

/// Hands the current path to the writer in the current colour, which may be that of a pattern.
int Paint(CFilterEPS& m) {
    CountClip(m);
    CGraphState* state = m.GetCurrentGState();
    if (state->m_nColorKind != COLOR_PATTERN) {
        m.PaintPath();
        return 1;
    }
    RgbColor color;
    bool isKnown = false;
    if (FindPatternColor(m, color, isKnown) != 1) return -1;
    const RgbScope scope(*state, isKnown ? color : RgbColor{state->m_fGray, state->m_fGray, state->m_fGray});
    m.PaintPath();
    return 1;
}

// -  fill  -
// -  eofill  -
int OpFill(CFilterEPS& m) { return PaintArea(m); }

// -  stroke  -
int OpStroke(CFilterEPS& m) { return PaintLines(m); }

// x y width height | numarray | numstring  rectfill  -    stackunderflow typecheck rangecheck
int OpRectfill(CFilterEPS& m) {
    RectangleOperands operands;
    if (operands.Read(m, 0) != 1) return -1;
    m.Drop(operands.Count());
    const CGStateScope scope(m);
    m.NewPath();
    operands.AddToPath(m);
    return PaintArea(m);
}

/// Whether an operand is a matrix: six numbers.
bool IsMatrix(const CElement* e) {
    const auto* array = As<CArrayElement>(e);
    double six[6];
    return array && array->GetLength() == 6 && ReadMatrix(*array, six) == PSERR_NONE;
}

// as rectfill [matrix]  rectstroke  -        stackunderflow typecheck rangecheck
// The matrix is about the line width alone.
int OpRectstroke(CFilterEPS& m) {
    const int above = IsMatrix(m.m_OperandStack.Top()) ? 1 : 0;
    RectangleOperands operands;
    if (operands.Read(m, above) != 1) return -1;
    m.Drop(operands.Count() + above);
    const CGStateScope scope(m);
    m.NewPath();
    operands.AddToPath(m);
    return PaintLines(m);
}

void AddLoop(CFilterEPS& m, const std::vector<MeshPoint>& loop) {
    for (std::size_t i = 0; i < loop.size(); ++i) {
        double point[2] = {loop[i].first, loop[i].second};
        AddUserPoints(m, 1, point, i == 0 ? PATH_MOVE : PATH_LINE);
    }
}

// shading  shfill  -                         stackunderflow typecheck rangecheck undefined
// Departure: one outline in one colour, for what is a transition between many: of the BBox, of the triangles, or else
// of the clip.
int OpShfill(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* operand = in.Dict(0);
    if (!in) return -1;
    const ElementPtr kept = operand->Clone();  // a colour space's procedure may take the operand away
    const auto* shading = static_cast<const CDictionary*>(kept.get());
    const int depth = m.m_OperandStack.GetCount();
    RgbColor color;
    bool isKnown = false;
    MeshOutline outline;
    if (FindShadingColor(m, *shading, color, isKnown, &outline) != 1) return -1;
    std::vector<double> box;
    const CElement* bounds = shading->GetValue("BBox");
    const bool hasBox = bounds && ReadNumbers(*bounds, box) == PSERR_NONE && box.size() == 4;
    if (m.m_OperandStack.GetCount() == depth) m.Drop(1);
    const CGStateScope scope(m);
    m.NewPath();
    if (hasBox) {
        m.AddRectPath(static_cast<float>(box[0]), static_cast<float>(box[1]), static_cast<float>(box[2] - box[0]),
                      static_cast<float>(box[3] - box[1]));
    } else if (!outline.empty()) {
        for (const std::vector<MeshPoint>& loop : outline) AddLoop(m, loop);
    } else {
        ReplacePath(m, CurrentClip(m).Outline());
    }
    const RgbScope paint(*m.GetCurrentGState(), isKnown ? color : RgbColor{});
    return PaintArea(m);
}

constexpr OpRow kRows[] = {
    {"fill", OpFill},         {"eofill", OpFill},           {"stroke", OpStroke},
    {"rectfill", OpRectfill}, {"rectstroke", OpRectstroke}, {"shfill", OpShfill},
};

}  // namespace

constinit const OpTable kCompletePaintOperators{kRows};

int PaintArea(CFilterEPS& m) {
    if (IsColorProbed(m)) return LeaveColor(m);
    if (DivertPaint(m)) return 1;
    CGraphState& state = *m.GetCurrentGState();
    if (!m.m_bFillOutline || state.GetPathCount() < 2 || IsNowhere(m)) {
        m.NewPath();
        return 1;
    }
    CloseSubpaths(state);
    return Paint(m);
}

int PaintLines(CFilterEPS& m) {
    if (IsColorProbed(m)) return LeaveColor(m);
    if (!IsNowhere(m)) return Paint(m);
    m.NewPath();
    return 1;
    return DivertPaint(m) ? 1 : Paint(m);
}
