// Painting: a path is handed to the entity writer and forgotten. Departure: line width, dash, joins, caps,
// the fill rule and the clip have no effect; fill and stroke differ only in whether the user wants the
// outlines of fills.
#include "graphics/PaintOperators.h"

#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "graphics/Matrix.h"
#include "graphics/MatrixOperators.h"
#include "interp/Operands.h"

CGStateScope::CGStateScope(CFilterEPS& machine) : m_Machine(machine) {
    m_Machine.PushGState();
    m_nDepth = m_Machine.m_GStateStack.GetCount();
}

CGStateScope::~CGStateScope() {
    // What ran in between may have popped the copy itself, or left states of its own.
    while (m_Machine.m_GStateStack.GetCount() >= m_nDepth && m_nDepth > 1) m_Machine.PopGState();
}

void CFilterEPS::UpdateColor() {
    float rgb[3];
    GetCurrentGState()->GetRGBColor(rgb);
    m_nColor = 0;
    for (int i = 0; i < 3; ++i) {
        const std::int32_t level = TruncateToInt(rgb[i] * 255.0f);
        m_nColor |= (static_cast<std::uint32_t>(level) & 0xFFu) << (8 * i);
    }
}

void CFilterEPS::PaintPath() {
    CGraphState* state = GetCurrentGState();
    const CPath& path = state->m_Path;
    const std::int32_t count = path.GetCount();
    m_Report.leftOut.nPoints += path.CountDropped();
    CountWork(count);
    if (count < 2) {
        state->ClearPath();
        return;
    }
    m_Report.nPointsDrawn += count;
    UpdateColor();
    const double scale = UnitsPerMillimetre(*this);  // the tolerances are millimetres
    const double mergeTolerance = m_fMergeTolerance * scale;
    const double closeTolerance = m_fCloseTolerance * scale;
    point_2d last;
    const auto lineTo = [&](point_2d end) {
        const point_2d points[2] = {last, end};
        AddLines(points, 2);
        last = end;
    };
    for (std::int32_t i = 0; i < count; ++i) {
        const point_2d point = path.At(i).pt;
        switch (path.At(i).nOp) {
            case PATH_MOVE:
                if (i > 0) EndPLine();
                BeginPLine();
                last = point;
                break;
            case PATH_LINE:
                // A run of tiny segments is measured from the last point kept.
                if (!(mergeTolerance > last.DistFrom(point))) lineTo(point);
                break;
            case PATH_CLOSE:
                if (last.DistFrom(point) > closeTolerance) lineTo(point);
                break;
            case PATH_CURVE: {
                const point_2d points[4] = {last, point, path.At(i + 1).pt, path.At(i + 2).pt};
                AddBezier(points, 4);
                last = points[3];
                i += 2;
                break;
            }
            default:
                break;
        }
    }
    EndPLine();
    state->ClearPath();
}

void CFilterEPS::AddRectPath(float x, float y, float width, float height) {
    const float right = x + width;
    const float top = y + height;
    double corners[10] = {x, y, right, y, right, top, x, top, x, y};
    CGraphState* state = GetCurrentGState();
    state->TransformPoints(5, corners);
    constexpr PathLetter letters[5] = {PATH_MOVE, PATH_LINE, PATH_LINE, PATH_LINE, PATH_CLOSE};
    // Rounded once, behind the scale of the host version, unlike the points of the construction operators.
    const double scale = UnitsPerMillimetre(*this);
    for (int i = 0; i < 5; ++i) {
        const point_2d point{static_cast<float>(corners[2 * i] / POINTS_PER_INCH * MM_PER_INCH * scale),
                             static_cast<float>(corners[2 * i + 1] / POINTS_PER_INCH * MM_PER_INCH * scale)};
        state->AddPathPoint(&point, letters[i]);
    }
}

namespace {

/// Counts an area that is filled with a pattern, of which only the outline may be drawn.
void CountPattern(CFilterEPS& m) {
    if (m.GetCurrentGState()->m_nColorKind == COLOR_PATTERN) ++m.m_Report.leftOut.nPatterns;
}

// -  fill  -
int OpFill(CFilterEPS& m) {
    if (m.GetCurrentGState()->GetPathCount() > 1) CountPattern(m);
    if (m.m_bFillOutline) {
        m.PaintPath();
    } else {
        m.NewPath();
    }
    return 1;
}

// -  stroke  -
int OpStroke(CFilterEPS& m) {
    m.PaintPath();
    return 1;
}

// Rectangles

/// Reads an array as rectangles of four numbers. SYNTAX for a length that is no multiple of four, TYPECHECK.
int AddRectangles(CFilterEPS& m, const CArrayElement& array) {
    const std::int32_t length = array.GetLength();
    if (length % 4 != 0) return m.Fail(PSERR_SYNTAX);
    for (std::int32_t i = 0; i < length; i += 4) {
        float sides[4];
        for (std::int32_t k = 0; k < 4; ++k) {
            const auto* number = As<CNumberElement>(array.GetAt(i + k));
            if (!number) return m.Fail(PSERR_TYPECHECK);
            sides[k] = static_cast<float>(number->GetReal());
        }
        m.AddRectPath(sides[0], sides[1], sides[2], sides[3]);
    }
    return 1;
}

int AddPoppedRectangle(CFilterEPS& m) {
    if (m.PopCoords(2, m.m_dCoord) != 1) return -1;
    const double* d = m.m_dCoord;
    m.AddRectPath(static_cast<float>(d[0]), static_cast<float>(d[1]), static_cast<float>(d[2]),
                  static_cast<float>(d[3]));
    return 1;
}

/// Pops what stands below a matrix and adds its rectangles; what is no form of rectangles stays.
int AddRectanglesBelowMatrix(CFilterEPS& m) {
    const CElement* top = m.m_OperandStack.Top();
    if (!top) return m.Fail(PSERR_STACKUNDERFLOW);
    if (top->m_nType == ET_NUMBER) return AddPoppedRectangle(m);
    if (top->m_nType == ET_ARRAY) return AddRectangles(m, *Take<CArrayElement>(m));
    if (top->m_nType == ET_STRING) m.Drop(1);
    return 1;
}

/// Pops rectangles, with or without a matrix above them, and paints their outlines.
/// Departure: an array of six is a matrix, and encoded number strings are not read.
int PaintRectangles(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.OneOf(0, {ET_NUMBER, ET_ARRAY, ET_STRING});
    if (!in) return -1;
    const CGStateScope scope(m);
    m.NewPath();
    if (top->m_nType == ET_NUMBER) {
        if (AddPoppedRectangle(m) != 1) return -1;
    } else if (top->m_nType == ET_STRING) {
        m.Drop(1);
    } else {
        const auto array = Take<CArrayElement>(m);
        double six[6];
        if (array->GetLength() != 6) {
            if (AddRectangles(m, *array) != 1) return -1;
        } else {
            if (const ErrorCode error = ReadMatrix(*array, six); error != PSERR_NONE) return m.Fail(error);
            if (AddRectanglesBelowMatrix(m) != 1) return -1;
            m.GetCurrentGState()->Concat(six);  // the points are stored: this changes nothing that is drawn
        }
    }
    m.PaintPath();
    return 1;
}

// User paths

/// Pops a user path, with or without a matrix above it, and paints it.
/// Departure: an array of six elements on top is a matrix, whatever it holds.
int PaintUserPath(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    auto path = Take<CArrayElement>(m);
    double six[6] = {1, 0, 0, 1, 0, 0};
    if (path->GetLength() == 6) {
        if (const ErrorCode error = ReadMatrix(*path, six); error != PSERR_NONE) return m.Fail(error);
        in.AnyArray(0);
        if (!in) return -1;
        path = Take<CArrayElement>(m);
    }
    if (path->GetLength() == 2) return m.Fail(PSERR_UNSUPPORTED);
    const CGStateScope scope(m);
    m.NewPath();
    if (m.ExecuteProcedure(path.get()) != 1) return -1;
    m.GetCurrentGState()->Concat(six);  // the points are stored: this changes nothing that is drawn
    m.PaintPath();
    return 1;
}

// userpath [matrix]  ufill  -                STACKUNDERFLOW TYPECHECK; UNSUPPORTED for an encoded path
int OpUfill(CFilterEPS& m) {
    CountPattern(m);
    if (m.m_bFillOutline) return PaintUserPath(m);
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    m.Drop(1);
    return 1;
}

// dict  shfill  -                            STACKUNDERFLOW TYPECHECK
// Departure: shadings draw nothing.
int OpShfill(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    ++m.m_Report.leftOut.nShadings;
    m.Drop(1);
    return 1;
}

// userpath [matrix]  ustroke  -              STACKUNDERFLOW TYPECHECK; UNSUPPORTED for an encoded path
int OpUstroke(CFilterEPS& m) { return PaintUserPath(m); }

// as rectstroke  rectfill  -                 STACKUNDERFLOW TYPECHECK SYNTAX
int OpRectfill(CFilterEPS& m) {
    CountPattern(m);
    return m.m_bFillOutline ? PaintRectangles(m) : DropRectangles(m);
}

// x y width height | numarray | numstring [matrix]  rectstroke  -     STACKUNDERFLOW TYPECHECK SYNTAX
int OpRectstroke(CFilterEPS& m) { return PaintRectangles(m); }

// Place 1 of the chain, compared after kArcCoreOperators.
constexpr OpRow kCoreRows[] = {
    {"fill", OpFill},
    {"stroke", OpStroke},
};

// clang-format off
// Place 25 of the chain, its first table.
constexpr OpRow kRows[] = {
    {"erasepage", OpNothing},
    {"eofill", OpFill},
    {"ufill", OpUfill},
    {"ueofill", OpUfill},
    {"shfill", OpShfill},
    {"ustroke", OpUstroke},
    {"rectfill", OpRectfill},
    {"rectstroke", OpRectstroke},
};
// clang-format on

}  // namespace

int DropRectangles(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.OneOf(0, {ET_NUMBER, ET_ARRAY, ET_STRING});
    if (!in) return -1;
    if (top->m_nType == ET_NUMBER) return m.PopCoords(2, m.m_dCoord);
    m.Drop(1);
    return 1;
}

constinit const OpTable kPaintCoreOperators{kCoreRows};
constinit const OpTable kPaintOperators{kRows};
