// Outlines of strokes against closed forms: corners of straight ones exactly, areas and lengths of the rest.
#include "complete/geometry/Stroke.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "complete/geometry/FilledArea.h"
#include "complete/geometry/StrokeLine.h"
#include "support/Paths.h"

namespace geometry {
namespace {

constexpr double PI = std::numbers::pi;
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double IDENTITY[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr double TOLERANCE = 1e-4;
// A circle of four curves is off its radius by up to 2.7 parts in 10,000 (the handles are 4/3 tan(pi/8) long).
constexpr double HANDLE = 0.5522847498307936;

StrokeStyle Style(double width, LineCap cap = LineCap::Butt, LineJoin join = LineJoin::Miter, double limit = 10,
                  std::vector<double> dashes = {}, double offset = 0) {
    return {width, cap, join, limit, std::move(dashes), offset};
}

Path Outline(const Path& path, const StrokeStyle& style, const double matrix[9] = IDENTITY) {
    const std::optional<Path> outline = OutlineStroke(path, style, matrix, TOLERANCE);
    EXPECT_TRUE(outline.has_value());
    return outline.value_or(Path());
}

/// A closed circle, counter-clockwise.
Path Circle(Point c, double r) {
    const double h = HANDLE * r;
    Path path;
    path.MoveTo(c + Point{r, 0});
    path.CurveTo(c + Point{r, h}, c + Point{h, r}, c + Point{0, r});
    path.CurveTo(c + Point{-h, r}, c + Point{-r, h}, c + Point{-r, 0});
    path.CurveTo(c + Point{-r, -h}, c + Point{-h, -r}, c + Point{0, -r});
    path.CurveTo(c + Point{h, -r}, c + Point{r, -h}, c + Point{r, 0});
    path.Close();
    return path;
}

TEST(StrokeTest, StraightOutlinesAreExact) {
    const auto butt = LineCap::Butt;
    const auto miter = LineJoin::Miter;
    const auto bevel = LineJoin::Bevel;
    struct Case {
        const char* name;
        const char* path;
        StrokeStyle style;
        const char* outline;
    };
    for (const Case& c :
         {Case{"butt caps", "m 0 0 l 10 0", Style(2), "m 0 1 l 10 1 l 10 -1 l 0 -1 z"},
          {"square caps", "m 0 0 l 10 0", Style(2, LineCap::Square), "m -1 1 l 11 1 l 11 -1 l -1 -1 z"},
          {"a mitered corner", "m 0 0 l 10 0 l 10 10", Style(2), "m 0 1 l 9 1 l 9 10 l 11 10 l 11 -1 l 0 -1 z"},
          {"a bevelled corner", "m 0 0 l 10 0 l 10 10", Style(2, butt, bevel),
           "m 0 1 l 9 1 l 9 10 l 11 10 l 11 0 l 10 -1 l 0 -1 z"},
          {"the miter limit of a right angle is the root of 2", "m 0 0 l 10 0 l 10 10", Style(2, butt, miter, 1.415),
           "m 0 1 l 9 1 l 9 10 l 11 10 l 11 -1 l 0 -1 z"},
          {"below it", "m 0 0 l 10 0 l 10 10", Style(2, butt, miter, 1.414),
           "m 0 1 l 9 1 l 9 10 l 11 10 l 11 0 l 10 -1 l 0 -1 z"},
          {"a closed rectangle", "m 0 0 l 10 0 l 10 10 l 0 10 z", Style(2),
           "m 1 1 l 9 1 l 9 9 l 1 9 z m -1 -1 l -1 11 l 11 11 l 11 -1 z"},
          {"closed by hand, then by close", "m 0 0 l 10 0 l 10 10 l 0 10 l 0 0 z", Style(2),
           "m 1 1 l 9 1 l 9 9 l 1 9 z m -1 -1 l -1 11 l 11 11 l 11 -1 z"},
          {"a side too short for its corners", "m 0 0 l 10 0 l 10 0.5 l 0 0.5", Style(2),
           "m 0 1 l 10 1 l 10 0 l 9 0 l 9 0.5 l 10 0.5 l 10 -0.5 l 0 -0.5 l 0 1.5 l 11 1.5 l 11 -1 l 0 -1 z"},
          {"straight on", "m 0 0 l 5 0 l 10 0", Style(2), "m 0 1 l 5 1 l 10 1 l 10 -1 l 5 -1 l 0 -1 z"},
          {"points in one place", "m 0 0 l 0 0 l 10 0 l 10 0", Style(2), "m 0 1 l 10 1 l 10 -1 l 0 -1 z"},
          {"there and back", "m 0 0 l 10 0 l 0 0", Style(2),
           "m 0 1 l 10 1 l 10 -1 l 0 -1 l 0 1 l 10 1 l 10 -1 l 0 -1 z"},
          {"width zero", "m 0 0 l 10 0", Style(0), "m 0 0 l 10 0 l 0 0 z"},
          {"a negative width", "m 0 0 l 10 0", Style(-2), "m 0 1 l 10 1 l 10 -1 l 0 -1 z"},
          {"a straight curve", "m 0 0 c 1 0 2 0 9 0", Style(2), "m 0 1 c 1 1 2 1 9 1 l 9 -1 c 2 -1 1 -1 0 -1 z"},
          {"a point", "m 5 5 l 5 5", Style(2), ""},
          {"a point with square caps", "m 5 5 z", Style(2, LineCap::Square), ""},
          {"a move", "m 5 5", Style(2, LineCap::Round), ""},
          {"dashes", "m 0 0 l 10 0", Style(2, butt, miter, 10, {3, 4}),
           "m 0 1 l 3 1 l 3 -1 l 0 -1 z m 7 1 l 10 1 l 10 -1 l 7 -1 z"},
          {"an odd number of lengths", "m 0 0 l 6 0", Style(2, butt, miter, 10, {2}),
           "m 0 1 l 2 1 l 2 -1 l 0 -1 z m 4 1 l 6 1 l 6 -1 l 4 -1 z"},
          {"an offset", "m 0 0 l 10 0", Style(2, butt, miter, 10, {3, 4}, 5),
           "m 2 1 l 5 1 l 5 -1 l 2 -1 z m 9 1 l 10 1 l 10 -1 l 9 -1 z"},
          {"an offset below zero", "m 0 0 l 6 0", Style(2, butt, miter, 10, {3, 4}, -2), "m 2 1 l 5 1 l 5 -1 l 2 -1 z"},
          {"an offset of many patterns", "m 0 0 l 6 0", Style(2, butt, miter, 10, {3, 4}, 7e6 - 2),
           "m 2 1 l 5 1 l 5 -1 l 2 -1 z"},
          {"a dash around a corner", "m 0 0 l 10 0 l 10 10", Style(2, butt, miter, 10, {4, 100}, -8),
           "m 8 1 l 9 1 l 9 2 l 11 2 l 11 -1 l 8 -1 z"},
          {"a dash over the start of a closed line", "m 0 0 l 10 0 l 10 10 l 0 10 z",
           Style(2, butt, miter, 10, {3, 34}), "m 1 3 l 1 1 l 3 1 l 3 -1 l -1 -1 l -1 3 z"},
          {"each subpath starts anew", "m 0 0 l 3 0 m 0 9 l 3 9", Style(2, butt, miter, 10, {2, 9}),
           "m 0 1 l 2 1 l 2 -1 l 0 -1 z m 0 10 l 2 10 l 2 8 l 0 8 z"},
          {"dashes without length have a direction", "m 0 0 l 0 10", Style(2, LineCap::Square, miter, 10, {0, 6}),
           "m -1 -1 l -1 1 l 1 1 l 1 -1 z m -1 5 l -1 7 l 1 7 l 1 5 z"},
          {"lengths of zero", "m 0 0 l 10 0", Style(2, butt, miter, 10, {0, 0}), "m 0 1 l 10 1 l 10 -1 l 0 -1 z"},
          {"lengths below zero", "m 0 0 l 10 0", Style(2, butt, miter, 10, {3, -1}), "m 0 1 l 10 1 l 10 -1 l 0 -1 z"},
          {"too many dashes", "m 0 0 l 10 0", Style(2, butt, miter, 10, {1e-5}), "m 0 1 l 10 1 l 10 -1 l 0 -1 z"}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(TextOf(Outline(PathOf(c.path), c.style)), c.outline);
    }
}

TEST(StrokeTest, MapsTheStrokeOfUserSpace) {
    const double stretched[9] = {2, 0, 0, 0, 1, 0, 5, 0, 1};
    EXPECT_EQ(TextOf(Outline(PathOf("m 5 0 l 25 0 l 25 10"), Style(2), stretched)),
              "m 5 1 l 23 1 l 23 10 l 27 10 l 27 -1 l 5 -1 z");
    const double mirrored[9] = {1, 0, 0, 0, -1, 0, 0, 0, 1};
    EXPECT_EQ(TextOf(Outline(PathOf("m 0 0 l 10 0"), Style(2, LineCap::Square), mirrored)),
              "m -1 -1 l 11 -1 l 11 1 l -1 1 z");
    const double singular[9] = {1, 0, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_TRUE(Outline(PathOf("m 0 0 l 10 0"), Style(2), singular).IsEmpty());
}

TEST(StrokeTest, RoundPartsHaveTheirAreas) {
    struct Case {
        const char* name;
        Path path;
        StrokeStyle style;
        double area;
        double length;
    };
    const auto butt = LineCap::Butt;
    const auto round = LineCap::Round;
    for (const Case& c : {Case{"a circle", Circle({3, 4}, 10), Style(2), PI * (121 - 81), 2 * PI * 20},
                          {"a thin circle", Circle({3, 4}, 10), Style(0.01), PI * 0.2, 2 * PI * 20},
                          {"round caps", PathOf("m 0 0 l 10 0"), Style(2, round), 20 + PI, 20 + 2 * PI},
                          {"a dot", PathOf("m 5 5 l 5 5"), Style(2, round), PI, 2 * PI},
                          {"a closed dot", PathOf("m 5 5 z"), Style(2, round), PI, 2 * PI},
                          {"dashes without length", PathOf("m 0 0 l 9 0"), Style(2, round, LineJoin::Miter, 10, {0, 5}),
                           2 * PI, 4 * PI},
                          {"a round corner", PathOf("m 0 0 l 10 0 l 10 10"), Style(2, butt, LineJoin::Round),
                           39 + PI / 4, 9 + 9 + 2 + 10 + PI / 2 + 10 + 2},
                          {"round corners of a square", PathOf("m 0 0 l 10 0 l 10 10 l 0 10 z"),
                           Style(2, butt, LineJoin::Round), 40 + PI + 36, 40 + 32 + 2 * PI},
                          {"dashes of a circle", Circle({0, 0}, 10), Style(2, butt, LineJoin::Miter, 10, {PI, PI}),
                           PI * 20, 10 * (2 * PI + 4)},
                          {"a quarter and a line", PathOf("m 10 0 c 10 5.522847 5.522847 10 0 10 l -20 10"), Style(2),
                           PI * 10 + 40, 5 * PI * 2 + 40 + 4}}) {
        SCOPED_TRACE(c.name);
        const Path outline = Outline(c.path, c.style);
        EXPECT_NEAR(std::fabs(AreaOf(outline)), c.area, 6e-4 * c.area + TOLERANCE * c.length);
        EXPECT_NEAR(LengthOf(outline), c.length, 6e-4 * c.length);
        for (const PathOp op : outline.Ops()) ASSERT_TRUE(op != PathOp::Curve || outline.Ops().size() < 200);
    }
}

/// Every point near a path must be inside of the outline, and every other one outside: by the distance from the
/// path, which is what round caps and joins make of a stroke.
TEST(StrokeTest, RoundStrokesArePathsMadeThick) {
    struct Case {
        const char* name;
        Path path;
        double width;
    };
    for (const Case& c : {Case{"a bend", PathOf("m 0 0 c 40 0 40 20 10 30"), 4},
                          {"a bend tighter than the pen", PathOf("m 0 0 c 40 0 40 20 0 20"), 30},
                          {"a circle smaller than the pen", Circle({20, 10}, 5), 18},
                          {"a loop", PathOf("m 0 0 c 60 40 -20 40 40 0"), 5},
                          {"a cusp", PathOf("m 0 0 c 40 30 0 30 40 0"), 5},
                          {"as good as a cusp", PathOf("m 0 0 c 40.01 30 0 30 40 0"), 5},
                          {"a cusp off the middle", PathOf("m 0 0 c 30 40 0 20 26 12"), 5},
                          {"forth, back and forth", PathOf("m 10 0 c 60 0 -30 0 20 0"), 5},
                          {"a control point at the end", PathOf("m 0 0 c 0 0 30 10 20 30 l 40 30"), 6},
                          {"a zigzag of short sides", PathOf("m 0 0 l 8 0 l 8 2 l 2 4 l 20 6 l 21 5 l 30 20"), 6},
                          {"a small triangle", PathOf("m 10 10 l 14 10 l 12 13 z"), 14},
                          {"curves and corners", PathOf("m 0 0 c 10 20 20 20 20 0 c 20 -10 40 0 30 20 z"), 4}}) {
        SCOPED_TRACE(c.name);
        const Path outline = Outline(c.path, Style(c.width, LineCap::Round, LineJoin::Round));
        const FilledArea stroke(FlattenToPolygons(outline, 0.001), FillRule::NonZero);
        const Path flat = FlattenPath(c.path, 0.002);
        size_t work = 0;
        int wrong = 0;
        for (double x = -20; x < 60; x += 1.03) {
            for (double y = -20; y < 50; y += 0.97) {
                const Point p{x, y};
                double distance = INFINITE;
                flat.Walk([&](const Segment& s) {
                    const Point side = s.End() - s.from;
                    const double square = Dot(side, side);
                    const double t = square > 0 ? std::clamp(Dot(p - s.from, side) / square, 0.0, 1.0) : 0;
                    distance = std::min(distance, Length(p - Mix(s.from, s.End(), t)));
                });
                // Arcs are off the radius by 3 parts in 10,000.
                if (std::fabs(distance - c.width / 2) < 0.01) continue;
                if (stroke.Contains(p, 0, work) != (distance < c.width / 2)) {
                    if (++wrong <= 5) ADD_FAILURE() << x << ' ' << y << " is " << distance << " away";
                }
            }
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_LT(outline.Points().size(), 1000U);
    }
}

TEST(StrokeTest, DashesFollowArcLength) {
    // The halves of a curve whose parameter runs unevenly.
    const Path curve = PathOf("m 0 0 c 1 30 2 40 60 0");
    const double length = LengthOf(curve);
    const std::vector<double> lengths{length / 7};
    const std::vector<StrokeLine> dashes = CutDashes(SplitSubpaths(curve), lengths, 0);
    ASSERT_EQ(dashes.size(), 4U);
    for (const StrokeLine& dash : dashes) {
        Path path;
        path.MoveTo(dash.at);
        for (const StrokePiece& piece : dash.pieces) path.CurveTo(piece.p[1], piece.p[2], piece.p[3]);
        EXPECT_NEAR(LengthOf(path), length / 7, 1e-3);
    }
    EXPECT_NEAR(dashes.back().pieces.back().End().x, 60, 2e-3);
}

TEST(StrokeTest, HostileStrokes) {
    const char* const paths[] = {"m 0 0 l 1e308 1e308 l -1e308 0",
                                 "m nan 0 l 5 5 m 0 0 l inf 0",
                                 "m 1e74 1e74 c -1e74 1e74 1e74 -1e74 0 1e74 l 5 5 z",
                                 "m 0 0 c 0 0 0 0 1e-300 0 l 1e-310 1e-310 z",
                                 "m 0 0 c 5 5 5 5 0 0 c 0 0 9 9 9 9 c 9 9 9 9 0 0 z",
                                 "l 1 1 c 2 2 3 3 4 4 z z l 5 5"};
    for (const char* text : paths) {
        SCOPED_TRACE(text);
        for (const double width : {0.0, 1e-300, 1.0, 1e74, INFINITE, NOT_A_NUMBER}) {
            for (const double dash : {0.0, 1.0, 1e300, NOT_A_NUMBER}) {
                for (const double tolerance : {0.0, 0.1, NOT_A_NUMBER}) {
                    const StrokeStyle style = Style(width, LineCap::Round, LineJoin::Miter, dash, {dash, 1}, dash);
                    const auto outline = OutlineStroke(PathOf(text), style, IDENTITY, tolerance);
                    ASSERT_TRUE(outline.has_value());
                    EXPECT_LT(outline->Points().size(), 50'000U);
                }
            }
        }
    }
    const double huge[9] = {1e200, 0, 0, 0, 1e200, 0, 0, 0, 1};
    EXPECT_TRUE(OutlineStroke(PathOf(paths[0]), Style(1), huge, 0.1).has_value());
    Path many;
    many.MoveTo({0, 0});
    for (int i = 0; i < 3'000; ++i) many.CurveTo({30, 40}, {-20, 40}, {i % 2 == 0 ? 10.0 : 0.0, 0});
    EXPECT_FALSE(OutlineStroke(many, Style(9), IDENTITY, 0).has_value()) << "longer than an outline may be";
}

}  // namespace
}  // namespace geometry
