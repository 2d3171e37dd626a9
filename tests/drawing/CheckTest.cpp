// What a check counts, and where.
#include "drawing/Check.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

Figure Lines(std::vector<Point> points, bool closed = false, std::uint32_t color = 0) {
    Figure figure;
    figure.closed = closed;
    figure.color = color;
    figure.points.assign(1, points.front());
    for (std::size_t i = 1; i < points.size(); ++i) figure.AddLine(points[i]);
    return figure;
}

TEST(Check, CountsWhatAMachineTripsOver) {
    CBox page;
    page.Add(Point{0, 0});
    page.Add(Point{100, 100});
    Figure point;
    point.points = {{50, 50}};
    const std::vector<Figure> figures{Lines({{10, 10}, {20, 10}, {20, 20}, {10, 10}}, true),
                                      Lines({{10, 10}, {15, 10}}),
                                      Lines({{30, 30}, {40, 30}}, false, 0xFFFFFF),
                                      Lines({{40, 30.5}, {40, 40}, {40, 40.005}}),
                                      Lines({{-5, -5}, {-1, -1}}),
                                      Lines({{-1, 50}, {1, 50}}),
                                      point};
    const CheckReport report = CheckDrawing(figures, page);
    EXPECT_EQ(report.box.Min(), (Point{-5, -5}));
    EXPECT_EQ(report.box.Max(), (Point{50, 50}));
    EXPECT_EQ(report.closed, 1u);
    EXPECT_EQ(report.open, 5u);
    EXPECT_EQ(report.ends, 2u);
    EXPECT_EQ(report.endPlaces, (std::vector<Point>{{40, 30}, {40, 30.5}}));
    EXPECT_FALSE(report.meets);
    EXPECT_NEAR(report.doubledLength, 5, 1e-9);
    EXPECT_EQ(report.doubles, 1u);
    EXPECT_EQ(report.shortSections, 1u);
    EXPECT_EQ(report.white, 1u);
    EXPECT_EQ(report.outsidePage, 1u);
    EXPECT_EQ(CheckDrawing(figures, {}).outsidePage, 0u);
    EXPECT_TRUE(CheckDrawing({}, page).box.IsEmpty());
}

// An end counts when another lies more than 0 and at most 1 mm away; all ends do, and the first hundred are told.
TEST(Check, CountsEveryEndNearAnother) {
    struct Case {
        const char* name;
        std::vector<Figure> figures;
        std::size_t ends;
        bool meets;
    };
    for (const Case& c :
         {Case{"equal ends", {Lines({{0, 0}, {5, 0}}), Lines({{5, 0}, {9, 0}})}, 0, true},
          {"one millimetre", {Lines({{0, 0}, {5, 0}}), Lines({{6, 0}, {9, 0}})}, 2, false},
          {"more", {Lines({{0, 0}, {5, 0}}), Lines({{6.01, 0}, {9, 0}})}, 0, false},
          {"two in one place near a third",
           {Lines({{0, 0}, {5, 0}}), Lines({{5, 0}, {5, 9}}), Lines({{5.5, 0}, {9, 0}})},
           3,
           true},
          {"its own other end", {Lines({{0, 0}, {5, 0}, {5, 5}, {0, 0.5}})}, 2, false},
          {"other colours", {Lines({{0, 0}, {5, 0}}), Lines({{5, 0.5}, {9, 0}}, false, 3)}, 2, false}}) {
        SCOPED_TRACE(c.name);
        const CheckReport report = CheckDrawing(c.figures, {});
        EXPECT_EQ(report.ends, c.ends);
        EXPECT_EQ(report.meets, c.meets);
    }
    std::vector<Figure> many;
    for (int i = 0; i < 200; ++i) many.push_back(Lines({{i * 0.5, 0}, {i * 0.5, 30}}));
    const CheckReport report = CheckDrawing(many, {});
    EXPECT_EQ(report.ends, 400u);
    ASSERT_EQ(report.endPlaces.size(), 100u);
    EXPECT_EQ(report.endPlaces[1], (Point{0, 30}));
}

}  // namespace
