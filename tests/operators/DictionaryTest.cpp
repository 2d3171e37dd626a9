// Dictionary operators: keys, the dictionary stack, and what bind replaces.
#include "support/Program.h"

namespace {

TEST(DictionaryOperatorsTest, Keys) {
    CheckStacks({
        {"names and strings are one", "/a 1 def (a) load (b) 2 def /b load", "1 2"},
        {"a string counts up to its zero byte", "/s 3 string def s 0 97 put s 1 0 put s 2 98 put /a 7 def s load", "7"},
        {"numbers by value", "1 (x) def 1.0 load", "(x)"},
        {"any object", "true 1 def null 2 def true load null load", "1 2"},
    });
    const std::string longest = "(" + std::string(127, 'k') + ")";
    const std::string tooLong = "(" + std::string(128, 'k') + ")";
    EXPECT_EQ(RunText(longest + " 5 def " + longest + " load").stack, "5");
    for (const char* program :
         {"load", "where", "dup def", "dup store", "currentdict exch known", "currentdict exch undef"}) {
        EXPECT_EQ(RunText(tooLong + " " + program).error, PSERR_RANGE) << program;
    }
    EXPECT_EQ(RunText("1 " + tooLong + " load").stack, "1 " + tooLong);
}

TEST(DictionaryOperatorsTest, MakingAndFilling) {
    CheckStacks({
        {"departure: maxlength stays", "0 dict 0 1 999 {1 index exch 5 put} for dup maxlength exch length", "0 1000"},
        {"a huge capacity is only a number", "2147483647 dict maxlength", "2147483647"},
        {"negative", "-1 dict", "-1", PSERR_RANGE},
        {"no number", "(1) dict", "(1)", PSERR_TYPECHECK},
        {"dict on nothing", "dict", "", PSERR_STACKUNDERFLOW},
        {"maxlength of another type", "[] maxlength", "[]", PSERR_TYPECHECK},
        {"def takes raw tokens and procedures as they are", "/p {add 1} def /p load xcheck /p load 0 get", "true add"},
        {"def on one operand", "/a def", "/a", PSERR_STACKUNDERFLOW},
        {"dictionary literal", "<< /a 1 (b) 2 >> dup length exch /b get", "2 2"},
        {"as operators", "{<< /a 1 >>} exec /a get", "1"},
        {"departure: the first of a key given twice", "<< /a 1 /a 2 >> /a get", "1"},
        {"departure: odd: the lowest goes, the mark stays", "<< /x /a 1 >> /a known", "mark true"},
        {"departure: a key that is no text", "<< 1 2 >>", "mark", PSERR_UNMATCHEDMARK},
        {"no mark", "1 2 >>", "1 2", PSERR_UNMATCHEDMARK},
        {"no mark at all", ">>", "", PSERR_UNMATCHEDMARK},
    });
}

TEST(DictionaryOperatorsTest, LookingUp) {
    CheckStacks({
        {"load from the top", "/a 1 def 5 dict begin /a 2 def /a load end /a load", "2 1"},
        {"load pushes procedures", "/p {1} def /p load", "{1}"},
        {"departure: load: undefined, key gone", "1 /nothing load", "1", PSERR_UNDEFINED},
        {"known", "<< /a 1 >> dup /a known exch /b known", "true false"},
        {"known by element key", "5 dict dup 2.5 1 put dup 2.5 known exch 2 known", "true false"},
        {"known without a dictionary", "1 /a known", "1 /a", PSERR_TYPECHECK},
        {"known on one operand", "/a known", "/a", PSERR_STACKUNDERFLOW},
        {"where: the dictionary", "/a 1 def 5 dict begin /a where pop /b 3 put end b", "3"},
        {"where: none", "/nothing where", "false"},
        {"where: systemdict", "/add where exch systemdict eq", "true true"},
        {"undef", "/a 1 def userdict /a undef /a where", "false"},
        {"undef of nothing is no error", "userdict /nothing undef userdict 5 undef", ""},
        {"undef without a dictionary", "1 /a undef", "1 /a", PSERR_TYPECHECK},
    });
}

TEST(DictionaryOperatorsTest, Store) {
    CheckStacks({
        {"where the key is", "/a 1 def 5 dict begin /a 2 store currentdict /a known end a", "false 2"},
        {"an element key, too", "7 1 def 5 dict begin 7 2 store end 7 load", "2"},
        {"else on top", "5 dict begin /a 2 store currentdict /a known end", "true"},
        {"departure: never in systemdict", "/add 1 store systemdict /add get type userdict /add known",
         "/operatortype true"},
        {"one operand", "/a store", "/a", PSERR_STACKUNDERFLOW},
    });
}

TEST(DictionaryOperatorsTest, TheStack) {
    CheckStacks({
        {"begin and end", "countdictstack 5 dict begin countdictstack end countdictstack", "3 4 3"},
        {"begin of no dictionary", "1 begin", "1", PSERR_TYPECHECK},
        {"departure: the last three stay", "end", "", PSERR_DICTSTACKUNDERFLOW},
        {"cleardictstack",
         "cleardictstack 5 dict begin 5 dict begin cleardictstack countdictstack currentdict userdict eq", "3 true"},
        {"dictstack, bottom first", "5 array dictstack dup length exch dup 0 get systemdict eq exch 2 get userdict eq",
         "3 true true"},
        {"dictstack fills the array given", "/a 4 array def a dictstack pop a 0 get systemdict eq a 3 get",
         "true null"},
        {"dictstack: too short", "2 array dictstack", "[null null]", PSERR_RANGE},
        {"departure: dictstack: a packed array", "1 2 3 4 4 packedarray dictstack", "[1 2 3 4]", PSERR_TYPECHECK},
        {"departure: internaldict", "1183615869 internaldict /superexec known 1183615869.5 internaldict type",
         "true /dicttype"},
        {"departure: internaldict: wrong", "1 internaldict", "1", PSERR_TYPECHECK},
        {"departure: superexec is there and refused", "1183615869 internaldict begin superexec", "", PSERR_UNSUPPORTED},
    });
}

TEST(DictionaryOperatorsTest, Bind) {
    CheckStacks({
        {"operators, not numbers and unknown names", "{add 3.5 nothing /sub} bind", "{--add-- 3.5 nothing /sub}"},
        {"nested procedures, not literal arrays", "{{add} 1} dup 1 [{add} 0 get] put bind", "{{--add--} [add]}"},
        {"a name above systemdict", "/add {} def {add sub} bind", "{add --sub--}"},
        {"an operator above systemdict", "/add /sub load def {add} bind", "{add}"},
        {"departure: a procedure of systemdict", "{findfont} bind", "{findfont}"},
        {"the text of the operator that was found", "systemdict /plus /add load put {plus} bind", "{--add--}"},
        {"departure: name objects stay", "[/add cvx] cvx bind", "{add}"},
        {"attributes don't protect", "{add} readonly bind", "{--add--}"},
        {"views bind their part", "{add sub mul} dup 1 1 getinterval bind pop", "{add --sub-- mul}"},
        {"views of one body in one procedure",
         "/b {add sub mul div} def [/b load 0 1 getinterval /b load 1 2 getinterval] cvx bind pop /b load",
         "{--add-- --sub-- --mul-- div}"},
        {"a procedure that contains itself", "{add 0} dup dup 1 exch put bind 0 get", "--add--"},
        {"departure: no body", "save {add} exch restore bind", "{}"},
        {"no procedure", "[1] bind", "[1]", PSERR_TYPECHECK},
        {"bound operators survive a redefinition", "/p {1 2 add} bind def /add {pop} def p", "3"},
    });
    // Far deeper and wider than a walk by recursion, or one that visits shared parts again, could go.
    EXPECT_EQ(RunText("{add} 1 1 100000 {pop 1 array dup 0 4 -1 roll put cvx} for bind pop").error, PSERR_NONE);
    EXPECT_EQ(RunText("{add} 1 1 200 {pop dup 2 array astore cvx} for bind pop").error, PSERR_NONE);
}

}  // namespace
