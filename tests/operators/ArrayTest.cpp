// Arrays and packed arrays, and the operators that reach into strings and dictionaries in the same way.
#include "support/Program.h"

namespace {

TEST(ArrayTest, Making) {
    CheckStacks({
        {"brackets", "1 [ 2 (a) [ ] ]", "1 [2 (a) []]"},
        {"procedures build anew", "{[1]} dup exec exch exec eq", "false"},
        {"no bracket", "1 2 ]", "1 2", PSERR_UNMATCHEDMARK},
        {"array", "3 array 0 array", "[null null null] []"},
        {"departure: string is filled with the character 0", "3 string 0 string", "(000) ()"},
        {"departure: a real count", "2.9 string", "(00)"},
        {"negative", "-1 array", "-1", PSERR_RANGE},
        {"more than is sensible", "2147483647 array", "2147483647", PSERR_RANGE},
        {"a string of that length", "2147483647 string", "2147483647", PSERR_RANGE},
        {"no number", "/a string", "/a", PSERR_TYPECHECK},
        {"empty stack", "array", "", PSERR_STACKUNDERFLOW},
        {"length", "[1 2] length (abc) length /abcd length 9 dict length {a b} length 1 1 packedarray length",
         "2 3 4 0 2 1"},
        {"length of a view", "[1 2 3 4] 1 2 getinterval length", "2"},
        {"length of a number", "1 length", "1", PSERR_TYPECHECK},
    });
}

TEST(ArrayTest, Get) {
    CheckStacks({
        {"array", "[1 2 3] 1 get", "2"},
        {"packed", "7 8 2 packedarray 0 get", "7"},
        {"string", "(abc) 1 get", "98"},
        {"departure: beyond a string", "(abc) 5 get", "-1"},
        {"dictionary", "<< /a 1 >> /a get << /a 2 >> (a) get", "1 2"},
        {"keys of other types", "2 dict dup 1 /one put dup true /yes put dup 1.0 get exch true get", "/one /yes"},
        {"departure: a raw token", "{add} 0 get type", "/nametype"},
        {"departure: past a view, inside the body", "[1 2 3 4] 1 2 getinterval 2 get", "4"},
        {"a view of a view", "[0 1 2 3 4] 3 2 getinterval 0 2 getinterval 1 get", "4"},
        {"departure: absent: both gone", "<< /a 1 >> /b get", "", PSERR_UNDEFINED},
        {"beyond an array", "[1 2] 2 get", "[1 2] 2", PSERR_RANGE},
        {"negative", "(abc) -1 get", "(abc) -1", PSERR_RANGE},
        {"no number", "[1] /a get", "[1] /a", PSERR_TYPECHECK},
        {"nothing to index", "1 2 get", "1 2", PSERR_TYPECHECK},
        {"one operand", "0 get", "0", PSERR_STACKUNDERFLOW},
    });
    EXPECT_EQ(RunText("1 dict 127 string get").error, PSERR_UNDEFINED);
    EXPECT_EQ(RunText("1 dict 128 string get").error, PSERR_RANGE) << "longer than a key";
}

TEST(ArrayTest, Put) {
    CheckStacks({
        {"array", "[1 2 3] dup 1 /x put", "[1 /x 3]"},
        {"string", "(abc) dup 1 120 put", "(axc)"},
        {"eight bits count", "(abc) dup 0 321 put", "(Abc)"},
        {"departure: beyond the end", "[1] dup 1 2 put (abc) dup 5 120 put", "[1] (abc)"},
        {"through a view", "[1 2 3] dup 1 2 getinterval 0 9 put", "[1 9 3]"},
        {"departure: into itself", "[1] dup dup 0 exch put 0 get 0 get type", "/arraytype"},
        {"into a procedure", "{1 2} dup 0 7 put exec", "7 2"},
        {"dictionary", "1 dict dup /a 1 put dup (a) 2 put dup length exch /a get", "1 2"},
        {"departure: packed", "1 1 packedarray 0 2 put", "[1] 0 2", PSERR_TYPECHECK},
        {"negative", "[1] -1 2 put", "[1] -1 2", PSERR_RANGE},
        {"no byte", "(abc) 0 /a put", "(abc) 0 /a", PSERR_TYPECHECK},
        {"no index", "[1] /a 2 put", "[1] /a 2", PSERR_TYPECHECK},
        {"two operands", "0 1 put", "0 1", PSERR_STACKUNDERFLOW},
    });
}

TEST(ArrayTest, Intervals) {
    CheckStacks({
        {"array", "[1 2 3 4] 1 2 getinterval", "[2 3]"},
        {"string", "(abcd) 1 2 getinterval", "(bc)"},
        {"copies of parts", "(abcd) 1 2 getinterval dup [1 2 3 4] 1 2 getinterval dup", "(bc) (bc) [2 3] [2 3]"},
        {"an executable one stays so", "{1 2 3} 1 2 getinterval exec", "2 3"},
        {"departure: of a packed array", "1 2 2 packedarray 1 1 getinterval type", "/arraytype"},
        {"at the end", "[1 2] 2 0 getinterval (ab) 2 0 getinterval", "[] ()"},
        {"departure: beyond an array nothing comes", "[1 2 3] 1 5 getinterval", ""},
        {"departure: also with huge numbers", "[1 2 3] 2147483647 2147483647 getinterval", ""},
        {"departure: beyond a string it is cut", "(abc) 1 9 getinterval (abc) 9 9 getinterval", "(bc) ()"},
        {"negative", "(abc) 1 -1 getinterval", "(abc) 1 -1", PSERR_RANGE},
        {"of a dictionary", "1 dict 0 0 getinterval", "<<0>> 0 0", PSERR_TYPECHECK},
        {"two operands", "0 0 getinterval", "0 0", PSERR_STACKUNDERFLOW},
        {"put", "[1 2 3] dup 1 [8 9] putinterval", "[1 8 9]"},
        {"put a packed one", "[1 2] dup 0 8 9 2 packedarray putinterval", "[8 9]"},
        {"put bytes", "(abcd) dup 1 (xy) putinterval", "(axyd)"},
        {"put nothing", "(ab) dup 2 () putinterval", "(ab)"},
        {"put within one body", "[1 2 3 4] dup 1 1 index 0 3 getinterval putinterval", "[1 1 2 3]"},
        {"put bytes within one body", "(abcd) dup 1 1 index 0 3 getinterval putinterval", "(aabc)"},
        {"departure: put beyond the end, all gone", "[1 2 3] 2 [4 5] putinterval", "", PSERR_SYNTAX},
        {"departure: put at a huge index", "(abc) 2147483647 (a) putinterval", "", PSERR_SYNTAX},
        {"put at a negative index", "(abc) -1 (a) putinterval", "(abc) -1 (a)", PSERR_RANGE},
        {"departure: put into a packed array", "1 1 packedarray 0 [2] putinterval", "[1] 0 [2]", PSERR_TYPECHECK},
        {"put a string into an array", "[1] 0 (a) putinterval", "[1] 0 (a)", PSERR_TYPECHECK},
        {"put an array into a string", "(a) 0 [1] putinterval", "(a) 0 [1]", PSERR_TYPECHECK},
    });
}

TEST(ArrayTest, StoreAndLoad) {
    CheckStacks({
        {"astore", "0 1 2 3 3 array astore", "0 [1 2 3]"},
        {"astore into a view", "[1 2 3] dup 7 8 3 -1 roll 1 2 getinterval astore pop", "[1 7 8]"},
        {"departure: astore: too few, the array is gone", "1 2 3 array astore", "1 2", PSERR_RANGE},
        {"departure: astore refuses a packed array", "5 1 1 packedarray astore", "5 [1]", PSERR_TYPECHECK},
        {"aload", "[1 (a)] aload", "1 (a) [1 (a)]"},
        {"aload of a procedure", "{1 add} aload pop", "1 add"},
        {"departure: aload keeps a packed array packed", "1 2 2 packedarray aload type", "1 2 /packedarraytype"},
        {"aload of a string", "(ab) aload", "(ab)", PSERR_TYPECHECK},
        {"aload: empty stack", "aload", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(ArrayTest, ForallOverArraysAndStrings) {
    CheckStacks({
        {"array", "[1 2 3] {2 mul} forall", "2 4 6"},
        {"string", "(ab) {1 add} forall", "98 99"},
        {"a view", "[1 2 3 4] 1 2 getinterval {} forall", "2 3"},
        {"packed, by a packed procedure", "true setpacking 1 2 2 packedarray {neg} forall", "-1 -2"},
        {"empty", "[] {1} forall () {1} forall 0 dict {1} forall", ""},
        {"exit leaves this one only", "[1 2] {pop [3 4] {exit} forall} forall", "3 3"},
        {"departure: stop as well", "[1 2] {stop} forall 5", "1 5"},
        {"a failing procedure", "[1 2] {nosuch} forall", "1", PSERR_UNDEFINED},
        {"changes behind the walk are seen", "/a [1 2 3] def a {a 2 9 put} forall", "1 2 9"},
        {"departure: the array is taken away", "save [1 2 3] exch 1 index {pop dup restore} forall count",
         "[] -save- 2"},
        {"the string is taken away", "/s save def (abc) {s restore} forall", "97"},
        {"no procedure", "[1] [2] forall", "[1] [2]", PSERR_TYPECHECK},
        {"nothing to walk", "1 {} forall", "1 {}", PSERR_TYPECHECK},
        {"one operand", "{} forall", "{}", PSERR_STACKUNDERFLOW},
    });
}

TEST(ArrayTest, ForallOverDictionaries) {
    CheckStacks({
        {"a literal name and the value", "<< /a 1 >> {} forall", "/a 1"},
        {"names by bucket, then other keys as they came",
         "4 dict begin 2 (two) def /c 3 def true (yes) def /e 5 def currentdict end {} forall",
         "/e 5 /c 3 2 (two) true (yes)"},
        {"what goes before its turn is not visited",
         "/d << /a 1 /b 2 /c 3 >> def 0 d {pop d exch undef 1 add d {pop d exch "
         "undef} forall} forall",
         "1"},
        {"what comes meanwhile is not visited", "/d << /a 1 >> def d {pop pop d /b 2 put d 3 3 put 0} forall d length",
         "0 3"},
        {"other keys may go, too", "/d 3 dict def d 1 1 put d 2 2 put d {pop pop d 1 undef d 2 undef 0} forall", "0"},
        {"the dictionary is taken away", "save 3 dict dup /a 1 put dup /b 2 put exch /s exch def {s restore} forall",
         "/a 1"},
        {"departure: keys that equal nothing are visited, too",
         "/d 3 dict def d 1 0 div 7 put d -1 sqrt 8 put save [1] exch restore d exch 9 put d {exch pop} forall",
         "7 8 9"},
        {"other keys that go and come meanwhile",
         "/d 3 dict def d 1 1 put d 2 2 put d 3 3 put d {pop d 2 undef d 2 5 put} forall", "1 3"},
        {"exit", "<< /a 1 /b 2 >> {exit} forall count", "/b 2 2"},
    });
}

TEST(ArrayTest, PackedArrays) {
    CheckStacks({
        {"packedarray", "0 /a /b 2 packedarray dup xcheck exch wcheck", "0 false true"},
        {"departure: its type", "/a /b 2 packedarray type", "/packedarraytype"},
        {"departure: too few: the count is gone", "1 2 3 packedarray", "1 2", PSERR_RANGE},
        {"negative", "-1 packedarray", "-1", PSERR_RANGE},
        {"no number", "(a) packedarray", "(a)", PSERR_TYPECHECK},
        {"packing", "currentpacking true setpacking currentpacking", "false true"},
        {"departure: procedures are packed", "true setpacking {1} type false setpacking {1} type",
         "/packedarraytype /arraytype"},
        {"control operators take them", "true setpacking true {1} if {2} exec", "1 2"},
        {"no boolean", "1 setpacking", "1", PSERR_TYPECHECK},
    });
}

}  // namespace
