// What a drawing lacks is counted: texts and their fonts, images, shadings, patterns, points beyond the limit.
#include "support/Program.h"

namespace {

TEST(LeftOutTest, TextsAndTheirFonts) {
    struct Case {
        const char* name;
        const char* program;
        int texts;
        std::vector<std::string> fonts;
    };
    for (const Case& c : {
             Case{"each font once",
                  "/B findfont setfont (a) show /A findfont setfont (b) show /B findfont setfont (c) show",
                  3,
                  {"B", "A"}},
             Case{"scaled",
                  "/Times findfont 12 scalefont [2 0 0 2 0 0] makefont setfont gsave (a) show grestore",
                  1,
                  {"Times"}},
             Case{"kept in a dictionary",
                  "/F1 /Times findfont def /Other findfont pop F1 setfont (a) show",
                  1,
                  {"Times"}},
             Case{"selected", "/Times 12 selectfont (a) show", 1, {"Times"}},
             Case{"by its own name", "/X << /FontType 1 /FontName /Own >> definefont setfont (a) show", 1, {"Own"}},
             Case{"without a name", "<< /FontType 1 >> setfont (a) show", 1, {}},
             Case{"every relative that draws",
                  "/T findfont setfont 0 0 (a) ashow 0 0 1 (a) widthshow 0 0 1 0 0 (a) awidthshow (a) [1] xshow (a) "
                  "[1] yshow "
                  "(a) [1 1] xyshow /a glyphshow {} (a) kshow",
                  8,
                  {"T"}},
             Case{"none that doesn't",
                  "/T findfont setfont () show {} (a) cshow (a) stringwidth (a) true charpath",
                  0,
                  {}},
             Case{"type 3 is drawn",
                  "<< /FontType 3 /FontMatrix [1 0 0 1 0 0] /Encoding 256 array /BuildChar {pop pop} >> setfont (a) "
                  "show",
                  0,
                  {}},
         }) {
        SCOPED_TRACE(c.name);
        const RunResult result = RunText(c.program);
        EXPECT_EQ(result.error, PSERR_NONE);
        EXPECT_EQ(result.report.leftOut.nTexts, c.texts);
        EXPECT_EQ(result.report.leftOut.strFonts, c.fonts);
    }
}

TEST(LeftOutTest, EverythingElse) {
    const auto leftOut = [](std::string_view program) { return RunText(program).report.leftOut; };
    EXPECT_EQ(leftOut("8 1 1 [1 0 0 1 0 0] (a) image 8 1 true [1 0 0 1 0 0] {(a)} imagemask "
                      "1 1 8 [1 0 0 1 0 0] (abc) false 3 colorimage")
                  .nImages,
              3);
    EXPECT_EQ(leftOut("<<>> shfill").nShadings, 1);
    constexpr const char* pattern = "<< /PatternType 1 /PaintType 1 >> setpattern ";
    const std::string triangle = "0 0 moveto 9 9 lineto 9 0 lineto ";
    EXPECT_EQ(leftOut(pattern + triangle + "fill " + triangle + "eofill 0 0 1 1 rectfill fill").nPatterns, 3);
    EXPECT_EQ(leftOut(pattern + triangle + "stroke 0 setgray " + triangle + "fill").nPatterns, 0);
    const std::string longPath = "0 0 moveto 1 1 10002 {dup lineto} for 1 1 2 2 3 3 curveto ";
    EXPECT_EQ(leftOut(longPath + "gsave stroke grestore").nPoints, 6);
    EXPECT_EQ(leftOut(longPath + "newpath " + triangle + "stroke").nPoints, 0) << "nothing of it was painted";
    EXPECT_TRUE(leftOut(triangle + "stroke 0 0 1 1 rectfill").IsEmpty());
}

}  // namespace
