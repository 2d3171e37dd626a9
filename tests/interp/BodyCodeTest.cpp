// Procedures run by their elements, by their code from the first entry on, and by what they come to have on the way:
// all the same. Rows in which a step that is out of date, or a shortcut that isn't one, would show.
#include "support/Program.h"

namespace {

void CheckInEachWay(std::initializer_list<StackCase> cases) {
    for (const int entry : {0, 1, 2}) {
        SCOPED_TRACE(entry);
        RunSettings settings;
        settings.compileAtEntry = entry;
        CheckStacks(cases, settings);
    }
}

TEST(BodyCodeTest, NumbersInFrontOfOperators) {
    CheckInEachWay({
        {"arithmetic", "/p {3 add 2 sub 4 mul 5 div} def 1 p 1 p 1 p", "1.6 1.6 1.6"},
        {"whole", "/p {7 mod 3 mul 2 idiv} def 100 p -100 p", "3 -3"},
        {"departure: whole of reals", "/p {7 mod 3 mul 2 idiv} def 100.9 p", "3"},
        {"kinds", "/p {1 add} def 1 p 1.0 p /q {1.0 sub} def 1 q 1 q", "2 2.0 0.0 0.0"},
        {"departure: beyond 32 bits", "/p {2147483647 add} def 1 p 1 p 1 p", "-2147483648 -2147483648 -2147483648"},
        {"order", "/p {2 lt} def 1 p 3 p 2 p /q {2 ge} def 1 q 3 q 2 q /r {2 le} def 2 r /s {2 gt} def 2 s",
         "true false false false true true true false"},
        {"copies", "/p {1 index} def 5 6 p p p /q {2 copy} def q", "5 6 5 6 5 6 5"},
        {"no number below", "/p {1 add} def 1 p 1 p (a) p", "2 2 (a) 1", PSERR_TYPECHECK},
        {"strings compare with strings", "/p {2 lt} def 1 p 1 p (a) p", "true true (a) 2", PSERR_TYPECHECK},
        {"nothing below", "/p {1 add} def 1 p 1 p clear p", "1", PSERR_STACKUNDERFLOW},
        {"departure: zero divisor", "/p {dup 2 gt {0 mod} if} def 1 p 1 p 5 p", "1 1 5 0", PSERR_RANGE},
        {"departure: too deep an index", "/p {1 index} def 1 2 p p clear 1 p", "1", PSERR_RANGE},
        {"too many copies", "/p {2 copy} def 1 2 p p clear 9 p", "9", PSERR_RANGE},
        {"a number with attributes is pushed with them",
         "/p [1 cvx /xcheck load] cvx def p p /q [1 cvx /add load] cvx def 1 q 1 q", "true true 2 2"},
        {"a view that ends in between", "/p {5 1 add 2} def p p /p load 0 2 getinterval exec", "6 2 6 2 5 1"},
        {"a view that begins in between", "/p {5 1 add 2} def p p /p load 2 2 getinterval exec", "6 2 8 2"},
    });
}

TEST(BodyCodeTest, ProceduresInFrontOfOperators) {
    CheckInEachWay({
        {"if", "/p {{7} if} def true p false p true p", "7 7"},
        {"ifelse", "/p {{7} {8} ifelse} def true p false p true p", "7 8 7"},
        {"no condition", "/p {{7} if} def true p true p 3 p", "7 7 3 {7}", PSERR_TYPECHECK},
        {"no condition for two", "/p {{7} {8} ifelse} def true p true p 3 p", "7 7 3 {7} {8}", PSERR_TYPECHECK},
        {"nothing there", "/p {{7} if} def true p true p clear p", "{7}", PSERR_STACKUNDERFLOW},
        {"two in front of if", "/p {{7} {8} if} def true p true p", "true {7} {8}", PSERR_TYPECHECK},
        {"views", "/p {true {7} if} def p p /p load 0 2 getinterval exec", "7 7 true {7}"},
        {"recursion", "/f {dup 1 gt {dup 1 sub f mul} if} def 10 f", "3628800"},
    });
}

TEST(BodyCodeTest, OperatorsOfOtherNames) {
    CheckInEachWay({
        {"add is something else now", "/p {1 add} def 5 p 5 p /add {sub} def 5 p userdict /add undef 5 p", "6 6 4 6"},
        {"add is a value", "/p {1 add} def 5 p 5 p /add 9 def p", "6 6 1 9"},
        {"add is another operator", "/p {2 add} def 5 p 5 p /add /mul load def 5 p", "7 7 10"},
        {"a name becomes add", "/add2 {pop} def /p {1 add2} def 5 p 5 p /add2 /add load def 5 p 5 p", "5 5 6 6"},
        {"if is something else", "/p {{7} if} def true p true p /if {exch} def 1 p", "7 7 {7} 1"},
        {"bound", "/p {1 add} bind def 5 p 5 p /add {sub} def 5 p", "6 6 6"},
        {"bound later", "/p {1 add} def 5 p 5 p /p load bind pop /add {sub} def 5 p", "6 6 6"},
        {"undefined", "/one /add load def /p {1 one} def 5 p 5 p userdict /one undef 5 p", "6 6 5 1", PSERR_UNDEFINED},
        {"a literal array of an older level is copied when it is read, not before",
         "/a [1] def a save exch /p {0 9 put 5 a 0 get} def p 3 -1 roll pop", "5 9"},
        {"literal names, each time another object", "/p {/x} def p p cvx pop p xcheck p xcheck", "/x false false"},
        {"literal names that are defined", "/p {/x exch def x x} def 1 p 2 p 3 p", "1 1 2 2 3 3"},
        {"executable names", "/p [5 /add cvx 2 /mul cvx] cvx def 1 p 1 p /add {sub} def 1 p", "12 12 -8"},
    });
}

TEST(BodyCodeTest, BodiesChange) {
    CheckInEachWay({
        {"between runs", "/p {1 add} def 1 p 1 p /p load 0 5 put 1 p 1 p /p load 1 /sub load put 1 p", "2 2 6 6 -4"},
        {"again and again", "/p {1 add} def 1 1 9 {/p load 0 3 -1 roll put 0 p 0 p} for",
         "1 1 2 2 3 3 4 4 5 5 6 6 7 7 8 8 9 9"},
        {"a number behind what runs", "/p {/p load 7 n put 1 add 2 mul} def /n 3 def 1 p /n 4 def 1 p /n 5 def 1 p",
         "6 8 10"},
        {"an operator behind what runs",
         "/p {/p load 8 o 0 get put 10 add} def /o [/add load] def 1 p /o [/sub load] def 1 p /o [/mul load] def 1 p",
         "11 -9 10"},
        {"a procedure that runs", "/p {true {/p load 1 {2} put 1} if 3} def p p p", "1 3 2 3 2 3"},
        {"what stands behind such a procedure", "/p {true {/p load 3 9 put 1} if 3} def p p", "1 9 1 9"},
        {"by copy", "/p {5 1 add} def p p [7 2 /mul load] /p load copy pop p p", "6 6 14 14"},
        {"by putinterval", "/p {5 1 add} def p p /p load 1 [3] putinterval p", "6 6 8"},
        {"by astore", "/p {5 1 add} def p p 9 1 /sub load /p load astore pop p", "6 6 8"},
        {"by astore while it runs", "/p {20 21 /p load 9 2 getinterval astore pop 1 2} def p p", "20 21 20 21"},
        {"gone by a restore", "save {2 exch restore 3 add} exec", "2"},
    });
}

TEST(BodyCodeTest, FlagsBehindOperators) {
    CheckInEachWay({
        {"departure: behind a shortcut", "/p {1 add 2} def 0 p 0 p clear {exit 3} exec 5 p", "6"},
        {"departure: not behind a number", "/p {1 2 3 add 4} def p p clear {exit 3} exec p", "1 5"},
        {"departure: behind if", "/p {{9} if 2} def false p false p clear {exit 3} exec true p", "9"},
        {"departure: behind an if that does nothing", "/p {{9} if 2} def false p false p clear {exit 3} exec false p",
         ""},
        {"exit in a branch", "0 1 9 {dup 3 eq {exit} if} for", "0 1 2 3"},
        {"stop in a branch", "/p {{stop} {1} ifelse 2} def false p false p {true p 3} stopped", "1 2 1 2 true"},
    });
}

}  // namespace
