// Extents of figures, with those of cubic Bézier curves found where their derivatives vanish.
#include "drawing/Figure.h"

#include <algorithm>
#include <cmath>

namespace {

Point Interpolate(const Point& p0, const Point* c, double t) {
    const double s = 1 - t;
    const double b0 = s * s * s, b1 = 3 * s * s * t, b2 = 3 * s * t * t, b3 = t * t * t;
    return {b0 * p0.x + b1 * c[0].x + b2 * c[1].x + b3 * c[2].x, b0 * p0.y + b1 * c[0].y + b2 * c[1].y + b3 * c[2].y};
}

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

}  // namespace

bool Figure::IsPolyline() const {
    return !segments.empty() && std::find(segments.begin(), segments.end(), SegmentKind::Curve) == segments.end();
}

void CBox::Add(const Point& point) {
    m_Min = {std::min(m_Min.x, point.x), std::min(m_Min.y, point.y)};
    m_Max = {std::max(m_Max.x, point.x), std::max(m_Max.y, point.y)};
}

void CBox::Add(const Figure& figure) {
    if (figure.points.empty()) return;
    Add(figure.points.front());
    std::size_t at = 1;
    for (const SegmentKind kind : figure.segments) {
        if (kind == SegmentKind::Line) {
            Add(figure.points[at++]);
            continue;
        }
        const Point& from = figure.points[at - 1];
        const Point* control = &figure.points[at];
        double roots[2];
        for (int i = Extremes(from.x, control[0].x, control[1].x, control[2].x, roots); i-- > 0;)
            Add(Interpolate(from, control, roots[i]));
        for (int i = Extremes(from.y, control[0].y, control[1].y, control[2].y, roots); i-- > 0;)
            Add(Interpolate(from, control, roots[i]));
        Add(control[2]);
        at += 3;
    }
}
