// The bookkeeping of font dictionaries.
#include "support/Program.h"

namespace {

TEST(FontTest, DefineAndFind) {
    CheckStacks({
        {"departure: an unknown font", "/NoSuchFont findfont dup /FontType get exch /FontName get", "1 /Helvetica"},
        {"departure: is known from then on",
         "/NoSuchFont findfont pop FontDirectory /NoSuchFont known SharedFontDirectory /NoSuchFont known", "true true"},
        {"departure: and shares the default font's body", "/A findfont /B findfont eq", "true"},
        {"departure: an empty dictionary will do", "/F 1 dict definefont /F findfont eq", "true"},
        {"departure: by string and name", "(F) 1 dict definefont pop /F findfont length", "0"},
        {"departure: no copy is made", "/F 1 dict dup 3 1 roll definefont pop /x 1 put /F findfont /x known", "true"},
        {"departure: two keys, one font",
         "/d 2 dict def /F d definefont pop /G d definefont /x 1 put /F findfont /x known", "true"},
        {"departure: a local font is not shared", "/F 1 dict definefont pop SharedFontDirectory /F known", "false"},
        {"departure: a global one is in both",
         "true setglobal /d 1 dict def false setglobal /F d definefont pop SharedFontDirectory /F known "
         "FontDirectory /F known",
         "true true"},
        {"departure: a font goes with its save", "save /F << /x 1 >> definefont pop restore /F findfont /x known",
         "false"},
        {"departure: undefined",
         "/F << /x 1 >> definefont pop /F undefinefont /F findfont /x known FontDirectory /F known", "false true"},
        {"undefined without being there", "/NoSuch undefinefont", ""},
        {"no font", "/F 1 definefont", "/F 1", PSERR_TYPECHECK},
        {"departure: no key", "1 1 dict definefont", "1 <<0>>", PSERR_TYPECHECK},
        {"half", "1 dict definefont", "<<0>>", PSERR_STACKUNDERFLOW},
        {"departure: the key is gone", "7 findfont", "", PSERR_TYPECHECK},
        {"nothing to find", "findfont", "", PSERR_STACKUNDERFLOW},
        {"departure: rootfont", "rootfont", "", PSERR_UNSUPPORTED},
    });
    const std::string longKey(128, 'x');
    EXPECT_EQ(RunText("(" + longKey + ") 1 dict definefont").error, PSERR_RANGE);
    EXPECT_EQ(RunText("(" + longKey + ") findfont").error, PSERR_RANGE);
    EXPECT_EQ(RunText("(" + longKey + ") 12 selectfont").error, PSERR_RANGE);
}

TEST(FontTest, Compose) {
    CheckStacks({
        {"departure: the dictionary is the font", "/F 1 dict dup 3 1 roll [] composefont eq", "true"},
        {"departure: and is found", "/F << /x 1 >> [] composefont pop /F findfont /x known", "true"},
        {"departure: no such map", "7 /F /NoSuchMap [] composefont", "7", PSERR_UNDEFINED},
        {"no array", "/F 1 dict 7 composefont", "/F <<0>> 7", PSERR_TYPECHECK},
        {"no map", "/F 7 [] composefont", "/F 7 []", PSERR_TYPECHECK},
        {"no key", "7 1 dict [] composefont", "7 <<0>> []", PSERR_TYPECHECK},
    });
}

TEST(FontTest, Scale) {
    CheckStacks({
        {"departure: in single precision",
         "<< /FontMatrix [16777217 0 0 1 0 0] >> 1 scalefont /FontMatrix get 0 get 16777216 sub", "0.0"},
        {"the operand stays as it was",
         "/d << /FontMatrix [1 2 3 4 5 6] >> def d 2 scalefont /FontMatrix get d /FontMatrix get",
         "[2.0 4.0 6.0 8.0 10.0 12.0] [1 2 3 4 5 6]"},
        {"what it was made from and by",
         "<< /FontMatrix matrix /x 7 >> 2 scalefont dup /OrigFont get /x get exch /ScaleMatrix get",
         "7 [2.0 0.0 0.0 2.0 0.0 0.0]"},
        {"twice",
         "<< /FontMatrix matrix >> 2 scalefont 3 scalefont dup /FontMatrix get 0 get exch /OrigFont get "
         "/OrigFont known",
         "6.0 true"},
        {"departure: a matrix on the left", "<< /FontMatrix [.5 0 0 .25 0 0] >> [1 0 0 1 6 8] makefont /FontMatrix get",
         "[0.5 0.0 0.0 0.25 3.0 2.0]"},
        {"departure: the matrix itself is kept",
         "<< /FontMatrix matrix >> [1 0 0 1 5 5] dup 3 1 roll makefont /ScaleMatrix get eq", "true"},
        {"departure: arrays are the copy's own",
         "/d << /FontMatrix matrix /Encoding [/a] >> def d 2 scalefont /Encoding get 0 /b put d /Encoding "
         "get",
         "[/a]"},
        {"the default font's stays", "/X findfont 12 scalefont pop /X findfont /FontMatrix get 0 get", "0.001"},
        {"departure: no font matrix", "1 dict 2 scalefont", "<<0>> 2", PSERR_TYPECHECK},
        {"departure: a short one", "<< /FontMatrix [1 2] >> 2 scalefont", "<<1>> 2", PSERR_RANGE},
        {"departure: not of numbers", "<< /FontMatrix [1 2 3 4 5 (a)] >> matrix makefont",
         "<<1>> [1.0 0.0 0.0 1.0 0.0 0.0]", PSERR_TYPECHECK},
        {"a short operand", "<< /FontMatrix matrix >> [1] makefont", "<<1>> [1]", PSERR_RANGE},
        {"no scale", "<< /FontMatrix matrix >> (a) scalefont", "<<1>> (a)", PSERR_TYPECHECK},
        {"no font", "7 2 scalefont", "7 2", PSERR_TYPECHECK},
        {"nothing", "2 scalefont", "2", PSERR_STACKUNDERFLOW},
    });
}

TEST(FontTest, Select) {
    CheckStacks({
        {"setfont and currentfont", "/d << /x 1 >> def d setfont currentfont d eq", "true"},
        {"at the start", "currentfont dup /FontType get exch /FontMatrix get", "3 [1 0 1 0 1 0]"},
        {"goes with the state", "<< /x 1 >> setfont gsave 1 dict setfont grestore currentfont /x known", "true"},
        {"departure: selectfont by a scale",
         "/F << /FontMatrix matrix >> definefont pop /F 5 selectfont currentfont /FontMatrix get",
         "[5.0 0.0 0.0 5.0 0.0 0.0]"},
        {"departure: by a matrix",
         "/F << /FontMatrix matrix >> definefont pop /F [2 0 0 3 4 5] selectfont currentfont /FontMatrix get",
         "[2.0 0.0 0.0 3.0 4.0 5.0]"},
        {"departure: an unknown one is not entered",
         "/NoSuch 12 selectfont currentfont /FontName get FontDirectory /NoSuch known", "/Helvetica false"},
        {"no scale", "/F (a) selectfont", "/F (a)", PSERR_TYPECHECK},
        {"a short matrix", "/F [1] selectfont", "/F [1]", PSERR_RANGE},
        {"departure: no key", "1 1 selectfont", "1 1", PSERR_TYPECHECK},
        {"no font", "7 setfont", "7", PSERR_TYPECHECK},
        {"nothing", "setfont", "", PSERR_STACKUNDERFLOW},
    });
}

}  // namespace
