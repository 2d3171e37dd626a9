// Circular arcs. The host's arc gives the Bézier form in user space; it is mapped through the CTM afterwards,
// so that a non-uniform CTM makes an elliptical curve of it.
#include "graphics/ArcOperators.h"

#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "hostout/HostCurves.h"
#include "interp/Operands.h"
#include "objects/Angles.h"

namespace {

constexpr int ARC_POINTS = 20;  // start, and three for each of six segments

/// Joins the start of an arc to the path by a line where it lies farther away than this, host units.
float JoinTolerance(const CFilterEPS& m) { return m.m_nHostVersion < FIRST_MM_VERSION ? 3.0f : 0.05f; }

/// Adds the Bézier form of an arc in user space to the path. Answers how many points the host gave.
int AddArcCurve(CFilterEPS& m, const CSectArc& arc) {
    point_2d points[ARC_POINTS] = {};
    int count = 0;
    arc.GetBezierPoints(ARC_POINTS, count, points);
    m.GetCurrentGState()->TransformPathPoints(count, points);
    for (int i = 0; i < count; ++i) points[i] = {ToHostUnits(m, points[i].x), ToHostUnits(m, points[i].y)};
    if (count > 0) m.AppendCurve(points, count);
    return count;
}

}  // namespace

void CFilterEPS::AppendCurve(const point_2d* points, int n) {
    CGraphState* state = GetCurrentGState();
    point_2d last;
    if (state->CountSubpathRecords() == 0 || GetLastPointHost(last) == 0) {
        state->AddPathPoint(points, PATH_MOVE);
    } else if (last.DistFrom(points[0]) > JoinTolerance(*this)) {
        state->AddPathPoint(points, PATH_LINE);
    }
    for (int i = 1; i + 2 < n; i += 3) state->AddPathPoint(points + i, PATH_CURVE);
}

namespace {

// Departure: an angle is moved by a full turn once, however far it is.
void OrderAngles(bool clockwise, double& angle1, double& angle2) {
    if (!clockwise && angle1 > angle2) angle2 += 360.0;
    if (clockwise && angle2 > angle1) angle1 += 360.0;
}

int AddArc(CFilterEPS& m, bool clockwise) {
    Operands in(m);
    double angle2 = in.Real(0);
    double angle1 = in.Real(1);
    const auto radius = static_cast<float>(in.Real(2));
    const auto y = static_cast<float>(in.Real(3));
    const auto x = static_cast<float>(in.Real(4));
    if (!in) return -1;
    m.Drop(5);
    OrderAngles(clockwise, angle1, angle2);
    CSectArc arc;
    arc.CreateCRA(
        {x, y}, radius,
        {static_cast<float>(angle1 * RADIANS_PER_DEGREE_8), static_cast<float>(angle2 * RADIANS_PER_DEGREE_8)});
    if (AddArcCurve(m, arc) == 0) {
        const point_2d origin;
        m.AppendCurve(&origin, 1);
    }
    return 1;
}

// x y r angle1 angle2  arc  -                STACKUNDERFLOW TYPECHECK
int OpArc(CFilterEPS& m) { return AddArc(m, false); }

// x y r angle1 angle2  arcn  -               STACKUNDERFLOW TYPECHECK
int OpArcn(CFilterEPS& m) { return AddArc(m, true); }

/// The line a b moved by r towards a point beside it, each coordinate rounded to float.
void OffsetLine(const double* a, const double* b, const double* towards, double r, double out[4]) {
    double foot[2];
    mathPrjPntLin2DEx(towards, a, b, foot);
    double unit[2] = {towards[0] - foot[0], towards[1] - foot[1]};
    mathUniVec2D(unit, 0.001);
    const double moved[4] = {a[0] + r * unit[0], a[1] + r * unit[1], b[0] + r * unit[0], b[1] + r * unit[1]};
    for (int i = 0; i < 4; ++i) out[i] = static_cast<float>(moved[i]);
}

point_2d Narrow(const double* p) { return {static_cast<float>(p[0]), static_cast<float>(p[1])}; }

/// Adds the arc of radius r that touches the lines P0 P1 and P1 P2; touch takes the two points in user space.
int AddTangentArc(CFilterEPS& m, point_2d touch[2]) {
    point_2d current;
    if (m.GetCurrentPoint(current) == 0) return m.Fail(PSERR_NOCURRENTPOINT);
    Operands in(m);
    const double r = in.Real(0);
    for (int i = 1; i <= 4; ++i) m.m_dCoord[6 - i] = in.Real(i);
    if (!in) return -1;
    m.Drop(5);
    m.m_dCoord[0] = current.x;
    m.m_dCoord[1] = current.y;
    const double* p0 = m.m_dCoord;
    const double* p1 = m.m_dCoord + 2;
    const double* p2 = m.m_dCoord + 4;

    double first[4];
    double second[4];
    OffsetLine(p0, p1, p2, r, first);
    OffsetLine(p1, p2, p0, r, second);
    double centre[2];
    if (mathIntLin2DEx(first, first + 2, second, second + 2, 0.001, 0.001, centre) != 1) return m.Fail(PSERR_SYNTAX);
    double touch1[2];
    double touch2[2];
    mathPrjPntLin2DEx(centre, p0, p1, touch1);
    mathPrjPntLin2DEx(centre, p1, p2, touch2);
    touch[0] = Narrow(touch1);
    touch[1] = Narrow(touch2);

    const double tangent[2] = {p1[0] - p0[0], p1[1] - p0[1]};
    CSectArc arc;
    arc.CreateSEST(touch[0], touch[1], Narrow(tangent));
    return AddArcCurve(m, arc) > 0 ? 1 : m.Fail(PSERR_SYNTAX);
}

// x1 y1 x2 y2 r  arct  -                     NOCURRENTPOINT STACKUNDERFLOW TYPECHECK; SYNTAX, with all gone
int OpArct(CFilterEPS& m) {
    point_2d touch[2];
    return AddTangentArc(m, touch);
}

// x1 y1 x2 y2 r  arcto  xt1 yt1 xt2 yt2      NOCURRENTPOINT STACKUNDERFLOW TYPECHECK; SYNTAX, with all gone
int OpArcto(CFilterEPS& m) {
    point_2d touch[2];
    if (AddTangentArc(m, touch) != 1) return -1;
    for (int i = 0; i < 2; ++i) {
        m.PushReal(touch[i].x);
        m.PushReal(touch[i].y);
    }
    return 1;
}

// Place 1 of the chain, compared after kPathCoreOperators.
constexpr OpRow kCoreRows[] = {
    {"arc", OpArc},
    {"arcn", OpArcn},
};

// Place 24 of the chain, compared after kPathOperators.
constexpr OpRow kTangentRows[] = {
    {"arct", OpArct},
    {"arcto", OpArcto},
};

}  // namespace

constinit const OpTable kArcCoreOperators{kCoreRows};
constinit const OpTable kTangentArcOperators{kTangentRows};
