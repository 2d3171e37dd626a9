// Pieces that become contours: who is joined to whom, where, and in which direction.
#include "drawing/passes/JoinContours.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "drawing/Section.h"

namespace {

Figure Lines(std::vector<Point> points, std::uint32_t color = 0) {
    Figure figure;
    figure.color = color;
    figure.points.assign(1, points.front());
    for (std::size_t i = 1; i < points.size(); ++i) figure.AddLine(points[i]);
    return figure;
}

// "(0,0 10,0) [...]": open and closed figures.
std::string TextOf(const std::vector<Figure>& figures) {
    std::string text;
    for (const Figure& figure : figures) {
        std::string points;
        for (const Point& point : figure.points) {
            char room[64];
            std::snprintf(room, sizeof room, "%s%g,%g", points.empty() ? "" : " ", point.x, point.y);
            points += room;
        }
        text +=
            (text.empty() ? "" : " ") + std::string(figure.closed ? "[" : "(") + points + (figure.closed ? "]" : ")");
    }
    return text;
}

struct Case {
    const char* name;
    double reach;
    std::vector<Figure> figures;
    const char* joined;
};

TEST(JoinContours, JoinsWhereItIsClearWhatGoesOn) {
    for (const Case& c : {
             Case{"end to start", 0, {Lines({{0, 0}, {5, 0}}), Lines({{5, 0}, {5, 5}})}, "(0,0 5,0 5,5)"},
             {"the first gives the direction", 0, {Lines({{5, 0}, {0, 0}}), Lines({{5, 0}, {5, 5}})}, "(5,5 5,0 0,0)"},
             {"all one way, last first", 0, {Lines({{5, 0}, {5, 5}}), Lines({{0, 0}, {5, 0}})}, "(0,0 5,0 5,5)"},
             {"a loop",
              0,
              {Lines({{0, 0}, {5, 0}}), Lines({{0, 0}, {0, 5}}), Lines({{0, 5}, {5, 0}})},
              "[0,0 5,0 0,5 0,0]"},
             {"a gap at reach 0", 0, {Lines({{0, 0}, {5, 0}}), Lines({{5.5, 0}, {9, 0}})}, "(0,0 5,0) (5.5,0 9,0)"},
             {"a gap closed in its middle",
              1,
              {Lines({{0, 0}, {3, 0}}), Lines({{5.5, 1}, {9, 0}}), Lines({{5.5, 0.5}, {7, 9}})},
              "(0,0 3,0) (7,9 5.5,0.75 9,0)"},
             {"colours stay apart", 1, {Lines({{0, 0}, {5, 0}}, 1), Lines({{5, 0}, {9, 0}}, 2)}, "(0,0 5,0) (5,0 9,0)"},
             {"three, two of them straight",
              0,
              {Lines({{0, 0}, {5, 0}}), Lines({{5, 0}, {5, 5}}), Lines({{5, 0}, {9, 0}})},
              "(0,0 5,0 9,0) (5,0 5,5)"},
             {"three, none straight",
              0,
              {Lines({{0, 0}, {5, 0}}), Lines({{5, 0}, {5, 5}}), Lines({{5, 0}, {9, -3}})},
              "(0,0 5,0) (5,0 5,5) (5,0 9,-3)"},
             {"four that cross",
              0,
              {Lines({{0, 0}, {5, 0}}), Lines({{5, 0}, {9, 0}}), Lines({{5, -4}, {5, 0}}), Lines({{5, 0}, {5, 5}})},
              "(0,0 5,0 9,0) (5,-4 5,0 5,5)"},
             {"a chain of near ends",
              1,
              {Lines({{0, 5}, {0, 0}}), Lines({{0.8, 0}, {5, 5}}), Lines({{1.6, 0}, {9, 5}})},
              "(0,5 0,0) (0.8,0 5,5) (1.6,0 9,5)"},
             {"equal ends within a wide reach",
              1,
              {Lines({{0, 0}, {0.8, 0}}), Lines({{0.8, 0}, {0.8, 0.8}}), Lines({{0.8, 0.8}, {0, 0.8}}),
               Lines({{0, 0.8}, {0, 0}})},
              "[0,0 0.8,0 0.8,0.8 0,0.8 0,0]"},
             {"closes into itself", 1, {Lines({{0, 0}, {5, 0}, {5, 5}, {0, 0.5}})}, "[0,0.25 5,0 5,5 0,0.25]"},
             {"too short to", 1, {Lines({{0, 0}, {0.3, 0}, {0.3, 0.3}})}, "(0,0 0.3,0 0.3,0.3)"},
             {"back at its start", 0, {Lines({{0, 0}, {5, 0}, {0, 0}})}, "[0,0 5,0 0,0]"},
         }) {
        SCOPED_TRACE(c.name);
        std::vector<Figure> figures = c.figures;
        const JoinReport report = JoinContours(figures, c.reach);
        EXPECT_EQ(TextOf(figures), c.joined);
        EXPECT_EQ(c.figures.size() - figures.size(), report.pieces - report.contours);
    }
}

// Beside the gap a curve keeps its tangent, an arc what it turns.
TEST(JoinContours, MovesTheEndsOfCurvesAndArcs) {
    Figure curve = Lines({{-9, 0}, {-5, 0}}), arc;
    curve.AddCurve({-3, 0}, {-1, 2}, {0, 2});
    arc.points = {{0, 4}};
    arc.AddArc({2, 6}, {4, 4});
    std::vector<Figure> figures{curve, arc};
    const JoinReport report = JoinContours(figures, 2);
    ASSERT_EQ(figures.size(), 1u);
    EXPECT_EQ(report.contours, 1u);
    EXPECT_EQ(report.pieces, 2u);
    const std::vector<Point>& points = figures[0].points;
    EXPECT_EQ(points[3], (Point{-1, 3}));
    EXPECT_EQ(points[4], (Point{0, 3}));
    EXPECT_NEAR(ShapeOfArc(points[4], points[5], points[6]).sweep, ShapeOfArc({0, 4}, {2, 6}, {4, 4}).sweep, 1e-12);
}

TEST(JoinContours, LeavesAloneWhatIsNoOpenContour) {
    Figure closed = Lines({{0, 0}, {5, 0}, {0, 0}}), point;
    closed.closed = true;
    point.points = {{0, 0}};
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<Figure> figures{closed, point, Lines({{0, 0}, {nan, 1}}), Lines({{0, 0}, {9, 9}})};
    JoinContours(figures, 1);
    EXPECT_EQ(figures.size(), 4u);
    EXPECT_EQ(figures[0].points, closed.points);
}

// A star, a line and a heap of ends: none may cost the square of their number.
TEST(JoinContours, ManyEndsInOnePlaceDontMultiply) {
    constexpr int kMany = 30000;
    std::vector<Figure> star, row, heap;
    for (int i = 0; i < kMany; ++i) {
        star.push_back(Lines({{0, 0}, 100 * Direction(i * 1e-3)}));
        row.push_back(Lines({{i * 1.0, 5}, {i + 1.0, 5}}));
        heap.push_back(Lines({{0, 0}, {5, 0}}));
    }
    JoinContours(star, 0);
    const JoinReport report = JoinContours(row, 0);
    EXPECT_EQ(row.size(), 1u);
    EXPECT_EQ(report.pieces, static_cast<std::size_t>(kMany));
    JoinContours(heap, 1);
    EXPECT_EQ(heap.size(), static_cast<std::size_t>(kMany));
}

}  // namespace
