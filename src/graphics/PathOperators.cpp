// Path construction. The order of the roundings is part of the result: the arithmetic stays as it is written.
#include "graphics/PathOperators.h"

#include "graphics/GraphState.h"
#include "graphics/PathBuilder.h"
#include "interp/FilterEPS.h"

namespace {

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
