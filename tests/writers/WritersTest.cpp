// The drawing writers on entities that no EPS file gives: the other kinds of the host, and numbers at the
// edge.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>

#include "drawing/FigureReader.h"
#include "hostout/HostModel.h"
#include "writers/DxfWriter.h"
#include "writers/JsonWriter.h"
#include "writers/SvgWriter.h"

namespace {

template <class Write>
std::string Written(Write write) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("epswriters" + std::to_string(::getpid()));
    COutputFile out(path);
    write(out);
    EXPECT_TRUE(out.Close()) << out.Error();
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    std::filesystem::remove(path);
    return text.str();
}

std::string Json(const Drawing& drawing) {
    return Written([&](COutputFile& out) { WriteJson(drawing, std::nullopt, out); });
}

std::vector<Figure> Figures(Drawing& drawing) { return ReadFigures(std::move(drawing.entities), 1).figures; }

std::string Svg(const std::vector<Figure>& figures) {
    return Written([&](COutputFile& out) { WriteSvg(figures, out); });
}

std::string Dxf(const std::vector<Figure>& figures) {
    return Written([&](COutputFile& out) { WriteDxf(figures, out); });
}

CEntPLine* AddPolyline(Drawing& drawing, CSectObject* section, bool closed = false) {
    auto* line = new CEntPLine;
    line->m_Sections.Create(section, nullptr, 2, 0);
    line->m_Sections.SetCloseFlag(closed);
    drawing.entities.emplace_back(line);
    return line;
}

CSectLine2D* Line(std::initializer_list<point_2d> points) {
    auto* section = new CSectLine2D;
    section->Copy(std::data(points), static_cast<int>(points.size()));
    return section;
}

std::size_t Count(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

TEST(Writers, FontsOfTextsInJson) {
    Drawing drawing;
    EXPECT_EQ(Json(drawing).find("fonts"), std::string::npos);
    drawing.report.fonts = {{"Helvetica", "NimbusSans-Regular", false, true, 120, 3},
                            {"Own", "Own", true, true, 1, 0},
                            {"A\"B", "", false, true, 0, 7}};
    EXPECT_NE(Json(drawing).find(R"("fonts": [{ "name": "Helvetica", "used": "NimbusSans-Regular", "embedded": false, )"
                                 R"("glyphs": 120, "missing": 3 }, )"
                                 R"({ "name": "Own", "used": "Own", "embedded": true, "glyphs": 1, "missing": 0 }, )"
                                 R"({ "name": "A\"B", "used": null, "embedded": false, "glyphs": 0, "missing": 7 }])"),
              std::string::npos);
}

TEST(Writers, TheHostsOtherKindsAreWritten) {
    Drawing drawing;
    auto* arc = new CSectArc;
    arc->CreateCRA({1, 2}, 3, {0, 1.5f});
    AddPolyline(drawing, arc);
    auto* circle = new CEntCircle;
    circle->m_pSection = new CSectCircle;
    circle->m_pSection->CreateCR({10, 10}, 2);
    drawing.entities.emplace_back(circle);
    auto* ellipse = new CEntEllipse;
    ellipse->m_pSection = new CSectEllipse;
    ellipse->m_pSection->Create({20, 20}, 4, 2, 0.5f, 0);
    drawing.entities.emplace_back(ellipse);
    auto* point = new CEntPoint;
    point->m_Section.Copy({7, 8});
    drawing.entities.emplace_back(point);
    drawing.entities.emplace_back(CreateMultiText("a \"b\" \xFF", {5, 6}, "font", 1, 2, 0, 0, ALIGN_LEFT, 0));

    const std::string json = Json(drawing);
    for (const char* expected :
         {R"("sections": [{ "type": "arc", "center": [1,2], "radius": 3, "startAngle": 0, "endAngle": 1.5 }])",
          R"({ "type": "circle", "color": [0,0,0], "center": [10,10], "radius": 2 })",
          R"({ "type": "ellipse", "color": [0,0,0], "center": [20,20], "a": 4, "b": 2, "angle": 0.5 })",
          R"({ "type": "point", "color": [0,0,0], "position": [7,8] })",
          R"("text": "a \"b\" )"
          "\xEF\xBF\xBD\""})
        EXPECT_NE(json.find(expected), std::string::npos) << expected << '\n' << json;

    const std::vector<Figure> figures = Figures(drawing);
    const std::string svg = Svg(figures);
    EXPECT_EQ(Count(svg, "<path"), 4u) << svg;
    EXPECT_NE(svg.find("M7,-8 h0"), std::string::npos);
    const std::string dxf = Dxf(figures);
    EXPECT_EQ(Count(dxf, "\nLWPOLYLINE\n"), 3u);
    EXPECT_EQ(Count(dxf, "\nPOINT\n"), 1u);
}

TEST(Writers, ExtremeNumbersStayReadable) {
    constexpr float kMost = std::numeric_limits<float>::max();
    constexpr float kLeast = std::numeric_limits<float>::denorm_min();
    Drawing drawing;
    AddPolyline(drawing, Line({{kMost, -kMost}, {kLeast, -0.0f}, {-1e-7f, 16777216}}));
    EXPECT_NE(Json(drawing).find("[[3.4028235e+38,-3.4028235e+38], [1e-45,-0], [-1e-07,16777216]]"), std::string::npos)
        << Json(drawing);
    const std::vector<Figure> figures = Figures(drawing);
    EXPECT_NE(Svg(figures).find(" L0,0 0,-16777216\"/>"), std::string::npos) << Svg(figures);
    EXPECT_NE(Dxf(figures).find(" 20\n-3.4028235e+38\n"), std::string::npos);
}

TEST(Writers, SectionsAHairApartKeepBothEnds) {
    Drawing drawing;
    CEntPLine* line = AddPolyline(drawing, Line({{0, 0}, {10, 0}}), true);
    line->m_Sections.AddSectToTail(Line({{10, 0.0005f}, {5, 5}}));
    line->m_Sections.AddSectToTail(Line({{5, 5}, {0, 0}}));
    const std::vector<Figure> figures = Figures(drawing);
    EXPECT_NE(Svg(figures).find("d=\"M0,0 L10,0 10,-0.0005 5,-5 Z\""), std::string::npos) << Svg(figures);
    EXPECT_NE(Dxf(figures).find(" 90\n4\n 70\n1\n"), std::string::npos);
}

// A closed outline of curves ends where it starts, without the flag that makes some readers bend it.
TEST(Writers, ClosedSplinesMeetTheirStartWithoutTheClosedBit) {
    Figure figure;
    figure.closed = true;
    figure.points = {{0, 0}, {0, 4}, {3, 4}, {3, 0}, {3, -1}};
    figure.segments = {SegmentKind::Curve, SegmentKind::Line};
    const std::string dxf = Dxf({figure});
    EXPECT_NE(dxf.find("AcDbSpline\n 70\n8\n 71\n3\n 72\n14\n 73\n10\n"), std::string::npos) << dxf;
    EXPECT_NE(dxf.find(" 10\n0.0\n 20\n0.0\n 30\n0.0\n  0\nENDSEC"), std::string::npos) << dxf;
}

TEST(Writers, EveryTableOfADxfEnds) {
    const std::string dxf = Dxf({});
    EXPECT_GE(Count(dxf, "  0\nTABLE\n"), 8u);
    EXPECT_EQ(Count(dxf, "  0\nTABLE\n"), Count(dxf, "  0\nENDTAB\n"));
    EXPECT_EQ(Count(dxf, "  0\nSECTION\n"), Count(dxf, "  0\nENDSEC\n"));
}

TEST(Writers, LayersHaveTheNearestIndexForProgramsWithoutTrueColours) {
    Figure figure;
    figure.points = {{0, 0}, {1, 0}};
    figure.segments = {SegmentKind::Line};
    figure.color = 0x0000FE;  // blue, green, red
    const std::string dxf = Dxf({figure});
    EXPECT_NE(dxf.find("  2\nred-FE0000\n 70\n0\n 62\n1\n420\n16646144\n"), std::string::npos) << dxf;
}

TEST(Writers, AnSvgShowsTheWholeDrawingWithAMargin) {
    Figure figure;
    figure.points = {{10, 20}, {110, 70}};
    figure.segments = {SegmentKind::Line};
    EXPECT_NE(Svg({figure}).find("width=\"104mm\" height=\"54mm\" viewBox=\"8 -72 104 54\""), std::string::npos)
        << Svg({figure});
    EXPECT_NE(Svg({}).find("width=\"1mm\" height=\"1mm\" viewBox=\"0 0 1 1\""), std::string::npos) << Svg({});
}

TEST(Writers, TheReportOfARunStandsInTheJson) {
    Drawing drawing;
    EXPECT_EQ(Json(drawing).find("failure"), std::string::npos);
    EXPECT_EQ(Json(drawing).find("leftOut"), std::string::npos);
    EXPECT_NE(Json(drawing).find("\"dialect\": \"plain\""), std::string::npos);
    drawing.complete = true;
    drawing.report.failure = {1, "typecheck", "ad\"d", 41, 1203};
    drawing.report.leftOut.nTexts = 12;
    drawing.report.leftOut.strFonts = {"Helvetica", "caf\xE9"};
    drawing.report.leftOut.nPoints = 3;
    const std::string json = Json(drawing);
    for (const char* expected :
         {R"("dialect": "complete",)",
          R"("failure": { "error": "typecheck", "operator": "ad\"d", "line": 41, "offset": 1203 },)",
          "\"leftOut\": { \"texts\": 12, \"fonts\": [\"Helvetica\", \"caf\xEF\xBF\xBD\"], \"images\": 0, "
          "\"shadings\": 0, \"patterns\": 0, \"points\": 3 },"})
        EXPECT_NE(json.find(expected), std::string::npos) << expected << '\n' << json;
}

}  // namespace
