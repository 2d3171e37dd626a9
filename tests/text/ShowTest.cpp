// Showing text. The fonts here count in thousandths, and their glyphs draw lines; 72 points are 25.4 mm.
#include "support/Program.h"

namespace {

/// A Type 3 font of size 7.2 whose every glyph is a line of the full width: 7.2 points are 2.54 mm.
constexpr const char* kFont =
    "/font << /FontType 3 /FontMatrix [.001 0 0 .001 0 0] /Encoding [256 {/.notdef} repeat] "
    "/BuildChar {pop pop 1000 0 setcharwidth 0 0 moveto 1000 0 lineto stroke} >> def "
    "/setit {font exch scalefont setfont} def 7.2 setit ";

std::string DrawnIn(const std::string& program) { return Drawn(kFont + program); }

TEST(ShowTest, Glyphs) {
    EXPECT_EQ(DrawnIn("72 72 moveto (a) show"), "#000000 open L 25.4,25.4 27.94,25.4");
    EXPECT_EQ(DrawnIn("72 72 moveto (ab) show (c) show"),
              "#000000 open L 25.4,25.4 27.94,25.4\n#000000 open L 27.94,25.4 30.48,25.4\n#000000 open L "
              "30.48,25.4 33.02,25.4");
    EXPECT_EQ(DrawnIn("(a) show"), "#000000 open L 0,0 2.54,0") << "no current point is the origin";
    EXPECT_EQ(DrawnIn("72 0 translate (a) show"), "#000000 open L 25.4,0 27.94,0") << "of user space";
    EXPECT_EQ(DrawnIn("2 3 scale 36 24 moveto (a) show currentpoint lineto 0 24 lineto stroke"),
              "#000000 open L 25.4,25.4 30.48,25.4\n#000000 open L 30.48,25.4 0,25.4")
        << "the CTM comes back";
    EXPECT_EQ(DrawnIn("font [0 7.2 -7.2 0 0 0] makefont setfont 72 0 moveto (ab) show"),
              "#000000 open L 25.4,0 25.4,2.54\n#000000 open L 25.4,0 25.4,2.54")
        << "departure: the advance knows only the axes";
    EXPECT_EQ(DrawnIn("0 0 moveto 72 0 lineto (a) show"), "#000000 open L 0,0 25.4,0\n#000000 open L 25.4,0 27.94,0")
        << "the path in place belongs to the glyph";
    EXPECT_EQ(DrawnIn("/Helvetica 12 selectfont 72 0 moveto (abc) show 0 0 lineto stroke"), "#000000 open L 25.4,0 0,0")
        << "other fonts draw nothing and move nothing";
}

TEST(ShowTest, WhatGlyphProceduresSee) {
    const auto shown = [](const std::string& entries, const std::string& text) {
        return RunText("<< /FontType 3 /FontMatrix matrix /Encoding [/A /B /C] " + entries + " >> setfont " + text +
                       " show")
            .stack;
    };
    EXPECT_EQ(shown("/BuildChar {}", "(a\\001)"), "<<4>> 97 <<4>> 1");
    EXPECT_EQ(shown("/BuildChar {nosuch} /BuildGlyph {}", "(\\000\\002)"), "<<5>> /A <<5>> /C") << "BuildGlyph wins";
    EXPECT_EQ(shown("/BuildChar {}", "(\\377)"), "<<4>> 255") << "codes are not signed";
    EXPECT_EQ(shown("/BuildChar {nosuch}", "()"), "");
    EXPECT_EQ(shown("/x 1 /BuildChar {pop /x get}", "(a)"), "1");
    CheckStacks({
        {"departure: each glyph looks its procedure up",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop /BuildChar {/new 3 1 roll} put} >> "
         "setfont (ab) show",
         "/new <<4>> 98"},
        {"departure: the width stays until the next",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {exch pop 97 eq {36 72 setcharwidth} if} "
         ">> setfont "
         "0 0 moveto (ab) show currentpoint",
         "72.0 144.0"},
        {"no width at all",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop pop} >> setfont 72 0 moveto (ab) "
         "show currentpoint",
         "72.0 0.0"},
        {"departure: what it sets stays set",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop pop 5 setlinewidth 9 9 scale} >> "
         "setfont (a) show "
         "currentlinewidth matrix currentmatrix 0 get",
         "5.0 1.0"},
        {"departure: every glyph is of the first font",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {exch pop 1 dict setfont} >> setfont "
         "(ab) show",
         "97 98"},
        {"departure: the CTM goes to the state of the moment",
         "2 2 scale gsave 3 3 scale << /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop pop "
         "grestore} >> setfont (a) show "
         "matrix currentmatrix 0 get",
         "6.0"},
        {"departure: a restore below the font",
         "/s save def << /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop pop s restore} >> "
         "setfont (ab) show",
         ""},
    });
}

TEST(ShowTest, FontsThatCannotBeShown) {
    CheckStacks({
        {"departure: the font of the start", "(a) show", "", PSERR_SYNTAX},
        {"departure: no type", "1 dict setfont () show", "", PSERR_SYNTAX},
        {"departure: another type", "<< /FontType 1 >> setfont (a) show", ""},
        {"departure: neither procedure", "<< /FontType 3 /FontMatrix matrix /Encoding [] >> setfont (a) show", "",
         PSERR_SYNTAX},
        {"not needed for an empty string", "<< /FontType 3 >> setfont () show", ""},
        {"departure: no encoding", "<< /FontType 3 /FontMatrix matrix /BuildChar {} >> setfont (a) show", "",
         PSERR_SYNTAX},
        {"departure: no matrix", "<< /FontType 3 /Encoding [] /BuildChar {} >> setfont (a) show", "", PSERR_SYNTAX},
        {"departure: no procedure", "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar 7 >> setfont (a) show",
         "", PSERR_SYNTAX},
        {"departure: a code beyond the encoding",
         "<< /FontType 3 /FontMatrix matrix /Encoding [/a] /BuildGlyph {} >> setfont (a) show", "", PSERR_SYNTAX},
        {"departure: a failing procedure",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {nosuch} >> setfont (a) show", "<<4>> 97",
         PSERR_UNDEFINED},
        {"no string", "/a show", "/a", PSERR_TYPECHECK},
        {"nothing", "show", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(ShowTest, Relatives) {
    CheckStacks({
        {"departure: ashow", "7 1 2 (a) ashow", "7"},
        {"departure: widthshow", "7 1 2 3 (a) widthshow", "7"},
        {"departure: awidthshow", "7 1 2 3 4 5 (a) awidthshow", "7"},
        {"departure: numbers", "7 (a) [1] xshow (a) (b) xyshow (a) [1] yshow", "7"},
        {"departure: procedures", "7 {nosuch} (a) cshow {nosuch} (a) kshow", "7"},
        {"departure: glyphshow", "7 /a glyphshow currentfont /FontID get glyphshow", "7"},
        {"departure: stringwidth", "7 (abc) stringwidth", "7 0.0 0.0"},
        {"no string", "1 2 /a ashow", "1 2 /a", PSERR_TYPECHECK},
        {"too few", "1 (a) ashow", "1 (a)", PSERR_STACKUNDERFLOW},
        {"no numbers", "(a) 7 xshow", "(a) 7", PSERR_TYPECHECK},
        {"no string below", "7 [1] yshow", "7 [1]", PSERR_TYPECHECK},
        {"a literal array", "[1] (a) kshow", "[1] (a)", PSERR_TYPECHECK},
        {"departure: no name", "7 glyphshow", "7", PSERR_TYPECHECK},
        {"no text", "7 stringwidth", "7", PSERR_TYPECHECK},
    });
    EXPECT_EQ(DrawnIn("1 2 (a) ashow /a glyphshow"), "") << "only show draws";
}

TEST(ShowTest, Metrics) {
    CheckStacks({
        {"all operands go", "7 1 2 3 4 5 6 setcachedevice 1 2 setcharwidth 1 2 3 4 5 6 7 8 9 10 setcachedevice2", "7"},
        {"departure: the width of setcachedevice",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop pop 72 36 0 0 9 9 setcachedevice} "
         ">> setfont (a) show currentpoint",
         "72.0 36.0"},
        {"departure: that of writing mode 0",
         "<< /FontType 3 /FontMatrix matrix /Encoding [] /BuildChar {pop pop 72 36 0 0 9 9 1 2 3 4 "
         "setcachedevice2} >> setfont (a) show "
         "currentpoint",
         "72.0 36.0"},
        {"departure: nine operands", "1 2 3 4 5 6 7 8 9 setcachedevice2", "1 2 3 4 5 6 7 8 9", PSERR_RANGE},
        {"one of another type", "1 2 3 4 5 /a 7 8 9 10 setcachedevice2", "1 2 3 4 5 /a 7 8 9 10", PSERR_TYPECHECK},
        {"five operands", "1 2 3 4 5 setcachedevice", "1 2 3 4 5", PSERR_STACKUNDERFLOW},
        {"no number", "1 (a) setcharwidth", "1 (a)", PSERR_TYPECHECK},
    });
}

}  // namespace
