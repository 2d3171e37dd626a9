// Lines and arcs overlap in intervals, found from where the ends of the one lie beside the other.
#include "drawing/passes/Stretch.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <optional>

#include "drawing/passes/ArcFitting.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRounding = 1e-9;           // mm
constexpr double kSnug = kSamePlace / 4;     // a curve is a line or arc when it lies as near to it
constexpr double kUnited = kSamePlace / 10;  // how far united stretches may lie beside their line, or apart
constexpr double kMostSlope = 0.1;           // sine between stretches so short that they are near at any angle

bool IsNear(double distance) { return std::fabs(distance) <= kSamePlace + kRounding; }

Stretch LineBetween(const Point& start, const Point& end, double deviation) {
    Stretch line;
    line.length = Distance(start, end);
    if (line.length <= kSamePlace) return {};
    line.kind = StretchKind::Line;
    line.deviation = deviation;
    line.start = start;
    line.direction = (1 / line.length) * (end - start);
    return line;
}

// Arcs too flat to be told from lines are lines.
Stretch ArcBetween(const Point& start, const Point& middle, const Point& end, double deviation) {
    Stretch arc;
    arc.arc = ShapeOfArc(start, middle, end);
    const double rise = start == end ? arc.arc.radius : Distance(middle, 0.5 * (start + end));
    if (arc.arc.sweep == 0 || (rise <= kSnug && std::fabs(arc.arc.sweep) < kPi))
        return LineBetween(start, end, deviation + rise);
    arc.length = arc.arc.radius * std::fabs(arc.arc.sweep);
    if (arc.length <= kSamePlace) return {};
    arc.kind = StretchKind::Arc;
    arc.deviation = deviation;
    return arc;
}

Stretch CurveStretch(const Point* p) {
    const auto isNear = [p](const Point& point) { return Distance(p[0], point) <= kSamePlace; };
    if (std::all_of(p + 1, p + 4, isNear)) return {};
    const auto arcOf = [p](double sweep, double deviation) {
        return ArcBetween(p[0], MiddleOfArc(p[0], p[3], sweep), p[3], deviation);
    };
    if (const std::optional<double> sweep = SweepOfArcForm(p)) return arcOf(*sweep, 0);
    if (IsStraight(p, kSnug)) return LineBetween(p[0], p[3], kSnug);
    if (const std::optional<double> sweep = SweepOfArcWithin(p, kSnug)) return arcOf(*sweep, kSnug);
    Stretch curve;
    curve.kind = StretchKind::Curve;
    std::copy(p, p + 4, curve.curve.begin());
    curve.length = Length(Section{SegmentKind::Curve, p});
    return curve;
}

// By how much an angle lies counterclockwise of another, 0 to 2 pi.
double TurnTo(double from, double angle) {
    const double turn = std::fmod(angle - from, 2 * kPi);
    return turn < 0 ? turn + 2 * kPi : turn;
}

// The range of angles that an arc covers, counterclockwise.
struct Range {
    double start = 0;
    double span = 0;
};
Range RangeOf(const ArcShape& arc) { return {std::min(arc.start, arc.start + arc.sweep), std::fabs(arc.sweep)}; }

constexpr double kWhole = 2 * kPi - 1e-9;

void AppendLineOverlap(const Stretch& line, const Stretch& other, std::vector<Overlap>& overlaps) {
    if (std::fabs(Cross(line.direction, other.direction)) > kMostSlope) return;
    const double a = Dot(other.start - line.start, line.direction);
    const double b = Dot(other.At(other.length) - line.start, line.direction);
    const double from = std::max(0.0, std::min(a, b)), to = std::min(line.length, std::max(a, b));
    if (!(to - from > kSamePlace)) return;
    const double deviation = line.deviation + other.deviation;
    const auto near = [&](double position, Point& beside) {
        const Point point = line.At(position);
        const double along = Dot(point - other.start, other.direction);
        beside = other.At(std::clamp(along, 0.0, other.length));
        return IsNear(std::fabs(Cross(other.direction, point - other.start)) + deviation);
    };
    Overlap overlap{from, to, {}, {}};
    if (near(from, overlap.nearFrom) && near(to, overlap.nearTo)) overlaps.push_back(overlap);
}

void AppendArcOverlaps(const Stretch& arc, const Stretch& other, std::vector<Overlap>& overlaps) {
    const Point &centre = arc.arc.centre, &otherCentre = other.arc.centre;
    const double radius = arc.arc.radius;
    const double deviation = arc.deviation + other.deviation;
    const Range own = RangeOf(arc.arc), its = RangeOf(other.arc);
    const auto onOther = [&](double angle) { return otherCentre + other.arc.radius * Direction(angle); };

    // The other's range as it is seen from this centre, from where this arc's range begins.
    double first = 0, span = 2 * kPi;
    if (its.span < kWhole) {
        const double start = Angle(onOther(its.start) - centre), end = Angle(onOther(its.start + its.span) - centre);
        first = TurnTo(own.start, start);
        span = its.span + std::remainder(end - start - its.span, 2 * kPi);
    }
    const auto outside = [&](double turn) {
        return Distance(centre + radius * Direction(own.start + turn), otherCentre) - other.arc.radius;
    };
    const double apart = Angle(centre - otherCentre);
    for (const double begin : {first - 2 * kPi, first}) {
        const double from = std::max(0.0, begin), to = std::min(own.span, begin + span);
        if (!((to - from) * radius > kSamePlace)) continue;
        double farthest = std::max(std::fabs(outside(from)), std::fabs(outside(to)));
        // Between them the distance has extremes on the line of the centres.
        for (const double extreme : {TurnTo(own.start, apart), TurnTo(own.start, apart + kPi)})
            if (extreme > from && extreme < to) farthest = std::max(farthest, std::fabs(outside(extreme)));
        if (!IsNear(farthest + deviation)) continue;
        const auto beside = [&](double turn) {
            return onOther(Angle(centre + radius * Direction(own.start + turn) - otherCentre));
        };
        if (arc.arc.sweep > 0)
            overlaps.push_back({from * radius, to * radius, beside(from), beside(to)});
        else
            overlaps.push_back({(own.span - to) * radius, (own.span - from) * radius, beside(to), beside(from)});
    }
}

void AppendCurveOverlap(const Stretch& curve, const Stretch& other, std::vector<Overlap>& overlaps) {
    const auto equal = [](const Point& a, const Point& b) { return IsNear(Distance(a, b)); };
    const auto &p = curve.curve, &q = other.curve;
    if (std::equal(p.begin(), p.end(), q.begin(), equal))
        overlaps.push_back({0, curve.length, q.front(), q.back()});
    else if (std::equal(p.begin(), p.end(), q.rbegin(), equal))
        overlaps.push_back({0, curve.length, q.back(), q.front()});
}

// All of the stretch between these positions lies within kSamePlace of one of the points.
bool IsBeside(const Stretch& stretch, double from, double to, std::initializer_list<const Point*> points) {
    constexpr int kSteps = 8;
    if (!(to - from <= 2 * (kSamePlace + kRounding))) return false;
    for (int i = 0; i <= kSteps; ++i) {
        const Point at = stretch.At(from + (to - from) * i / kSteps);
        const auto near = [&at](const Point* point) { return point != nullptr && IsNear(Distance(at, *point)); };
        if (std::none_of(points.begin(), points.end(), near)) return false;
    }
    return true;
}

bool UniteLines(Stretch& line, const Stretch& other) {
    const bool longer = line.length >= other.length;
    const Stretch &on = longer ? line : other, &beside = longer ? other : line;
    const Point a = beside.start - on.start, b = beside.At(beside.length) - on.start;
    const double away = std::max(std::fabs(Cross(on.direction, a)), std::fabs(Cross(on.direction, b)));
    const double from = std::min(Dot(on.direction, a), Dot(on.direction, b));
    const double to = std::max(Dot(on.direction, a), Dot(on.direction, b));
    const double gap = std::max({0.0, from - on.length, -to});
    const double deviation = std::max(on.deviation, beside.deviation + away) + gap / 2;
    if (gap > kUnited || deviation > kUnited) return false;
    Stretch united = on;
    united.start = on.At(std::min(0.0, from));
    united.length = std::max(on.length, to) - std::min(0.0, from);
    united.deviation = deviation;
    line = united;
    return true;
}

bool UniteArcs(Stretch& arc, const Stretch& other) {
    const bool longer = arc.length >= other.length;
    const Stretch &on = longer ? arc : other, &beside = longer ? other : arc;
    const double away = Distance(on.arc.centre, beside.arc.centre) + std::fabs(on.arc.radius - beside.arc.radius);
    const Range range = RangeOf(on.arc), added = RangeOf(beside.arc);
    const double limit = kUnited / on.arc.radius;
    // The added range begins behind the start of the other, or a hair before it.
    double begin = TurnTo(range.start, added.start);
    if (begin > range.span + limit) begin -= 2 * kPi;
    if (begin + added.span < -limit) return false;
    const double gap = on.arc.radius * std::max({0.0, begin - range.span, -(begin + added.span)});
    const double deviation = std::max(on.deviation, beside.deviation + away) + gap / 2;
    if (deviation > kUnited) return false;
    Stretch united = on;
    const double first = std::min(0.0, begin), last = std::max(range.span, begin + added.span);
    united.arc.start = range.start + first;
    united.arc.sweep = std::min(2 * kPi, last - first);
    if (united.arc.sweep > 2 * kPi - limit) united.arc.sweep = 2 * kPi;
    united.length = united.arc.radius * united.arc.sweep;
    united.deviation = deviation;
    arc = united;
    return true;
}

}  // namespace

Point Stretch::At(double position) const {
    if (kind == StretchKind::Arc) {
        const double turn = std::copysign(position / arc.radius, arc.sweep);
        return arc.centre + arc.radius * Direction(arc.start + turn);
    }
    return start + position * direction;
}

Stretch Stretch::Part(double from, double to) const {
    Stretch part = *this;
    part.length = to - from;
    if (kind == StretchKind::Arc) {
        part.arc.start = arc.start + std::copysign(from / arc.radius, arc.sweep);
        part.arc.sweep = std::copysign(part.length / arc.radius, arc.sweep);
    } else if (kind == StretchKind::Line) {
        part.start = At(from);
    }
    return part;
}

Stretch StretchOf(const Section& section) {
    const Point* p = section.points;
    switch (section.kind) {
        case SegmentKind::Curve:
            return CurveStretch(p);
        case SegmentKind::Arc:
            return ArcBetween(p[0], p[1], p[2], 0);
        case SegmentKind::Line:
            break;
    }
    return LineBetween(p[0], p[1], 0);
}

void AppendOverlaps(const Stretch& stretch, const Stretch& other, std::vector<Overlap>& overlaps) {
    if (stretch.kind != other.kind) return;
    if (stretch.kind == StretchKind::Line) AppendLineOverlap(stretch, other, overlaps);
    if (stretch.kind == StretchKind::Arc) AppendArcOverlaps(stretch, other, overlaps);
    if (stretch.kind == StretchKind::Curve) AppendCurveOverlap(stretch, other, overlaps);
}

void UniteOverlaps(const Stretch& stretch, std::vector<Overlap>& overlaps) {
    if (overlaps.empty() || stretch.kind == StretchKind::Curve)
        return overlaps.resize(std::min<std::size_t>(1, overlaps.size()));
    std::sort(overlaps.begin(), overlaps.end(),
              [](const Overlap& a, const Overlap& b) { return a.from != b.from ? a.from < b.from : a.to < b.to; });
    if (IsBeside(stretch, 0, overlaps.front().from, {&overlaps.front().nearFrom})) overlaps.front().from = 0;
    std::size_t last = 0;
    for (std::size_t i = 1; i < overlaps.size(); ++i) {
        Overlap& before = overlaps[last];
        const Overlap& next = overlaps[i];
        if (next.from <= before.to || IsBeside(stretch, before.to, next.from, {&before.nearTo, &next.nearFrom})) {
            if (next.to <= before.to) continue;
            before.to = next.to;
            before.nearTo = next.nearTo;
        } else {
            overlaps[++last] = next;
        }
    }
    overlaps.resize(last + 1);
    if (IsBeside(stretch, overlaps.back().to, stretch.length, {&overlaps.back().nearTo}))
        overlaps.back().to = stretch.length;
}

bool Unite(Stretch& stretch, const Stretch& other) {
    if (stretch.kind != other.kind) return false;
    if (stretch.kind == StretchKind::Line) return UniteLines(stretch, other);
    return stretch.kind == StretchKind::Arc && UniteArcs(stretch, other);
}

IndexBox<5> IndexBoxOf(const Stretch& stretch, const Point& pole) {
    // A stretch of this length in its place leaves its line or circle free to turn and to bend by some measure.
    CBox place;
    Point key;
    double radius = 0, freedom = kSamePlace;
    switch (stretch.kind) {
        case StretchKind::Line: {
            constexpr double kMostTurn = 0.5;
            place.Add(stretch.start);
            place.Add(stretch.At(stretch.length));
            const double foot = Dot(pole - stretch.start, stretch.direction);
            key = stretch.At(foot);
            freedom += (std::fabs(foot) + stretch.length) * std::min(2 * kSamePlace / stretch.length, kMostTurn);
            break;
        }
        case StretchKind::Arc: {
            const Range range = RangeOf(stretch.arc);
            const auto add = [&](double angle) {
                place.Add(stretch.arc.centre + stretch.arc.radius * Direction(angle));
            };
            add(range.start);
            add(range.start + range.span);
            constexpr double kQuarter = kPi / 2;
            for (double quarter = std::ceil(range.start / kQuarter); quarter * kQuarter < range.start + range.span;
                 ++quarter)
                add(quarter * kQuarter);
            key = stretch.arc.centre;
            radius = stretch.arc.radius;
            freedom += 2 * kSamePlace * (1 + 1 / (1 - std::cos(std::min(range.span, 2 * kPi) / 2)));
            break;
        }
        case StretchKind::Curve:
            place.Add(PointAt({SegmentKind::Curve, stretch.curve.data()}, 0.5));
            key = 0.5 * (stretch.curve.front() + stretch.curve.back());
            break;
        case StretchKind::Speck:
            place.Add(stretch.start);
            break;
    }
    return {
        {place.Min().x - kSamePlace, place.Min().y - kSamePlace, key.x - freedom, key.y - freedom, radius - freedom},
        {place.Max().x + kSamePlace, place.Max().y + kSamePlace, key.x + freedom, key.y + freedom, radius + freedom}};
}
