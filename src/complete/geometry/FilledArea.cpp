// Insideness by counting the edges on one side of a point, and the questions that infill and its relatives ask.
#include "complete/geometry/FilledArea.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "complete/geometry/ClipRegion.h"

namespace geometry {

namespace {

double DistanceToLine(Point p, Point a, Point b) noexcept {
    const Point side = b - a;
    const double square = Dot(side, side);
    const double t = square > 0 ? std::clamp(Dot(p - a, side) / square, 0.0, 1.0) : 0.0;
    return Length(p - Mix(a, b, t));
}

/// Both points lie on different sides of the line through a and b, each further from it than the tolerance.
bool AreApart(Point p, Point q, Point a, Point b, double tolerance) noexcept {
    const Point side = b - a;
    const double limit = tolerance * Length(side);
    const double left = Cross(side, p - a);
    const double right = Cross(side, q - a);
    return (left > limit && right < -limit) || (left < -limit && right > limit);
}

}  // namespace

FilledArea::FilledArea(Polygons polygons, FillRule rule)
    : m_Polygons(std::move(polygons)),
      m_Rule(rule),
      m_Bounds{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
               -std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()} {
    for (const std::vector<Point>& polygon : m_Polygons) {
        for (size_t i = 0; i < polygon.size(); ++i) {
            const Point from = polygon[i];
            const Point to = polygon[i + 1 < polygon.size() ? i + 1 : 0];
            const double high = std::max(from.y, to.y);
            m_Edges.push_back({from, to, high, high});
            m_Bounds = {std::min(m_Bounds.left, from.x), std::min(m_Bounds.bottom, from.y),
                        std::max(m_Bounds.right, from.x), std::max(m_Bounds.top, from.y)};
        }
    }
    std::stable_sort(m_Edges.begin(), m_Edges.end(), [](const Edge& a, const Edge& b) { return a.Low() < b.Low(); });
    RaiseHighest(0, m_Edges.size());
}

double FilledArea::RaiseHighest(size_t first, size_t last) noexcept {
    if (first == last) return -std::numeric_limits<double>::infinity();
    const size_t middle = first + (last - first) / 2;
    const double below = std::max(RaiseHighest(first, middle), RaiseHighest(middle + 1, last));
    m_Edges[middle].highest = std::max(m_Edges[middle].high, below);
    return m_Edges[middle].highest;
}

/// Visits the edges of a range that meet the band from low to high until a visit answers false.
template <class Visit>
bool FilledArea::Find(size_t first, size_t last, double low, double high, Visit& visit) const {
    if (first == last) return true;
    const size_t middle = first + (last - first) / 2;
    const Edge& edge = m_Edges[middle];
    if (edge.highest < low) return true;
    if (!Find(first, middle, low, high, visit)) return false;
    if (edge.Low() > high) return true;
    if (edge.high >= low && !visit(edge)) return false;
    return Find(middle + 1, last, low, high, visit);
}

bool FilledArea::Contains(Point p, double tolerance, size_t& work) const noexcept {
    int winding = 0;
    const auto count = [&](const Edge& edge) {
        ++work;
        if (DistanceToLine(p, edge.from, edge.to) <= tolerance) return false;
        // An edge owns its lower end and not its upper one, so that a corner counts once.
        const bool rises = edge.from.y <= p.y && p.y < edge.to.y;
        const bool falls = edge.to.y <= p.y && p.y < edge.from.y;
        if (!rises && !falls) return true;
        const double side = Cross(edge.to - edge.from, p - edge.from);
        if (rises && side > 0) ++winding;
        if (falls && side < 0) --winding;
        return true;
    };
    const bool isOffEdges = Find(0, m_Edges.size(), p.y - tolerance, p.y + tolerance, count);
    return !isOffEdges || (m_Rule == FillRule::NonZero ? winding != 0 : winding % 2 != 0);
}

bool FilledArea::IsCrossedBy(Point a, Point b, double tolerance, size_t& work) const noexcept {
    const auto isPassed = [&](const Edge& edge) {
        ++work;
        return !(AreApart(a, b, edge.from, edge.to, tolerance) && AreApart(edge.from, edge.to, a, b, tolerance));
    };
    return !Find(0, m_Edges.size(), std::min(a.y, b.y), std::max(a.y, b.y), isPassed);
}

bool IsInside(const Path& path, FillRule rule, Point aperture, double tolerance) {
    size_t work = 0;
    return FilledArea(FlattenToPolygons(path, tolerance), rule).Contains(aperture, tolerance, work);
}

bool IsInside(const Path& path, FillRule rule, const Path& aperture, double tolerance) {
    const FilledArea area(FlattenToPolygons(path, tolerance), rule);
    for (const std::vector<Point>& polygon : FlattenToPolygons(aperture, tolerance)) {
        size_t work = 0;
        if (area.Contains(polygon.front(), tolerance, work)) return true;
    }
    return !ClipRegion(area).Intersect(aperture, FillRule::NonZero, tolerance).IsEmpty();
}

}  // namespace geometry
