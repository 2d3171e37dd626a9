// The entity writer both ways: what drawing calls become, and what a filter is given of entities.
#include "hostout/DataFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <sstream>
#include <vector>

#include "hostout/HostCore.h"
#include "lib/HostSetup.h"

namespace {

/// Writes down what reaches its sinks.
class Recorder : public CDataFilter {
public:
    int OutBegin() override { return Add("begin"); }
    int OutEnd() override { return Add("end"); }
    int OutLines(const point_2d* points, int count) override {
        m_Points.assign(points, points + count);
        return Add("lines");
    }
    int OutBezier(const point_2d* points, int count) override {
        m_Points.assign(points, points + count);
        return Add("bezier");
    }
    int OutArc(point_2d, float, float, float) override { return Add("arc"); }
    int OutPoint(point_2d) override { return Add("point"); }
    int OutCircle(point_2d, float) override { return Add("circle"); }

    std::string m_Log;
    std::vector<point_2d> m_Points;  ///< of the last lines or Bézier curves

private:
    int Add(const char* what) {
        if (!m_Log.empty()) m_Log += ' ';
        m_Log += what;
        return 1;
    }
};

/// A filter with a target group, emptied at the end.
struct Drawing {
    Drawing() { filter.SetTarget(&group); }
    ~Drawing() { group.DeleteChildren(); }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    /// The entities: kinds, or for a polyline its sections by kind and count of points, and "closed".
    [[nodiscard]] std::string Text() const { return Describe(group); }
    static std::string Describe(const CEntGroup& entities) {
        std::ostringstream text;
        for (const CEntity* e = entities.GetFirstChild(); e; e = e->m_pNext) {
            text << (e == entities.GetFirstChild() ? "" : "; ");
            switch (e->GetKind()) {
                case ENT_POINT:
                    text << "point";
                    continue;
                case ENT_CIRCLE:
                    text << "circle";
                    continue;
                case ENT_ELLIPSE:
                    text << "ellipse";
                    continue;
                case ENT_TEXT:
                    text << "text";
                    continue;
                default:
                    break;
            }
            const CSectionList& list = static_cast<const CEntPLine*>(e)->m_Sections;
            const char* between = "";
            for (const CSectObject* s = list.GetFirst(); s; s = s->GetNext(), between = " ") {
                text << between;
                if (s->GetKind() == SECT_ARC) {
                    text << 'A';
                } else {
                    text << (s->GetKind() == SECT_LINE ? 'L' : 'B') << s->GetPoints().size();
                }
            }
            if (list.IsClosed()) text << " closed";
        }
        return text.str();
    }
    void Lines(const std::vector<point_2d>& points) { filter.AddLines(points.data(), static_cast<int>(points.size())); }
    void Bezier(int count) {
        const std::vector<point_2d> points = {{0, 0}, {1, 2}, {2, 2}, {3, 0}, {4, -2}, {5, -2}, {6, 0}};
        filter.AddBezier(points.data(), count);
    }

    CEntGroup group;
    Recorder filter;
};

// Build face

TEST(BuildFace, MakesPolylinesOfDrawingCalls) {
    constexpr float QUARTER = static_cast<float>(std::numbers::pi / 2);
    struct Case {
        const char* name;
        std::function<void(Drawing&)> draw;
        const char* entities;
    };
    const Case cases[] = {
        {"nothing drawn", [](Drawing&) {}, ""},
        {"a section a call",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}});
             d.Lines({{10, 0}, {10, 10}});
         },
         "L2 L2"},
        {"a gap cuts the chain",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}});
             d.Lines({{10, 0.002f}, {20, 0}});
         },
         "L2; L2"},
        {"a gap of the tolerance does not",
         [](Drawing& d) {
             d.Lines({{10, 0}, {0, 0}});
             d.Lines({{0, 0.001f}, {20, 0}});
         },
         "L2 L2"},
        {"ends that meet close it",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}, {10, 10}});
             d.Lines({{10, 10}, {0, 0.0009f}});
         },
         "L3 L2 closed"},
        {"ends that meet but for the tolerance don't",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}, {10, 10}, {0, 0.001f}});
         },
         "L4"},
        {"the part behind a cut closes by itself",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}});
             d.Lines({{20, 0}, {30, 0}, {20, 0}});
         },
         "L2; L3 closed"},
        {"too few points",
         [](Drawing& d) {
             d.Lines({{0, 0}});
             d.filter.AddLines(nullptr, 5);
             d.filter.AddBezier(nullptr, 4);
         },
         ""},
        {"Bézier curves by count",
         [](Drawing& d) {
             for (const int count : {-2, 0, 1, 3, 4, 5, 6}) d.Bezier(count);
         },
         "B4"},
        {"two curves in a section", [](Drawing& d) { d.Bezier(7); }, "B7"},
        {"arcs in a chain",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}});
             d.filter.AddArcCSE({10, 5}, {10, 0}, {10, 10}, 1);
             d.filter.AddArcSEA({10, 10}, {0, 10}, 1, 0);
             d.filter.AddArcAngles({0, 5}, 5, QUARTER, 3 * QUARTER);
         },
         "L2 A A A closed"},
        {"an arc that can't be made leaves the chain alone",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}});
             d.filter.AddArcCSE({50, 50}, {50, 50}, {60, 50}, 1);
             d.filter.AddArcSEA({50, 50}, {50, 50}, 1, 1);
             d.Lines({{10, 0}, {20, 0}});
         },
         "L2 L2"},
        {"a beginning within a polyline loses nothing",
         [](Drawing& d) {
             d.Lines({{0, 0}, {10, 0}});
             d.filter.BeginPLine();
             d.Lines({{10, 0}, {20, 0}});
         },
         "L2; L2"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Drawing drawing;
        drawing.filter.BeginPLine();
        c.draw(drawing);
        drawing.filter.EndPLine();
        EXPECT_EQ(drawing.filter.m_pPLine, nullptr);
        EXPECT_EQ(drawing.Text(), c.entities);
    }
}

TEST(BuildFace, IdleTakesNoSections) {
    Drawing drawing;
    drawing.Lines({{0, 0}, {10, 0}});
    drawing.Bezier(4);
    drawing.filter.AddArcCSE({0, 0}, {1, 0}, {0, 1}, 1);
    drawing.filter.AddArcSEA({0, 0}, {1, 0}, 1, 1);
    drawing.filter.AddArcAngles({0, 0}, 1, 0, 1);
    EXPECT_EQ(drawing.filter.CheckChain({99, 99}), 0);
    EXPECT_EQ(drawing.filter.EndPLine(), 1);
    EXPECT_EQ(drawing.Text(), "");
}

TEST(BuildFace, CheckChainTellsOfACut) {
    Drawing drawing;
    drawing.filter.BeginPLine();
    EXPECT_EQ(drawing.filter.CheckChain({99, 99}), 0) << "no chain yet";
    drawing.Lines({{0, 0}, {10, 0}});
    EXPECT_EQ(drawing.filter.CheckChain({10, 0}), 0);
    EXPECT_EQ(drawing.filter.CheckChain({10, 1}), 1);
    EXPECT_EQ(drawing.filter.CheckChain({99, 99}), 0) << "the new chain has no end yet";
    drawing.filter.EndPLine();
    EXPECT_EQ(drawing.Text(), "L2");
}

TEST(BuildFace, EntitiesTakeTheColourOfTheirBeginning) {
    Drawing drawing;
    drawing.filter.BeginPLine();
    drawing.filter.m_nColor = 0x00FF8000;
    drawing.Lines({{0, 0}, {10, 0}});
    drawing.Lines({{20, 0}, {30, 0}});
    drawing.filter.EndPLine();
    drawing.filter.AddPoint({1, 2});
    std::vector<std::uint32_t> colours;
    for (const CEntity* e = drawing.group.GetFirstChild(); e; e = e->m_pNext) colours.push_back(e->m_nColor);
    EXPECT_EQ(colours, (std::vector<std::uint32_t>{255, 0x00FF8000, 0x00FF8000}));
}

TEST(BuildFace, SingleEntitiesLeaveTheOpenPolylineAlone) {
    Drawing drawing;
    drawing.filter.BeginPLine();
    drawing.Lines({{0, 0}, {10, 0}});
    drawing.filter.AddPoint({1, 2});
    drawing.filter.AddCircle({1, 2}, 3);
    drawing.filter.AddCircle({1, 2}, 0);
    drawing.filter.AddCircle({1, 2}, -3);
    drawing.filter.AddCircle({1, 2}, std::numeric_limits<float>::quiet_NaN());
    drawing.filter.AddEllipse({1, 2}, 4, 2, 0.5f);
    drawing.Lines({{10, 0}, {20, 0}});
    drawing.filter.EndPLine();
    EXPECT_EQ(drawing.Text(), "point; circle; ellipse; L2 L2");
}

// Leaks show under AddressSanitizer.
TEST(BuildFace, WithoutAGroupEntitiesVanish) {
    const auto draw = [](Drawing& d) {
        d.filter.BeginPLine();
        d.Lines({{0, 0}, {10, 0}});
        d.Lines({{20, 0}, {30, 0}});
        d.filter.EndPLine();
        d.filter.AddPoint({1, 2});
        d.filter.AddCircle({1, 2}, 3);
        d.filter.AddEllipse({1, 2}, 4, 2, 0.5f);
    };
    Drawing none;
    EXPECT_EQ(none.filter.SetTarget(nullptr), 0);
    draw(none);
    EXPECT_EQ(none.Text(), "");

    Drawing other;
    other.filter.m_nTargetMode = 0;
    draw(other);
    EXPECT_EQ(other.Text(), "") << "the mode's group is missing";
    CEntGroup second;
    other.filter.m_pOtherGroup = &second;
    draw(other);
    EXPECT_EQ(other.Text(), "");
    EXPECT_EQ(Drawing::Describe(second), "L2; L2; point; circle; ellipse");
    second.DeleteChildren();

    Drawing open;
    open.filter.BeginPLine();
    open.Lines({{0, 0}, {10, 0}});
}

// Texts

const CEntText& OnlyText(const Drawing& drawing) {
    EXPECT_EQ(drawing.Text(), "text");
    return static_cast<const CEntText&>(*drawing.group.GetFirstChild());
}

TEST(TextAt, StandsInItsPlace) {
    struct Case {
        std::uint32_t place;
        int alignment;
        float y;
    };
    for (const Case& c : {Case{0, 16, 50},
                          {1, 16, 40},
                          {2, 48, 40},
                          {3, 32, 40},
                          {4, 16, 45},
                          {5, 48, 45},
                          {6, 32, 45},
                          {7, 16, 50},
                          {8, 48, 50},
                          {9, 32, 50},
                          {10, 16, 50}}) {
        SCOPED_TRACE(c.place);
        Drawing drawing;
        tagTextAt record{{20, 50}, "abc\n", c.place, 10, 0.0009f};
        ASSERT_EQ(drawing.filter.AddTextAt(record), 1);
        const CEntText& text = OnlyText(drawing);
        EXPECT_EQ(text.m_strText, "abc");
        EXPECT_EQ(text.m_nAlignment, c.alignment);
        EXPECT_EQ(text.m_ptPos.x, 20);
        EXPECT_EQ(text.m_ptPos.y, c.y);
        EXPECT_EQ(record.ptPos.y, c.y) << "the record stays shifted";
        EXPECT_EQ(text.m_fHeight, 10);
        EXPECT_FLOAT_EQ(text.m_fCharWidth, 6.5f);
        EXPECT_EQ(text.m_fAngle, 0) << "too little to be turned";
    }
}

TEST(TextAt, TurnsAboutItsShiftedPosition) {
    Drawing drawing;
    tagTextAt record{{20, 50}, "abc", 1, 10, -0.5f};
    ASSERT_EQ(drawing.filter.AddTextAt(record), 1);
    EXPECT_FLOAT_EQ(OnlyText(drawing).m_fAngle, -0.5f);
    EXPECT_NEAR(OnlyText(drawing).m_ptPos.x, 20, 1e-4);
    EXPECT_NEAR(OnlyText(drawing).m_ptPos.y, 40, 1e-4);
}

TEST(TextInBox, StandsInItsBox) {
    struct Case {
        const char* name;
        int horz, vert;
        int alignment;
        float x, y, width;
    };
    // The second corner is the upper left one; ten bytes of 4 units each.
    for (const Case& c : {Case{"left, lower edge", 0, 1, 16, 110, 5, 4},
                          {"centre, middle", 1, 2, 48, 110 + 10 * 4 * 0.5f, 15, 4},
                          {"right, upper edge", 2, 3, 32, 10, 25, 4},
                          {"fills the width", 5, 0, 16, 110, 5, 10},
                          {"any other", 9, -1, 16, 110, 5, 4}}) {
        SCOPED_TRACE(c.name);
        Drawing drawing;
        tagTextBox record{{110, 5}, {10, 25}, "123456789\n", c.horz, c.vert, 8, 0, 0.5f};
        ASSERT_EQ(drawing.filter.AddTextInBox(record), 1);
        const CEntText& text = OnlyText(drawing);
        EXPECT_EQ(text.m_strText, "123456789");
        EXPECT_EQ(text.m_nAlignment, c.alignment);
        EXPECT_EQ(text.m_ptPos.x, c.x);
        EXPECT_EQ(text.m_ptPos.y, c.y);
        EXPECT_FLOAT_EQ(text.m_fCharWidth, c.width) << "a last line feed counts";
    }
    Drawing drawing;
    tagTextBox flat{{0, 0}, {100, 10}, "abc", 5, 0, 8, 0, 0};
    ASSERT_EQ(drawing.filter.AddTextInBox(flat), 1);
    EXPECT_EQ(OnlyText(drawing).m_fCharWidth, 0);
}

TEST(Texts, OnlyALastLineFeedGoes) {
    for (const auto& [given, made] : {std::pair{"abc", "abc"}, {"abc\n", "abc"}, {"ab\n\n", "ab\n"}, {"a\r", "a\r"}}) {
        Drawing at;
        tagTextAt record{{0, 0}, given, 0, 10, 0};
        EXPECT_EQ(at.filter.AddTextAt(record), 1);
        EXPECT_EQ(OnlyText(at).m_strText, made);
        EXPECT_EQ(record.strText, made);
        Drawing in;
        tagTextBox box{{0, 0}, {1, 1}, given, 0, 0, 10, 0, 1};
        EXPECT_EQ(in.filter.AddTextInBox(box), 1);
        EXPECT_EQ(OnlyText(in).m_strText, made);
        EXPECT_EQ(box.strText, made);
    }
}

TEST(ExportFace, SinksThatNobodyFillsAnswerOne) {
    CDataFilter filter;
    const point_2d points[4] = {};
    EXPECT_EQ(filter.OutBegin(), 1);
    EXPECT_EQ(filter.OutLines(points, 2), 1);
    EXPECT_EQ(filter.OutArc(points[0], 1, 0, 1), 1);
    EXPECT_EQ(filter.OutBezier(points, 4), 1);
    EXPECT_EQ(filter.OutEnd(), 1);
    EXPECT_EQ(filter.OutPoint(points[0]), 1);
    EXPECT_EQ(filter.OutCircle(points[0], 1), 1);
    EXPECT_EQ(filter.OutReserved1(), 1);
    EXPECT_EQ(filter.OutReserved2(), 1);
    EXPECT_EQ(filter.OutReserved3(), 1);
}

TEST(BuildFace, EveryDrawingCallAnswersOne) {
    Drawing drawing;
    CDataFilter& filter = drawing.filter;
    const point_2d points[7] = {{0, 0}, {1, 2}, {2, 2}, {3, 0}, {4, -2}, {5, -2}, {6, 0}};
    for (int open = 0; open < 2; ++open) {
        EXPECT_EQ(filter.AddLines(points, 3), 1);
        EXPECT_EQ(filter.AddLines(points, 1), 1);
        EXPECT_EQ(filter.AddLines(nullptr, 3), 1);
        EXPECT_EQ(filter.AddBezier(points, 7), 1);
        EXPECT_EQ(filter.AddBezier(points, 6), 1);
        EXPECT_EQ(filter.AddArcCSE({0, 0}, {1, 0}, {0, 1}, 1), 1);
        EXPECT_EQ(filter.AddArcSEA({1, 0}, {0, 1}, 1, 1), 1);
        EXPECT_EQ(filter.AddArcAngles({0, 0}, 1, 0, 1), 1);
        EXPECT_EQ(filter.AddArcAngles({0, 0}, 0, 0, 1), 1);
        EXPECT_EQ(filter.AddPoint({1, 2}), 1);
        EXPECT_EQ(filter.AddCircle({1, 2}, 3), 1);
        EXPECT_EQ(filter.AddCircle({1, 2}, 0), 1);
        EXPECT_EQ(filter.AddEllipse({1, 2}, 4, 2, 0.5f), 1);
        EXPECT_EQ(filter.BeginPLine(), 1);
    }
    EXPECT_EQ(filter.EndPLine(), 1);
    EXPECT_EQ(filter.EndPLine(), 1);
    EXPECT_EQ(filter.WriteEntity(nullptr), 1);
    EXPECT_EQ(filter.WriteEntity(&drawing.group), 1);
    EXPECT_EQ(filter.SetTarget(&drawing.group), 1);
}

TEST(Texts, EmptyOnesAreNotMade) {
    Drawing drawing;
    for (const char* text : {"", "\n"}) {
        tagTextAt at{{0, 0}, text, 0, 10, 0};
        EXPECT_EQ(drawing.filter.AddTextAt(at), 0);
        tagTextBox box{{0, 0}, {1, 1}, text, 5, 0, 10, 0, 1};
        EXPECT_EQ(drawing.filter.AddTextInBox(box), 0);
    }
    EXPECT_EQ(drawing.Text(), "");
}

// Export face

TEST(ExportFace, GivesCurvesAsTheBitsTell) {
    struct Case {
        std::uint32_t flags;
        const char* log;
    };
    for (const Case& c : {
             Case{1, "begin lines lines lines end point begin lines end begin lines end"},
             {1 | OUT_ARC, "begin lines arc lines end point begin lines end begin lines end"},
             {1 | OUT_BEZIER, "begin lines lines bezier end point begin lines end begin lines end"},
             {1 | OUT_CIRCLE, "begin lines lines lines end point circle begin lines end"},
         }) {
        SCOPED_TRACE(c.flags);
        Drawing drawing;
        drawing.filter.BeginPLine();
        drawing.Lines({{-20, 0}, {-10, 0}});
        drawing.filter.AddArcCSE({-5, 0}, {-10, 0}, {0, 0}, 1);
        drawing.Bezier(7);
        drawing.filter.EndPLine();
        drawing.filter.AddPoint({1, 2});
        drawing.filter.AddCircle({1, 2}, 3);
        drawing.filter.AddEllipse({1, 2}, 4, 2, 0.5f);
        tagTextAt text{{0, 0}, "not exported", 0, 10, 0};
        drawing.filter.AddTextAt(text);
        Recorder reader;
        reader.m_nOutFlags = c.flags;
        reader.WriteEntity(&drawing.group);
        EXPECT_EQ(reader.m_Log, c.log);
    }
}

TEST(ExportFace, SkipsWhatMayNotBeExportedAndWhatIsEmpty) {
    Drawing drawing;
    Recorder reader;
    reader.WriteEntity(nullptr);
    const CEntPLine empty;
    reader.WriteEntity(&empty);
    const CEntCircle noCircle;
    reader.WriteEntity(&noCircle);
    const CEntEllipse noEllipse;
    reader.WriteEntity(&noEllipse);
    CEntGroup hostGroup(static_cast<EntityKind>(ENT_HOST_GROUP_LAST));
    auto* hidden = new CEntPoint;
    hidden->m_nFlags &= ~ENTF_EXPORT;
    hidden->InsertToChildTail(&hostGroup);
    reader.WriteEntity(&hostGroup);
    EXPECT_EQ(reader.m_Log, "");
    (new CEntPoint)->InsertToChildTail(&hostGroup);
    reader.WriteEntity(&hostGroup);
    EXPECT_EQ(reader.m_Log, "point");
    hostGroup.m_nFlags = 0;
    reader.WriteEntity(&hostGroup);
    EXPECT_EQ(reader.m_Log, "point") << "the group hides its children";
    hostGroup.DeleteChildren();
}

TEST(ExportFace, FlattensBezierCurvesToPointsOnThem) {
    // Its control points stand at y = 4, the curve itself goes up to y = 3.
    const point_2d arch[] = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
    Drawing drawing;
    drawing.filter.BeginPLine();
    drawing.filter.AddBezier(arch, 4);
    drawing.filter.EndPLine();
    size_t counts[3] = {};
    size_t* count = counts;
    for (const float tolerance : {0.5f, 0.005f, 1e-6f}) {
        Recorder reader;
        reader.m_fOutTolerance = tolerance;
        reader.WriteEntity(&drawing.group);
        for (const point_2d& p : reader.m_Points) EXPECT_LE(p.y, 3.0001f);
        EXPECT_EQ(reader.m_Points.front().DistFrom(arch[0]), 0);
        EXPECT_EQ(reader.m_Points.back().DistFrom(arch[3]), 0);
        EXPECT_EQ(reader.m_fOutTolerance, std::max(tolerance, 0.005f)) << "a finer tolerance is raised for good";
        *count++ = reader.m_Points.size();
    }
    EXPECT_LT(counts[0], counts[1]);
    EXPECT_EQ(counts[1], counts[2]);
}

TEST(ExportFace, FlattensCirclesWithinOneLengthInEitherHostUnit) {
    const auto countAt = [](int version, float radius) {
        SetHostVersion(version);
        Drawing drawing;
        drawing.filter.AddCircle({0, 0}, radius);
        Recorder reader;
        reader.WriteEntity(&drawing.group);
        SetHostVersion(5);
        double farthest = 0;
        for (size_t i = 1; i < reader.m_Points.size(); ++i) {
            const point_2d a = reader.m_Points[i - 1];
            const point_2d b = reader.m_Points[i];
            farthest = std::max(farthest, radius - std::hypot((a.x + b.x) / 2.0, (a.y + b.y) / 2.0));
        }
        const double rounding = 1e-7 * radius;  // of 32-bit coordinates
        EXPECT_LE(farthest, (version < 5 ? 0.5 : 0.0125) + rounding);
        return reader.m_Points.size();
    };
    EXPECT_EQ(countAt(5, 100), countAt(4, 4000));
    EXPECT_GT(countAt(5, 4000), countAt(4, 4000));
}

/// A section that comes as two lines, which meet at x = the tolerance.
class Zigzag final : public CSectPoints<4> {
public:
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_POINTS; }
    [[nodiscard]] CSectObject* Clone() const override { return nullptr; }
    [[nodiscard]] CSectObject* Simplify(float tolerance) const override {
        const point_2d points[] = {{0, 0}, {tolerance, 0}, {1, 0}};
        auto* first = new CSectLine2D;
        first->Copy(points, 2);
        auto* second = new CSectLine2D;
        second->Copy(points + 1, 2);
        first->AddListToTail(second);
        return first;
    }
    void Flatten(float, std::vector<point_2d>&) const override {}
};

TEST(ExportFace, JoinsWhatSectionsSimplifyThemselvesTo) {
    Drawing drawing;
    drawing.filter.BeginPLine();
    drawing.filter.m_pPLine->m_Sections.Create(new Zigzag, nullptr, 2, 0);
    drawing.Lines({{1, 0}, {2, 0}});
    drawing.filter.m_pPLine->m_Sections.AddSectToTail(new Zigzag);
    const CSectChain chain = drawing.filter.SimplifySections(drawing.filter.m_pPLine->m_Sections, 0.5f);
    std::vector<float> starts;
    for (const CSectObject* s = chain.get(); s; s = s->GetNext()) starts.push_back(s->GetPoints()[0].x);
    EXPECT_EQ(starts, (std::vector<float>{0, 0.25f, 1, 0, 0.25f})) << "within half the tolerance";
}

TEST(ExportFace, SimplifiesALongListInOnePass) {
    Drawing drawing;
    drawing.filter.BeginPLine();
    constexpr int SECTIONS = 100000;  // quadratic work would show
    for (int i = 0; i < SECTIONS; ++i) {
        const auto x = static_cast<float>(i);
        drawing.Lines({{x, 0}, {x + 1, 0}});
    }
    drawing.filter.EndPLine();
    const auto* line = static_cast<const CEntPLine*>(drawing.group.GetFirstChild());
    const CSectChain chain = drawing.filter.SimplifySections(line->m_Sections, 0.05f);
    int count = 0;
    for (const CSectObject* s = chain.get(); s; s = s->GetNext()) {
        ASSERT_EQ(s->GetPoints()[0].x, static_cast<float>(count++));
    }
    EXPECT_EQ(count, SECTIONS);
    EXPECT_EQ(drawing.filter.SimplifySections(CSectionList(), 0.05f), nullptr);
}

}  // namespace
