// The show family in the complete dialect, over fonts that the programs define: what is drawn, where the point ends,
// and how each operator fails.
#include "complete/CompleteDialect.h"
#include "complete/FontPrograms.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

/// An em is an inch, 25.4 mm.
const std::string kStart = kBoxes + "/Boxes 72 selectfont 0 0 moveto ";
const std::string kStart3 = kDrawn + "/Drawn 72 selectfont 0 0 moveto ";

std::string Shown(const std::string& program) { return Drawn(kStart + program, kComplete); }

/// What the program leaves on the stack.
std::string Left(const std::string& program) {
    const RunResult result = RunText(program, kComplete);
    EXPECT_EQ(result.error, PSERR_NONE) << program;
    return result.stack;
}

constexpr const char* kBoxAt0 = "#000000 closed L 0,0 12.7,0 L 12.7,0 12.7,17.78 L 12.7,17.78 0,17.78 L 0,17.78 0,0";

TEST(CompleteShowTest, GlyphsAreFilledOneByOne) {
    EXPECT_EQ(Shown("(A) show"), kBoxAt0);
    EXPECT_EQ(Shown("(AA) show"),
              std::string(kBoxAt0) +
                  "\n#000000 closed L 12.7,0 25.4,0 L 25.4,0 25.4,17.78 L 25.4,17.78 12.7,17.78 L 12.7,17.78 12.7,0");
    EXPECT_EQ(Shown("1 0 0 setrgbcolor /A glyphshow"), "#ff0000" + std::string(kBoxAt0).substr(7));
    EXPECT_EQ(Shown("( ) show () show"), "");
    EXPECT_EQ(Shown("(A) false charpath stroke"), kBoxAt0);
    // The current path is neither drawn nor lost.
    EXPECT_EQ(Shown("72 0 lineto 0 0 moveto (A) show 72 72 lineto stroke"),
              std::string(kBoxAt0) + "\n#000000 open L 0,0 25.4,0\n#000000 open L 12.7,0 25.4,25.4");
    RunSettings strokes = kComplete;
    strokes.fillOutline = false;
    EXPECT_EQ(Drawn(kStart + "(A) show", strokes), "");
}

TEST(CompleteShowTest, PatternsAndMatrices) {
    EXPECT_EQ(Shown("<< /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 8 8] /XStep 8 /YStep 8 /PaintProc"
                    " {pop 0 0 1 setrgbcolor 0 0 4 4 rectfill} >> matrix makepattern setpattern (A) show"),
              "#0000ff" + std::string(kBoxAt0).substr(7));
    // A slanted font, and text in a turned user space.
    EXPECT_EQ(Shown("/Boxes findfont [72 0 36 72 0 0] makefont setfont (A) show"),
              "#000000 closed L 0,0 12.7,0 L 12.7,0 21.59,17.78 L 21.59,17.78 8.89,17.78 L 8.89,17.78 0,0");
    EXPECT_EQ(Shown("[0 1 -1 0 0 0] concat (A) show"),
              "#000000 closed L 0,0 0,12.7 L 0,12.7 -17.78,12.7 L -17.78,12.7 -17.78,0 L -17.78,0 0,0");
    // Under a singular matrix nothing goes wrong.
    EXPECT_EQ(RunText(kStart + "gsave 0 0 scale (AB) show grestore (A) stringwidth pop", kComplete).stack, "36.0");
}

TEST(CompleteShowTest, TextAsAClip) {
    const std::string clip = "gsave 72 0 moveto (AB) true charpath clip newpath ";
    EXPECT_EQ(Left(kStart + clip + "clippath pathbbox grestore"), "72.0 0.0 144.0 50.4");
    EXPECT_EQ(Left(kStart + clip +
                   "/Boxes 10 selectfont 72 0 moveto (B) false charpath clip clippath pathbbox"
                   " 4 {round 4 1 roll} repeat"),
              "72.0 0.0 77.0 1.0");
    for (const auto& [drawn, clips] :
         {std::pair("72 0 moveto 108 36 lineto", 0), std::pair("72 0 moveto 72 51 lineto", 1),
          std::pair("108 0 moveto 144 7 lineto", 0), std::pair("108 0 moveto 144 8 lineto", 1),
          std::pair("0 0 moveto 9 9 lineto", 1)}) {
        EXPECT_EQ(RunText(kStart + clip + drawn + " stroke grestore", kComplete).report.leftOut.nClips, clips) << drawn;
    }
    // Text that is cut, and text within.
    EXPECT_EQ(RunText(kStart + clip + "108 0 moveto (A) show", kComplete).report.leftOut.nClips, 1);
    EXPECT_EQ(RunText(kStart + clip + "72 0 moveto (A) show", kComplete).report.leftOut.nClips, 0);
    EXPECT_EQ(Shown(clip + "72 0 moveto (A) show"),
              "#000000 closed L 25.4,0 38.1,0 L 38.1,0 38.1,17.78 L 38.1,17.78 25.4,17.78 L 25.4,17.78 25.4,0");
}

TEST(CompleteShowTest, StrokedFonts) {
    // A contour that the font leaves open is closed in a fill only, whichever of the two fonts is shown first.
    const std::string fonts = kTypeOneHead + "/A <8B F888 0D 8B 16 F888 06 F950 07 0E> def" + kTypeOneEnd +
                              "/Boxes findfont dup length dict copy dup /PaintType 2 put /Lines exch definefont pop"
                              " 0 0 moveto ";
    const std::string filled = "#000000 closed L 0,0 12.7,0 L 12.7,0 12.7,17.78 L 12.7,17.78 0,0";
    const std::string stroked = "#000000 open L 0,0 12.7,0 L 12.7,0 12.7,17.78";
    const std::string fill = "/Boxes 72 selectfont (A) show 0 0 moveto ";
    const std::string stroke = "/Lines 72 selectfont (A) show 0 0 moveto ";
    EXPECT_EQ(Drawn(fonts + fill + stroke + fill, kComplete), filled + "\n" + stroked + "\n" + filled);
    EXPECT_EQ(Drawn(fonts + stroke + fill + stroke, kComplete), stroked + "\n" + filled + "\n" + stroked);
    RunSettings strokes = kComplete;
    strokes.fillOutline = false;
    EXPECT_EQ(Drawn(fonts + fill + stroke, strokes), stroked);
}

TEST(CompleteShowTest, ThePointAfterEachOperator) {
    const std::string at = " currentpoint exch round exch round";
    for (const auto& [program, end] : std::vector<std::pair<std::string, std::string>>{
             {"(AB) show", "79.0 0.0"},
             {"1 2 (AB) ashow", "81.0 4.0"},
             {"5 6 65 (AAB) widthshow", "125.0 12.0"},
             {"5 6 65 1 2 (AAB) awidthshow", "128.0 18.0"},
             {"(AB) [10 20] xshow", "30.0 0.0"},
             {"(AB) [10 20] yshow", "0.0 30.0"},
             {"(AB) [1 2 3 4] xyshow", "4.0 6.0"},
             {"(AB) <95200002 000A 0014> xshow", "30.0 0.0"},
             {"/A glyphshow", "36.0 0.0"},
             {"{pop pop 10 0 rmoveto} (AAB) kshow", "135.0 0.0"},
             {"(A) false charpath", "36.0 0.0"},
             {"{pop pop pop} (AB) cshow", "0.0 0.0"},
             {"() show", "0.0 0.0"},
         }) {
        EXPECT_EQ(Left("/below " + kStart + program + at), "/below " + end) << program;
    }
    EXPECT_EQ(Left(kStart + "{} (AB) kshow"), "65 66");
    EXPECT_EQ(Left(kStart + "{} (AB) cshow"), "65 36.0 0.0 66 43.2 0.0");
    EXPECT_EQ(Left(kBoxes + "/Boxes 72 selectfont (AB) stringwidth"), "79.2 0.0");
    EXPECT_EQ(Left(kBoxes + "/Boxes 72 selectfont 2 2 scale (AB) stringwidth"), "79.2 0.0");
    // kshow may change the font for what follows.
    EXPECT_EQ(Left(kStart + "{pop pop /Boxes 144 selectfont} (AA) kshow" + at), "108.0 0.0");
}

TEST(CompleteShowTest, Metrics) {
    const auto width = [](const std::string& entries, const std::string& text = "(A)") {
        return Left(kBoxes + "/Boxes findfont dup length 4 add dict copy dup begin " + entries +
                    " end /Other exch definefont 1000 scalefont setfont " + text + " stringwidth");
    };
    EXPECT_EQ(width("/Metrics << /A 300 >> def"), "300.0 0.0");
    EXPECT_EQ(width("/Metrics << /A [50 300] >> def"), "300.0 0.0");
    EXPECT_EQ(width("/Metrics << /A [50 60 300 20] >> def"), "300.0 20.0");
    EXPECT_EQ(width("/Metrics << /B 300 >> def"), "500.0 0.0");
    EXPECT_EQ(width("/WMode 1 def /Metrics2 << /A [0 -900 250 800] >> def"), "0.0 -900.0");
    EXPECT_EQ(width("/WMode 1 def"), "500.0 0.0");
    EXPECT_EQ(width("/CDevProc {pop 10 -2 roll pop pop 7 9 10 2 roll} def"), "7.0 9.0");
    // A side bearing and the position vector of vertical writing move the glyph.
    EXPECT_EQ(Left(kBoxes + "/Boxes findfont dup length 4 add dict copy dup begin /Metrics << /A [50 60 300 0] >> def "
                            "end /Other exch definefont 1000 scalefont setfont 0 0 moveto (A) false charpath pathbbox"),
              "50.0 60.0 550.0 760.0");
    EXPECT_EQ(Left(kBoxes + "/Boxes findfont dup length 4 add dict copy dup begin /WMode 1 def"
                            " /Metrics2 << /A [0 -900 250 800] >> def "
                            "end /Other exch definefont 1000 scalefont setfont 0 0 moveto (A) false charpath pathbbox"),
              "-250.0 -800.0 250.0 -100.0");
}

TEST(CompleteShowTest, TypeThree) {
    EXPECT_EQ(Drawn(kStart3 + "(d) show", kComplete),
              "#000000 closed L 0,0 2.54,0 L 2.54,0 2.54,2.54 L 2.54,2.54 0,2.54 L 0,2.54 0,0");
    EXPECT_EQ(Drawn(kStart3 + "/d glyphshow", kComplete), Drawn(kStart3 + "(d) show", kComplete));
    EXPECT_EQ(Drawn(kStart3 + "(d) stringwidth", kComplete), "");
    EXPECT_EQ(Drawn(kStart3 + "(d) false charpath stroke", kComplete), Drawn(kStart3 + "(d) show", kComplete));
    EXPECT_EQ(Left(kStart3 + "(dd) stringwidth"), "14.4 0.0");
    EXPECT_EQ(Left(kStart3 + "(dd) show currentpoint"), "14.4 0.0");
    EXPECT_EQ(Left(kStart3 + "/Drawn findfont [0 72 72 0 0 0] makefont setfont (dd) show currentpoint"), "0.0 14.4");
    // Each at its place, in a turned user space as well.
    EXPECT_EQ(Drawn(kDrawn + "/Drawn 72 selectfont 36 72 moveto (dd) show", kComplete),
              "#000000 closed L 12.7,25.4 15.24,25.4 L 15.24,25.4 15.24,27.94 L 15.24,27.94 12.7,27.94 L 12.7,27.94 "
              "12.7,25.4\n#000000 closed L 15.24,25.4 17.78,25.4 L 17.78,25.4 17.78,27.94 L 17.78,27.94 15.24,27.94 L "
              "15.24,27.94 15.24,25.4");
    EXPECT_EQ(Drawn(kDrawn + "/Drawn 72 selectfont [0 1 -1 0 0 0] concat 72 -36 moveto (d) show", kComplete),
              "#000000 closed L 12.7,25.4 12.7,27.94 L 12.7,27.94 10.16,27.94 L 10.16,27.94 10.16,25.4 L 10.16,25.4 "
              "12.7,25.4");
    // What the procedure sets is gone behind it, and its origin is the current point.
    const std::string noisy =
        "/Noisy << /FontType 3 /FontMatrix [1 0 0 1 0 0] /Encoding StandardEncoding /BuildGlyph"
        " {pop pop 5 0 setcharwidth currentpoint cvi exch cvi exch 9 setlinewidth 1 0 0 setrgbcolor gsave gsave} >> "
        "definefont"
        " setfont 3 4 moveto ";
    EXPECT_EQ(Left(noisy + "(a) show currentlinewidth currentgray currentpoint"), "0 0 1.0 0.0 8.0 4.0");
    EXPECT_EQ(RunText(noisy + "(a) show clear", kComplete).gstateDepth, 1);
    EXPECT_EQ(Left("/Two << /FontType 3 /WMode 1 /FontMatrix [1 0 0 1 0 0] /Encoding StandardEncoding /BuildGlyph"
                   " {pop pop 5 0 0 0 0 0 0 -7 2 3 setcachedevice2 0 0 1 1 rectfill} >> definefont setfont"
                   " 0 0 moveto (a) show currentpoint"),
              "0.0 -7.0");
    // A glyph that shows another one.
    EXPECT_EQ(Drawn(kBoxes + "/Outer << /FontType 3 /FontMatrix [1 0 0 1 0 0] /Encoding StandardEncoding /BuildGlyph"
                             " {pop pop 1 0 setcharwidth 0 0 moveto /Boxes 1 selectfont (A) show} >> definefont 72"
                             " scalefont setfont 0 0 moveto (x) show",
                    kComplete),
              kBoxAt0);
}

TEST(CompleteShowTest, Errors) {
    const std::string boxes = kBoxes + "/Boxes 72 selectfont ";
    const std::string name = " stopped $error /errorname get";
    for (const auto& [program, stack] : std::vector<std::pair<std::string, std::string>>{
             {"{(A) show}", "(A) true /nocurrentpoint"},
             {"{/A glyphshow}", "/A true /nocurrentpoint"},
             {"{(A) true charpath}", "(A) true true /nocurrentpoint"},
             {"0 0 moveto {(AB) [1] xshow}", "(AB) [1] true /rangecheck"},
             {"0 0 moveto {(A) [/x] xyshow}", "(A) [/x] true /typecheck"},
             {"0 0 moveto {5 show}", "5 true /typecheck"},
             {"0 0 moveto {1 (A) ashow}", "1 (A) true /stackunderflow"},
             {"0 0 moveto {1 /x (A) ashow}", "1 /x (A) true /typecheck"},
             {"0 0 moveto {7 glyphshow}", "7 true /typecheck"},
             {"0 0 moveto {{} [] cshow}", "{} [] true /typecheck"},
             {"<<>> setfont {(A) stringwidth}", "(A) true /invalidfont"},
             {"<< /FontType 42 /FontMatrix matrix >> setfont 0 0 moveto {(A) show}", "(A) true /invalidfont"},
             {"{/X << /FontType 1 >> definefont}", "/X -dict- true /invalidfont"},
             {"{[] 5 scalefont}", "[] 5 true /typecheck"},
             {"{<<>> 5 scalefont}", "-dict- 5 true /invalidfont"},
             {"{/Boxes findfont [1 2] makefont}", "-dict- [1 2] true /rangecheck"},
         }) {
        std::string left = Left(boxes + program + name);
        for (std::size_t at = 0; (at = left.find("<<", at)) != std::string::npos;) {
            left.replace(at, left.find(">>", at) + 2 - at, "-dict-");
        }
        EXPECT_EQ(left, stack) << program;
    }
    // What the procedure of a glyph meets is its own, and what was drawn before stays.
    const RunResult result = RunText(kStart3 +
                                         "(d) show /Drawn findfont dup length dict copy dup /BuildChar {pop pop /x 1"
                                         " add} put setfont {(e) show} stopped $error /command get",
                                     kComplete);
    EXPECT_EQ(result.entities.size(), 1U);
    EXPECT_EQ(result.stack, "/x 1 true --add--");
    // There is no font before the first setfont.
    EXPECT_EQ(Left("0 0 moveto {(A) show} stopped $error /errorname get"), "(A) true /invalidfont");
}

TEST(CompleteShowTest, Report) {
    RunResult result = RunAsFile("%!PS-Adobe-3.0 EPSF-3.0\n" + kStart + "(A A\\001C) show (A) show", kComplete);
    ASSERT_EQ(result.report.fonts.size(), 1U);
    EXPECT_EQ(result.report.fonts[0].strName, "Boxes");
    EXPECT_TRUE(result.report.fonts[0].bEmbedded);
    EXPECT_EQ(result.report.fonts[0].nGlyphs, 4);
    EXPECT_EQ(result.report.fonts[0].nMissing, 1);
    EXPECT_EQ(result.report.nTextsDrawn, 2);
    EXPECT_EQ(result.report.leftOut.nTexts, 0);
    result = RunAsFile("%!PS-Adobe-3.0 EPSF-3.0\n/No-Such-Music 9 selectfont 0 0 moveto (abc) show (d) stringwidth",
                       kComplete);
    ASSERT_EQ(result.report.fonts.size(), 1U);
    EXPECT_EQ(result.report.fonts[0].strUsed, "");
    EXPECT_FALSE(result.report.fonts[0].bEmbedded);
    EXPECT_EQ(result.report.fonts[0].nMissing, 3);
    EXPECT_EQ(result.report.nTextsDrawn, 0);
    EXPECT_EQ(result.report.leftOut.nTexts, 1);
    EXPECT_EQ(result.report.leftOut.strFonts, std::vector<std::string>{"No-Such-Music"});
}

}  // namespace
