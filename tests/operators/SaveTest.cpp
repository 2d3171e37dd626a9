// save and restore: what comes back, what stays, and that objects which outlive their storage harm nobody.
#include "support/Program.h"

namespace {

TEST(SaveTest, WhatComesBack) {
    CheckStacks({
        {"a value", "/a 1 def save /a 2 def restore a", "1"},
        {"level by level",
         "/a 0 def save /a 1 def save /a 2 def save /a 3 def restore a exch restore a 3 -1 roll restore a", "2 1 0"},
        {"several levels at once", "/a 0 def save /a 1 def save pop /a 2 def restore a", "0"},
        {"a new key is gone", "save /a 2 def restore userdict /a known", "false"},
        {"an undefined key", "/a 1 def save userdict /a undef restore a", "1"},
        {"an undefined key, defined above", "/a 1 def save /a 2 def userdict /a undef a exch restore a", "1 1"},
        {"literal arrays by name", "/a [1 2] def save a 0 9 put a 0 get exch restore a 0 get", "9 1"},
        {"keys that are no names",
         "/d 4 dict def d 1 /one put save d 1 /two put d 2 /new put restore d 1 get d 2 known", "/one false"},
        {"the graphics state", "1 setlinewidth save 2 setlinewidth restore currentlinewidth", "1.0"},
        {"the depth of the state stack", "1 setlinewidth save gsave gsave 2 setlinewidth restore currentlinewidth",
         "1.0"},
        {"grestoreall stops at the state of the save",
         "1 setlinewidth save 2 setlinewidth gsave gsave 3 setlinewidth grestoreall "
         "currentlinewidth grestore currentlinewidth",
         "-save- 1.0 1.0"},
        {"departure: and goes on stopping there",
         "1 setlinewidth gsave 2 setlinewidth save restore grestoreall "
         "currentlinewidth",
         "2.0"},
        {"departure: grestore pops past it",
         "1 setlinewidth save 2 setlinewidth grestore 3 setlinewidth restore currentlinewidth", "3.0"},
        {"what a state of an outer level gives of itself stays with it",
         "<< /A 1 >> setfont [1 2] 0 setdash gsave save grestore currentfont /A known currentdash pop length "
         "3 -1 roll restore currentfont /A known currentdash pop length",
         "true 2 true 2"},
        {"departure: an outer save after an inner one", "/a 1 def save /a 2 def save exch restore restore a", "1"},
        {"departure: the same save twice", "/a 1 def save dup restore /a 2 def restore a", "2"},
        {"a level can be used again", "4 {save} repeat restore save count", "-save- -save- -save- -save- 4"},
    });
    const RunResult nothing = RunText("gsave save restore");
    EXPECT_EQ(nothing.gstateDepth, 2);
    EXPECT_EQ(nothing.dictDepth, 3);
}

TEST(SaveTest, WhatStays) {
    CheckStacks({
        {"strings", "/s (abc) def save s 0 65 put restore s", "(Abc)"},
        {"arrays that are held", "[1 2] save 1 index 0 9 put restore", "[9 2]"},
        {"procedures", "/p {1 2} def save /p load 0 9 put restore p", "9 2"},
        {"global dictionaries", "true setglobal /g 2 dict def false setglobal save g /a 1 put restore g /a get", "1"},
        {"global arrays", "true setglobal save [1 2] exch restore", "[1 2]"},
        {"the global mode", "save true setglobal restore currentglobal", "true"},
        {"the stacks", "1 save 2 exch restore 3", "1 2 3"},
    });
}

TEST(SaveTest, Refusals) {
    CheckStacks({
        {"four levels", "save save save save count", "-save- -save- -save- -save- 4"},
        {"departure: five levels", "/a 1 def save save save save save", "-save- -save- -save- -save-",
         PSERR_VMOVERFLOW},
        {"no save object", "/a 1 def save /a 2 def 1 restore", "-save- 1", PSERR_TYPECHECK},
        {"nothing", "restore", "", PSERR_STACKUNDERFLOW},
    });
}

// Every place in which something newer than the save can stand when the restore comes.
TEST(SaveTest, StaleObjectsReadAsEmpty) {
    CheckStacks({
        {"departure: on the operand stack",
         "save [1 2] (abc) << /a 1 >> 4 -1 roll restore length 3 1 roll length 3 1 roll length", "0 0 0"},
        {"departure: writing to them", "save [1 2] (abc) 3 -1 roll restore dup 0 65 put length exch length", "0 0"},
        {"in an older array", "/a 1 array def a save exch 0 [1 2] put restore a 0 get length", "0"},
        {"departure: in a global dictionary",
         "true setglobal /g 2 dict def false setglobal save g /a [1 2] put restore g /a get length", "0"},
        {"as a dictionary key",
         "true setglobal /g 2 dict def false setglobal save g 1 dict 7 put restore g length g 1 dict known", "1 false"},
        {"departure: on the dictionary stack", "save 5 dict begin restore /x 1 def /x where currentdict length end",
         "false 0"},
        {"departure: as a view", "save [1 2 3] 1 2 getinterval exch restore length", "0"},
        {"departure: copied", "save [1 2 3] exch restore dup eq", "false"},
        {"departure: as the dash array", "save grestore [1 2] 3 setdash restore currentdash gsave currentdash",
         "[] 3.0 [] 3.0"},
        {"departure: as the font", "save grestore << /A 1 >> setfont restore currentfont length gsave grestore", "0"},
        {"departure: as the color space",
         "save grestore [/Pattern /DeviceRGB] setcolorspace restore currentcolorspace length gsave "
         "currentcolorspace 0 get 1 setgray currentcolorspace",
         "0 /Pattern [/DeviceGray]"},
        {"as a pattern color",
         "/Pattern setcolorspace save grestore << /PatternType 2 >> setcolor restore currentcolor gsave "
         "currentcolor count",
         "0"},
        {"departure: as a halftone",
         "save grestore << /A 1 >> sethalftone {1} settransfer 1 2 {3} setscreen restore currenthalftone "
         "length "
         "currenttransfer length gsave currenthalftone currenttransfer currentscreen",
         "0 0 <<0>> {} 1.0 2.0 {}"},
        {"as a state object",
         "5 setlinewidth save gstate exch restore dup setgstate currentlinewidth exch currentgstate pop", "5.0"},
        {"departure: as the current state",
         "save grestore gstate setgstate 5 setlinewidth restore currentlinewidth 6 setlinewidth gsave "
         "currentlinewidth",
         "5.0 6.0"},
        {"departure: as states below the top",
         "gsave gsave save grestore grestore grestore 5 setlinewidth gsave 6 setlinewidth gsave 7 "
         "setlinewidth restore currentlinewidth grestore currentlinewidth grestore currentlinewidth",
         "7.0 6.0 5.0"},
        {"departure: a newer save object", "save save exch restore restore", ""},
        {"departure: as a matrix", "save matrix exch restore setmatrix", "[]", PSERR_RANGE},
    });
}

TEST(SaveTest, StaleObjectsInUse) {
    CheckStacks({
        {"the procedure that restores", "save 5 { pop restore 7 } exec 8", "8"},
        {"one within it", "save 5 { {pop restore} exec 7 } exec 8", "8"},
        {"the string that restores", "save 5 (pop restore 7) cvx exec 8", "7 8"},
    });
}

}  // namespace
