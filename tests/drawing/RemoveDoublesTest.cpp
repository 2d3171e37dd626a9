// What is drawn twice: which stretches go, which stay, and in what pieces.
#include "drawing/passes/RemoveDoubles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "drawing/Section.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr bool kClosed = true;

Figure Lines(std::vector<Point> points, bool closed = false) {
    Figure figure;
    figure.closed = closed;
    figure.points.assign(1, points.front());
    for (std::size_t i = 1; i < points.size(); ++i) figure.AddLine(points[i]);
    return figure;
}

Figure Square(double x, double y, double side) {
    return Lines({{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}}, kClosed);
}

// A circle or, with a sweep, an arc about 0, 0 as Bézier curves.
Figure ArcCurves(double radius, double start, double sweep, int pieces) {
    Figure figure;
    figure.closed = std::fabs(sweep) == 2 * kPi;
    figure.points = {radius * Direction(start)};
    const double step = sweep / pieces, handle = 4.0 / 3 * std::tan(step / 4) * radius;
    for (int i = 0; i < pieces; ++i) {
        const double from = start + i * step, to = from + step;
        figure.AddCurve(radius * Direction(from) + handle * Direction(from + kPi / 2),
                        radius * Direction(to) - handle * Direction(to + kPi / 2), radius * Direction(to));
    }
    if (figure.closed) figure.points.back() = figure.points.front();
    return figure;
}

Figure Curve(const Point& a, const Point& b, const Point& c, const Point& d) {
    Figure figure;
    figure.points = {a};
    figure.AddCurve(b, c, d);
    return figure;
}

Figure Moved(Figure figure, double x, double y) {
    for (Point& point : figure.points) point = point + Point{x, y};
    return figure;
}

Figure Reversed(Figure figure) {
    std::reverse(figure.points.begin(), figure.points.end());
    std::reverse(figure.segments.begin(), figure.segments.end());
    return figure;
}

double LengthOf(const std::vector<Figure>& figures) {
    double length = 0;
    for (const Figure& figure : figures) length += Length(figure);
    return length;
}

bool Equal(const std::vector<Figure>& a, const std::vector<Figure>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Figure& one, const Figure& other) {
        return one.points == other.points && one.segments == other.segments && one.closed == other.closed &&
               one.color == other.color;
    });
}

struct Case {
    const char* name;
    std::vector<Figure> figures;
    std::size_t left;                 // figures
    double length;                    // of all of them
    std::size_t sections = 0;         // that lose something
    std::size_t leftByContours = 99;  // figures; 99: all
};

const Figure kLine = Lines({{0, 0}, {10, 0}});
const Figure kWave = Curve({0, 0}, {4, 9}, {6, -9}, {10, 0});
const double kRound = 20 * kPi;  // around a circle of 10 mm

TEST(RemoveDoubles, TakesOutWhatIsCovered) {
    for (const Case& c : {
             Case{"equal", {kLine, kLine}, 1, 10, 1, 1},
             {"backwards", {kLine, Reversed(kLine)}, 1, 10, 1, 1},
             {"at the limit beside", {kLine, Moved(kLine, 0, 0.001)}, 1, 10, 1, 1},
             {"beyond the limit", {kLine, Moved(kLine, 0, 0.0011)}, 2, 20},
             {"a hair along", {kLine, Moved(kLine, 0.0009, 0)}, 1, 10, 1, 1},
             {"part at the end", {kLine, Lines({{6, 0}, {16, 0}})}, 2, 16, 1},
             {"a hole", {kLine, Lines({{6, 0}, {4, 0}})}, 3, 10, 1},
             {"inside", {Lines({{4, 0}, {6, 0}}), kLine}, 1, 10, 1, 1},
             {"covered by two together", {kLine, Lines({{-1, 0}, {4, 0}}), Lines({{4, 0}, {12, 0}})}, 2, 13, 1},
             {"two with a hair between", {kLine, Lines({{0, 0}, {4, 0}}), Lines({{4.0015, 0}, {10, 0}})}, 2, 9.9985, 1},
             {"ends touch", {kLine, Lines({{10, 0}, {20, 0}})}, 2, 20},
             {"crossing", {kLine, Lines({{5, -5}, {5, 5}})}, 2, 20},
             {"crossing flatly", {kLine, Lines({{0, -0.005}, {10, 0.005}})}, 2, 20.000005},
             {"three in a chain", {Moved(kLine, 0, 0), Moved(kLine, 0, 0.0008), Moved(kLine, 0, 0.0016)}, 2, 20, 1, 2},
             {"the middle one last", {kLine, Moved(kLine, 0, 0.0016), Moved(kLine, 0, 0.0008)}, 1, 10, 2, 1},
             {"there and back", {Lines({{0, 0}, {10, 0}, {0, 0}})}, 1, 10, 1},
             {"one side of a square", {Square(0, 0, 10), kLine}, 2, 40, 1},
             {"neighbours share an edge", {Square(0, 0, 10), Square(10, 0, 10)}, 2, 70, 1},
             {"a side on a square", {kLine, Square(0, 0, 10)}, 1, 40, 1, 1},
             {"squares a hair apart", {Square(0, 0, 10), Moved(Square(0, 0, 10), 0.0006, 0.0006)}, 1, 40, 4, 1},
             {"started elsewhere",
              {Lines({{10, 10}, {10, 0}, {0, 0}, {0, 10}, {10, 10}}, kClosed), Square(0, 0, 10)},
              1,
              40,
              4,
              1},
             {"a closing line",
              {Lines({{0, 0}, {10, 0}, {10, 10}}, kClosed), Lines({{10, 10}, {0, 0}})},
              2,
              20 + std::sqrt(200),
              1},
             {"sections of no length", {Lines({{0, 0}, {5, 0}, {5, 0}, {10, 0}}), kLine}, 1, 10, 3, 1},
             {"dots", {Lines({{3, 3}, {3, 3}}), Lines({{3, 3.0005}, {3, 3.0005}})}, 1, 0, 1, 1},
             {"a dot on a line", {Lines({{3, 0}, {3, 0}}), kLine}, 2, 10},
             {"circles of four and of eight curves",
              {ArcCurves(10, 0, 2 * kPi, 4), ArcCurves(10, 0.7, -2 * kPi, 8)},
              1,
              kRound,
              4,
              1},
             {"a quarter of a circle", {ArcCurves(10, 0, 2 * kPi, 4), ArcCurves(10, 2, -kPi / 2, 1)}, 2, kRound, 2},
             {"over the start of a circle", {ArcCurves(10, 0, 2 * kPi, 4), ArcCurves(10, -0.3, 0.6, 1)}, 2, kRound, 2},
             {"two arcs of one circle",
              {ArcCurves(10, 0, kPi / 2, 1), ArcCurves(10, kPi / 4, kPi / 2, 1)},
              2,
              7.5 * kPi,
              1},
             {"circles that touch inside",
              {ArcCurves(10, 0, 2 * kPi, 4), Moved(ArcCurves(8, 0, 2 * kPi, 4), 2, 0)},
              2,
              36 * kPi},
             {"a circle and its tangent", {ArcCurves(10, 0, 2 * kPi, 4), Lines({{-9, 10}, {9, 10}})}, 2, kRound + 18},
             {"equal curves", {kWave, Reversed(Moved(kWave, 0.0005, 0))}, 1, Length(kWave), 1, 1},
             {"curves with common ends",
              {kWave, Curve({0, 0}, {4, 9.1}, {6, -9}, {10, 0})},
              2,
              2 * Length(kWave) + 0.05},
         }) {
        SCOPED_TRACE(c.name);
        std::vector<Figure> figures = c.figures;
        const double measured = MeasureDoubles(figures).length;
        const DoublesReport report = RemoveDoubles(figures);
        EXPECT_EQ(figures.size(), c.left);
        EXPECT_NEAR(LengthOf(figures), c.length, 0.02);
        EXPECT_EQ(report.sections, c.sections);
        EXPECT_EQ(report.length, measured);
        EXPECT_NEAR(LengthOf(figures) + report.length, LengthOf(c.figures), 0.02);
        if (c.sections == 0) {
            EXPECT_TRUE(Equal(figures, c.figures));
        }
        std::vector<Figure> again = figures;
        EXPECT_EQ(RemoveDoubles(again).sections, 0u);
        EXPECT_TRUE(Equal(again, figures));

        std::vector<Figure> contours = c.figures;
        RemoveDoubleContours(contours);
        EXPECT_EQ(contours.size(), std::min(c.leftByContours, c.figures.size()));
    }
}

// What was painted last stays, whatever its colour; the pieces stand where their figure stood.
TEST(RemoveDoubles, KeepsOrderColoursAndPlacesOfPieces) {
    Figure first = Square(0, 0, 10), last = Lines({{2, 0}, {8, 0}}), between = Lines({{50, 0}, {60, 0}});
    first.color = 1;
    last.color = 2;
    std::vector<Figure> figures{first, between, last};
    RemoveDoubles(figures);
    ASSERT_EQ(figures.size(), 3u);
    EXPECT_FALSE(figures[0].closed);
    EXPECT_EQ(figures[0].color, 1u);
    EXPECT_EQ(figures[0].points, (std::vector<Point>{{8, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {2, 0}}));
    EXPECT_EQ(figures[1].points, between.points);
    EXPECT_EQ(figures[2].color, 2u);

    // The piece over the start first, then those behind it.
    figures = {Square(0, 0, 10), Lines({{10, 4}, {10, 6}}), Lines({{0, 4}, {0, 6}})};
    RemoveDoubles(figures);
    ASSERT_EQ(figures.size(), 4u);
    EXPECT_EQ(figures[0].points, (std::vector<Point>{{0, 4}, {0, 0}, {10, 0}, {10, 4}}));
    EXPECT_EQ(figures[1].points, (std::vector<Point>{{10, 6}, {10, 10}, {0, 10}, {0, 6}}));
}

TEST(RemoveDoubles, LeavesArcsOfWhatIsLeftOfCurves) {
    std::vector<Figure> figures{ArcCurves(10, 0, kPi / 2, 1), ArcCurves(10, kPi / 4, kPi / 2, 1)};
    RemoveDoubles(figures);
    ASSERT_EQ(figures[0].segments, std::vector{SegmentKind::Arc});
    const ArcShape shape = ShapeOf({SegmentKind::Arc, figures[0].points.data()});
    EXPECT_NEAR(shape.radius, 10, 1e-9);
    EXPECT_NEAR(shape.sweep, kPi / 4, 1e-9);
    EXPECT_EQ(figures[0].points.front(), (Point{10, 0}));
}

TEST(RemoveDoubles, LeavesNumbersThatAreNoneAlone) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    std::vector<Figure> figures{Lines({{0, 0}, {kNan, 1}}), Lines({{0, 0}, {kNan, 1}}), kLine, kLine, Figure()};
    EXPECT_EQ(RemoveDoubles(figures).sections, 1u);
    EXPECT_EQ(figures.size(), 4u);
    EXPECT_EQ(RemoveDoubleContours(figures).figures, 0u);
}

// Against a slow way: of each of many random lines on a few carriers, points that went lie near what stays, and points
// that stay don't lie near what stays of later lines.
TEST(RemoveDoubles, AgreesWithTryingAllPairs) {
    std::mt19937 random(7);
    const auto number = [&](int most) { return static_cast<double>(random() % static_cast<unsigned>(most)); };
    for (int round = 0; round < 20; ++round) {
        std::vector<Figure> before;
        for (int i = 0; i < 60; ++i) {
            const double y = number(3), x = number(40), turn = number(2);
            const Point a{x, y}, b{x + 1 + number(15), y};
            before.push_back(turn > 0 ? Lines({a, b}) : Lines({{b.y, b.x}, {a.y, a.x}}));
        }
        std::vector<Figure> after = before;
        RemoveDoubles(after);
        const auto covers = [](const Figure& line, const Point& at) {
            const Point &a = line.points[0], &b = line.points[1];
            return std::fabs(Distance(a, at) + Distance(at, b) - Distance(a, b)) < 1e-9;
        };
        for (const Figure& line : before) {
            for (double t = 0.013; t < 1; t += 0.05) {
                const Point at = line.points[0] + t * (line.points[1] - line.points[0]);
                int times = 0;
                for (const Figure& kept : after) times += covers(kept, at);
                EXPECT_EQ(times, 1);
            }
        }
    }
}

// Arcs that lie on each other though their circles differ: what stays leaves no gap, and doubles only where two circles
// part.
TEST(RemoveDoubles, ArcsOfOtherCirclesLeaveNoGap) {
    std::mt19937 random(11);
    const auto number = [&](double least, double most) {
        return least + (most - least) * static_cast<double>(random() % 1000) / 1000;
    };
    const auto from = [](const Figure& arc, const Point& at) {
        const ArcShape shape = ShapeOf({SegmentKind::Arc, arc.points.data()});
        const double turn = std::remainder(Angle(at - shape.centre) - shape.start - shape.sweep / 2, 2 * kPi);
        return std::fabs(turn) <= std::fabs(shape.sweep) / 2
                   ? std::fabs(Distance(at, shape.centre) - shape.radius)
                   : std::min(Distance(at, arc.points.front()), Distance(at, arc.points.back()));
    };
    for (int round = 0; round < 40; ++round) {
        std::vector<Figure> before;
        for (int i = 0; i < 4; ++i) {
            // They touch each other at (100, 0), and are within half a thousandth of a millimetre as far as they reach.
            const double radius = number(99.8, 100.2), start = number(-0.05, 0.04), sweep = number(0.01, 0.05 - start);
            const Point centre{100 - radius, 0};
            Figure arc;
            arc.points = {centre + radius * Direction(start)};
            arc.AddArc(centre + radius * Direction(start + sweep / 2), centre + radius * Direction(start + sweep));
            before.push_back(arc);
        }
        std::vector<Figure> after = before;
        RemoveDoubles(after);
        double low = 1, high = -1;
        for (const Figure& arc : before) {
            const ArcShape shape = ShapeOf({SegmentKind::Arc, arc.points.data()});
            low = std::min(low, shape.start);
            high = std::max(high, shape.start + shape.sweep);
            for (double t = 0; t <= 1; t += 0.001) {
                const Point at = shape.centre + shape.radius * Direction(shape.start + t * shape.sweep);
                double nearest = 1;
                for (const Figure& kept : after) nearest = std::min(nearest, from(kept, at));
                ASSERT_LE(nearest, 0.0015) << "round " << round;
            }
        }
        EXPECT_LE(LengthOf(after), 100 * (high - low) + 0.03) << "round " << round;
    }
}

// Each of these takes a fraction of a second; in quadratic time it would take minutes.
TEST(RemoveDoubles, ManyOfAKindDontMultiply) {
    constexpr int kMany = 20000;
    std::vector<Figure> equal(kMany, kLine), overlapping, dashes, circles;
    for (int i = 0; i < kMany; ++i) {
        overlapping.push_back(Lines({{i * 0.01, 0.0}, {i * 0.01 + 100, 0}}));
        dashes.push_back(Lines({{0, 0}, {1000 + i * 0.01, 0}}));
        circles.push_back(Moved(ArcCurves(1, 0, 2 * kPi, 4), 3 * (i % 100), 3 * (i / 100)));
    }
    for (int i = 0; i < kMany; ++i) dashes.push_back(Lines({{i * 0.04, 0}, {i * 0.04 + 0.02, 0}}));
    RemoveDoubles(equal);
    EXPECT_EQ(equal.size(), 1u);
    std::vector<Figure> contours = overlapping;
    EXPECT_EQ(RemoveDoubleContours(contours).figures, 0u);
    RemoveDoubles(overlapping);
    EXPECT_NEAR(LengthOf(overlapping), 100 + 0.01 * (kMany - 1), 1e-6);
    RemoveDoubles(dashes);
    EXPECT_NEAR(LengthOf(dashes), 1000 + 0.01 * (kMany - 1), 1e-6);
    const std::vector<Figure> all = circles;
    EXPECT_EQ(RemoveDoubles(circles).sections, 0u);
    EXPECT_TRUE(Equal(circles, all));
}

}  // namespace
