// Matrices of 3 by 3 doubles in row-major order, for row vectors: (x, y, 1) times M.
//
// The PostScript matrix [a b c d tx ty] stands at m[0]=a, m[1]=b, m[3]=c, m[4]=d, m[6]=tx, m[7]=ty; the third
// column is 0 0 1. Points are pairs x, y of doubles, one behind the other. No function tests the determinant:
// a singular matrix gives infinities and not-a-numbers (IEEE 754), which travel on.
#pragma once

void MatIdentity(double m[9]) noexcept;
/// m becomes l times m.
void MatConcat(double m[9], const double l[9]) noexcept;
/// out becomes a times b; out may be a or b.
void MatMultiply(const double a[9], const double b[9], double out[9]) noexcept;
void MatFromArray6(const double six[6], double m[9]) noexcept;
void MatToArray6(const double m[9], double six[6]) noexcept;
/// Maps n points in place.
void MatTransform(int n, double* pts, const double m[9]) noexcept;
/// Maps n distances in place: without the translation.
void MatDTransform(int n, double* pts, const double m[9]) noexcept;
/// out becomes the inverse, by the adjugate over the determinant; out may be m.
void MatInvert(const double m[9], double out[9]) noexcept;
/// MatTransform and MatDTransform by the inverse of m.
void MatITransform(int n, double* pts, const double m[9]) noexcept;
void MatIDTransform(int n, double* pts, const double m[9]) noexcept;
