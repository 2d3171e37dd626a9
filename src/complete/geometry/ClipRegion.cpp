// Intersections of clip regions. Rectangles are cut here and stay exact; polygons are cut by Clipper, on a grid
// of integers.
#include "complete/geometry/ClipRegion.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <polyclipping/clipper.hpp>
#include <utility>

namespace geometry {

namespace {

/// The box of a polygon that is nothing but this box: a rectangle, or a line without width or height. Sides may
/// be off the axes by the rounding of a map.
std::optional<Box> AsBox(const Polygons& polygons, const Box& bounds) {
    if (bounds.left == bounds.right || bounds.bottom == bounds.top) return bounds;
    if (polygons.size() != 1 || polygons[0].size() != 4) return std::nullopt;
    const double largest = std::max(std::max(std::fabs(bounds.left), std::fabs(bounds.right)),
                                    std::max(std::fabs(bounds.bottom), std::fabs(bounds.top)));
    const double tolerance = ROUNDING * largest;
    const auto side = [&](size_t i) { return polygons[0][(i + 1) % 4] - polygons[0][i]; };
    const bool firstIsLevel = std::fabs(side(0).y) <= tolerance;
    for (size_t i = 0; i < 4; ++i) {
        const bool isLevel = std::fabs(side(i).y) <= tolerance;
        const bool isUpright = std::fabs(side(i).x) <= tolerance;
        if (isLevel == isUpright || isLevel != (firstIsLevel == (i % 2 == 0))) return std::nullopt;
    }
    return bounds;
}

Polygons ToPolygons(const Box& box) {
    return {{{box.left, box.bottom}, {box.right, box.bottom}, {box.right, box.top}, {box.left, box.top}}};
}

Path ToPath(const Polygons& polygons) {
    Path path;
    for (const std::vector<Point>& polygon : polygons) {
        path.MoveTo(polygon.front());
        for (size_t i = 1; i < polygon.size(); ++i) path.LineTo(polygon[i]);
        path.Close();
    }
    return path;
}

// The bound of the work

/// Sweeps up over the boxes of all edges and counts pairs, until a bound is passed.
class PairCounter {
public:
    void Add(const Polygons& polygons) {
        for (const std::vector<Point>& polygon : polygons) {
            for (size_t i = 0; i < polygon.size(); ++i) {
                const Point a = polygon[i];
                const Point b = polygon[i + 1 < polygon.size() ? i + 1 : 0];
                m_Boxes.push_back({std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)});
            }
        }
    }
    [[nodiscard]] bool IsTooMuch() {
        std::sort(m_Boxes.begin(), m_Boxes.end(), [](const Box& a, const Box& b) { return a.bottom < b.bottom; });
        std::vector<const Box*> open;
        size_t pairs = 0;
        size_t crossings = 0;
        for (const Box& box : m_Boxes) {
            pairs += open.size();
            if (pairs > CLIP_MAX_PAIRS) return true;
            size_t kept = 0;
            for (const Box* other : open) {
                if (other->top < box.bottom) continue;
                open[kept++] = other;
                if (other->left <= box.right && box.left <= other->right) ++crossings;
            }
            if (crossings > CLIP_MAX_CROSSINGS) return true;
            open.resize(kept);
            open.push_back(&box);
        }
        return false;
    }

private:
    std::vector<Box> m_Boxes;
};

// Clipper

ClipperLib::cInt ToGrid(double value) noexcept {
    return static_cast<ClipperLib::cInt>(
        std::llround(std::clamp(value, -CLIP_MAX_COORDINATE, CLIP_MAX_COORDINATE) * CLIP_GRID));
}

ClipperLib::PolyFillType ToFillType(FillRule rule) noexcept {
    return rule == FillRule::NonZero ? ClipperLib::pftNonZero : ClipperLib::pftEvenOdd;
}

void AddPolygons(ClipperLib::Clipper& clipper, const Polygons& polygons, ClipperLib::PolyType type) {
    ClipperLib::Path onGrid;
    for (const std::vector<Point>& polygon : polygons) {
        onGrid.clear();
        for (const Point p : polygon) onGrid.emplace_back(ToGrid(p.x), ToGrid(p.y));
        clipper.AddPath(onGrid, type, true);  // false for one without an area, which shares nothing
    }
}

/// What two areas share, or nothing when the library gives up. Without a clip, the area by itself, free of overlaps.
std::optional<Polygons> CutOnGrid(const Polygons& area, FillRule areaRule, const Polygons* clip, FillRule clipRule) {
    ClipperLib::Paths result;
    try {
        ClipperLib::Clipper clipper;
        AddPolygons(clipper, area, ClipperLib::ptSubject);
        if (clip) AddPolygons(clipper, *clip, ClipperLib::ptClip);
        if (!clipper.Execute(clip ? ClipperLib::ctIntersection : ClipperLib::ctUnion, result, ToFillType(areaRule),
                             ToFillType(clipRule))) {
            return std::nullopt;
        }
    } catch (const ClipperLib::clipperException&) {
        return std::nullopt;
    }
    Polygons polygons;
    for (const ClipperLib::Path& contour : result) {
        if (contour.empty()) continue;
        std::vector<Point>& polygon = polygons.emplace_back();
        for (const ClipperLib::IntPoint p : contour) {
            polygon.push_back({static_cast<double>(p.X) / CLIP_GRID, static_cast<double>(p.Y) / CLIP_GRID});
        }
    }
    return polygons;
}

}  // namespace

ClipRegion::ClipRegion(FilledArea area) : m_Bounds(area.Bounds()) {
    if (IsEmpty() || AsBox(area.Outline(), m_Bounds)) return;
    m_pArea = std::make_shared<const FilledArea>(std::move(area));
}

ClipRegion ClipRegion::Intersect(const Box& box) const {
    Path path;
    path.AddBox(box);
    return box.IsEmpty() ? ClipRegion() : Intersect(path, FillRule::NonZero, 0);
}

ClipRegion ClipRegion::Intersect(const Path& path, FillRule rule, double tolerance) const {
    ClipRegion other(FilledArea(FlattenToPolygons(path, tolerance), rule));
    const Box shared = geometry::Intersect(m_Bounds, other.m_Bounds);
    if (IsEmpty() || other.IsEmpty() || shared.IsEmpty()) return {};
    // Most clips are rectangles, or lie within one.
    if (IsRectangle() && other.IsRectangle()) return ClipRegion(shared);
    if (other.IsRectangle() && other.m_Bounds.Contains(m_Bounds)) return *this;
    if (IsRectangle() && m_Bounds.Contains(other.m_Bounds)) return other;
    const Polygons own = m_pArea ? m_pArea->Outline() : ToPolygons(m_Bounds);
    const Polygons its = other.m_pArea ? other.m_pArea->Outline() : ToPolygons(other.m_Bounds);
    PairCounter pairs;
    pairs.Add(own);
    pairs.Add(its);
    if (pairs.IsTooMuch()) return ClipRegion(shared);
    std::optional<Polygons> cut = CutOnGrid(own, m_pArea ? m_pArea->Rule() : FillRule::NonZero, &its, rule);
    if (!cut) return ClipRegion(shared);
    return ClipRegion(FilledArea(std::move(*cut), FillRule::NonZero));
}

Path ClipRegion::Outline() const {
    Path path;
    if (IsRectangle()) path.AddBox(m_Bounds);
    if (!m_pArea) return path;
    if (m_pArea->Rule() == FillRule::EvenOdd) {
        PairCounter pairs;
        pairs.Add(m_pArea->Outline());
        if (!pairs.IsTooMuch()) {
            const auto whole = CutOnGrid(m_pArea->Outline(), FillRule::EvenOdd, nullptr, FillRule::NonZero);
            if (whole) return ToPath(*whole);
        }
    }
    return ToPath(m_pArea->Outline());
}

bool ClipRegion::Cuts(const Path& path, double tolerance) const {
    const std::optional<Box> box = FindBounds(path);
    if (!box) return false;
    if (IsEmpty()) return true;
    const Box within{m_Bounds.left - tolerance, m_Bounds.bottom - tolerance, m_Bounds.right + tolerance,
                     m_Bounds.top + tolerance};
    const bool boxIsWithin = within.Contains(*box);
    if (!m_pArea && boxIsWithin) return false;
    bool isCut = false;
    size_t work = 0;
    FlattenPath(path, tolerance).Walk([&](const Segment& s) {
        if (isCut) return;
        const Point end = s.End();
        isCut = !within.Contains(end);
        if (isCut || !m_pArea) return;
        isCut = !m_pArea->Contains(end, tolerance, work) || m_pArea->IsCrossedBy(s.from, end, tolerance, work) ||
                work > CLIP_MAX_CUT_TESTS;
    });
    return isCut;
}

}  // namespace geometry
