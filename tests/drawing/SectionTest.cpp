// Points, tangents, lengths and extents of sections: figures whose answers are known.
#include "drawing/Section.h"

#include <gtest/gtest.h>

#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr double kPi = std::numbers::pi;

struct ArcCase {
    const char* name;
    double startAngle, sweep;  // degrees
    double radius;
};

void ExpectNear(const Point& a, const Point& b, double tolerance) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

TEST(Section, ArcsOfAllSizesKeepTheirShape) {
    for (const ArcCase& c : {ArcCase{"quarter", 0, 90, 5},
                             {"clockwise", 30, -200, 5},
                             {"nearly round", 10, 359, 5},
                             {"a hair of a great circle", 45, 1e-4, 1e6},
                             {"half", 180, 180, 0.01}}) {
        SCOPED_TRACE(c.name);
        const Point centre{100, -50};
        const double start = c.startAngle * kPi / 180, sweep = c.sweep * kPi / 180;
        const auto at = [&](double t) { return centre + c.radius * Direction(start + t * sweep); };
        const Point points[] = {at(0), MiddleOfArc(at(0), at(1), sweep), at(1)};
        const Section arc{SegmentKind::Arc, points};
        const double tolerance = 1e-9 * std::max(1.0, c.radius / 100);
        ExpectNear(points[1], at(0.5), tolerance);
        for (const double t : {0.0, 0.25, 0.7, 1.0}) ExpectNear(PointAt(arc, t), at(t), tolerance);
        ExpectNear(StartTangent(arc), std::copysign(1, sweep) * Direction(start + kPi / 2), 1e-6);
        ExpectNear(EndTangent(arc), std::copysign(1, sweep) * Direction(start + sweep + kPi / 2), 1e-6);
        EXPECT_NEAR(Length(arc), c.radius * std::fabs(sweep), tolerance);
        const ArcShape shape = ShapeOf(arc);
        EXPECT_NEAR(shape.sweep, sweep, 1e-9);
        EXPECT_NEAR(shape.radius / c.radius, 1, 1e-3);  // of a hair, rounding leaves little of the height

        std::vector<Point> lines{arc.Start()};
        AppendFlattened(arc, 0.001, lines);
        EXPECT_EQ(lines.back(), arc.End());
        for (std::size_t i = 1; i < lines.size(); ++i)
            EXPECT_LE(std::fabs(Distance(0.5 * (lines[i - 1] + lines[i]), centre) - c.radius), 0.001 + tolerance);

        std::vector<Point> curves{arc.Start()};
        AppendArcAsCurves(arc, curves);
        EXPECT_EQ(curves.back(), arc.End());
        for (std::size_t i = 0; i + 3 < curves.size(); i += 3)
            for (const double t : {0.2, 0.5, 0.8})
                EXPECT_NEAR(Distance(PointAt({SegmentKind::Curve, &curves[i]}, t), centre), c.radius,
                            4.3e-6 * c.radius + tolerance);
    }
}

TEST(Section, ACircleIsOneArc) {
    Figure circle;
    circle.closed = true;
    circle.points = {{15, 20}};
    circle.AddArc({5, 20}, {15, 20});
    ASSERT_TRUE(circle.IsCircle());
    EXPECT_EQ(CircleOf(circle).centre, (Point{10, 20}));
    EXPECT_EQ(CircleOf(circle).radius, 5);
    EXPECT_DOUBLE_EQ(Length(circle), 10 * kPi);
    ExpectNear(PointAt({SegmentKind::Arc, circle.points.data()}, 0.25), {10, 25}, 1e-12);
    CBox box;
    box.Add(circle);
    EXPECT_NEAR(box.Width(), 10, 1e-12);
    EXPECT_NEAR(box.Min().y, 15, 1e-12);
}

TEST(Section, BoxesOfArcsAreTight) {
    Figure figure;
    figure.points = {{3, 4}};
    figure.AddArc({0, 5}, {-3, 4});
    CBox box;
    box.Add(figure);
    EXPECT_NEAR(box.Max().y, 5, 1e-12);
    EXPECT_EQ(box.Min().y, 4);
    EXPECT_EQ(box.Width(), 6);
}

TEST(Section, DegenerateSectionsHaveDirectionsAndLengths) {
    const Point straight[] = {{0, 0}, {1, 1}, {2, 2}};
    EXPECT_DOUBLE_EQ(Length(Section{SegmentKind::Arc, straight}), std::sqrt(8));
    ExpectNear(PointAt({SegmentKind::Arc, straight}, 0.25), {0.5, 0.5}, 1e-15);
    EXPECT_EQ(ShapeOf({SegmentKind::Arc, straight}).radius, 0);

    const Point noHandles[] = {{0, 0}, {0, 0}, {4, 0}, {4, 0}};
    EXPECT_EQ(StartTangent({SegmentKind::Curve, noHandles}), (Point{1, 0}));
    EXPECT_EQ(EndTangent({SegmentKind::Curve, noHandles}), (Point{1, 0}));
    EXPECT_NEAR(Length(Section{SegmentKind::Curve, noHandles}), 4, 1e-9);

    const Point dot[] = {{7, 7}, {7, 7}, {7, 7}, {7, 7}};
    for (const SegmentKind kind : {SegmentKind::Line, SegmentKind::Curve, SegmentKind::Arc}) {
        EXPECT_EQ(StartTangent({kind, dot}), (Point{0, 0}));
        EXPECT_EQ(Length(Section{kind, dot}), 0);
        std::vector<Point> points;
        AppendFlattened({kind, dot}, 0.01, points);
        EXPECT_EQ(points, std::vector<Point>(1, dot[0]));
    }

    // Out along a line and back: the cusp at three quarters of the way to the farthest handle.
    const Point cusp[] = {{0, 0}, {10, 0}, {10, 0}, {0, 0}};
    EXPECT_NEAR(Length(Section{SegmentKind::Curve, cusp}), 15, 1e-6);
}

}  // namespace
