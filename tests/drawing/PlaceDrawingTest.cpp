// Colours left out, scale and origin.
#include "drawing/passes/PlaceDrawing.h"

#include <gtest/gtest.h>

#include <limits>

#include "drawing/Section.h"
#include "drawing/passes/Pipeline.h"

namespace {

Figure Line(const Point& from, const Point& to, std::uint32_t color = 0) {
    Figure figure;
    figure.color = color;
    figure.points = {from};
    figure.AddLine(to);
    return figure;
}

// A circle about this centre, as the arc pass makes it.
Figure Circle(const Point& centre, double radius) {
    Figure figure;
    figure.closed = true;
    figure.points = {{centre.x + radius, centre.y}};
    figure.AddArc({centre.x - radius, centre.y}, figure.points.front());
    return figure;
}

TEST(PlaceDrawing, MovesTheCornerOfWhatIsDrawnNotOfItsPoints) {
    struct Case {
        const char* name;
        double scale;
        Origin origin;
        Point centre;  // of the circle, which is 4 mm across and lies about 3, -2
        double radius;
    };
    for (const Case& c : {Case{"nothing", 1, Origin::Keep, {3, -2}, 2},
                          {"twice", 2, Origin::Keep, {6, -4}, 4},
                          {"half, to the corner", 0.5, Origin::Corner, {1, 1}, 1},
                          {"to the corner", 1, Origin::Corner, {2, 2}, 2}}) {
        SCOPED_TRACE(c.name);
        std::vector<Figure> figures{Circle({3, -2}, 2), Line({3, -2}, {4.1, -1})};
        const Placement placement = PlaceDrawing(figures, c.scale, c.origin);
        ASSERT_TRUE(figures[0].IsCircle());
        EXPECT_EQ(CircleOf(figures[0]).centre, c.centre);
        EXPECT_EQ(CircleOf(figures[0]).radius, c.radius);
        EXPECT_EQ(figures[1].points[0], c.centre);
        EXPECT_EQ(figures[1].points[1], placement({4.1, -1}));
    }
}

TEST(PlaceDrawing, WhatHasNothingToDoChangesNoBit) {
    const std::vector<Point> odd{{-0.0, 1.0 / 3}, {std::numeric_limits<double>::denorm_min(), 1e300}};
    std::vector<Figure> figures{Line(odd[0], odd[1])};
    PlaceDrawing(figures, 1, Origin::Keep);
    EXPECT_EQ(figures[0].points, odd);
    EXPECT_TRUE(std::signbit(figures[0].points[0].x));
    std::vector<Figure> none;
    EXPECT_EQ(PlaceDrawing(none, 3, Origin::Corner).offset, Point());
}

TEST(SkipColors, LeavesTheOtherColoursInTheirOrder) {
    const std::vector<Figure> all{Line({0, 0}, {1, 0}, 1), Line({1, 0}, {2, 0}, 2), Line({2, 0}, {3, 0}, 3),
                                  Line({3, 0}, {4, 0}, 2)};
    for (const auto& [skipped, left] : {std::pair<std::vector<std::uint32_t>, std::vector<double>>{{}, {0, 1, 2, 3}},
                                        {{2}, {0, 2}},
                                        {{3, 1}, {1, 3}},
                                        {{7}, {0, 1, 2, 3}}}) {
        std::vector<Figure> figures = all;
        PassSettings settings;
        settings.skippedColors = skipped;
        EXPECT_EQ(settings.ChangeDrawing(), !skipped.empty());
        EXPECT_EQ(RunPasses(figures, settings).skipped, all.size() - left.size());
        std::vector<double> starts;
        for (const Figure& figure : figures) starts.push_back(figure.points.front().x);
        EXPECT_EQ(starts, left);
    }
}

// What is left out has no part in the corner.
TEST(Pipeline, PlacesWhatIsLeftAfterTheOtherPasses) {
    std::vector<Figure> figures{Line({-50, -50}, {0, 0}, 9), Line({2, 3}, {4, 5})};
    PassSettings settings;
    settings.skippedColors = {9};
    settings.scale = 10;
    settings.origin = Origin::Corner;
    RunPasses(figures, settings);
    ASSERT_EQ(figures.size(), 1u);
    EXPECT_EQ(figures[0].points, (std::vector<Point>{{0, 0}, {20, 20}}));
}

}  // namespace
