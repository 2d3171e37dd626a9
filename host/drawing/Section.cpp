// Section geometry. Arcs are handled by the angle that they turn through, which a point halfway tells well at any
// size: also for arcs so flat that their centre is lost in rounding, and for whole circles.
#include "drawing/Section.h"

#include <algorithm>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

// An arc by its start, the direction in which it leaves and what it turns.
struct Turn {
    double sweep = 0;     // 0 for three points in a line
    double diameter = 0;  // signed as the sweep
    double tangent = 0;   // angle
};

Turn TurnOf(const Point& start, const Point& middle, const Point& end) {
    // The height of the arc over its chord is half the chord times the tangent of a quarter of the sweep.
    const Point chordMiddle = 0.5 * (start + end);
    const double half = 0.5 * Distance(start, end);
    const double height = Distance(chordMiddle, middle);
    const Point toMiddle = middle - start;
    const double side = Cross(toMiddle, end - start);
    if (height == 0 || (side == 0 && start != end)) return {0, 0, Angle(end - start)};
    Turn turn;
    turn.sweep = std::copysign(4 * std::atan2(height, half), start == end ? 1 : side);
    turn.diameter = std::copysign((height * height + half * half) / height, turn.sweep);
    turn.tangent = Angle(toMiddle) - turn.sweep / 4;
    return turn;
}

Turn TurnOf(const Section& arc) { return TurnOf(arc.points[0], arc.points[1], arc.points[2]); }

Point OnCurve(const Point* p, double t) {
    const double s = 1 - t;
    const double b0 = s * s * s, b1 = 3 * s * s * t, b2 = 3 * s * t * t, b3 = t * t * t;
    return {b0 * p[0].x + b1 * p[1].x + b2 * p[2].x + b3 * p[3].x,
            b0 * p[0].y + b1 * p[1].y + b2 * p[2].y + b3 * p[3].y};
}

Point Unit(const Point& a) {
    const double norm = Norm(a);
    return norm > 0 ? (1 / norm) * a : Point();
}

// The first direction that isn't null, of the handle, the diagonal to the farther control point, and the chord.
Point FirstDirection(const Point& from, const Point& near, const Point& middle, const Point& far) {
    for (const Point* to : {&near, &middle, &far})
        if (*to != from) return Unit(*to - from);
    return {};
}

// Gauss and Legendre's rule of five points, over [t0, t1] of a curve's speed.
double SpeedIntegral(const Section& curve, double t0, double t1) {
    constexpr double kAt[] = {0, 0.5384693101056831, 0.9061798459386640};
    constexpr double kWeight[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
    const double middle = (t0 + t1) / 2, half = (t1 - t0) / 2;
    double sum = kWeight[0] * Norm(VelocityAt(curve, middle));
    for (int i = 1; i < 3; ++i)
        sum += kWeight[i] *
               (Norm(VelocityAt(curve, middle - half * kAt[i])) + Norm(VelocityAt(curve, middle + half * kAt[i])));
    return half * sum;
}

double CurveLength(const Section& curve, double t0, double t1, double whole, int depth) {
    constexpr double kPrecision = 1e-10;  // of the length, and mm
    constexpr int kDeepest = 16;          // a cusp is halved to a hundred-thousandth
    const double middle = (t0 + t1) / 2;
    const double first = SpeedIntegral(curve, t0, middle), second = SpeedIntegral(curve, middle, t1);
    if (depth == kDeepest || !(std::fabs(first + second - whole) > kPrecision * (1 + whole))) return first + second;
    return CurveLength(curve, t0, middle, first, depth + 1) + CurveLength(curve, middle, t1, second, depth + 1);
}

// How many equal steps of t keep the lines between them within `flatness` of the section; bounded, so that numbers
// at the edge end, too.
std::size_t StepsFor(const Section& section, double flatness) {
    constexpr double kMost = 1e6;
    double steps = 1;
    if (section.kind == SegmentKind::Curve) {
        // A chord over a step h lies within h^2 / 8 of the greatest second derivative, six times a second difference.
        const Point* p = section.points;
        const double bend = std::max(Norm(p[0] - 2 * p[1] + p[2]), Norm(p[1] - 2 * p[2] + p[3]));
        steps = std::ceil(std::sqrt(6 * bend / (8 * flatness)));
    } else if (section.kind == SegmentKind::Arc) {
        const Turn turn = TurnOf(section);
        const double radius = std::fabs(turn.diameter) / 2;
        if (turn.sweep != 0) {
            // Chords as high as the flatness; of a circle never fewer than make a triangle of it.
            const double step = flatness < radius ? 2 * std::acos(1 - flatness / radius) : kPi;
            steps = std::ceil(std::fabs(turn.sweep) / std::min(step, 2 * kPi / 3));
        }
    }
    return static_cast<std::size_t>(steps >= 1 ? std::min(steps, kMost) : 1);
}

}  // namespace

ArcShape ShapeOf(const Section& arc) { return ShapeOfArc(arc.points[0], arc.points[1], arc.points[2]); }

ArcShape ShapeOfArc(const Point& start, const Point& middle, const Point& end) {
    const Turn turn = TurnOf(start, middle, end);
    if (turn.sweep == 0) return {};
    ArcShape shape;
    shape.radius = std::fabs(turn.diameter) / 2;
    shape.sweep = turn.sweep;
    shape.start = turn.tangent - std::copysign(kPi / 2, turn.sweep);
    if (start == end)
        shape.centre = 0.5 * (start + middle);
    else
        shape.centre = start - shape.radius * Direction(shape.start);
    return shape;
}

double BulgeOf(const Section& arc) { return std::tan(TurnOf(arc).sweep / 4); }

ArcShape CircleOf(const Figure& figure) { return ShapeOfArc(figure.points[0], figure.points[1], figure.points[2]); }

Point MiddleOfArc(const Point& start, const Point& end, double sweep) {
    const double ratio = 0.5 * std::tan(sweep / 4);
    return {0.5 * (start.x + end.x) + ratio * (end.y - start.y), 0.5 * (start.y + end.y) - ratio * (end.x - start.x)};
}

void AppendArcAsCurves(const Section& arc, std::vector<Point>& curves) {
    constexpr double kMostTurn = kPi / 4;
    const Turn turn = TurnOf(arc);
    const auto pieces = static_cast<int>(std::max(1.0, std::ceil(std::fabs(turn.sweep) / kMostTurn - 1e-9)));
    for (int i = 1; i <= pieces; ++i) {
        const Point from = PointAt(arc, static_cast<double>(i - 1) / pieces);
        const Point to = PointAt(arc, static_cast<double>(i) / pieces);
        if (turn.sweep == 0) {
            curves.insert(curves.end(), {from + (1.0 / 3) * (to - from), to - (1.0 / 3) * (to - from), to});
            continue;
        }
        const double step = turn.sweep / pieces;
        const double handle = 4.0 / 3 * std::tan(step / 4) * turn.diameter / 2;
        curves.insert(curves.end(), {from + handle * Direction(turn.tangent + (i - 1) * step),
                                     to - handle * Direction(turn.tangent + i * step), to});
    }
}

Point PointAt(const Section& section, double t) {
    if (t == 0) return section.Start();
    if (t == 1) return section.End();
    switch (section.kind) {
        case SegmentKind::Line:
            break;
        case SegmentKind::Curve:
            return OnCurve(section.points, t);
        case SegmentKind::Arc: {
            const Turn turn = TurnOf(section);
            if (turn.sweep == 0) break;
            const double half = turn.sweep * t / 2;
            return section.Start() + turn.diameter * std::sin(half) * Direction(turn.tangent + half);
        }
    }
    return section.Start() + t * (section.End() - section.Start());
}

Point VelocityAt(const Section& section, double t) {
    const Point* p = section.points;
    switch (section.kind) {
        case SegmentKind::Line:
            break;
        case SegmentKind::Curve: {
            const double s = 1 - t;
            return 3 * (s * s * (p[1] - p[0]) + 2 * s * t * (p[2] - p[1]) + t * t * (p[3] - p[2]));
        }
        case SegmentKind::Arc: {
            const Turn turn = TurnOf(section);
            if (turn.sweep == 0) break;
            return turn.sweep * turn.diameter / 2 * Direction(turn.tangent + turn.sweep * t);
        }
    }
    return section.End() - section.Start();
}

Point StartTangent(const Section& section) {
    const Point* p = section.points;
    if (section.kind == SegmentKind::Curve) return FirstDirection(p[0], p[1], p[2], p[3]);
    return Unit(VelocityAt(section, 0));
}

Point EndTangent(const Section& section) {
    const Point* p = section.points;
    if (section.kind == SegmentKind::Curve) return -1 * FirstDirection(p[3], p[2], p[1], p[0]);
    return Unit(VelocityAt(section, 1));
}

double Length(const Section& section) {
    switch (section.kind) {
        case SegmentKind::Line:
            break;
        case SegmentKind::Curve:
            return CurveLength(section, 0, 1, SpeedIntegral(section, 0, 1), 0);
        case SegmentKind::Arc: {
            const Turn turn = TurnOf(section);
            if (turn.sweep == 0) break;
            return turn.sweep * turn.diameter / 2;
        }
    }
    return Distance(section.Start(), section.End());
}

double Length(const Figure& figure) {
    double length = 0;
    ForEachSection(figure, [&](const Section& section) { length += Length(section); });
    if (figure.closed && !figure.points.empty()) length += Distance(figure.points.back(), figure.points.front());
    return length;
}

void AppendFlattened(const Section& section, double flatness, std::vector<Point>& points) {
    const std::size_t steps = StepsFor(section, flatness);
    for (std::size_t i = 1; i <= steps; ++i)
        points.push_back(PointAt(section, static_cast<double>(i) / static_cast<double>(steps)));
}
