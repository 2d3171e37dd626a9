// Path operators and user paths of the complete dialect.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

TEST(CompletePathTest, Boxes) {
    CheckStacks(
        {
            {"one point", "9 18 moveto pathbbox", "9.0 18.0 9.0 18.0"},
            {"a last moveto doesn't count", "0 0 moveto 9 9 lineto 72 72 moveto pathbbox", "0.0 0.0 9.0 9.0"},
            {"control points count", "0 0 moveto 0 72 72 72 72 0 curveto pathbbox", "0.0 0.0 72.0 72.0"},
            {"flattened they don't",
             "0 0 moveto 0 72 72 72 72 0 curveto flattenpath pathbbox 55 lt 4 1 roll pop pop pop", "true"},
            {"turned", "0 0 moveto 72 36 lineto [0 1 -1 0 0 0] setmatrix pathbbox", "0.0 -72.0 36.0 0.0"},
            {"nothing", "{pathbbox} stopped $error /errorname get", "true /nocurrentpoint"},
            {"setbbox", "0 0 9 9 setbbox {9 9 0 0 setbbox} stopped", "9 9 0 0 true"},
        },
        kComplete);
}

TEST(CompletePathTest, ClosepathMovesTheCurrentPoint) {
    CheckStacks(
        {
            {"of a triangle", "0 9 moveto 9 0 lineto 9 9 lineto closepath currentpoint", "0.0 9.0"},
            {"of one line", "0 9 moveto 9 0 lineto closepath currentpoint", "0.0 9.0"},
            {"twice", "0 9 moveto 9 0 lineto 9 9 lineto closepath closepath {/m} {/l} {/c} {/h} pathforall count",
             "0.0 9.0 /m 9.0 0.0 /l 9.0 9.0 /l /h 10"},
            {"what goes on behind one",
             "0 9 moveto 9 0 lineto 9 9 lineto closepath 3 3 lineto 4 4 lineto closepath {pop pop} {pop pop} {} {/h} "
             "pathforall currentpoint",
             "/h /h 0.0 9.0"},
            {"nothing", "closepath 9 9 moveto closepath currentpoint", "9.0 9.0"},
        },
        kComplete);
    EXPECT_EQ(Drawn("0 0 moveto 72 0 lineto closepath stroke", kComplete), "#000000 open L 0,0 25.4,0");
}

constexpr const char* kArc = "0 0 moveto 0 72 72 72 72 0 curveto ";
constexpr const char* kCount = " 0 {pop pop} {pop pop 1 add} {6 {pop} repeat 100 add} {} pathforall ";

TEST(CompletePathTest, FlattenAndReverse) {
    const auto stack = [](const std::string& program) { return RunText(program, kComplete).stack; };
    const std::string arc = kArc;
    const std::string lines = stack(arc + "flattenpath" + kCount);
    EXPECT_GT(std::stoi(lines), 5);
    EXPECT_LT(std::stoi(lines), 100);
    EXPECT_LT(std::stoi(stack("20 setflat " + arc + "flattenpath" + kCount)), std::stoi(lines));
    EXPECT_EQ(stack(arc + kCount), "100");
    // What comes behind flattenpath stays as it is, and an emptied path forgets it.
    EXPECT_EQ(stack(arc + "flattenpath 0 9 9 9 9 0 curveto" + kCount), std::to_string(std::stoi(lines) + 100));
    EXPECT_EQ(stack(arc + "flattenpath newpath " + arc + kCount), "100");
    EXPECT_EQ(stack(arc + "gsave flattenpath grestore" + kCount), "100");
    EXPECT_EQ(stack(arc + "flattenpath reversepath" + kCount), lines);
    // Who only paints gets the curve.
    EXPECT_EQ(Drawn(arc + "flattenpath stroke", kComplete), Drawn(arc + "stroke"));
    EXPECT_NE(Drawn(arc + "flattenpath pathbbox stroke", kComplete), Drawn(arc + "stroke"));
    CheckStacks(
        {
            {"reversed", "0 0 moveto 9 0 lineto 9 9 lineto reversepath {/m} {/l} {/c} {/h} pathforall",
             "9.0 9.0 /m 9.0 0.0 /l 0.0 0.0 /l"},
            {"strokepath", "4 setlinewidth 0 0 moveto 72 0 lineto strokepath pathbbox", "0.0 -2.0 72.0 2.0"},
            {"line width at the start", "0 0 moveto 72 0 lineto strokepath pathbbox", "0.0 -0.5 72.0 0.5"},
            {"dashed", "[9] 0 setdash 0 0 moveto 27 0 lineto strokepath 0 {pop pop 1 add} {pop pop} {} {} pathforall",
             "2"},
        },
        kComplete);
}

TEST(CompletePathTest, HasNoLimit) {
    const RunResult result = RunText("0 0 moveto 1 1 20000 {0 lineto} for stroke", kComplete);
    EXPECT_EQ(result.report.leftOut.nPoints, 0);
    ASSERT_EQ(result.entities.size(), 1u);
    EXPECT_EQ(std::count(result.entities[0].begin(), result.entities[0].end(), 'L'), 20000);
}

TEST(CompletePathTest, UserPaths) {
    // moveto, lineto twice, closepath; the numbers are 16-bit integers.
    const std::string numbers = "<9520000A 0000 0000 0048 0048 0000 0000 0048 0000 0048 0048> ";
    const std::string line = "0 0 72 72 setbbox 0 0 moveto 72 0 lineto 72 72 lineto closepath";
    const std::string expected = Drawn("{" + line + "} ustroke", kComplete);
    EXPECT_EQ(expected, "#000000 closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,0");
    EXPECT_EQ(Drawn("[" + numbers + "<00 01 22 03 0A>] ustroke", kComplete), expected);
    EXPECT_EQ(Drawn("[[0 0 72 72 0 0 72 0 72 72] <00 01 03 03 0A>] cvx ufill", kComplete), expected);
    EXPECT_EQ(Drawn("{{0 0 72 72 0 0 72 0 72 72} <00 01 03 03 0A>} ueofill", kComplete), expected);
    EXPECT_EQ(Drawn("{" + line + "} [9 0 0 9 0 0] ustroke", kComplete), expected);
    EXPECT_EQ(Drawn("{" + line + "} uappend stroke", kComplete), expected);
    EXPECT_EQ(Drawn("{ucache " + line + "} uappend true upath newpath ustroke", kComplete), expected);
    EXPECT_EQ(Drawn("/lineto {nosuch} def {" + line + "} ustroke", kComplete), expected);
    CheckStacks(
        {
            {"the operators' names", "0 9 moveto 9 9 lineto false upath",
             "{0.0 9.0 9.0 9.0 setbbox 0.0 9.0 moveto 9.0 9.0 lineto}"},
            {"upath without a path", "{true upath} stopped", "true true"},
            {"a foreign operator", "{[[1 2] <01 0C>] uappend} stopped $error /errorname get exch pop exch pop",
             "/typecheck"},
            {"too few numbers", "{[[1] <01>] uappend} stopped $error /errorname get exch pop exch pop", "/rangecheck"},
            {"no path", "{(a) uappend} stopped", "(a) true"},
            {"ustrokepath", "{0 0 72 0 setbbox 0 0 moveto 72 0 lineto} [4 0 0 4 0 0] ustrokepath pathbbox",
             "0.0 -2.0 72.0 2.0"},
            {"the graphics state stays", "9 9 moveto {0 0 1 1 setbbox 0 0 moveto 1 1 lineto} ustroke currentpoint",
             "9.0 9.0"},
        },
        kComplete);
}

TEST(CompletePathTest, Insideness) {
    CheckStacks(
        {
            {"points", "0 0 moveto 9 0 lineto 9 9 lineto 8 1 infill 1 8 infill", "true false"},
            {"by the even-odd rule",
             "0 0 moveto 9 0 lineto 9 9 lineto 0 9 lineto closepath 2 2 moveto 7 2 lineto 7 7 lineto 2 7 lineto "
             "closepath "
             "4 4 infill 4 4 ineofill 1 1 ineofill",
             "true false true"},
            {"of a user path", "4 4 {0 0 9 9 setbbox 0 0 moveto 9 0 lineto 9 9 lineto 0 9 lineto} inufill", "true"},
            {"a path as aperture",
             "0 0 moveto 9 0 lineto 9 9 lineto {0 7 2 9 setbbox 0 7 moveto 2 7 lineto 2 9 lineto} infill", "false"},
            {"in a stroke", "2 setlinewidth 0 0 moveto 72 0 lineto 36 .5 instroke 36 5 instroke", "true false"},
            {"of a user path's line", "36 3 {0 0 72 0 setbbox 0 0 moveto 72 0 lineto} [8 0 0 8 0 0] inustroke", "true"},
            {"the path stays", "9 9 moveto 4 4 infill currentpoint", "false 9.0 9.0"},
            {"operands come back", "{1 (a) infill} stopped", "1 (a) true"},
        },
        kComplete);
}

}  // namespace
