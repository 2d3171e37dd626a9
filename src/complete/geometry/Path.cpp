// Paths of doubles: boxes, maps and the reversal.
#include "complete/geometry/Path.h"

#include <algorithm>
#include <limits>

#include "graphics/Matrix.h"

namespace geometry {

namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr Box NOTHING{INFINITE, INFINITE, -INFINITE, -INFINITE};

/// Comparisons with a not-a-number are false, so that it doesn't enter the box.
void Include(Box& box, Point p) noexcept {
    if (p.x < box.left) box.left = p.x;
    if (p.x > box.right) box.right = p.x;
    if (p.y < box.bottom) box.bottom = p.y;
    if (p.y > box.top) box.top = p.y;
}

}  // namespace

Box Intersect(const Box& a, const Box& b) noexcept {
    return {std::max(a.left, b.left), std::max(a.bottom, b.bottom), std::min(a.right, b.right), std::min(a.top, b.top)};
}

Box MapBox(const Box& box, const double matrix[9]) noexcept {
    if (box.IsEmpty()) return box;
    double corners[8] = {box.left, box.bottom, box.right, box.bottom, box.right, box.top, box.left, box.top};
    MatTransform(4, corners, matrix);
    Box mapped = NOTHING;
    for (int i = 0; i < 4; ++i) Include(mapped, {corners[2 * i], corners[2 * i + 1]});
    return mapped;
}

void Path::AddBox(const Box& box) {
    MoveTo({box.left, box.bottom});
    LineTo({box.right, box.bottom});
    LineTo({box.right, box.top});
    LineTo({box.left, box.top});
    Close();
}

void Path::Append(const Path& other) {
    m_Ops.insert(m_Ops.end(), other.m_Ops.begin(), other.m_Ops.end());
    m_Points.insert(m_Points.end(), other.m_Points.begin(), other.m_Points.end());
}

void Path::Transform(const double matrix[9]) noexcept {
    for (Point& p : m_Points) {
        double xy[2] = {p.x, p.y};
        MatTransform(1, xy, matrix);
        p = {xy[0], xy[1]};
    }
}

std::optional<Box> FindBounds(const Path& path) noexcept {
    size_t count = path.Points().size();
    if (count > 1 && path.Ops().back() == PathOp::Move) --count;
    Box box = NOTHING;
    for (size_t i = 0; i < count; ++i) Include(box, path.Points()[i]);
    if (box.IsEmpty()) return std::nullopt;
    return box;
}

namespace {

/// Adds the segments of one subpath from the last to the first.
void AddReversed(const std::vector<Segment>& segments, bool closed, Path& out) {
    if (segments.empty()) return;
    out.MoveTo(segments.back().End());
    for (size_t i = segments.size(); i-- > 0;) {
        const Segment& s = segments[i];
        if (s.op == PathOp::Line) out.LineTo(s.from);
        if (s.op == PathOp::Curve) out.CurveTo(s.p[1], s.p[0], s.from);
    }
    if (closed) out.Close();
}

}  // namespace

Path ReversePath(const Path& path) {
    Path reversed;
    std::vector<Segment> subpath;
    path.Walk([&](const Segment& s) {
        if (s.begins) {
            AddReversed(subpath, false, reversed);
            subpath.clear();
        }
        if (s.op == PathOp::Close) {
            AddReversed(subpath, true, reversed);
            subpath.clear();
        } else {
            subpath.push_back(s);
        }
    });
    AddReversed(subpath, false, reversed);
    return reversed;
}

}  // namespace geometry
