// Curves against lines and arcs. Distances are looked for at points of equal steps of t, with a parabola through the
// farthest three: between an arc and a curve near it they are smooth, with few extremes.
#include "drawing/passes/ArcFitting.h"

#include <algorithm>
#include <array>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kForm = 0.001;  // of the handles' length
constexpr double kNoise = 2e-5;  // mm: the rounding of 32-bit coordinates some hundred millimetres from the origin

// Beyond this radius in millimetres rounding would show in distances; its arcs are straight for any drawing.
constexpr double kFlattest = 1e9;

Section CurveSection(const Point* curve) { return {SegmentKind::Curve, curve}; }

// The extreme of 3 s^2 t a + 3 s t^2 b farthest from 0: a curve's distance from its chord, of its inner control
// points' distances.
double FarthestFromChord(double a, double b) {
    // The derivative over 3: (3a - 3b) t^2 + (2b - 4a) t + a.
    const double qa = 3 * a - 3 * b, qb = 2 * b - 4 * a;
    const double discriminant = qb * qb - 4 * qa * a;
    double farthest = 0;
    const auto consider = [&](double t) {
        if (!(t > 0 && t < 1)) return;
        const double s = 1 - t;
        farthest = std::max(farthest, std::fabs(3 * s * t * (s * a + t * b)));
    };
    if (discriminant < 0) return 0;
    const double q = -0.5 * (qb + std::copysign(std::sqrt(discriminant), qb));
    if (qa != 0) consider(q / qa);
    if (q != 0) consider(a / q);
    return farthest;
}

// A quadratic of these Bernstein coefficients is nowhere below 0 from 0 to 1, but for `noise`.
bool StaysPositive(double b0, double b1, double b2, double noise) {
    if (b0 < -noise || b2 < -noise) return false;
    return b1 >= -noise - std::sqrt(std::max(b0, 0.0) * std::max(b2, 0.0));
}

// The curve has no inflection. The cross product of its first two derivatives is a quadratic in t.
bool TurnsInOneSense(const Point* p) {
    const Point d0 = p[1] - p[0], d1 = p[2] - p[1], d2 = p[3] - p[2];
    const double c0 = Cross(d0, d1), c1 = Cross(d0, d2) / 2, c2 = Cross(d1, d2);
    const double noise = kNoise * (Norm(d0) + Norm(d1) + Norm(d2));
    return StaysPositive(c0, c1, c2, noise) || StaysPositive(-c0, -c1, -c2, noise);
}

}  // namespace

bool IsStraight(const Point* curve, double tolerance) {
    const Point chord = curve[3] - curve[0], h1 = curve[1] - curve[0], h2 = curve[2] - curve[0];
    if (std::max({Norm(chord), Norm(h1), Norm(h2)}) <= tolerance) return true;
    const double length = Norm(chord);
    if (!(length > 0)) return false;
    const Point along = (1 / length) * chord;
    if (!(FarthestFromChord(Cross(along, h1), Cross(along, h2)) <= tolerance)) return false;
    const double x1 = Dot(along, h1), x2 = Dot(along, h2);
    return StaysPositive(x1, x2 - x1, length - x2, 0);
}

std::optional<double> SweepOfArcForm(const Point* curve) {
    const Point chord = curve[3] - curve[0], h0 = curve[1] - curve[0], h1 = curve[3] - curve[2];
    const double length = Norm(chord);
    if (!(length > 0) || !(Norm(h0) > 0) || !(Norm(h1) > 0)) return std::nullopt;
    const double half = (AngleBetween(h0, chord) + AngleBetween(chord, h1)) / 2;
    if (half == 0 || std::fabs(half) > kPi / 4 * (1 + kForm)) return std::nullopt;
    // With the chord 2 r sin(half): 4/3 tan(half / 2) r is a third of the chord over the square of cos(half / 2).
    const double cosine = std::cos(half / 2);
    const double handle = length / (3 * cosine * cosine);
    const Point ideal = (handle / length) * chord;
    const double limit = kForm * handle;
    if (Distance(h0, Turned(ideal, -half)) > limit || Distance(h1, Turned(ideal, half)) > limit) return std::nullopt;
    return 2 * half;
}

CArcGauge::CArcGauge(const Point& start, const Point& end, double sweep)
    : m_Start(start), m_Length(Distance(start, end)) {
    m_Chord = (1 / m_Length) * (end - start);
    m_Radius = std::fabs(m_Length / 2 / std::sin(sweep / 2));
    m_bStraight = !(m_Radius < kFlattest);
    if (m_bStraight) return;
    m_Sense = sweep < 0 ? -1 : 1;
    // A counterclockwise arc lies to the right of its chord, its middle seen from the centre at right angles to it.
    m_ToMiddle = {m_Sense * m_Chord.y, -m_Sense * m_Chord.x};
    m_CoverLimit = m_Radius * std::cos(sweep / 2);
    m_Centre = 0.5 * (start + end) - m_CoverLimit * m_ToMiddle;
}

double CArcGauge::Outside(const Point& point) const {
    if (m_bStraight) return Cross(point - m_Start, m_Chord);
    const Point from = point - m_Centre;
    return std::sqrt(Dot(from, from)) - m_Radius;
}

bool CArcGauge::PassesAlong(const Point& point, const Point& direction) const {
    if (m_bStraight) return Dot(direction, m_Chord) > 0;
    return m_Sense * Cross(point - m_Centre, direction) > 0;
}

bool CArcGauge::Covers(const Point& point, double slack) const {
    if (m_bStraight) {
        const double along = Dot(point - m_Start, m_Chord);
        return along >= -slack && along <= m_Length + slack;
    }
    return Dot(point - m_Centre, m_ToMiddle) >= m_CoverLimit - slack;
}

bool LiesAlong(const Point* curve, double t0, double t1, const CArcGauge& arc, double tolerance, OutsideRange* range) {
    constexpr int kSteps = 12;
    std::array<double, kSteps + 1> outside{};  // 0 at both ends
    // A turn back near an end may hide between two points, but not from the direction at the end.
    const Section section = CurveSection(curve);
    bool along = arc.PassesAlong(PointAt(section, t0), t0 == 0 ? StartTangent(section) : VelocityAt(section, t0)) &&
                 arc.PassesAlong(PointAt(section, t1), t1 == 1 ? EndTangent(section) : VelocityAt(section, t1));
    if (range == nullptr && !along) return false;
    // The middle first: where an arc doesn't fit, it shows there.
    if (range == nullptr && !(std::fabs(arc.Outside(PointAt(section, (t0 + t1) / 2))) <= tolerance)) return false;
    for (int i = 1; i < kSteps; ++i) {
        const double t = t0 + (t1 - t0) * i / kSteps;
        const Point point = PointAt(section, t);
        outside[i] = arc.Outside(point);
        along = along && arc.PassesAlong(point, VelocityAt(section, t)) && arc.Covers(point, tolerance);
        if (range == nullptr && !(along && std::fabs(outside[i]) <= tolerance)) return false;
    }
    double least = 0, greatest = 0;
    for (int i = 1; i < kSteps; ++i) {
        double extreme = outside[i];
        const double before = outside[i - 1], after = outside[i + 1];
        const double bend = before - 2 * extreme + after;
        if ((extreme - before) * (after - extreme) < 0 && bend != 0)
            extreme -= (after - before) * (after - before) / (8 * bend);
        least = std::min(least, extreme);
        greatest = std::max(greatest, extreme);
    }
    if (range != nullptr) *range = {least, greatest};
    return along && -least <= tolerance && greatest <= tolerance;
}

std::optional<double> SweepOfArcWithin(const Point* curve, double tolerance) {
    const Point chord = curve[3] - curve[0];
    const double length = Norm(chord);
    if (!(length > 0) || !TurnsInOneSense(curve)) return std::nullopt;
    const Section section = CurveSection(curve);
    constexpr double kMostSweep = 1.9 * kPi;  // beyond it the ends are too near one another to carry the arc

    const double byTangents = AngleBetween(StartTangent(section), chord) + AngleBetween(chord, EndTangent(section));
    const Point middle = PointAt(section, 0.5);
    double sweep = 2 * AngleBetween(middle - curve[0], curve[3] - middle);
    OutsideRange range;
    if (std::fabs(byTangents) < kMostSweep && LiesAlong(curve, 0, 1, {curve[0], curve[3], byTangents}, tolerance))
        return byTangents;
    // From the arc through the middle, the height over the chord is moved until the greatest distances are alike.
    for (int attempt = 0; attempt < 3 && std::fabs(sweep) < kMostSweep; ++attempt) {
        if (LiesAlong(curve, 0, 1, {curve[0], curve[3], sweep}, tolerance, &range)) return sweep;
        if (range.greatest - range.least > 2.5 * tolerance) break;
        const double outward = (range.greatest + range.least) / 2;
        const double height = length / 2 * std::tan(sweep / 4) + std::copysign(1.0, sweep) * outward;
        sweep = 4 * std::atan(2 * height / length);
    }
    return std::nullopt;
}
