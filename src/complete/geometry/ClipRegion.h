// Clip regions: what clip, eoclip, rectclip and clippath compute with.
#pragma once

#include <memory>

#include "complete/geometry/FilledArea.h"
#include "complete/geometry/Path.h"

namespace geometry {

/// Parts of a unit to which polygons are rounded when they are cut: 2^16, so that the grid is 15 nanometres where
/// the unit is a millimetre, and coordinates to 16,384 units are cut in 64-bit arithmetic.
inline constexpr double CLIP_GRID = 65536.0;
/// Coordinates beyond this many units are moved to it when polygons are cut: 2^40.
inline constexpr double CLIP_MAX_COORDINATE = 1099511627776.0;
/// Most pairs of edges that may share a y, and pairs of edges whose boxes may meet, for polygons to be cut. The
/// one bounds the steps of the cut, the other the points where edges cross. Beyond either, the region becomes the
/// box that both areas share: a clip of 100,000 small segments is cut, one of some thousands across the page isn't.
inline constexpr size_t CLIP_MAX_PAIRS = 40'000'000;
inline constexpr size_t CLIP_MAX_CROSSINGS = 1'000'000;
/// Most pairs of edges that Cuts looks at.
inline constexpr size_t CLIP_MAX_CUT_TESTS = 4'000'000;

/// A region of the plane: nothing, a rectangle or an area of polygons. It never changes, and a copy shares the
/// polygons, so that a graphics state can hold one by value. Coordinates are in the unit of the paths that it is
/// intersected with, and tolerances, too. Nothing here throws but for want of memory.
class ClipRegion {
public:
    /// Nothing.
    ClipRegion() noexcept : m_Bounds{0, 0, -1, -1} {}
    /// A rectangle, as the page at the start.
    explicit ClipRegion(const Box& box) noexcept : m_Bounds(box) {}
    explicit ClipRegion(FilledArea area);

    [[nodiscard]] bool IsEmpty() const noexcept { return m_Bounds.IsEmpty(); }
    [[nodiscard]] bool IsRectangle() const noexcept { return !m_pArea && !IsEmpty(); }
    /// The box around the region. That of rectangles cut by rectangles is exact.
    [[nodiscard]] const Box& Bounds() const noexcept { return m_Bounds; }

    /// What the region shares with the inside of a path by a rule. Curves are flattened and subpaths closed by
    /// implication. A path without points leaves nothing; one without width or height, its line.
    [[nodiscard]] ClipRegion Intersect(const Path& path, FillRule rule, double tolerance) const;
    [[nodiscard]] ClipRegion Intersect(const Box& box) const;

    /// The region as closed polygons, whose inside by the nonzero rule is the region; a rectangle from its lower
    /// left corner counter-clockwise. No path for an empty region. What was given by the even-odd rule and is beyond
    /// the bounds above comes as it was given.
    [[nodiscard]] Path Outline() const;

    /// A path has a point outside of the region, further than the tolerance from its border. Cheap when its box
    /// lies within a rectangular region; true without a proof when it would take too long.
    [[nodiscard]] bool Cuts(const Path& path, double tolerance) const;

private:
    Box m_Bounds;
    std::shared_ptr<const FilledArea> m_pArea;  ///< null for a rectangle and for nothing
};

}  // namespace geometry
