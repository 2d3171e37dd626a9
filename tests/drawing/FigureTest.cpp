// Figures from entities, their boxes and measures, and curves made lines.
#include "drawing/Figure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "drawing/FigureReader.h"
#include "drawing/Survey.h"
#include "drawing/passes/FlattenCurves.h"

namespace {

Figure Curve(std::vector<Point> points) {
    Figure figure;
    figure.segments.assign((points.size() - 1) / 3, SegmentKind::Curve);
    figure.points = std::move(points);
    return figure;
}

CBox BoxOf(std::vector<Point> points) {
    CBox box;
    box.Add(Curve(std::move(points)));
    return box;
}

// What a curve's box takes in is the curve, not its control points.
TEST(FigureTest, BoxesOfCurvesAreTight) {
    const CBox arch = BoxOf({{0, 0}, {0, 4}, {3, 4}, {3, 0}});
    EXPECT_DOUBLE_EQ(arch.Height(), 3);
    EXPECT_DOUBLE_EQ(arch.Width(), 3);
    const CBox bulge = BoxOf({{0, 0}, {12, 0}, {-9, 1}, {3, 1}});
    EXPECT_NEAR(bulge.Max().x, 3.850048, 1e-6);  // found by sampling; the curve is symmetric about (1.5, 0.5)
    EXPECT_NEAR(bulge.Min().x + bulge.Max().x, 3, 1e-12);
    EXPECT_DOUBLE_EQ(bulge.Height(), 1);
    // Neither coordinate has an extreme inside: one has no real root, the other a double one at the start.
    const CBox steady = BoxOf({{0, 0}, {1, 0}, {2, 1}, {4, 5}});
    EXPECT_EQ(steady.Min(), (Point{0, 0}));
    EXPECT_EQ(steady.Max(), (Point{4, 5}));
    const CBox still = BoxOf({{2, 3}, {2, 3}, {2, 3}, {2, 3}});
    EXPECT_EQ(still.Min(), (Point{2, 3}));
    EXPECT_EQ(still.Max(), (Point{2, 3}));
    EXPECT_TRUE(CBox().IsEmpty());
    EXPECT_EQ(CBox().Width(), 0);
}

EntityPtr Polyline(std::initializer_list<point_2d> points, std::uint32_t color, bool closed = false) {
    auto line = std::make_unique<CEntPLine>();
    auto section = std::make_unique<CSectLine2D>();
    section->Copy(std::data(points), static_cast<int>(points.size()));
    line->m_Sections.Create(section.release(), nullptr, 2, 0);
    line->m_Sections.SetCloseFlag(closed);
    line->m_nColor = color;
    return EntityPtr(line.release());
}

TEST(FigureTest, EntitiesBecomeFiguresInMillimetresAndTheRestIsCounted) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    std::vector<EntityPtr> entities;
    entities.push_back(Polyline({{0, 0}, {40, 80}}, 0xFF000080, true));
    entities.push_back(Polyline({{0, 0}, {kNan, 80}}, 1));
    entities.push_back(Polyline({{1, 2}, {3, 4}, {5, 7}}, 2));
    const FigureReading kept = ReadFigures(std::span<const EntityPtr>(entities), 1.0 / 40);
    EXPECT_EQ(kept.leftOut, 1u);
    const FigureReading reading = ReadFigures(std::move(entities), 1.0 / 40);
    EXPECT_EQ(reading.leftOut, 1u);
    EXPECT_EQ(kept.figures.size(), reading.figures.size());
    ASSERT_EQ(reading.figures.size(), 2u);
    EXPECT_EQ(reading.figures[0].color, 0x80u);
    EXPECT_TRUE(reading.figures[0].closed);
    EXPECT_EQ(reading.figures[0].points, (std::vector<Point>{{0, 0}, {1, 2}}));
    EXPECT_FALSE(reading.figures[1].closed);
    EXPECT_EQ(reading.figures[1].segments, (std::vector{SegmentKind::Line, SegmentKind::Line}));

    const Survey survey = Measure(reading.figures);
    EXPECT_EQ(survey.lines, 3u);
    EXPECT_EQ(survey.curves, 0u);
    EXPECT_EQ(survey.colors, (std::vector<std::uint32_t>{0x80, 2}));
    EXPECT_EQ(survey.box.Max(), (Point{1, 2}));
}

TEST(FigureTest, FlattenedCurvesStayWithinTheFlatnessAndKeepTheirEnds) {
    Figure mixed = Curve({{0, 0}, {0, 40.0 / 3}, {10.1, 40.0 / 3}, {10.1, 0}});
    mixed.points.push_back({0, -1.0 / 3});
    mixed.segments.push_back(SegmentKind::Line);
    mixed.closed = true;
    mixed.color = 7;
    Figure lines;
    lines.points = {{1.0 / 3, 0}, {1, 1}};
    lines.segments = {SegmentKind::Line};
    Figure dot;
    dot.points = {{1, 1}};
    std::size_t least = 0;
    for (const double flatness : {0.5, 0.05, 0.0005}) {
        const std::vector<Figure> flat = FlattenCurves({mixed, lines, dot}, flatness);
        ASSERT_EQ(flat.size(), 3u);
        EXPECT_TRUE(flat[0].IsPolyline() && flat[0].closed);
        EXPECT_EQ(flat[0].color, 7u);
        EXPECT_EQ(flat[0].points.size(), flat[0].segments.size() + 1);
        EXPECT_EQ(flat[0].points.front(), mixed.points.front());
        EXPECT_EQ(flat[0].points[flat[0].points.size() - 2], mixed.points[3]);  // to the last bit
        EXPECT_EQ(flat[0].points.back(), mixed.points[4]);
        EXPECT_GT(flat[0].points.size(), least);
        least = flat[0].points.size();
        CBox box;
        box.Add(flat[0]);
        EXPECT_NEAR(box.Max().y, 10, flatness + 1e-6);
        EXPECT_EQ(flat[1].points, lines.points);
        EXPECT_EQ(flat[2].points, dot.points);
    }
}

}  // namespace
