// Clip regions: exact rectangles, polygons cut by polygons, the bounds of the work, and what a clip would cut.
#include "complete/geometry/ClipRegion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "support/Paths.h"

namespace geometry {
namespace {

constexpr double PI = std::numbers::pi;
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double TOLERANCE = 0.001;
const ClipRegion PAGE(Box{0, 0, 612.1, 792.3});

/// A regular polygon around a centre, counter-clockwise.
Path Round(Point centre, double radius, int corners) {
    Path path;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * PI * i / corners;
        const Point p = centre + radius * Point{std::cos(angle), std::sin(angle)};
        if (i == 0) path.MoveTo(p);
        if (i > 0) path.LineTo(p);
    }
    path.Close();
    return path;
}

TEST(ClipRegionTest, RectanglesStayExact) {
    struct Case {
        const char* name;
        const char* path;
        std::optional<Box> bounds;
    };
    for (const Case& c : {Case{"within", "m 0.1 0.2 l 10.3 0.2 l 10.3 7.7 l 0.1 7.7 z", Box{0.1, 0.2, 10.3, 7.7}},
                          {"clockwise and open", "m 0.1 0.2 l 0.1 7.7 l 10.3 7.7 l 10.3 0.2", Box{0.1, 0.2, 10.3, 7.7}},
                          {"over the border", "m -5 0.2 l 10.3 0.2 l 10.3 1e9 l -5 1e9 z", Box{0, 0.2, 10.3, 792.3}},
                          {"around", "m -5 -5 l 1e300 -5 l 1e300 1e300 l -5 1e300 z", Box{0, 0, 612.1, 792.3}},
                          {"off the axes by rounding", "m 1 1 l 2 1.0000000000000002 l 2 3 l 1 3 z", Box{1, 1, 2, 3}},
                          {"outside", "m -5 0 l -1 0 l -1 9 l -5 9 z", std::nullopt},
                          {"a line", "m 5 5 l 5 9", Box{5, 5, 5, 9}},
                          {"a point", "m 5 5 z", Box{5, 5, 5, 5}},
                          {"nothing but a move", "m 5 5", std::nullopt},
                          {"nothing", "", std::nullopt},
                          {"nothing finite", "m nan nan l inf 3", std::nullopt}}) {
        SCOPED_TRACE(c.name);
        for (const FillRule rule : {FillRule::NonZero, FillRule::EvenOdd}) {
            const ClipRegion region = PAGE.Intersect(PathOf(c.path), rule, TOLERANCE);
            EXPECT_EQ(region.IsRectangle(), c.bounds.has_value());
            EXPECT_EQ(region.IsEmpty(), !c.bounds.has_value());
            if (c.bounds) {
                EXPECT_EQ(region.Bounds(), *c.bounds);
                EXPECT_EQ(FindBounds(region.Outline()), c.bounds);
            } else {
                EXPECT_TRUE(region.Outline().IsEmpty());
            }
        }
    }
    EXPECT_EQ(PAGE.Intersect(Box{0.3, 0.1, 9e9, 0.7}).Bounds(), (Box{0.3, 0.1, 612.1, 0.7}));
    EXPECT_TRUE(PAGE.Intersect(Box{1, 1, 0, 0}).IsEmpty());
    EXPECT_TRUE(PAGE.Intersect(Box{NOT_A_NUMBER, 0, 1, 1}).IsEmpty());
    EXPECT_TRUE(ClipRegion().Intersect(Box{0, 0, 1, 1}).IsEmpty());
    EXPECT_EQ(TextOf(ClipRegion(Box{1, 2, 3, 4}).Outline()), "m 1 2 l 3 2 l 3 4 l 1 4 z");
}

TEST(ClipRegionTest, AreasOfIntersections) {
    const std::string square = "m 0 0 l 10 0 l 10 10 l 0 10 z ";
    const std::string inner = "m 2 2 l 8 2 l 8 8 l 2 8 z ";
    const std::string innerTurned = "m 2 2 l 2 8 l 8 8 l 8 2 z ";
    const std::string bow = "m 0 0 l 10 10 l 10 0 l 0 10 z ";  // both triangles have 25
    const auto evenOdd = FillRule::EvenOdd;
    const auto nonZero = FillRule::NonZero;
    struct Case {
        const char* name;
        std::string first;
        FillRule firstRule;
        std::string second;
        FillRule secondRule;
        double area;
    };
    for (const Case& c :
         {Case{"a triangle and a rectangle", "m 0 0 l 10 0 l 0 10 z", nonZero, "m 0 0 l 5 0 l 5 5 l 0 5 z", nonZero,
               25},
          {"two triangles", "m 0 0 l 10 0 l 0 10", nonZero, "m 10 10 l 0 10 l 10 0", nonZero, 0},
          {"triangles that overlap", "m 0 0 l 10 0 l 0 10", nonZero, "m 0 0 l 10 0 l 10 10", nonZero, 25},
          {"a hole by the rule", square + inner, evenOdd, "m 0 0 l 5 0 l 5 10 l 0 10", nonZero, 32},
          {"no hole by the other", square + inner, nonZero, "m 0 0 l 5 0 l 5 10 l 0 10", nonZero, 50},
          {"a hole by direction", square + innerTurned, nonZero, "m 0 0 l 5 0 l 5 10 l 0 10", nonZero, 32},
          {"the rule is that of each clip", "m 0 0 l 5 0 l 5 10 l 0 10 l -1 5", nonZero, square + inner, evenOdd, 32},
          {"a bow cut", bow, evenOdd, "m 0 0 l 5 0 l 5 20 l 0 20", evenOdd, 25},
          {"off the page", "m -10 -10 l 10 -10 l 0 20 z", nonZero, "m 0 0 l 612 0 l 612 700 l 0 700", nonZero,
           200.0 / 3},
          {"apart", "m 0 0 l 1 0 l 0 1", nonZero, "m 9 9 l 8 9 l 9 8", nonZero, 0}}) {
        SCOPED_TRACE(c.name);
        const ClipRegion region = PAGE.Intersect(PathOf(c.first), c.firstRule, TOLERANCE)
                                      .Intersect(PathOf(c.second), c.secondRule, TOLERANCE);
        // By the nonzero rule, holes run against their surroundings.
        EXPECT_NEAR(std::fabs(AreaOf(region.Outline())), c.area, 1e-3);
        EXPECT_EQ(region.IsEmpty(), c.area == 0);
    }
    const ClipRegion ring = PAGE.Intersect(PathOf(square + inner), evenOdd, TOLERANCE);
    EXPECT_NEAR(std::fabs(AreaOf(ring.Outline())), 64, 1e-3) << "an outline for the nonzero rule";
    ClipRegion region = PAGE;
    for (int i = 0; i < 50; ++i) region = region.Intersect(Round({100, 100}, 50, 64), nonZero, TOLERANCE);
    EXPECT_NEAR(AreaOf(region.Outline()), 32 * 2500 * std::sin(2 * PI / 64), 0.01) << "a clip repeated stays";
}

TEST(ClipRegionTest, CurvesWithinThePageAreExact) {
    const Path circle = PathOf(
        "m 200 100 c 200 155.228 155.228 200 100 200 c 44.772 200 0 155.228 0.5 100 "
        "c 0.5 44.772 44.772 0.25 100 0.25 c 155.228 0.25 200 44.772 200 100 z");
    const ClipRegion region = PAGE.Intersect(circle, FillRule::NonZero, 0.01);
    EXPECT_FALSE(region.IsRectangle());
    EXPECT_EQ(region.Bounds().right, 200);
    EXPECT_EQ(region.Bounds().bottom, 0.25);
    EXPECT_NEAR(AreaOf(region.Outline()), AreaOf(circle), 0.01 * 628);
    EXPECT_EQ(region.Intersect(Box{-1, -1, 300, 300}).Outline(), region.Outline()) << "a box around changes nothing";
}

TEST(ClipRegionTest, HostileCoordinates) {
    for (const char* text : {"m 0 0 l 1e308 1e308 l -1e308 5 l 1e308 -1e308", "m nan 0 l 10 inf l 3 3 l 100 7 l 50 400",
                             "m 1e17 1e17 l -1e17 1e17 l 0 -1e17", "m 1e-320 0 l 0 1e-320 l 5 5",
                             "m 0 0 c 1e308 0 -1e308 0 1e308 0 l 3 9"}) {
        SCOPED_TRACE(text);
        const ClipRegion triangle = PAGE.Intersect(PathOf("m 10 10 l 500 20 l 30 700"), FillRule::NonZero, TOLERANCE);
        const ClipRegion region = triangle.Intersect(PathOf(text), FillRule::EvenOdd, TOLERANCE);
        if (region.IsEmpty()) continue;
        EXPECT_TRUE(triangle.Bounds().Contains(region.Bounds()));
        EXPECT_TRUE(FindBounds(region.Outline()).has_value());
        (void)region.Cuts(PathOf(text), TOLERANCE);
    }
    // A triangle with its corners far beyond the grid's fast range still cuts near the origin.
    const ClipRegion far = ClipRegion(Box{0, 0, 10, 10})
                               .Intersect(PathOf("m -1e9 -1e9 l 1e9 1e9 l -1e9 1e9"), FillRule::NonZero, TOLERANCE);
    EXPECT_NEAR(std::fabs(AreaOf(far.Outline())), 50, 0.01);
}

TEST(ClipRegionTest, WorkIsBounded) {
    const ClipRegion triangle = PAGE.Intersect(PathOf("m 10 10 l 500 20 l 30 700"), FillRule::NonZero, TOLERANCE);
    const ClipRegion small = triangle.Intersect(Round({200, 200}, 300, 100'000), FillRule::NonZero, TOLERANCE);
    EXPECT_FALSE(small.IsRectangle()) << "many small segments are cut";
    Path zigzag;
    zigzag.MoveTo({0, 0});
    for (int i = 0; i < 20'000; ++i) zigzag.LineTo({i % 2 == 0 ? 500.0 : 5.0, 3 + i * 7.0 / 20'000 + i % 2 * 600.0});
    const ClipRegion box = triangle.Intersect(zigzag, FillRule::EvenOdd, TOLERANCE);
    EXPECT_TRUE(box.IsRectangle()) << "segments that all cross each other aren't";
    EXPECT_EQ(box.Bounds(), Intersect(triangle.Bounds(), *FindBounds(zigzag)));
    EXPECT_FALSE(PAGE.Intersect(zigzag, FillRule::EvenOdd, TOLERANCE).Outline().IsEmpty());
}

TEST(ClipRegionTest, Cuts) {
    const ClipRegion rectangle = PAGE.Intersect(Box{0, 0, 100, 100});
    const ClipRegion circle = PAGE.Intersect(Round({50, 50}, 50, 720), FillRule::NonZero, TOLERANCE);
    const ClipRegion notch =
        PAGE.Intersect(PathOf("m 0 0 l 100 0 l 100 100 l 50 10 l 0 100"), FillRule::NonZero, TOLERANCE);
    const ClipRegion ring = PAGE.Intersect(
        PathOf("m 0 0 l 100 0 l 100 100 l 0 100 z m 40 40 l 60 40 l 60 60 l 40 60 z"), FillRule::EvenOdd, TOLERANCE);
    struct Case {
        const char* name;
        const ClipRegion& region;
        const char* path;
        bool cuts;
    };
    const ClipRegion nothing;
    for (const Case& c : {Case{"within", rectangle, "m 1 1 l 99 99", false},
                          {"along the border", rectangle, "m 0 0 l 100 0 l 100 100 l 0 100 z", false},
                          {"over it", rectangle, "m 1 1 l 101 50", true},
                          {"over it by less than the tolerance", rectangle, "m 1 1 l 100.0005 50", false},
                          {"control points over it", rectangle, "m 1 50 c 1 120 99 120 99 50", true},
                          {"control points over it alone", rectangle, "m 1 30 c 1 110 99 110 99 30", false},
                          {"within a circle", circle, "m 20 20 l 80 80 l 20 80 z", false},
                          {"in a corner of its box", circle, "m 2 2 l 3 3", true},
                          {"off a circle", circle, "m 50 50 l 90 90", true},
                          {"beside a notch", notch, "m 10 5 l 90 5", false},
                          {"over a notch from inside to inside", notch, "m 10 50 l 90 50", true},
                          {"around a hole", ring, "m 30 30 l 70 30 l 70 70 l 30 70 z", false},
                          {"through a hole", ring, "m 30 50 l 70 50", true},
                          {"in a hole", ring, "m 45 45 l 55 55", true},
                          {"not a number", circle, "m 50 50 l nan 50", true},
                          {"no path", nothing, "", false},
                          {"no region", nothing, "m 0 0 l 1 1", true}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.region.Cuts(PathOf(c.path), TOLERANCE), c.cuts);
    }
    EXPECT_FALSE(circle.Cuts(circle.Outline(), TOLERANCE)) << "along its own border";
    EXPECT_FALSE(circle.Cuts(Round({50, 50}, 50, 720), 0)) << "along its own border, without tolerance";
    EXPECT_TRUE(ClipRegion(Box{0, 0, INFINITE, INFINITE}).Cuts(PathOf("m -1 0 l 1 1"), 0));
}

}  // namespace
}  // namespace geometry
