// hostvector: points, rotations and line geometry of the host. Coordinates are host units unless told
// otherwise.
#pragma once

#include <cmath>

#include "hostout/HostApi.h"

/// A point or vector.
struct point_2d {
    float x = 0;
    float y = 0;

    [[nodiscard]] float DistFrom(const point_2d& other) const noexcept {
        const float dx = x - other.x;
        const float dy = y - other.y;
        // Squares of floats are exact in double, and their sum neither vanishes nor overflows: this is what hypot
        // gives, without a call.
        const double square = static_cast<double>(dx) * dx + static_cast<double>(dy) * dy;
        if (!std::isfinite(square)) return std::hypot(dx, dy);
        return static_cast<float>(std::sqrt(square));
    }
};

/// A rotation or other affine map in the row order of PostScript: x' = m[0] x + m[2] y + m[4],
/// y' = m[1] x + m[3] y + m[5].
struct MATRIX_2D {
    double m[6];
};

/// Makes the identity.
HOST_API void InitMatrix2D(MATRIX_2D& m) noexcept;
/// Makes a rotation about (x, y), counter-clockwise, angle in radians.
HOST_API void MakeRotateMatrix(float x, float y, float angle, MATRIX_2D& m) noexcept;

/// What an entity's transform takes.
class TRANSF_2D {
public:
    explicit TRANSF_2D(const MATRIX_2D& m) noexcept : m_Matrix(m) {}
    [[nodiscard]] point_2d Map(point_2d point) const noexcept {
        const double* m = m_Matrix.m;
        return {static_cast<float>(m[0] * point.x + m[2] * point.y + m[4]),
                static_cast<float>(m[1] * point.x + m[3] * point.y + m[5])};
    }
    /// The angle by which the map turns the x axis, radians.
    [[nodiscard]] double GetRotation() const noexcept { return std::atan2(m_Matrix.m[1], m_Matrix.m[0]); }

    MATRIX_2D m_Matrix;
};

// Line functions on pairs of doubles {x, y}, in any unit.

/// The foot of p on the line through a and b; a itself when they coincide.
HOST_API void mathPrjPntLin2DEx(const double* p, const double* a, const double* b, double* out) noexcept;
/// Makes v a unit vector: 1. 0 when v is not longer than the tolerance; it is made a unit vector all the
/// same, since a short vector is an ordinary one where the unit is large, but for one without a direction,
/// which becomes null.
HOST_API int mathUniVec2D(double* v, double tolerance) noexcept;
/// The intersection of the endless lines through a0 a1 and b0 b1: 1 with the point in out. When the sine of
/// the angle between them is not above angleTolerance there is none: 2 if they run within pointTolerance of
/// each other, else 0, as for a line whose two points coincide.
HOST_API int mathIntLin2DEx(const double* a0, const double* a1, const double* b0, const double* b1,
                            double pointTolerance, double angleTolerance, double* out) noexcept;
