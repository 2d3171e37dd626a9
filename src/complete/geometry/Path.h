// Paths of doubles: what the complete dialect's path operators compute with. A path is a list of operators with
// one, three or no points each; its unit is the caller's, and coordinates may be anything, infinities and
// not-a-numbers (IEEE 754) among them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "complete/geometry/Vector.h"

namespace geometry {

enum class PathOp : std::uint8_t { Move, Line, Curve, Close };

/// Points that an operator has of its own: the end last.
constexpr size_t CountPoints(PathOp op) noexcept {
    constexpr size_t counts[] = {1, 1, 3, 0};
    return counts[static_cast<size_t>(op)];
}

/// A rectangle with sides parallel to the axes, its borders included: one of no width or height isn't empty.
struct Box {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;

    [[nodiscard]] constexpr bool IsEmpty() const noexcept { return !(left <= right && bottom <= top); }
    [[nodiscard]] constexpr bool Contains(Point p) const noexcept {
        return left <= p.x && p.x <= right && bottom <= p.y && p.y <= top;
    }
    /// False for an empty box on either side.
    [[nodiscard]] constexpr bool Contains(const Box& other) const noexcept {
        return !other.IsEmpty() && Contains(Point{other.left, other.bottom}) && Contains(Point{other.right, other.top});
    }
    friend constexpr bool operator==(const Box&, const Box&) noexcept = default;
};

/// What two boxes share, empty when they don't meet.
[[nodiscard]] Box Intersect(const Box& a, const Box& b) noexcept;
/// The box around the image of a box: exact for a map that keeps the axes, else larger than what is in it needs.
/// The map is a matrix as graphics/Matrix.h has them.
[[nodiscard]] Box MapBox(const Box& box, const double matrix[9]) noexcept;

/// One step of a walk over a path. A path that draws on behind a Close does so from the start of the closed
/// subpath (PLRM, closepath); one that draws without any Move starts at its first point.
struct Segment {
    PathOp op;
    Point from;   ///< the current point before the step; for a Move the point itself
    Point p[3];   ///< the points of the operator, the end of a Close in p[0]
    bool begins;  ///< it is the first of a subpath: a Move, or a step behind a Close or without a Move

    [[nodiscard]] Point End() const noexcept { return op == PathOp::Curve ? p[2] : p[0]; }
};

class Path {
public:
    void MoveTo(Point p) { Append(PathOp::Move, p); }
    void LineTo(Point p) { Append(PathOp::Line, p); }
    void CurveTo(Point p1, Point p2, Point p3) {
        Append(PathOp::Curve, p1);
        m_Points.push_back(p2);
        m_Points.push_back(p3);
    }
    void Close() { m_Ops.push_back(PathOp::Close); }
    /// A closed rectangle, from its lower left corner counter-clockwise.
    void AddBox(const Box& box);
    void Append(const Path& other);
    void Clear() noexcept {
        m_Ops.clear();
        m_Points.clear();
    }

    [[nodiscard]] bool IsEmpty() const noexcept { return m_Ops.empty(); }
    [[nodiscard]] const std::vector<PathOp>& Ops() const noexcept { return m_Ops; }
    [[nodiscard]] const std::vector<Point>& Points() const noexcept { return m_Points; }

    /// Maps every point in place. The map is a matrix as graphics/Matrix.h has them.
    void Transform(const double matrix[9]) noexcept;

    /// Calls visit(const Segment&) for each step, in order.
    template <class Visit>
    void Walk(Visit visit) const;

    friend bool operator==(const Path&, const Path&) noexcept = default;

private:
    void Append(PathOp op, Point p) {
        m_Ops.push_back(op);
        m_Points.push_back(p);
    }

    std::vector<PathOp> m_Ops;
    std::vector<Point> m_Points;
};

template <class Visit>
void Path::Walk(Visit visit) const {
    const Point* points = m_Points.data();
    Point start;
    Point current;
    bool begins = true;  // what comes next opens a subpath
    bool hasCurrent = false;
    for (const PathOp op : m_Ops) {
        Segment segment{op, current, {}, begins};
        const size_t count = CountPoints(op);
        for (size_t i = 0; i < count; ++i) segment.p[i] = points[i];
        points += count;
        if (op == PathOp::Close) {
            segment.p[0] = start;
        } else if (op == PathOp::Move || !hasCurrent) {
            segment.from = segment.p[0];
            segment.begins = true;
        }
        if (segment.begins) start = segment.from;
        if (op != PathOp::Close || hasCurrent) visit(static_cast<const Segment&>(segment));
        hasCurrent |= op != PathOp::Close;
        current = segment.End();
        begins = op == PathOp::Close;
    }
}

/// The box around a path as pathbbox has it: control points count, and a Move at the end doesn't unless the path
/// has nothing else (PLRM, pathbbox). Nothing for a path without points; not-a-numbers are left out of account.
[[nodiscard]] std::optional<Box> FindBounds(const Path& path) noexcept;

/// The path with the segments of each subpath in reverse order and direction (PLRM, reversepath). The order of
/// the subpaths stays, and a closed one stays closed: its closing side is the same as before.
[[nodiscard]] Path ReversePath(const Path& path);

}  // namespace geometry
