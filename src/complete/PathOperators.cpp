// Path operators that the plain dialect leaves without effect or gives other bounds.
#include "complete/PathOperators.h"

#include <algorithm>
#include <tuple>

#include "complete/PathBridge.h"
#include "graphics/GraphState.h"
#include "interp/Operands.h"
#include "interp/OperatorChain.h"

namespace {

// -  closepath  -
// Departure: a subpath of one line is not closed by a second line over the first; the current point goes to its start.
int OpClosepath(CFilterEPS& m) {
    CGraphState& state = *m.GetCurrentGState();
    const std::int32_t count = state.GetPathCount();
    if (count == 0) return 1;
    const std::int32_t own = state.CountSubpathRecords();
    if (own == 0) return 1;  // it has just been closed
    // What goes on behind a close starts at a point that has no record of its own.
    const bool hasStart = own < count && state.m_Path.At(count - own).nOp != PATH_MOVE;
    const std::int32_t points = own + (hasStart ? 1 : 0);
    point_2d start;
    if (points < 2 || state.GetSubpathStart(start) == 0) return 1;
    state.AddPathPoint(&start, points == 2 ? PATH_MOVE : PATH_CLOSE);
    return 1;
}

// -  flattenpath  -
// Done when somebody looks at the path: what only paints it draws the curves.
int OpFlattenpath(CFilterEPS& m) {
    m.GetCurrentGState()->m_Path.MarkFlattened();
    return 1;
}

// -  reversepath  -
int OpReversepath(CFilterEPS& m) {
    CPath& path = m.GetCurrentGState()->m_Path;
    const bool isFlattened = path.GetCount() > 0 && path.CountFlattened() == path.GetCount();
    ReplacePath(m, geometry::ReversePath(isFlattened ? ToGeometry(path) : SeePath(m)));
    if (isFlattened) path.MarkFlattened();
    return 1;
}

// -  strokepath  -                           limitcheck
int OpStrokepath(CFilterEPS& m) {
    double userToHost[9];
    UserToHost(m, userToHost);
    return StrokePath(m, userToHost);
}

// -  pathbbox  llx lly urx ury               nocurrentpoint
int OpPathbbox(CFilterEPS& m) {
    float box[4];
    if (!FindUserBox(m, SeePath(m), box)) return m.Fail(PSERR_NOCURRENTPOINT);
    for (const float side : box) m.PushReal(side);
    return 1;
}

// move line curve close  pathforall  -       stackunderflow typecheck
int OpPathforall(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("pathforall");
    if (m.GetCurrentGState()->m_Path.CountFlattened() > 0) static_cast<void>(SeePath(m));
    return run(m);
}

// llx lly urx ury  setbbox  -                stackunderflow typecheck rangecheck
// Departure: the path is as large as it is.
int OpSetbbox(CFilterEPS& m) {
    Operands in(m);
    const double box[4] = {in.Real(3), in.Real(2), in.Real(1), in.Real(0)};
    in.Require(box[0] <= box[2] && box[1] <= box[3], PSERR_RANGE);
    if (!in) return -1;
    m.Drop(4);
    return 1;
}

constexpr OpRow kRows[] = {
    {"closepath", OpClosepath},   {"flattenpath", OpFlattenpath}, {"reversepath", OpReversepath},
    {"strokepath", OpStrokepath}, {"pathbbox", OpPathbbox},       {"pathforall", OpPathforall},
    {"setbbox", OpSetbbox},
};

}  // namespace

constinit const OpTable kCompletePathOperators{kRows};

bool FindUserBox(const CFilterEPS& m, const geometry::Path& path, float box[4]) {
    const auto bounds = geometry::FindBounds(path);
    if (!bounds) return false;
    const auto low = point_2d{static_cast<float>(bounds->left), static_cast<float>(bounds->bottom)};
    const auto high = point_2d{static_cast<float>(bounds->right), static_cast<float>(bounds->top)};
    point_2d corners[4] = {low, {high.x, low.y}, high, {low.x, high.y}};
    m.HostToUser(4, corners);
    std::tie(box[0], box[2]) = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    std::tie(box[1], box[3]) = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    return true;
}

void InitLineParameters(CGraphState& state) noexcept {
    const geometry::StrokeStyle start;
    state.m_fLineWidth = static_cast<float>(start.width);
    state.m_fMiterLimit = static_cast<float>(start.miterLimit);
}

geometry::StrokeStyle StrokeStyleOf(CGraphState& state) {
    geometry::StrokeStyle style;
    style.width = state.m_fLineWidth;
    style.cap = static_cast<geometry::LineCap>(std::clamp(state.m_nLineCap, 0, 2));
    style.join = static_cast<geometry::LineJoin>(std::clamp(state.m_nLineJoin, 0, 2));
    style.miterLimit = std::max(state.m_fMiterLimit, 1.0F);
    if (ReadNumbers(*state.GetDash(), style.dashes) != PSERR_NONE) style.dashes.clear();
    style.dashOffset = state.m_fDashOffset;
    return style;
}

int StrokePath(CFilterEPS& m, const double userToHost[9]) {
    CGraphState& state = *m.GetCurrentGState();
    const auto outline = OutlineStroke(ToGeometry(state.m_Path), StrokeStyleOf(state), userToHost, Flatness(m));
    if (!outline) return m.Fail(PSERR_RANGE, "limitcheck");
    ReplacePath(m, *outline);
    return 1;
}
