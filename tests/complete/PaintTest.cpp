// Painting in the complete dialect: closed areas, patterns and shadings as one colour, rectangles, forms.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

TEST(CompletePaintTest, FillCloses) {
    const std::string triangle = "#000000 closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,0";
    const std::string path = "0 0 moveto 72 0 lineto 72 72 lineto ";
    EXPECT_EQ(Drawn(path + "fill", kComplete), triangle);
    EXPECT_EQ(Drawn(path + "eofill", kComplete), triangle);
    EXPECT_EQ(Drawn(path + "closepath fill", kComplete), triangle);
    EXPECT_EQ(Drawn(path + path + "fill", kComplete), triangle + "\n" + triangle);
    EXPECT_EQ(Drawn(path + "0 0 moveto 72 0 lineto " + path + "9 9 moveto fill", kComplete),
              triangle + "\n#000000 open L 0,0 25.4,0\n" + triangle);
    EXPECT_EQ(Drawn(path + "stroke", kComplete), "#000000 open L 0,0 25.4,0 L 25.4,0 25.4,25.4");
    EXPECT_EQ(Drawn("0 0 moveto 0 72 72 72 72 0 curveto fill", kComplete),
              "#000000 closed B 0,0 0,25.4 25.4,25.4 25.4,0 L 25.4,0 0,0");
    RunSettings strokes = kComplete;
    strokes.fillOutline = false;
    EXPECT_EQ(Drawn(path + "fill 0 0 9 9 rectfill {" + path + "} ufill", strokes), "");
}

TEST(CompletePaintTest, Rectangles) {
    const std::string square = Drawn("0 0 72 72 rectstroke");
    EXPECT_EQ(Drawn("0 0 72 72 rectstroke", kComplete), square);
    EXPECT_EQ(Drawn("0 0 72 72 [9 0 0 9 0 0] rectstroke", kComplete), square);
    EXPECT_EQ(Drawn("[0 0 72 72] matrix rectstroke", kComplete), square);
    EXPECT_EQ(Drawn("<95200004 0000 0000 0048 0048> rectfill", kComplete), square);
    EXPECT_EQ(Drawn("<95A00400 0000 0000 4800 4800> matrix rectstroke", kComplete), square);
    EXPECT_EQ(Drawn("[0 0 72 72 0 0 72 72] rectfill", kComplete), square + "\n" + square);
    EXPECT_EQ(Drawn("[] rectfill", kComplete), "");
    CheckStacks(
        {
            {"the path stays", "9 9 moveto 0 0 1 1 rectfill currentpoint", "9.0 9.0"},
            {"a path that is clipped away goes",
             "newpath clip 9 9 moveto 5 0 lineto 7 7 lineto fill {currentpoint} stopped", "true"},
            {"five numbers", "{[1 2 3 4 5] rectfill} stopped $error /errorname get", "[1 2 3 4 5] true /rangecheck"},
            {"no number string", "{(abcd) rectstroke} stopped $error /errorname get", "(abcd) true /typecheck"},
            {"a bad name among numbers", "{1 2 /a 4 rectfill} stopped", "1 2 /a 4 true"},
        },
        kComplete);
}

constexpr int kRed = 0xff0000;
constexpr int kGreen = 0x00ff00;
constexpr int kBlue = 0x0000ff;

/// The colour of the only entity of a program, -1 without one.
int ColorOf(const std::string& program) {
    const RunResult result = RunText(program, kComplete);
    EXPECT_EQ(result.error, PSERR_NONE);
    EXPECT_EQ(result.stack, "");
    EXPECT_EQ(result.report.leftOut.nPatterns, 0);
    return result.entities.size() == 1 ? std::stoi(result.entities[0].substr(1, 6), nullptr, 16) : -1;
}

const std::string kSquare = " 0 0 72 72 rectfill";
/// A tiling pattern whose procedure does this.
std::string Pattern(const std::string& paint, int paintType = 1) {
    return " <</PatternType 1 /PaintType " + std::to_string(paintType) +
           " /TilingType 1 /BBox [0 0 8 8] /XStep 8 /YStep 8 /PaintProc {" + paint + "}>> matrix makepattern ";
}

TEST(CompletePaintTest, PatternsHaveAColour) {
    EXPECT_EQ(ColorOf(Pattern("pop 1 0 0 setrgbcolor 0 0 4 4 rectfill 0 0 1 setrgbcolor 0 0 4 4 rectfill") +
                      "setpattern" + kSquare),
              kRed);
    EXPECT_EQ(
        ColorOf(Pattern("pop 0 0 1 setrgbcolor 0 0 moveto 4 4 lineto stroke") + "setpattern 0 0 moveto 9 0 lineto "
                                                                                "9 9 lineto fill"),
        kBlue);
    // An uncoloured one over a space of any family.
    EXPECT_EQ(
        ColorOf("[/Separation /x /DeviceRGB {0 0}] setcolorspace 1 <</PatternType 1 /PaintType 2 /TilingType 1 /BBox "
                "[0 0 9 9] /XStep 9 /YStep 9 /PaintProc {pop 0 0 9 9 rectfill}>> matrix makepattern setpattern" +
                kSquare),
        kRed);
    EXPECT_EQ(ColorOf(Pattern("pop 0 0 1 setrgbcolor") + "setpattern" + kSquare), kBlue);
    EXPECT_EQ(
        ColorOf(Pattern("pop 0 0 1 setrgbcolor {0 0 4 4 rectfill} stopped pop 1 0 0 setrgbcolor 0 0 4 4 rectfill") +
                "setpattern" + kSquare),
        kBlue);
    EXPECT_EQ(
        ColorOf("/Pattern setcolorspace" + Pattern("pop 0 1 0 setrgbcolor 0 0 4 4 rectfill") + "setcolor" + kSquare),
        kGreen);
    // Uncoloured, in what the program says.
    EXPECT_EQ(ColorOf("[/Pattern /DeviceRGB] setcolorspace 0 1 0" + Pattern("pop 0 0 4 4 rectfill", 2) + "setcolor" +
                      kSquare),
              kGreen);
    EXPECT_EQ(
        ColorOf("[/Pattern /DeviceGray] setcolorspace 0" + Pattern("pop 0 0 4 4 rectfill", 2) + "setcolor" + kSquare),
        0);
    // A pattern in a pattern, one in itself, and one that fails.
    EXPECT_EQ(ColorOf("/in" + Pattern("pop 1 0 0 setrgbcolor 0 0 4 4 rectfill") + "def" +
                      Pattern("pop in setpattern 0 0 4 4 rectfill") + "setpattern" + kSquare),
              kRed);
    EXPECT_EQ(ColorOf("/self" + Pattern("pop self setpattern 0 0 4 4 rectfill") + "def self setpattern" + kSquare), 0);
    EXPECT_EQ(ColorOf(Pattern("nosuch") + "setpattern" + kSquare), 0);
    // The colour of the graphics state is none of it.
    EXPECT_EQ(ColorOf("gsave" + Pattern("pop 1 0 0 setrgbcolor 0 0 4 4 rectfill") +
                      "setpattern currentcolorspace 0 get /Pattern ne {nosuch} if grestore" + kSquare),
              0);
    CheckStacks(
        {
            {"a pattern is another dictionary", Pattern("pop").c_str(), "<<8>>"},
            {"makepattern wants more",
             "{<</PatternType 1>> matrix makepattern} stopped $error /errorname get 4 1 roll pop pop pop",
             "/undefined"},
            {"a type that there is none of",
             "{<</PatternType 3>> matrix makepattern} stopped $error /errorname get 4 1 roll 3 {pop} repeat",
             "/rangecheck"},
        },
        kComplete);
}

std::string Shading(const std::string& rest) { return " <</ColorSpace /DeviceRGB " + rest + ">> "; }
const std::string kRedToBlue = "/Function <</FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 0 1] /N 1>>";

TEST(CompletePaintTest, ShadingsHaveAColour) {
    const int middle = 0x7f007f;
    const std::string axial = "/ShadingType 2 /Coords [0 0 9 9] /BBox [0 0 72 72] ";
    EXPECT_EQ(ColorOf(Shading(axial + kRedToBlue) + "shfill"), middle);
    EXPECT_EQ(ColorOf(Shading(axial + "/Domain [0 0] " + kRedToBlue) + "shfill"), kRed);
    EXPECT_EQ(ColorOf("<</PatternType 2 /Shading" + Shading(axial + kRedToBlue) + ">> matrix makepattern setpattern" +
                      kSquare),
              middle);
    EXPECT_EQ(
        ColorOf(Shading(axial + "/Function <</FunctionType 3 /Domain [0 1] /Bounds [.5] /Encode [0 0 1 1] /Functions "
                                "[2 {<</FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 1 0] /N 1>>} repeat]>>") +
                "shfill"),
        kGreen);
    EXPECT_EQ(ColorOf(Shading(axial + "/Function <</FunctionType 0 /Domain [0 1] /Range [0 1 0 1 0 1] /Size [3] "
                                      "/BitsPerSample 8 /DataSource <FF0000 0000FF FF0000>>>") +
                      "shfill"),
              kBlue);
    EXPECT_EQ(ColorOf(Shading(axial + "/Function [0 1 2 {pop <</FunctionType 2 /Domain [0 1] /N 2>>} for]") + "shfill"),
              0x3f3f3f);
    EXPECT_EQ(
        ColorOf(
            Shading("/ShadingType 4 /BBox [0 0 9 9] /DataSource [0 0 0 1 0 0 0 9 0 0 0 1 0 0 9 0 0 1 0 9 9 1 0 0]") +
            "shfill"),
        middle);
    EXPECT_EQ(
        ColorOf(Shading("/ShadingType 5 /BBox [0 0 9 9] /VerticesPerRow 2 /BitsPerCoordinate 8 /BitsPerComponent 8 "
                        "/Decode [0 9 0 9 0 1 0 1 0 1] /DataSource <0000 00FF00 FFFF 00FF00>") +
                "shfill"),
        kGreen);
    // Without a box, all of the clip.
    EXPECT_EQ(
        Drawn("0 0 72 72 rectclip" + Shading("/ShadingType 2 /Coords [0 0 9 9] /Domain [0 0] " + kRedToBlue) + "shfill",
              kComplete),
        "#ff0000 closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,25.4 L 0,25.4 0,0");
    // Of triangles and lattices their outline: edges within the area don't count.
    const char* square = "#ff00ff closed L 0,0 25.4,0 L 25.4,0 25.4,25.4 L 25.4,25.4 0,25.4 L 0,25.4 0,0";
    const auto vertices = [](std::initializer_list<const char*> points) {
        std::string data;
        for (const char* point : points) data += std::string(point) + " 1 0 1 ";
        return "/DataSource [" + data + "]";
    };
    EXPECT_EQ(
        Drawn(Shading("/ShadingType 4 " + vertices({"0 0 0", "0 72 0", "0 0 72", "1 72 72"})) + "shfill", kComplete),
        square);
    EXPECT_EQ(
        Drawn(Shading("/ShadingType 4 " + vertices({"0 0 72", "0 0 0", "0 72 0", "2 72 72"})) + "shfill", kComplete),
        square);
    EXPECT_EQ(
        Drawn(Shading("/ShadingType 5 /VerticesPerRow 2 " + vertices({"0 0", "72 0", "0 72", "72 72"})) + "shfill",
              kComplete),
        square);
    EXPECT_EQ(Drawn(Shading("/ShadingType 4 " + vertices({"0 0 0", "0 72 0"})) + "shfill", kComplete).substr(0, 14),
              "#ff00ff closed");
    CheckStacks(
        {
            {"no colour space", "{<</ShadingType 2>> shfill} stopped $error /errorname get exch pop",
             "<<1>> /undefined"},
            {"no such type",
             "{<</ShadingType 8 /ColorSpace /DeviceGray>> shfill} stopped $error /errorname get exch pop",
             "<<2>> /rangecheck"},
        },
        kComplete);
}

TEST(CompletePaintTest, Forms) {
    const std::string form =
        "<</FormType 1 /BBox [0 0 36 36] /Matrix [2 0 0 2 0 0] /PaintProc {pop 0 0 moveto 36 0 lineto "
        "stroke clippath pathbbox}>> dup execform ";
    const RunResult result = RunText(form + "4 2 roll pop pop 3 -1 roll /Implementation known", kComplete);
    EXPECT_EQ(result.stack, "36.0 36.0 true");
    EXPECT_EQ(result.entities, (std::vector<std::string>{"#000000 open L 0,0 25.4,0"}));
}

}  // namespace
