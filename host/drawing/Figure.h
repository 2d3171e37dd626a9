// One connected outline of a drawing in millimetres, and the measures that drawings are laid out by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

struct Point {
    double x = 0;  ///< mm
    double y = 0;  ///< mm, upwards
    bool operator==(const Point&) const = default;
};

enum class SegmentKind : std::uint8_t { Line, Curve, Arc };

/// How many points a segment adds to those of a figure.
constexpr std::size_t PointsOf(SegmentKind kind) {
    return kind == SegmentKind::Line ? 1 : kind == SegmentKind::Curve ? 3 : 2;
}

/// A contour, or a circle: the one arc of a closed figure that ends where it starts. All points move, turn and scale
/// with the figure.
struct Figure {
    std::uint32_t color = 0;  ///< 0x00BBGGRR
    bool closed = false;
    /// The start, then for a line its end, for a cubic Bézier curve three control points, for an arc the point halfway
    /// along it and its end. An arc that ends where it starts goes once around, counterclockwise.
    std::vector<Point> points;
    std::vector<SegmentKind> segments;  ///< none for a figure that is a single point

    bool IsPolyline() const;  ///< has segments, and all are lines
    bool IsCircle() const {
        return closed && segments.size() == 1 && segments[0] == SegmentKind::Arc && points[0] == points[2];
    }
    bool Has(SegmentKind kind) const;

    void AddLine(const Point& to) {
        points.push_back(to);
        segments.push_back(SegmentKind::Line);
    }
    void AddCurve(const Point& control1, const Point& control2, const Point& to) {
        points.insert(points.end(), {control1, control2, to});
        segments.push_back(SegmentKind::Curve);
    }
    void AddArc(const Point& middle, const Point& to) {
        points.insert(points.end(), {middle, to});
        segments.push_back(SegmentKind::Arc);
    }
};

inline unsigned Red(std::uint32_t color) { return color & 0xFF; }
inline unsigned Green(std::uint32_t color) { return color >> 8 & 0xFF; }
inline unsigned Blue(std::uint32_t color) { return color >> 16 & 0xFF; }

/// The smallest upright rectangle around what was added.
class CBox {
public:
    void Add(const Point& point);
    void Add(const Figure& figure);  ///< of curves the curve itself, not its control points

    bool IsEmpty() const { return m_Min.x > m_Max.x; }
    const Point& Min() const { return m_Min; }
    const Point& Max() const { return m_Max; }
    double Width() const { return IsEmpty() ? 0 : m_Max.x - m_Min.x; }
    double Height() const { return IsEmpty() ? 0 : m_Max.y - m_Min.y; }

private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();
    Point m_Min{kFar, kFar};
    Point m_Max{-kFar, -kFar};
};
