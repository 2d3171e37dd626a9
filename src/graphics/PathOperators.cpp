// Path construction. Every point is mapped through the CTM and converted to host units in the moment its
// operator runs. The order of the roundings is part of the result: the arithmetic stays as it is written.
#include "graphics/PathOperators.h"

#include "graphics/GraphState.h"
#include "graphics/Matrix.h"
#include "interp/Operands.h"

namespace {

constexpr double POINTS_PER_INCH = 72.0;
constexpr double MM_PER_INCH = 25.4;
constexpr float UNITS_PER_MM_BEFORE_5 = 40.0f;
constexpr std::int32_t FIRST_MM_VERSION = 5;

}  // namespace

// Host units

float CFilterEPS::ToHostUnits(double value) const {
    const auto millimetres = static_cast<float>(value / POINTS_PER_INCH * MM_PER_INCH);
    return m_nHostVersion < FIRST_MM_VERSION ? millimetres * UNITS_PER_MM_BEFORE_5 : millimetres;
}

void CFilterEPS::HostToUser(int n, point_2d* points) const {
    double inverse[9];
    MatInvert(GetCurrentGState()->m_CTM, inverse);
    const auto toPoints = [this](float value) {
        const auto result = static_cast<float>(value / MM_PER_INCH * POINTS_PER_INCH);
        return m_nHostVersion < FIRST_MM_VERSION ? result / UNITS_PER_MM_BEFORE_5 : result;
    };
    for (int i = 0; i < n; ++i) {
        double point[2] = {toPoints(points[i].x), toPoints(points[i].y)};
        MatTransform(1, point, inverse);
        points[i] = {static_cast<float>(point[0]), static_cast<float>(point[1])};
    }
}

// The machine's path

void CFilterEPS::NewPath() { GetCurrentGState()->ClearPath(); }

int CFilterEPS::GetLastPointHost(point_2d& point) const { return GetCurrentGState()->GetLastPoint(point); }

int CFilterEPS::GetCurrentPoint(point_2d& point) const {
    point = {};
    if (GetLastPointHost(point) == 0) return 0;
    HostToUser(1, &point);
    return 1;
}

int CFilterEPS::PopCoords(int n, double* out) {
    Operands in(*this);
    for (int i = 0; i < 2 * n; ++i) out[2 * n - 1 - i] = in.Real(i);
    if (!in) return -1;
    Drop(2 * n);
    return 1;
}

namespace {

/// Maps pairs of user space to host units and adds them to the path.
void AddUserPoints(CFilterEPS& m, int n, double* coords, PathLetter letter) {
    CGraphState* state = m.GetCurrentGState();
    state->TransformPoints(n, coords);
    for (int i = 0; i < n; ++i) m.m_ptScratch[i] = {m.ToHostUnits(coords[2 * i]), m.ToHostUnits(coords[2 * i + 1])};
    state->AddPathPoint(m.m_ptScratch, letter);
}

template <int pairs, PathLetter letter>
int Absolute(CFilterEPS& m) {
    if (m.PopCoords(pairs, m.m_dCoord) != 1) return -1;
    AddUserPoints(m, pairs, m.m_dCoord, letter);
    return 1;
}

template <int pairs, PathLetter letter>
int Relative(CFilterEPS& m) {
    point_2d current;
    if (m.GetCurrentPoint(current) == 0) return m.Fail(PSERR_NOCURRENTPOINT);
    if (m.PopCoords(pairs, m.m_dCoord) != 1) return -1;
    for (int i = 0; i < pairs; ++i) {
        m.m_dCoord[2 * i] += current.x;
        m.m_dCoord[2 * i + 1] += current.y;
    }
    AddUserPoints(m, pairs, m.m_dCoord, letter);
    return 1;
}

// x y  moveto  -                             STACKUNDERFLOW TYPECHECK
int OpMoveto(CFilterEPS& m) { return Absolute<1, PATH_MOVE>(m); }

// x y  lineto  -                             STACKUNDERFLOW TYPECHECK
// Departure: no current point is needed.
int OpLineto(CFilterEPS& m) { return Absolute<1, PATH_LINE>(m); }

// x1 y1 x2 y2 x3 y3  curveto  -              STACKUNDERFLOW TYPECHECK
// Departure: no current point is needed.
int OpCurveto(CFilterEPS& m) { return Absolute<3, PATH_CURVE>(m); }

// -  newpath  -
int OpNewpath(CFilterEPS& m) {
    m.NewPath();
    return 1;
}

// -  closepath  -
// Departure: a subpath of fewer than three records stays open.
int OpClosepath(CFilterEPS& m) {
    CGraphState* state = m.GetCurrentGState();
    if (state->CountSubpathRecords() < 3) return 1;
    point_2d start;
    static_cast<void>(state->GetSubpathStart(start));  // without an 'm' it is the origin of host units
    state->AddPathPoint(&start, PATH_CLOSE);
    return 1;
}

// -  currentpoint  x y                       NOCURRENTPOINT
int OpCurrentpoint(CFilterEPS& m) {
    point_2d current;
    if (m.GetCurrentPoint(current) == 0) return m.Fail(PSERR_NOCURRENTPOINT);
    m.PushReal(current.x);
    m.PushReal(current.y);
    return 1;
}

// dx dy  rmoveto  -                          NOCURRENTPOINT STACKUNDERFLOW TYPECHECK
int OpRmoveto(CFilterEPS& m) { return Relative<1, PATH_MOVE>(m); }

// dx dy  rlineto  -                          NOCURRENTPOINT STACKUNDERFLOW TYPECHECK
int OpRlineto(CFilterEPS& m) { return Relative<1, PATH_LINE>(m); }

// dx1 dy1 dx2 dy2 dx3 dy3  rcurveto  -       NOCURRENTPOINT STACKUNDERFLOW TYPECHECK
int OpRcurveto(CFilterEPS& m) { return Relative<3, PATH_CURVE>(m); }

// Place 1 of the chain, its first table.
constexpr OpRow kCoreRows[] = {
    {"moveto", OpMoveto},
    {"lineto", OpLineto},
    {"curveto", OpCurveto},
};

// Place 1 of the chain, compared after kPaintCoreOperators.
constexpr OpRow kEndRows[] = {
    {"newpath", OpNewpath},
    {"closepath", OpClosepath},
};

// Place 24 of the chain, its first table.
constexpr OpRow kRows[] = {
    {"currentpoint", OpCurrentpoint},
    {"rmoveto", OpRmoveto},
    {"rlineto", OpRlineto},
};

// Place 24 of the chain, compared after kTangentArcOperators.
constexpr OpRow kCurveRows[] = {
    {"rcurveto", OpRcurveto},
};

}  // namespace

constinit const OpTable kPathCoreOperators{kCoreRows};
constinit const OpTable kPathEndOperators{kEndRows};
constinit const OpTable kPathOperators{kRows};
constinit const OpTable kPathCurveOperators{kCurveRows};
