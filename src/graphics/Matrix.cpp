// Matrix arithmetic. The order of each sum is part of the result.
#include "graphics/Matrix.h"

#include <algorithm>

void MatIdentity(double m[9]) noexcept {
    for (int i = 0; i < 9; ++i) m[i] = i % 4 == 0 ? 1.0 : 0.0;
}

void MatConcat(double m[9], const double l[9]) noexcept { MatMultiply(l, m, m); }

void MatMultiply(const double a[9], const double b[9], double out[9]) noexcept {
    double product[9];
    for (int row = 0; row < 9; row += 3) {
        for (int col = 0; col < 3; ++col) {
            product[row + col] = a[row] * b[col] + a[row + 1] * b[3 + col] + a[row + 2] * b[6 + col];
        }
    }
    std::copy_n(product, 9, out);
}

void MatFromArray6(const double six[6], double m[9]) noexcept {
    MatIdentity(m);
    m[0] = six[0];
    m[1] = six[1];
    m[3] = six[2];
    m[4] = six[3];
    m[6] = six[4];
    m[7] = six[5];
}

void MatToArray6(const double m[9], double six[6]) noexcept {
    six[0] = m[0];
    six[1] = m[1];
    six[2] = m[3];
    six[3] = m[4];
    six[4] = m[6];
    six[5] = m[7];
}

void MatTransform(int n, double* pts, const double m[9]) noexcept {
    for (double* const end = pts + 2 * n; pts != end; pts += 2) {
        const double x = pts[0];
        const double y = pts[1];
        pts[0] = y * m[3] + x * m[0] + m[6];
        pts[1] = y * m[4] + x * m[1] + m[7];
    }
}

void MatDTransform(int n, double* pts, const double m[9]) noexcept {
    for (double* const end = pts + 2 * n; pts != end; pts += 2) {
        const double x = pts[0];
        const double y = pts[1];
        pts[0] = y * m[3] + x * m[0];
        pts[1] = y * m[4] + x * m[1];
    }
}

void MatInvert(const double m[9], double out[9]) noexcept {
    const double adjugate[9] = {
        m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
        m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
        m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3],
    };
    const double determinant = m[0] * adjugate[0] + m[1] * adjugate[3] + m[2] * adjugate[6];
    for (int i = 0; i < 9; ++i) out[i] = adjugate[i] / determinant;
}

void MatITransform(int n, double* pts, const double m[9]) noexcept {
    double inverse[9];
    MatInvert(m, inverse);
    MatTransform(n, pts, inverse);
}

void MatIDTransform(int n, double* pts, const double m[9]) noexcept {
    double inverse[9];
    MatInvert(m, inverse);
    MatDTransform(n, pts, inverse);
}
