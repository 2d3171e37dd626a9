// One connected outline of a drawing in millimetres, and the measures that drawings are laid out by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

struct Point {
    double x = 0;  // mm
    double y = 0;  // mm, upwards
    bool operator==(const Point&) const = default;
};

enum class SegmentKind : std::uint8_t { Line, Curve };

struct Figure {
    std::uint32_t color = 0;  // 0x00BBGGRR
    bool closed = false;
    std::vector<Point> points;  // the start, then one point for each line and three for each cubic Bézier curve
    std::vector<SegmentKind> segments;  // none for a figure that is a single point

    bool IsPolyline() const;  // has segments, and no curves
};

inline unsigned Red(std::uint32_t color) { return color & 0xFF; }
inline unsigned Green(std::uint32_t color) { return color >> 8 & 0xFF; }
inline unsigned Blue(std::uint32_t color) { return color >> 16 & 0xFF; }

// The smallest upright rectangle around what was added.
class CBox {
public:
    void Add(const Point& point);
    void Add(const Figure& figure);  // of curves the curve itself, not its control points

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
