// One cubic Bézier curve against lines and arcs. Curves are four control points, arcs begin and end where the curve
// does and are told by what they turn: radians, counterclockwise positive. Millimetres.
#pragma once

#include <optional>

#include "drawing/Figure.h"
#include "drawing/Section.h"

/// The curve lies within the tolerance of its chord and goes one way along it. True also for a curve
/// that nowhere leaves its start that far.
bool IsStraight(const Point* curve, double tolerance = 0.001);

/// What the arc turns that the curve has the form of: its control polygon is symmetric, and its handles are 4/3
/// tan(sweep / 4) radii long, the length at which a Bézier curve meets the arc halfway. At most a quarter of a circle,
/// of which such a curve lies up to 0.00027 radii off; one that turns farther is an arc only by its distance.
std::optional<double> SweepOfArcForm(const Point* curve);

/// What an arc turns that the curve lies within `tolerance` of everywhere, if there is one and the curve turns in one
/// sense. An arc that leaves its ends as the curve does is preferred.
std::optional<double> SweepOfArcWithin(const Point* curve, double tolerance);

/// The angle from one direction to another, -pi to pi.
inline double AngleBetween(const Point& from, const Point& to) { return std::atan2(Cross(from, to), Dot(from, to)); }

inline Point Turned(const Point& a, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    return {c * a.x - s * a.y, s * a.x + c * a.y};
}

/// An arc, or the chord of one that turns by nothing, as something to measure distances from.
class CArcGauge {
public:
    CArcGauge(const Point& start, const Point& end, double sweep);

    /// How far the point lies outside the circle, negative inside; of a chord to its right.
    double Outside(const Point& point) const;
    /// The direction is one in which the arc, seen from its centre, passes the point.
    bool PassesAlong(const Point& point, const Point& direction) const;
    /// The point is seen from the centre in the part of the circle that the arc covers, or `slack` beside it.
    bool Covers(const Point& point, double slack) const;

private:
    Point m_Start;
    Point m_Chord;    ///< unit vector
    double m_Length;  ///< of the chord
    bool m_bStraight;
    Point m_Centre;
    Point m_ToMiddle;  ///< unit vector from the centre
    double m_Radius = 0;
    double m_Sense = 1;       ///< 1 or -1
    double m_CoverLimit = 0;  ///< radius times the cosine of half the sweep
};

/// The stretch of the curve from `t0` to `t1`, whose ends are those of the gauge's arc, lies within `tolerance` of the
/// arc and runs along it in one sense; then the arc lies within it of the curve, too. `range` receives the least and
/// the greatest distance outside, as far as they were looked for.
struct OutsideRange {
    double least = 0;
    double greatest = 0;
};
bool LiesAlong(const Point* curve, double t0, double t1, const CArcGauge& arc, double tolerance,
               OutsideRange* range = nullptr);
