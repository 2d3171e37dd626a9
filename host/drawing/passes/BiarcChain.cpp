// A biarc is two arcs that meet with one tangent and have given ends and end tangents. There is one for every point
// of a circle through the ends where they may meet; here they meet on the curve, so that each arc follows the stretch
// of it between its own ends. From the start of the curve each biarc takes the longest stretch that it can follow,
// found by trial, from the length of the one before.
#include "drawing/passes/BiarcChain.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <optional>

#include "drawing/Section.h"
#include "drawing/Work.h"
#include "drawing/passes/ArcFitting.h"

namespace {

constexpr double kPi = std::numbers::pi;

// A handle shorter than this has no direction but rounding's, and a turn of a smaller radius is a corner: mm.
constexpr double kNoise = 1e-5;

// What is cut off the tip of such a corner: mm, in proportion to the radius.
constexpr double kTipOfRadius = 1e4, kLeastTip = 1e-8, kMostTip = 1e-4;

// Half of the turn at a joint that is still called smooth, a tenth of a degree.
constexpr double kSmooth = 0.05 * kPi / 180;

constexpr double kMostTurn = 1.5 * kPi;  // of one arc of a chain

// A bound for curves that no sane drawing holds; what is left of one beyond it is a line.
constexpr int kMostPieces = 20000;

struct Node {
    double t = 0;
    Point point;
    Point tangent;  // unit vector
};

struct Biarc {
    int arcs = 0;  // 1 or 2
    Point joint;   // of two
    double sweeps[2] = {};
};

Point UnitOf(const Point& a) {
    const double norm = Norm(a);
    return norm > 0 ? (1 / norm) * a : Point{1, 0};
}

class CBiarcChain {
public:
    CBiarcChain(Figure& figure, const Point* curve, double flatness)
        : m_Figure(figure), m_Curve{curve[0], curve[1], curve[2], curve[3]}, m_dFlatness(flatness) {
        if (Distance(m_Curve[0], m_Curve[1]) < kNoise) m_Curve[1] = m_Curve[0];
        if (Distance(m_Curve[3], m_Curve[2]) < kNoise) m_Curve[2] = m_Curve[3];
    }

    void Append(const Point& startTangent, const Point& endTangent);

private:
    Section Curve() const { return {SegmentKind::Curve, m_Curve.data()}; }
    // A sixth of the second derivative.
    Point Acceleration(double t) const {
        return (1 - t) * (m_Curve[0] - 2 * m_Curve[1] + m_Curve[2]) + t * (m_Curve[1] - 2 * m_Curve[2] + m_Curve[3]);
    }
    // The radius of the curve where its speed v is least: v^2 over the acceleration.
    double RadiusAtRest(double t) const {
        const Point velocity = VelocityAt(Curve(), t);
        return Dot(velocity, velocity) / (6 * Norm(Acceleration(t)));
    }
    Node NodeAt(double t) const { return {t, PointAt(Curve(), t), UnitOf(VelocityAt(Curve(), t))}; }

    template <class Visit>
    void ForEachCusp(Visit visit) const;
    void AppendSmooth(const Node& from, const Node& to);
    std::optional<Biarc> Follow(const Node& from, const Node& to) const;
    std::optional<Point> JointBetween(const Node& from, const Node& to, double& t) const;
    void Append(const Biarc& biarc, const Point& end);

    Figure& m_Figure;
    std::array<Point, 4> m_Curve;
    const double m_dFlatness;
    int m_nPieces = 0;
};

// Where the speed has a minimum that is a standstill, or a turn too sharp to be told from one.
template <class Visit>
void CBiarcChain::ForEachCusp(Visit visit) const {
    constexpr int kSteps = 16;
    const auto slope = [this](double t) { return Dot(VelocityAt(Curve(), t), Acceleration(t)); };
    double before = slope(0);
    for (int i = 1; i <= kSteps; ++i) {
        double t0 = static_cast<double>(i - 1) / kSteps, t1 = static_cast<double>(i) / kSteps;
        const double after = slope(t1);
        if (before < 0 && after >= 0) {
            for (int halving = 0; halving < 50; ++halving) {
                const double t = (t0 + t1) / 2;
                (slope(t) < 0 ? t0 : t1) = t;
            }
            if (t1 < 1 && RadiusAtRest(t1) < kNoise) visit(t1);
        }
        before = after;
    }
}

void CBiarcChain::Append(const Point& startTangent, const Point& endTangent) {
    Node from{0, m_Curve[0], startTangent};
    ForEachCusp([&](double t) {
        // The chain turns where the curve comes near the tip: as near as its direction there tells that of the cusp.
        const double radius = RadiusAtRest(t);
        const double tip = std::clamp(kTipOfRadius * radius, kLeastTip, kMostTip);
        const double step = std::sqrt(tip / (3 * Norm(Acceleration(t))));
        if (!(t - step > from.t && t + step < 1)) return;
        const Node before = NodeAt(t - step);
        AppendSmooth(from, before);
        from = {t + step, before.point, NodeAt(t + step).tangent};
    });
    AppendSmooth(from, {1, m_Curve[3], endTangent});
}

// What can't be followed after the last attempt is so short that a line will do.
void CBiarcChain::AppendSmooth(const Node& from, const Node& to) {
    constexpr int kAttempts = 60;        // while nothing has been followed yet
    constexpr double kReach = 1.0 / 16;  // of a stretch: how near to the farthest is near enough
    constexpr double kShrink = 0.6, kGrow = 1.25;
    Node at = from;
    double guess = (to.t - from.t) / 2;
    std::optional<Biarc> whole;
    while (!(whole = Follow(at, to))) {
        if (++m_nPieces > kMostPieces || Distance(at.point, to.point) + std::fabs(to.t - at.t) < 1e-12) break;
        double near = at.t, far = to.t;
        Node best;
        std::optional<Biarc> biarc;
        for (int i = 0; i < kAttempts && !(biarc && far - near < kReach * (far - at.t)); ++i) {
            double t = near + (far - near) / 2;
            if (i == 0) t = std::min(at.t + guess, t);
            if (i > 0 && biarc) t = std::min(t, at.t + kGrow * (near - at.t));
            if (i > 0 && !biarc) t = at.t + kShrink * (far - at.t);
            const Node end = NodeAt(t);
            if (std::optional<Biarc> longer = Follow(at, end)) {
                biarc = longer;
                best = end;
                near = end.t;
            } else {
                far = end.t;
            }
        }
        guess = near - at.t;
        if (biarc) {
            Append(*biarc, best.point);
            at = best;
        } else {
            at = NodeAt(far);
            m_Figure.AddLine(at.point);
        }
    }
    if (whole)
        Append(*whole, to.point);
    else if (at.point != to.point)
        m_Figure.AddLine(to.point);
}

std::optional<Biarc> CBiarcChain::Follow(const Node& from, const Node& to) const {
    CWorkLimit::Count();
    const Point chord = to.point - from.point;
    if (!(Norm(chord) > 0)) return std::nullopt;
    const double leaving = AngleBetween(from.tangent, chord), arriving = AngleBetween(chord, to.tangent);
    if (std::fabs(leaving - arriving) <= 2 * kSmooth && std::fabs(leaving + arriving) <= kMostTurn &&
        LiesAlong(m_Curve.data(), from.t, to.t, {from.point, to.point, leaving + arriving}, m_dFlatness))
        return Biarc{1, {}, {leaving + arriving, 0}};

    double t = 0;
    const std::optional<Point> joint = JointBetween(from, to, t);
    if (!joint) return std::nullopt;
    const Biarc biarc{
        2,
        *joint,
        {2 * AngleBetween(from.tangent, *joint - from.point), 2 * AngleBetween(to.point - *joint, to.tangent)}};
    if (std::max(std::fabs(biarc.sweeps[0]), std::fabs(biarc.sweeps[1])) > kMostTurn) return std::nullopt;
    if (!LiesAlong(m_Curve.data(), from.t, t, {from.point, *joint, biarc.sweeps[0]}, m_dFlatness) ||
        !LiesAlong(m_Curve.data(), t, to.t, {*joint, to.point, biarc.sweeps[1]}, m_dFlatness))
        return std::nullopt;
    return biarc;
}

// The point of the curve between the nodes where two arcs that begin and end with their tangents meet with one
// tangent. An arc that leaves `from` comes to J turned as far beyond the direction to J as that is from its tangent;
// the same holds of the arc from J backwards. Both must agree, up to an angle whose sine is looked at here: it has
// opposite signs at the two ends of the stretch.
std::optional<Point> CBiarcChain::JointBetween(const Node& from, const Node& to, double& t) const {
    const auto kink = [&](double at) {
        const Point joint = PointAt(Curve(), at);
        const Point a = joint - from.point, b = to.point - joint;
        // As complex numbers a^2 conj(b)^2 conj(from) to, whose angle is the kink. First the quotients, for range.
        const Point q{Dot(a, b), -Cross(a, b)};
        const Point square{q.x * q.x - q.y * q.y, 2 * q.x * q.y};
        const Point turn{Dot(from.tangent, to.tangent), Cross(from.tangent, to.tangent)};
        const double norm = Dot(q, q);
        return norm > 0 ? (square.x * turn.y + square.y * turn.x) / norm : 0;
    };
    constexpr double kMargin = 1.0 / 16;
    const double length = to.t - from.t;
    double t0 = from.t + kMargin * length, t1 = to.t - kMargin * length;
    double k0 = kink(t0), k1 = kink(t1);
    if (k0 == 0 && k1 == 0) t0 = t1 = (t0 + t1) / 2;
    if (k0 * k1 > 0) return std::nullopt;
    // Regula falsi with halved weights of an end that stays (Illinois), which nears the root faster than halving.
    int side = 0;
    for (int i = 0; i < 60 && k0 != k1 && t1 - t0 > 1e-15; ++i) {
        t = (t0 * k1 - t1 * k0) / (k1 - k0);
        const double k = kink(t);
        if (std::fabs(k) < kSmooth / 100) break;
        if ((k > 0) == (k1 > 0)) {
            t1 = t;
            k1 = k;
            if (side == 1) k0 /= 2;
            side = 1;
        } else {
            t0 = t;
            k0 = k;
            if (side == -1) k1 /= 2;
            side = -1;
        }
    }
    if (t0 == t1) t = t0;
    if (!(std::fabs(kink(t)) < kSmooth)) return std::nullopt;
    return PointAt(Curve(), t);
}

void CBiarcChain::Append(const Biarc& biarc, const Point& end) {
    if (biarc.arcs == 2) AppendArcOrLine(m_Figure, biarc.joint, biarc.sweeps[0]);
    AppendArcOrLine(m_Figure, end, biarc.sweeps[biarc.arcs - 1]);
}

}  // namespace

void AppendBiarcs(Figure& figure, const Point* curve, const Point& startTangent, const Point& endTangent,
                  double flatness) {
    CBiarcChain(figure, curve, flatness).Append(startTangent, endTangent);
}

void AppendArcOrLine(Figure& figure, const Point& end, double sweep) {
    constexpr double kFlatHeight = 1e-7;  // mm over the chord
    constexpr double kFlatSweep = 1e-4;   // a hundredth of the turn that a smooth joint may have
    const Point start = figure.points.back();
    const double height = Distance(start, end) / 2 * std::fabs(std::tan(sweep / 4));
    if (!(std::fabs(sweep) > 1e-12) || (height < kFlatHeight && std::fabs(sweep) < kFlatSweep))
        figure.AddLine(end);
    else
        figure.AddArc(MiddleOfArc(start, end, sweep), end);
}
