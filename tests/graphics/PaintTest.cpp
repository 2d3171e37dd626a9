// Painting: which entities come of a path, a rectangle and a user path. 72 points are 25.4 mm.
#include "graphics/GraphState.h"
#include "interp/FilterEPS.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

struct DrawCase {
    const char* name;
    const char* program;
    std::string entities;
    RunSettings settings = {};
};

void CheckDrawings(std::initializer_list<DrawCase> cases) {
    for (const DrawCase& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.program);
        EXPECT_EQ(Drawn(c.program, c.settings), c.entities);
    }
}

constexpr RunSettings kVersion4{.hostVersion = 4};
constexpr RunSettings kNoFills{.fillOutline = false};

TEST(PaintTest, Stroke) {
    CheckDrawings({
        {"a line", "0 0 moveto 72 72 lineto stroke", "#000000 open L 0,0 25.4,25.4"},
        {"old hosts count 1/40 mm", "0 0 moveto 72 72 lineto stroke", "#000000 open L 0,0 1016,1016", kVersion4},
        {"nothing of a point", "72 0 moveto stroke", ""},
        {"nothing of a line of no length", "72 0 moveto 72 0 lineto stroke", ""},
        {"nothing in front of the first moveto", "72 0 lineto 0 0 moveto 72 0 lineto stroke",
         "#000000 open L 0,0 25.4,0"},
        {"nothing without a moveto", "72 0 lineto 0 0 72 0 72 72 curveto 0 0 lineto closepath stroke", ""},
        {"a curve is never too short", "0 0 moveto 0 0 0 0 0 0 curveto stroke", "#000000 closed B 0,0 0,0 0,0 0,0"},
        {"two subpaths", "0 0 moveto 72 0 lineto 0 72 moveto 72 72 lineto stroke",
         "#000000 open L 0,0 25.4,0\n#000000 open L 0,25.4 25.4,25.4"},
        {"the path goes on behind a closepath", "0 0 moveto 72 0 lineto 72 72 lineto closepath 0 72 lineto stroke",
         "#000000 open L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,0 L 0,0 0,25.4"},
        {"closed without a closepath", "0 0 moveto 72 0 lineto 72 72 lineto 0 0.001 lineto stroke",
         "#000000 closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,0.000352778"},
        {"no closing line where the ends meet", "0 0 moveto 72 0 lineto 72 72 lineto 0 0 lineto closepath stroke",
         "#000000 closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,0"},
        {"line parameters do not show", "100 setlinewidth [1] 0 setdash 0 0 moveto 72 0 lineto stroke",
         "#000000 open L 0,0 25.4,0"},
        {"the clip does not show", "0 0 moveto 72 0 lineto clip stroke", "#000000 open L 0,0 25.4,0"},
        {"the path is consumed", "0 0 moveto 72 0 lineto stroke 72 72 lineto stroke", "#000000 open L 0,0 25.4,0"},
        {"drawn before the fault", "0 0 moveto 72 0 lineto stroke nosuch", "#000000 open L 0,0 25.4,0"},
    });
}

// The user space of these cases is in millimetres.
TEST(PaintTest, Tolerances) {
    const auto drawn = [](const std::string& program, const RunSettings& settings) {
        return Drawn("72 25.4 div dup scale " + program, settings);
    };
    const std::string tiny = "0 0 moveto 1 1 10 {.004 mul 0 lineto} for stroke";
    EXPECT_EQ(drawn(tiny, {}), "#000000 open L 0,0 0.012,0 L 0.012,0 0.024,0 L 0.024,0 0.036,0")
        << "a run of tiny segments is measured from the last point kept";
    EXPECT_EQ(drawn(tiny, kVersion4), "#000000 open L 0,0 0.48,0 L 0.48,0 0.96,0 L 0.96,0 1.44,0");
    EXPECT_EQ(drawn(tiny, {.mergeTolerance = 1}), "");
    EXPECT_EQ(drawn("0 0 moveto .01 0 lineto stroke", {.mergeTolerance = 0.01f}), "#000000 open L 0,0 0.01,0")
        << "a segment of just the tolerance is kept";
    const std::string nearlyClosed = "0 0 moveto 1 0 lineto 1 1 lineto 0 .002 lineto closepath stroke";
    EXPECT_EQ(drawn(nearlyClosed, {}), "#000000 closed L 0,0 1,0 L 1,0 1,1 L 1,1 0,0.002 L 0,0.002 0,0");
    EXPECT_EQ(drawn("0 0 moveto 1 0 lineto 1 1 lineto 0 .0005 lineto closepath stroke", kVersion4),
              "#000000 open L 0,0 40,0 L 40,0 40,40 L 40,40 0,0.02")
        << "too short to be drawn in millimetres, too far to count as closed in host units";
}

TEST(PaintTest, Colors) {
    CheckDrawings({
        {"at the moment of painting", "1 0 0 setrgbcolor 0 0 moveto 72 0 lineto 0 1 0 setrgbcolor stroke",
         "#00ff00 open L 0,0 25.4,0"},
        {"truncated, not rounded", ".999 .5 .001 setrgbcolor 0 0 moveto 72 0 lineto stroke",
         "#fe7f00 open L 0,0 25.4,0"},
        {"the low byte of what is too bright", "2 -1 1e30 setrgbcolor 0 0 moveto 72 0 lineto stroke",
         "#fe0100 open L 0,0 25.4,0"},
        {"CMYK", "1 0 0 0 setcmykcolor 0 0 moveto 72 0 lineto stroke", "#00ffff open L 0,0 25.4,0"},
    });
}

TEST(PaintTest, Fill) {
    CheckDrawings({
        {"the outline", "0 0 moveto 72 0 lineto fill 0 0 moveto 0 72 lineto eofill",
         "#000000 open L 0,0 25.4,0\n#000000 open L 0,0 0,25.4"},
        {"not wanted", "0 0 moveto 72 0 lineto fill 72 72 lineto eofill 0 72 moveto 0 0 lineto stroke",
         "#000000 open L 0,25.4 0,0", kNoFills},
        {"fill and stroke draw twice", "0 0 moveto 72 0 lineto gsave fill grestore stroke",
         "#000000 open L 0,0 25.4,0\n#000000 open L 0,0 25.4,0"},
        {"shadings and pages", "<< >> shfill erasepage", ""},
    });
    EXPECT_EQ(RunText("0 0 moveto fill currentpoint", kNoFills).error, PSERR_NOCURRENTPOINT);
    CheckStacks({{"no shading", "[] shfill", "[]", PSERR_TYPECHECK}});
}

TEST(PaintTest, Rectangles) {
    const std::string inch = "#000000 closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,25.4 L 0,25.4 0,0";
    CheckDrawings({
        {"numbers", "0 0 72 72 rectstroke", inch},
        {"an array", "[0 0 72 72] rectfill", inch},
        {"two in an array", "[0 0 72 72 0 0 72 72] rectstroke", inch + "\n" + inch},
        {"departure: a matrix does not show", "0 0 72 72 [2 0 0 2 9 9] rectstroke", inch},
        {"an array and a matrix", "[0 0 72 72] matrix rectstroke", inch},
        {"what stands below a matrix may be anything", "/a matrix rectstroke 0 0 72 72 rectstroke", inch},
        {"an encoded string draws nothing", "(abc) rectstroke (abc) matrix rectstroke", ""},
        {"the path stays", "0 0 moveto 0 0 72 72 rectstroke 72 0 lineto stroke", inch + "\n#000000 open L 0,0 25.4,0"},
        {"under the CTM", "2 1 scale 0 0 36 72 rectstroke", inch},
        {"not wanted", "0 0 72 72 rectfill [1 2] rectfill (a) rectfill", "", kNoFills},
    });
    CheckStacks({
        {"departure: all operands go", "7 [0 0 72 72] matrix rectstroke 1 2 3 4 rectstroke (a) rectstroke", "7"},
        {"departure: what is no rectangle stays", "/a matrix rectstroke", "/a"},
        {"departure: no multiple of four", "7 [1 2 3] rectstroke", "7", PSERR_SYNTAX},
        {"departure: nor below a matrix", "7 [1 2 3] matrix rectstroke", "7", PSERR_SYNTAX},
        {"departure: no number in it", "[1 2 3 (a)] rectstroke", "", PSERR_TYPECHECK},
        {"departure: a matrix of names", "1 2 3 4 [/a /b /c /d /e /f] rectstroke", "1 2 3 4", PSERR_TYPECHECK},
        {"departure: nothing below a matrix", "matrix rectstroke", "", PSERR_STACKUNDERFLOW},
        {"departure: a packed array", "1 2 3 4 4 packedarray rectstroke", "[1 2 3 4]", PSERR_TYPECHECK},
        {"three numbers", "1 2 3 rectstroke", "1 2 3", PSERR_STACKUNDERFLOW},
        {"the CTM stays", "1 2 3 4 [2 0 0 2 0 0] rectstroke matrix currentmatrix", "[1.0 0.0 0.0 1.0 0.0 0.0]"},
    });
    EXPECT_EQ(RunText("[1 2 3] rectstroke").gstateDepth, 1);
    const RunResult unwanted = RunText("/a rectfill", kNoFills);
    EXPECT_EQ(unwanted.error, PSERR_TYPECHECK);
    EXPECT_EQ(unwanted.stack, "/a");
}

TEST(PaintTest, RectanglesAreRoundedOnce) {
    TestFrame frame;
    CFilterEPS machine(4);
    machine.AddRectPath(30, 0, 72, 72);
    tagPLPoint record;
    ASSERT_EQ(machine.GetCurrentGState()->GetPathRecord(0, record), 1);
    const point_2d corner = record.pt;
    EXPECT_EQ(corner.x, 0x1.a75556p+8f) << "moveto makes 0x1.a75554p+8 of 30, by way of millimetres";
}

TEST(PaintTest, UserPaths) {
    CheckDrawings({
        {"stroked", "{ucache 0 0 moveto 72 0 lineto} ustroke", "#000000 open L 0,0 25.4,0"},
        {"filled", "{ucache 0 0 moveto 72 0 lineto} ufill {ucache 0 0 moveto 0 72 lineto} ueofill",
         "#000000 open L 0,0 25.4,0\n#000000 open L 0,0 0,25.4"},
        {"departure: a matrix does not show", "{0 0 moveto 72 0 lineto 72 0 lineto} [2 0 0 2 0 0] ustroke",
         "#000000 open L 0,0 25.4,0"},
        {"the path in place stays",
         "0 72 moveto {0 0 moveto 9 9 lineto newpath 0 0 moveto 9 9 lineto} ustroke 72 72 lineto stroke",
         "#000000 open L 0,0 3.175,3.175\n#000000 open L 0,25.4 25.4,25.4"},
        {"not run when not wanted", "{0 0 moveto 72 0 lineto stroke} ufill [1 2] ueofill", "", kNoFills},
    });
    CheckStacks({
        {"all operands go", "7 {0 0 moveto} matrix ustroke", "7"},
        {"departure: six elements are a matrix", "7 {0 0 moveto 1 1 lineto} ustroke", "7", PSERR_TYPECHECK},
        {"departure: nothing below six numbers", "7 {1 2 3 4 5 6} ustroke", "7", PSERR_TYPECHECK},
        {"departure: an encoded path", "7 [1 2] ustroke", "7", PSERR_UNSUPPORTED},
        {"no path", "(a) ustroke", "(a)", PSERR_TYPECHECK},
        {"nothing", "ufill", "", PSERR_STACKUNDERFLOW},
        {"the matrix is gone behind it", "{0 0 moveto} [2 0 0 2 0 0] ustroke matrix currentmatrix 0 get", "1.0"},
        {"states that the path left", "3 setlinewidth {gsave 0 0 moveto gsave 5 setlinewidth} ustroke currentlinewidth",
         "3.0"},
        {"a path that pops its own state",
         "3 setlinewidth {grestore grestore grestore grestore 0 0 moveto} ustroke currentlinewidth", "3.0"},
    });
    // Without outlines the top goes, and nothing of it is run.
    const auto unwanted = [](const char* program) {
        const RunResult result = RunText(program, kNoFills);
        return result.stack + ':' + std::to_string(result.error);
    };
    for (const std::string op : {"ufill", "ueofill"}) {
        EXPECT_EQ(unwanted(("7 {nosuch} " + op).c_str()), "7:-1");
        EXPECT_EQ(unwanted(("7 {nosuch} matrix " + op).c_str()), "7 {nosuch}:-1")
            << "departure: the top goes, whatever it is";
        EXPECT_EQ(unwanted(op.c_str()), ":" + std::to_string(PSERR_STACKUNDERFLOW));
        EXPECT_EQ(unwanted(("(a) " + op).c_str()), "(a):" + std::to_string(PSERR_TYPECHECK));
    }
    EXPECT_EQ(RunText("{nosuch} ustroke").gstateDepth, 1);
    EXPECT_EQ(RunText("{gsave gsave} ustroke").error, PSERR_UNSUPPORTED) << "two elements are an encoded path";
}

}  // namespace
