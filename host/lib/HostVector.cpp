// hostvector: rotations and line geometry.
#include "hostout/HostVector.h"

void InitMatrix2D(MATRIX_2D& m) noexcept { m = {{1, 0, 0, 1, 0, 0}}; }

void MakeRotateMatrix(float x, float y, float angle, MATRIX_2D& m) noexcept {
    const double c = std::cos(static_cast<double>(angle));
    const double s = std::sin(static_cast<double>(angle));
    m = {{c, s, -s, c, x - c * x + s * y, y - s * x - c * y}};
}

void mathPrjPntLin2DEx(const double* p, const double* a, const double* b, double* out) noexcept {
    const double dx = b[0] - a[0];
    const double dy = b[1] - a[1];
    const double length = dx * dx + dy * dy;
    const double t = length > 0 ? ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length : 0.0;
    const double foot[2] = {a[0] + t * dx, a[1] + t * dy};
    out[0] = foot[0];
    out[1] = foot[1];
}

int mathUniVec2D(double* v, double tolerance) noexcept {
    const double length = std::hypot(v[0], v[1]);
    if (!(length > 0) || !std::isfinite(length)) {
        v[0] = v[1] = 0.0;
        return 0;
    }
    v[0] /= length;
    v[1] /= length;
    return length > tolerance ? 1 : 0;
}

int mathIntLin2DEx(const double* a0, const double* a1, const double* b0, const double* b1, double pointTolerance,
                   double angleTolerance, double* out) noexcept {
    const double a[2] = {a1[0] - a0[0], a1[1] - a0[1]};
    const double b[2] = {b1[0] - b0[0], b1[1] - b0[1]};
    const double lengthA = std::hypot(a[0], a[1]);
    const double lengthB = std::hypot(b[0], b[1]);
    if (!(lengthA > 0) || !(lengthB > 0)) return 0;
    const double apart[2] = {b0[0] - a0[0], b0[1] - a0[1]};
    const double cross = a[0] * b[1] - a[1] * b[0];
    if (!(std::fabs(cross) > angleTolerance * lengthA * lengthB)) {
        return std::fabs(a[0] * apart[1] - a[1] * apart[0]) <= pointTolerance * lengthA ? 2 : 0;
    }
    const double t = (apart[0] * b[1] - apart[1] * b[0]) / cross;
    out[0] = a0[0] + t * a[0];
    out[1] = a0[1] + t * a[1];
    return 1;
}
