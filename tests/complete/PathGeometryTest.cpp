// Paths of doubles: the walk, boxes, the reversal, flattening and insideness.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "complete/geometry/FilledArea.h"
#include "complete/geometry/Flatten.h"
#include "complete/geometry/Path.h"
#include "support/Paths.h"

namespace geometry {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

TEST(PathGeometryTest, Bounds) {
    struct Case {
        const char* name;
        const char* path;
        std::optional<Box> box;
    };
    for (const Case& c : {Case{"lines", "m 2 1 l 0 5 l 9 3", Box{0, 1, 9, 5}},
                          {"control points count", "m 0 0 c 0 9 9 9 9 0", Box{0, 0, 9, 9}},
                          {"a move at the end doesn't", "m 0 0 l 1 1 m 5 5", Box{0, 0, 1, 1}},
                          {"one in between does", "m 5 5 m 0 0 l 1 1", Box{0, 0, 5, 5}},
                          {"nothing but a move", "m 5 6", Box{5, 6, 5, 6}},
                          {"nothing", "", std::nullopt},
                          {"nothing but a close", "z", std::nullopt},
                          {"not a number", "m 0 0 l nan 4 l 3 nan", Box{0, 0, 3, 4}},
                          {"nothing but not a number", "m nan nan", std::nullopt}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(FindBounds(PathOf(c.path)), c.box);
    }
}

TEST(PathGeometryTest, BoxesMapped) {
    const double quarter[9] = {0, 2, 0, -2, 0, 0, 10, 0, 1};
    EXPECT_EQ(MapBox({1, 2, 3, 5}, quarter), (Box{0, 2, 6, 6}));
    EXPECT_TRUE(MapBox(Box{1, 1, 0, 0}, quarter).IsEmpty());
    EXPECT_TRUE(Intersect(Box{0, 0, 1, 1}, Box{2, 0, 3, 1}).IsEmpty());
    EXPECT_FALSE(Intersect(Box{0, 0, 1, 1}, Box{1, 0, 3, 1}).IsEmpty());
    EXPECT_FALSE((Box{0, 0, 9, 9}.Contains(Box{1, 1, 0, 0})));
    EXPECT_TRUE((Box{0, 0, NOT_A_NUMBER, 1}.IsEmpty()));
}

TEST(PathGeometryTest, Reversed) {
    struct Case {
        const char* name;
        const char* path;
        const char* reversed;
    };
    for (const Case& c :
         {Case{"lines", "m 0 0 l 1 0 l 2 3", "m 2 3 l 1 0 l 0 0"},
          {"a curve", "m 0 0 c 1 2 3 4 5 6", "m 5 6 c 3 4 1 2 0 0"},
          {"closed stays closed", "m 0 0 l 1 0 l 1 1 z", "m 1 1 l 1 0 l 0 0 z"},
          {"subpaths stay in order", "m 0 0 l 1 0 m 5 5 l 6 5 z m 8 8", "m 1 0 l 0 0 m 6 5 l 5 5 z m 8 8"},
          {"drawn on behind a close", "m 0 0 l 1 0 l 1 1 z l 7 7", "m 1 1 l 1 0 l 0 0 z m 7 7 l 0 0"},
          {"without a move", "l 1 1 l 2 2", "m 2 2 l 1 1 l 1 1"},
          {"a closed point", "m 3 3 z", "m 3 3 z"},
          {"nothing", "", ""}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(TextOf(ReversePath(PathOf(c.path))), c.reversed);
    }
    const Path path = PathOf("m 0 0 l 1 0 c 1 1 2 2 3 0 z m 4 4 c 5 5 6 6 7 7 l 9 9");
    EXPECT_EQ(ReversePath(ReversePath(path)), path);
}

/// The greatest distance of a curve from the lines of a flat path that begins where it does.
double FarthestFrom(const Path& flat, const Point curve[4]) {
    double farthest = 0;
    for (int i = 0; i <= 1000; ++i) {
        const Point p = OnCubic(curve, i / 1000.0);
        double nearest = INFINITE;
        flat.Walk([&](const Segment& s) {
            const Point side = s.End() - s.from;
            const double square = Dot(side, side);
            const double t = square > 0 ? std::clamp(Dot(p - s.from, side) / square, 0.0, 1.0) : 0;
            nearest = std::min(nearest, Length(p - Mix(s.from, s.End(), t)));
        });
        farthest = std::max(farthest, nearest);
    }
    return farthest;
}

TEST(PathGeometryTest, FlattenedWithinTolerance) {
    for (const char* text : {"m 0 0 c 0 55.2 44.8 100 100 100", "m 0 0 c 100 100 0 100 100 0", "m 0 0 c 0 0 90 3 90 3",
                             "m 0 0 c 300 0 -200 0 100 0", "m 5 5 c 5 5 5 5 5 5"}) {
        SCOPED_TRACE(text);
        const Path path = PathOf(text);
        size_t previous = 0;
        for (const double tolerance : {10.0, 1.0, 0.1, 0.001}) {
            const Path flat = FlattenPath(path, tolerance);
            EXPECT_LE(FarthestFrom(flat, path.Points().data()), tolerance);
            EXPECT_EQ(flat.Points().front(), path.Points().front());
            EXPECT_EQ(flat.Points().back(), path.Points().back());
            EXPECT_GE(flat.Points().size(), previous);
            EXPECT_LE(flat.Points().size(), 2 + 30 / std::sqrt(tolerance)) << "too many pieces";
            previous = flat.Points().size();
        }
    }
    EXPECT_EQ(TextOf(FlattenPath(PathOf("m 0 0 c 1 1 2 2 3 3 l 4 4 z m 7 7"), 1)), "m 0 0 l 3 3 l 4 4 z m 7 7");
}

TEST(PathGeometryTest, FlatteningIsBounded) {
    EXPECT_EQ(FlattenPath(PathOf("m 0 0 c 1e308 0 -1e308 0 1e308 0"), 1e-9).Ops().size(), 2U) << "overflows";
    EXPECT_EQ(FlattenPath(PathOf("m 0 0 c 0 inf 4 nan 8 0"), 1).Ops().size(), 2U);
    EXPECT_EQ(FlattenPath(PathOf("m 0 0 c nan 1 4 3 8 inf"), 0).Ops().size(), 2U);
    for (const double tolerance : {0.0, -1.0, NOT_A_NUMBER, 1e-300}) {
        EXPECT_EQ(FlattenPath(PathOf("m 0 0 c 0 9 9 9 9 0"), tolerance).Ops().size(), 1U + MAX_CURVE_PIECES);
    }
    Path many;
    many.MoveTo({0, 0});
    constexpr size_t CURVES = 20'000;
    for (size_t i = 0; i < CURVES; ++i) many.CurveTo({0, 9}, {9, 9}, {9, 0});
    const Path flat = FlattenPath(many, 0);
    EXPECT_LE(flat.Ops().size(), MAX_FLATTENED_PIECES + CURVES + 1);
    EXPECT_GE(flat.Ops().size(), MAX_FLATTENED_PIECES / 2);
}

TEST(PathGeometryTest, Polygons) {
    struct Case {
        const char* name;
        const char* path;
        size_t polygons;
        size_t points;  ///< of the first
    };
    for (const Case& c : {Case{"an open triangle", "m 0 0 l 1 0 l 1 1", 1, 3},
                          {"closed by hand and by close", "m 0 0 l 1 0 l 1 1 l 0 0 z", 1, 3},
                          {"moves by themselves", "m 0 0 m 1 1 l 2 2 m 3 3", 1, 2},
                          {"points in one place", "m 0 0 l 1 0 l 1 0 l 1 1", 1, 3},
                          {"not finite", "m 0 0 l nan 0 l 1 inf l 1 1", 1, 2},
                          {"drawn on behind a close", "m 0 0 l 1 0 l 1 1 z l 7 7 l 8 7", 2, 3},
                          {"nothing that is finite", "m inf inf l nan 1", 0, 0}}) {
        SCOPED_TRACE(c.name);
        const geometry::Polygons polygons = FlattenToPolygons(PathOf(c.path), 1);
        ASSERT_EQ(polygons.size(), c.polygons);
        EXPECT_EQ(polygons.empty() ? 0 : polygons[0].size(), c.points);
    }
}

// A pentagram with radius 10, its middle wound twice; and a ring of two squares in the same direction.
constexpr const char* STAR = "m 0 10 l 5.878 -8.090 l -9.511 3.090 l 9.511 3.090 l -5.878 -8.090 z";
constexpr const char* RING = "m -10 -10 l 10 -10 l 10 10 l -10 10 z m -5 -5 l 5 -5 l 5 5 l -5 5 z";
constexpr const char* HOLE = "m -10 -10 l 10 -10 l 10 10 l -10 10 z m -5 -5 l -5 5 l 5 5 l 5 -5 z";

TEST(PathGeometryTest, PointsInside) {
    struct Case {
        const char* name;
        const char* path;
        Point point;
        bool nonZero;
        bool evenOdd;
    };
    for (const Case& c : {Case{"the middle of a star", STAR, {0, 0}, true, false},
                          {"a ray of it", STAR, {0, 8}, true, true},
                          {"between rays", STAR, {6, 8}, false, false},
                          {"level with corners", STAR, {-9.8, 3.090}, false, false},
                          {"both squares the same way", RING, {1, 1}, true, false},
                          {"both squares in turn", HOLE, {1, 1}, false, false},
                          {"between the squares", HOLE, {7, 5}, true, true},
                          {"on the border", HOLE, {10, 3}, true, true},
                          {"on a corner", HOLE, {-10, -10}, true, true},
                          {"closed by implication", "m 0 0 l 4 0 l 0 4", {1, 1}, true, true},
                          {"a curve", "m 0 0 c 0 9 9 9 9 0", {4.5, 6.5}, true, true},
                          {"not a number", HOLE, {NOT_A_NUMBER, 7}, false, false},
                          {"nothing", "", {0, 0}, false, false}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(IsInside(PathOf(c.path), FillRule::NonZero, c.point, 0.001), c.nonZero);
        EXPECT_EQ(IsInside(PathOf(c.path), FillRule::EvenOdd, c.point, 0.001), c.evenOdd);
    }
}

TEST(PathGeometryTest, AperturesInside) {
    struct Case {
        const char* name;
        const char* path;
        const char* aperture;
        bool isInside;
    };
    for (const Case& c : {Case{"within the hole", HOLE, "m 0 0 l 1 0 l 1 1 l 0 1 z", false},
                          {"over the hole's border", HOLE, "m 0 0 l 6 0 l 6 1 l 0 1 z", true},
                          {"around everything", HOLE, "m -20 -20 l 20 -20 l 20 20 l -20 20 z", true},
                          {"outside", HOLE, "m 11 0 l 12 0 l 12 1", false},
                          {"a line that begins within", HOLE, "m 7 7 l 20 20", true},
                          {"nothing", HOLE, "", false}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(IsInside(PathOf(c.path), FillRule::NonZero, PathOf(c.aperture), 0.001), c.isInside);
    }
}

/// Insideness by hand, over every edge, for points off the edges.
bool IsInsideSlowly(const geometry::Polygons& polygons, Point p) {
    bool inside = false;
    for (const auto& polygon : polygons) {
        for (size_t i = 0; i < polygon.size(); ++i) {
            const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x)) inside = !inside;
        }
    }
    return inside;
}

TEST(PathGeometryTest, TheIndexFindsEveryEdge) {
    Random random;
    geometry::Polygons polygons(30);
    for (auto& polygon : polygons) {
        for (int i = 0; i < 7; ++i) polygon.push_back({random.Next(100), random.Next(100)});
    }
    const FilledArea area(polygons, FillRule::EvenOdd);
    size_t work = 0;
    for (int i = 0; i < 2000; ++i) {
        const Point p{random.Next(110) - 5, random.Next(110) - 5};
        ASSERT_EQ(area.Contains(p, 0, work), IsInsideSlowly(polygons, p)) << p.x << ' ' << p.y;
    }
}

}  // namespace
}  // namespace geometry
