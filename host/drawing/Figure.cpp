// Extents of figures, with those of cubic Bézier curves found where their derivatives vanish, and those of arcs at the
// quarters of their circles.
#include "drawing/Figure.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "drawing/Section.h"

namespace {

// The parameters in (0, 1) where one coordinate of the curve has an extreme: the roots of its derivative,
// a t^2 + b t + c. Answers how many there are.
int Extremes(double p0, double p1, double p2, double p3, double (&roots)[2]) {
    const double a = p3 - 3 * p2 + 3 * p1 - p0;
    const double b = 2 * (p2 - 2 * p1 + p0);
    const double c = p1 - p0;
    int count = 0;
    const auto keep = [&](double t) {
        if (t > 0 && t < 1) roots[count++] = t;
    };
    const double discriminant = b * b - 4 * a * c;
    if (discriminant < 0) return 0;
    // The form that doesn't cancel when a is small against b.
    const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
    if (a != 0) keep(q / a);
    if (q != 0) keep(c / q);
    return count;
}

void AddInside(CBox& box, const Section& curve) {
    const Point* p = curve.points;
    double roots[2];
    for (int i = Extremes(p[0].x, p[1].x, p[2].x, p[3].x, roots); i-- > 0;) box.Add(PointAt(curve, roots[i]));
    for (int i = Extremes(p[0].y, p[1].y, p[2].y, p[3].y, roots); i-- > 0;) box.Add(PointAt(curve, roots[i]));
}

void AddArcInside(CBox& box, const Section& arc) {
    constexpr double kQuarter = std::numbers::pi / 2;
    const ArcShape shape = ShapeOf(arc);
    if (shape.sweep == 0) return;
    const double least = std::min(shape.start, shape.start + shape.sweep);
    for (double quarter = std::ceil(least / kQuarter); quarter * kQuarter < least + std::fabs(shape.sweep); ++quarter)
        box.Add(shape.centre + shape.radius * Direction(quarter * kQuarter));
}

}  // namespace

bool Figure::IsPolyline() const {
    return !segments.empty() &&
           std::all_of(segments.begin(), segments.end(), [](SegmentKind kind) { return kind == SegmentKind::Line; });
}

bool Figure::Has(SegmentKind kind) const { return std::find(segments.begin(), segments.end(), kind) != segments.end(); }

void CBox::Add(const Point& point) {
    m_Min = {std::min(m_Min.x, point.x), std::min(m_Min.y, point.y)};
    m_Max = {std::max(m_Max.x, point.x), std::max(m_Max.y, point.y)};
}

void CBox::Add(const Figure& figure) {
    if (figure.points.empty()) return;
    Add(figure.points.front());
    ForEachSection(figure, [this](const Section& section) {
        if (section.kind == SegmentKind::Curve) AddInside(*this, section);
        if (section.kind == SegmentKind::Arc) AddArcInside(*this, section);
        Add(section.End());
    });
}
