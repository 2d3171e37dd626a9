// Numbers: the kinds of results, the rules at the ends of the ranges, and the constants of the angles.
#include "support/Program.h"

namespace {

TEST(ArithmeticTest, SumsAndProducts) {
    CheckStacks({
        {"integers stay integers", "3 4 add 3 4 sub 3 4 mul", "7 -1 12"},
        {"one real makes a real", "3 4.0 add 3.0 4 sub 3 4.0 mul", "7.0 -1.0 12.0"},
        {"departure: too large an integer", "2147483647 1 add", "-2147483648"},
        {"a real may be larger", "2147483647 1.0 add 2147483648.0 eq", "true"},
        {"departure: a product beyond 53 bits", "2147483647 2147483647 mul", "-2147483648"},
        {"the lower operand is the minuend", "1 10 sub", "-9"},
        {"the other operand is not touched", "/a 5 def a 1 add a", "6 5"},
        {"the upper operand is looked at first", "(a) /b add", "(a) /b", PSERR_TYPECHECK},
        {"departure: a raw token is no number", "1 {2} 0 get add", "1 2", PSERR_TYPECHECK},
        {"one operand", "1 add", "1", PSERR_STACKUNDERFLOW},
    });
}

TEST(ArithmeticTest, Division) {
    CheckStacks({
        {"div is real", "7 2 div 6 2 div", "3.5 3.0"},
        {"departure: no zero divisor", "1 0 div -1 0 div", "inf -inf"},
        {"departure: not-a-numbers travel on", "0 0 div dup eq", "false"},
        {"idiv truncates", "7 2 idiv -7 2 idiv", "3 -3"},
        {"departure: idiv of reals", "7.9 2.1 idiv", "3"},
        {"mod has the sign of the dividend", "-7 2 mod 7 -2 mod", "-1 1"},
        {"departure: mod takes reals", "7.9 2.9 mod", "1"},
        {"the one quotient without a result", "-2147483648 -1 idiv -2147483648 -1 mod", "-2147483648 0"},
        {"departure: idiv by zero", "1 0 idiv", "1 0", PSERR_RANGE},
        {"departure: mod by what truncates to zero", "1 0.5 mod", "1 0.5", PSERR_RANGE},
        {"idiv of a string", "(a) 1 idiv", "(a) 1", PSERR_TYPECHECK},
    });
}

TEST(ArithmeticTest, SignsAndWholeNumbers) {
    CheckStacks({
        {"abs", "-5 abs 5 abs -2.5 abs", "5 5 2.5"},
        {"neg", "5 neg -2.5 neg 0 neg", "-5 2.5 0"},
        {"the smallest integer has no opposite", "-2147483648 abs -2147483648 neg", "-2147483648 -2147483648"},
        {"ceiling", "2.1 ceiling -2.9 ceiling 4 ceiling", "3.0 -2.0 4"},
        {"floor", "2.9 floor -2.1 floor 4 floor", "2.0 -3.0 4"},
        {"truncate", "2.9 truncate -2.9 truncate 4 truncate", "2.0 -2.0 4"},
        {"truncate beyond 32 bits", "1e15 0.5 add truncate 1e15 eq", "true"},
        {"neg of a name", "/a neg", "/a", PSERR_TYPECHECK},
        {"floor: empty stack", "floor", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(ArithmeticTest, Round) {
    CheckStacks({
        {"an integer stays", "4 round", "4"},
        {"to the nearest", "2.4 round 2.6 round -2.4 round -2.6 round -0.3 round", "2.0 3.0 -2.0 -3.0 0.0"},
        {"a tie goes up", "2.5 round -2.5 round 0.5 round -0.5 round", "3.0 -2.0 1.0 0.0"},
        {"departure: almost a tie", "0.4999999 round -0.5000001 round", "1.0 0.0"},
        {"single precision", "16777217.4 round cvi", "16777218"},
        {"departure: beyond 32 bits nothing changes", "3e9 round 3e9 eq -1e300 round 1 0 div round",
         "true -1e+300 inf"},
    });
}

TEST(ArithmeticTest, Functions) {
    CheckStacks({
        {"sqrt", "16 sqrt 0 sqrt", "4.0 0.0"},
        {"departure: sqrt of a negative number", "-1 sqrt dup eq", "false"},
        {"exp", "2 3 exp 9 0.5 exp 2 -1 exp", "8.0 3.0 0.5"},
        {"departure: exp outside its domain", "-8 0.5 exp dup eq", "false"},
        {"ln and log", "1 ln 1000 log", "0.0 3.0"},
        {"departure: ln of 0", "0 ln 0 log", "-inf -inf"},
        {"departure: sin and cos use five digits", "90 cos 1e6 mul 180 sin 1e6 mul", "26.32679 52.65359"},
        {"sin and cos", "0 cos 0 sin 30 sin", "1.0 0.0 0.4999924"},
        {"one operand for exp", "2 exp", "2", PSERR_STACKUNDERFLOW},
        {"sin of a boolean", "true sin", "true", PSERR_TYPECHECK},
    });
}

TEST(ArithmeticTest, Atan) {
    CheckStacks({
        {"the quadrants", "0 1 atan 1 0 atan 0 -1 atan -1 0 atan", "0.0 90.0 180.0 270.0"},
        {"departure: pi is rounded", "1 1 atan 45 lt 1 1 atan 45 sub 1e9 mul", "true -1252.239"},
        {"departure: no angle at all", "0 0 atan", "0.0"},
        {"a full turn is 0", "-1e-20 1 atan", "0.0"},
        {"a string", "(a) 1 atan", "(a) 1", PSERR_TYPECHECK},
    });
}

TEST(ArithmeticTest, RandomNumbers) {
    CheckStacks({
        {"rrand is the last seed", "rrand 7 srand rand pop rand pop rrand", "0 7"},
        {"a real seed is truncated", "-2.7 srand rrand", "-2"},
        {"the same seed, the same numbers", "5 srand rand rand 5 srand rand rand 3 -1 roll eq 3 1 roll eq",
         "true true"},
        {"another seed, other numbers", "5 srand rand 6 srand rand eq", "false"},
        {"numbers differ", "rand rand eq", "false"},
        {"never negative", "true 1000 {rand 0 ge and} repeat", "true"},
        {"no seed", "/a srand", "/a", PSERR_TYPECHECK},
    });
    // A file draws the same at each import of a process.
    EXPECT_EQ(RunText("rand rand").stack, RunText("rand rand").stack);
}

}  // namespace
