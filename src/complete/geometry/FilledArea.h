// Areas of polygons under a fill rule, indexed so that a point or a line asks near edges only.
#pragma once

#include <cstddef>
#include <vector>

#include "complete/geometry/Flatten.h"
#include "complete/geometry/Path.h"

namespace geometry {

/// PLRM, 4.5.2: the rules of fill and of eofill.
enum class FillRule { NonZero, EvenOdd };

/// Polygons, closed by implication, and what they enclose by a rule. Never changes once made.
class FilledArea {
public:
    /// The polygons must be finite, as FlattenToPolygons gives them. Time n log n.
    FilledArea(Polygons polygons, FillRule rule);

    [[nodiscard]] const Polygons& Outline() const noexcept { return m_Polygons; }
    [[nodiscard]] FillRule Rule() const noexcept { return m_Rule; }
    /// The box of all points, empty without any.
    [[nodiscard]] const Box& Bounds() const noexcept { return m_Bounds; }

    /// A point is inside, or no further from an edge than the tolerance (in the polygons' unit). Adds the number
    /// of edges looked at to work.
    [[nodiscard]] bool Contains(Point p, double tolerance, size_t& work) const noexcept;
    /// The straight line from a to b crosses an edge, and both ends of either lie further than the tolerance from
    /// the other. Adds the number of edges looked at to work.
    [[nodiscard]] bool IsCrossedBy(Point a, Point b, double tolerance, size_t& work) const noexcept;

private:
    struct Edge {
        Point from;
        Point to;
        double high;     ///< of y over this edge
        double highest;  ///< of y over the edge and those of its half of the index
        [[nodiscard]] double Low() const noexcept { return from.y < to.y ? from.y : to.y; }
    };

    double RaiseHighest(size_t first, size_t last) noexcept;
    template <class Visit>
    bool Find(size_t first, size_t last, double low, double high, Visit& visit) const;

    Polygons m_Polygons;
    FillRule m_Rule;
    Box m_Bounds;
    std::vector<Edge> m_Edges;  ///< an interval tree over y: sorted by Low, each range's middle is its root
};

/// The aperture meets what the rule fills of the path: infill, ineofill and, over the outline of a stroke,
/// instroke with a point (PLRM, infill). The tolerance, in the path's unit, is also the size of the point.
[[nodiscard]] bool IsInside(const Path& path, FillRule rule, Point aperture, double tolerance);
/// The same with a path as the aperture, filled by the nonzero rule: they share an area, or a subpath of the
/// aperture begins within the path. Beyond the bounds of ClipRegion the boxes decide.
[[nodiscard]] bool IsInside(const Path& path, FillRule rule, const Path& aperture, double tolerance);

}  // namespace geometry
