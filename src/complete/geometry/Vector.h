// Points and vectors of doubles, in whatever unit the caller's path has.
#pragma once

#include <cmath>

namespace geometry {

struct Point {
    double x = 0;
    double y = 0;

    friend constexpr bool operator==(Point a, Point b) noexcept { return a.x == b.x && a.y == b.y; }
};

constexpr Point operator+(Point a, Point b) noexcept { return {a.x + b.x, a.y + b.y}; }
constexpr Point operator-(Point a, Point b) noexcept { return {a.x - b.x, a.y - b.y}; }
constexpr Point operator*(double k, Point v) noexcept { return {k * v.x, k * v.y}; }
constexpr double Dot(Point a, Point b) noexcept { return a.x * b.x + a.y * b.y; }
/// Positive when b lies to the left of a.
constexpr double Cross(Point a, Point b) noexcept { return a.x * b.y - a.y * b.x; }
/// v turned by a quarter, counter-clockwise.
constexpr Point LeftOf(Point v) noexcept { return {-v.y, v.x}; }
inline double Length(Point v) noexcept { return std::hypot(v.x, v.y); }
constexpr Point Mix(Point a, Point b, double t) noexcept { return a + t * (b - a); }

/// A point that lies on a line for sure is off it by rounding; this far, as a part of the coordinates.
inline constexpr double ROUNDING = 1e-12;

}  // namespace geometry
