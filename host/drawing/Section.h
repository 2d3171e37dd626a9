// The geometry of a figure's sections, which the passes and the writers share: points, tangents, lengths, the circles
// of arcs, lines along them. Millimetres and radians, counterclockwise positive.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "drawing/Figure.h"

inline Point operator+(const Point& a, const Point& b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(const Point& a, const Point& b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(double factor, const Point& a) { return {factor * a.x, factor * a.y}; }
inline double Dot(const Point& a, const Point& b) { return a.x * b.x + a.y * b.y; }
inline double Cross(const Point& a, const Point& b) { return a.x * b.y - a.y * b.x; }
inline double Norm(const Point& a) { return std::sqrt(Dot(a, a)); }
inline double Distance(const Point& a, const Point& b) { return Norm(b - a); }
inline Point Direction(double angle) { return {std::cos(angle), std::sin(angle)}; }
inline double Angle(const Point& a) { return std::atan2(a.y, a.x); }

/// A section in place: its start, then the points that its kind adds. They belong to the figure.
struct Section {
    SegmentKind kind = SegmentKind::Line;
    const Point* points = nullptr;

    const Point& Start() const { return points[0]; }
    const Point& End() const { return points[PointsOf(kind)]; }
};

/// Calls `visit` with every section of the figure in order. The line that closes a closed figure whose ends differ is
/// no section.
template <class Visit>
void ForEachSection(const Figure& figure, Visit visit) {
    const Point* at = figure.points.data();
    for (const SegmentKind kind : figure.segments) {
        visit(Section{kind, at});
        at += PointsOf(kind);
    }
}

/// The circle that an arc lies on, and the part of it.
struct ArcShape {
    Point centre;
    double radius = 0;  ///< 0 for three points in a line, which have no circle
    double start = 0;   ///< the angle of the start as seen from the centre
    double sweep = 0;   ///< -2 pi to 2 pi, 0 for three points in a line
};
ArcShape ShapeOf(const Section& arc);
/// The same, of the arc with these ends and this point halfway along it.
ArcShape ShapeOfArc(const Point& start, const Point& middle, const Point& end);

/// The tangent of a quarter of what an arc turns, as DXF tells arcs between two points. 0 for three points in a line.
double BulgeOf(const Section& arc);

/// The circle of a figure that is one.
ArcShape CircleOf(const Figure& figure);

/// The point halfway along the arc from `start` to `end` that turns by `sweep`, which lies between -2 pi and 2 pi.
Point MiddleOfArc(const Point& start, const Point& end, double sweep);

/// Appends to `curves` the control points, three a piece and without the start, of Bézier curves for the arc. None
/// turns by more than an eighth of a circle, which keeps them within 4.2e-6 radii of it.
void AppendArcAsCurves(const Section& arc, std::vector<Point>& curves);

/// The point at `t`, 0 at the start and 1 at the end. Both ends are bit for bit those of the section. Arcs and lines
/// pass with even speed.
Point PointAt(const Section& section, double t);

/// The derivative by t; of a curve it may vanish.
Point VelocityAt(const Section& section, double t);

/// Unit vectors along the section as it leaves its start and comes to its end, whatever handles have no length; 0, 0
/// for a section whose points are all the same.
Point StartTangent(const Section& section);
Point EndTangent(const Section& section);

double Length(const Section& section);
double Length(const Figure& figure);  ///< a closed one's closing line included

/// Appends points on the section, without its start and with its end, so close that the lines between them lie within
/// `flatness` of it.
void AppendFlattened(const Section& section, double flatness, std::vector<Point>& points);
