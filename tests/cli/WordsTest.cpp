// The sentences about an import.
#include "cli/Words.h"

#include <gtest/gtest.h>

#include "import/EnglishResources.h"

namespace {

TEST(WordsTest, WhyAndWhereAFileFailed) {
    const Options options;
    Drawing drawing;
    EXPECT_EQ(ReasonOf(options, drawing), "");
    EXPECT_EQ(RemedyOf(options, drawing), "");
    drawing.end = ImportEnd::Failed;
    drawing.report.failure = {1, "typecheck", "add", 41, 1203};
    EXPECT_EQ(ReasonOf(options, drawing), "line 41: typecheck in add (operand of the wrong type)");
    EXPECT_EQ(RemedyOf(options, drawing), "");
    drawing.fileAccessDenied = true;
    EXPECT_NE(RemedyOf(options, drawing).find("--allow-file-access"), std::string::npos);
    drawing.report.failure = {99, "configurationerror", "", 1, 0};
    EXPECT_EQ(ReasonOf(options, drawing), "line 1: configurationerror");
    drawing.report.failure = {2, "undefined", std::string("a\x1b[31m\xe4") + std::string(90, 'x'), 1, 0};
    EXPECT_EQ(ReasonOf(options, drawing),
              "line 1: undefined in a\\033[31m\\344" + std::string(33, 'x') + "... (undefined name)");
}

TEST(WordsTest, MeaningsOfTheErrors) {
    const char* const meanings[] = {
        "not an EPS file",        "operand of the wrong type", "undefined name",       "syntax error",
        "file I/O error",         "too few operands",          "operand out of range", "no matching mark",
        "too many end operators", "too many save levels",      "no current point",     "unsupported operator"};
    for (int code = 0; code < 12; ++code) EXPECT_EQ(EnglishErrorText(code), meanings[code]);
    EXPECT_EQ(EnglishErrorText(-1), "");
    EXPECT_EQ(EnglishErrorText(12), "");
}

TEST(WordsTest, WhatALimitSays) {
    Options options;
    Drawing drawing;
    drawing.end = ImportEnd::TimedOut;
    options.import.timeout = 2.5;
    EXPECT_EQ(ReasonOf(options, drawing), "the time ran out (2.5 s)");
    EXPECT_NE(RemedyOf(options, drawing).find("--timeout"), std::string::npos);
    drawing.end = ImportEnd::OutOfMemory;
    EXPECT_EQ(RemedyOf(options, drawing), "");  // without a limit of ours there is no more to give
    options.import.memoryLimit = 1;
    EXPECT_NE(RemedyOf(options, drawing).find("--memory"), std::string::npos);
}

TEST(WordsTest, WhatAWholeFileLacksAllTheSame) {
    struct Case {
        std::int32_t tail;
        const char* token;
        const char* warning;
    };
    for (const Case& c :
         {Case{RT_TOKEN, "stroke",
               "warning: line 7: \"stroke\" did not run: the file ends without a line feed behind it"},
          {RT_STRING, "", "warning: line 7: the file ends inside the string that begins here"},
          {RT_PROCEDURE, "", "warning: line 7: the file ends inside the procedure that begins here, which did not run"},
          {RT_ENDCOMMENT, "",
           "warning: line 7: %%EOF stands before the end of the file; what follows it did not run"}}) {
        Drawing drawing;
        drawing.report.nTail = c.tail;
        drawing.report.strTail = c.token;
        drawing.report.nTailLine = 7;
        EXPECT_EQ(WarningsOf(drawing), std::vector<std::string>{c.warning});
    }
    Drawing drawing;
    EXPECT_TRUE(WarningsOf(drawing).empty());
    drawing.report.leftOut = {12, {"A", "B", "C", "D", "E", "F"}, 1, 0, 2, 3};
    EXPECT_EQ(WarningsOf(drawing),
              std::vector<std::string>{"not drawn: 12 texts (A, B, C, D, E, ...), 1 image, 2 pattern "
                                       "fills, 3 path points beyond the limit"});
}

TEST(WordsTest, WhatBecameOfFonts) {
    struct Case {
        const char* name;
        std::vector<tagFontUse> fonts;
        std::vector<std::string> warnings;
        const char* summary;  // of two texts
    };
    for (const Case& c :
         {Case{"the file's own", {{"ABCDEF+Sans", "ABCDEF+Sans", true, true, 9, 0}}, {}, "2 texts drawn in 1 font, "},
          {"of equal widths",
           {{"Helvetica", "NimbusSans-Regular", false, true, 9, 0},
            {"NimbusSans-Bold", "NimbusSans-Bold", false, true, 1, 0}},
           {},
           "2 texts drawn in 2 fonts (Helvetica with NimbusSans-Regular), "},
          {"of another form",
           {{"Univers", "DejaVuSans", false, false, 9, 0}},
           {"not the font asked for: Univers drawn with DejaVuSans"},
           "2 texts drawn in 1 font (Univers with DejaVuSans), "},
          {"none",
           {{"Helvetica", "", false, true, 0, 40}, {"Symbol", "", false, true, 0, 7}},
           {"47 characters left out: no font for Helvetica, Symbol (the package fonts-urw-base35 has them)"},
           "2 texts drawn in 0 fonts, "},
          {"none, and not a standard one",
           {{"PMW-Music", "", false, true, 0, 1}},
           {"1 character left out: no font for PMW-Music (--fonts DIR tells where to look)"},
           "2 texts drawn in 0 fonts, "},
          {"both",
           {{"PMW-Music", "", false, true, 0, 1},
            {"Courier", "", false, true, 0, 1},
            {"Times-Roman", "", false, true, 0, 0}},
           {"2 characters left out: no font for PMW-Music, Courier (the package fonts-urw-base35 has the standard "
            "ones)"},
           "2 texts drawn in 0 fonts, "},
          {"no glyphs",
           {{"Symbol", "StandardSymbolsPS", false, true, 3, 2}},
           {"2 characters left out: no glyph in Symbol"},
           "2 texts drawn in 1 font (Symbol with StandardSymbolsPS), "}}) {
        SCOPED_TRACE(c.name);
        Drawing drawing;
        drawing.report.leftOut.nTexts = 1;  // told by the fonts
        drawing.report.fonts = c.fonts;
        EXPECT_EQ(WarningsOf(drawing), c.warnings);
        EXPECT_EQ(TextsText(drawing.report), "");
        drawing.report.nTextsDrawn = 2;
        EXPECT_EQ(TextsText(drawing.report), c.summary);
    }
}

TEST(WordsTest, Amounts) {
    Survey survey;
    EXPECT_EQ(AmountText(survey, 0), "nothing");
    survey.lines = 1;
    survey.curves = 2;
    EXPECT_EQ(AmountText(survey, 1), "1 entity (1 segment, 2 curves)");
}

TEST(WordsTest, WhatACheckFinds) {
    CheckReport check;
    check.box.Add(Point{1, 2});
    check.box.Add(Point{11, 7});
    check.closed = 1;
    check.open = 12;
    EXPECT_EQ(CheckText(check, {}), "  size 10 x 5 mm, lower left corner at 1, 2\n  1 closed contour, 12 open ones");
    check.ends = 11;
    check.endPlaces.assign(11, Point{3, 4});
    check.doubles = 1;
    check.doubledLength = 2.5;
    check.shortSections = 1;
    check.white = 2;
    check.outsidePage = 1;
    Drawing drawing;
    drawing.report.leftOut.nImages = 1;
    const std::string text = CheckText(check, drawing);
    EXPECT_NE(
        text.find("\n  11 ends of open contours within 1 mm of another: 3, 4; 3, 4; 3, 4; 3, 4; 3, 4; 3, 4; 3, 4; "
                  "3, 4; 3, 4; 3, 4; ...\n  2.5 mm drawn twice\n  1 section shorter than 0.01 mm\n  2 entities in "
                  "white\n  1 entity wholly outside the page\n  not drawn: 1 image\n  may help: "),
        std::string::npos)
        << text;
    for (const char* advice : {"--dedupe", "--join"}) EXPECT_NE(text.find(advice), std::string::npos) << text;
}

TEST(WordsTest, WhatThePassesDid) {
    PassReport report;
    EXPECT_EQ(PassesText(report), "");
    report.skipped = 1;
    report.doubles.sections = 38;
    report.join = {.contours = 12, .pieces = 47, .closed = 1};
    report.circles = 16;
    EXPECT_EQ(PassesText(report),
              "1 entity skipped, 38 doubled sections removed, 12 contours joined from 47 pieces, 1 contour closed, "
              "16 circles, ");
}

}  // namespace
