// The machine's path: points of user space become its records, and its points are told in user space. Every point is
// mapped through the CTM and converted to host units in the moment its operator runs.
#include "graphics/PathBuilder.h"

#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "graphics/Matrix.h"
#include "interp/Operands.h"

void AddUserPoints(CFilterEPS& m, int n, double* coords, PathLetter letter) {
    CGraphState* state = m.GetCurrentGState();
    state->TransformPoints(n, coords);
    for (int i = 0; i < n; ++i) m.m_ptScratch[i] = {ToHostUnits(m, coords[2 * i]), ToHostUnits(m, coords[2 * i + 1])};
    state->AddPathPoint(m.m_ptScratch, letter);
}

void CFilterEPS::NewPath() { GetCurrentGState()->ClearPath(); }

int CFilterEPS::GetLastPointHost(point_2d& point) const { return GetCurrentGState()->GetLastPoint(point); }

int CFilterEPS::GetCurrentPoint(point_2d& point) const {
    point = {};
    if (GetLastPointHost(point) == 0) return 0;
    HostToUser(1, &point);
    return 1;
}

void CFilterEPS::HostToUser(int n, point_2d* points) const {
    double inverse[9];
    MatInvert(GetCurrentGState()->m_CTM, inverse);
    for (int i = 0; i < n; ++i) {
        double point[2] = {ToPoints(*this, points[i].x), ToPoints(*this, points[i].y)};
        MatTransform(1, point, inverse);
        points[i] = {static_cast<float>(point[0]), static_cast<float>(point[1])};
    }
}

int CFilterEPS::PopCoords(int n, double* out) {
    Operands in(*this);
    for (int i = 0; i < 2 * n; ++i) out[2 * n - 1 - i] = in.Real(i);
    if (!in) return -1;
    Drop(2 * n);
    return 1;
}
