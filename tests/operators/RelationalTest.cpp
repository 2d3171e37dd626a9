// Comparison with its tolerance, logic, and bits.
#include "support/Program.h"

namespace {

TEST(RelationalTest, Equality) {
    CheckStacks({
        {"numbers of both kinds", "1 1.0 eq 1 2 eq", "true false"},
        {"departure: numbers close to each other", "1 1.0000001 eq 1 1.0000001 ne 1 1.00001 eq", "true false false"},
        {"a name and a string", "(a) /a eq /a (a) eq (a) /b eq", "true true false"},
        {"strings by contents", "(a) (a) eq (a) (ab) eq", "true false"},
        {"executable or not", "/a cvx /a eq", "true"},
        {"arrays by identity", "[1] [1] eq [1] dup eq", "false true"},
        {"two views of one body", "[1 2 3] dup 0 1 getinterval exch 1 2 getinterval eq", "true"},
        {"dictionaries", "1 dict dup eq 1 dict 1 dict eq", "true false"},
        {"the rest", "null null eq true true eq true false eq mark mark eq /add load /add load eq",
         "true true false true true"},
        {"types that never meet", "1 true eq 1 (1) eq null /null eq", "false false false"},
        {"departure: infinity is not equal to itself", "1 0 div dup eq", "false"},
        {"ne", "1 2 ne (a) /a ne", "true false"},
        {"one operand", "1 eq", "1", PSERR_STACKUNDERFLOW},
    });
}

TEST(RelationalTest, Order) {
    CheckStacks({
        {"ge", "2 1 ge 2 2 ge 1 2 ge", "true true false"},
        {"gt", "2 1 gt 2 2 gt 1 2 gt", "true false false"},
        {"le", "2 1 le 2 2 le 1 2 le", "false true true"},
        {"lt", "2 1 lt 2 2 lt 3 4.5 lt", "false false true"},
        {"departure: numbers close to each other", "1.0000001 1 ge 1.0000001 1 le 1.0000001 1 gt 1 1.0000001 lt",
         "true true false false"},
        {"strings", "(abc) (abd) lt (ab) (abc) lt (b) (abc) gt () () ge () (a) ge", "true true true true false"},
        {"bytes have no sign", "(\\377) (a) gt", "true"},
        {"departure: a not-a-number is less than anything", "-1 sqrt 0 lt 0 -1 sqrt lt -1 sqrt 0 ge",
         "true true false"},
        {"a number and a string", "1 (a) lt", "1 (a)", PSERR_TYPECHECK},
        {"booleans", "true false lt", "true false", PSERR_TYPECHECK},
        {"one operand", "1 gt", "1", PSERR_STACKUNDERFLOW},
    });
}

TEST(RelationalTest, LogicAndBits) {
    CheckStacks({
        {"booleans", "true false and true false or true true xor true not", "false true false false"},
        {"integers", "12 10 and 12 10 or 12 10 xor 0 not", "8 14 6 -1"},
        {"departure: reals are truncated", "5.7 3 and 2.5 not", "1 -3"},
        {"a number and a boolean", "1 true and", "1 true", PSERR_TYPECHECK},
        {"not of a string", "(a) not", "(a)", PSERR_TYPECHECK},
        {"one operand", "true xor", "true", PSERR_STACKUNDERFLOW},
    });
}

TEST(RelationalTest, Bitshift) {
    CheckStacks({
        {"left", "7 3 bitshift 1 31 bitshift -1 1 bitshift", "56 -2147483648 -2"},
        {"right", "142 -3 bitshift", "17"},
        {"departure: the sign is copied", "-8 -1 bitshift -2147483648 -31 bitshift", "-4 -1"},
        {"departure: the count modulo 32", "1 33 bitshift 5 32 bitshift 1 -33 bitshift 5 -32 bitshift", "2 5 0 5"},
        {"departure: the smallest count", "5 -2147483648 bitshift", "5"},
        {"by nothing", "5 0 bitshift", "5"},
        {"no number", "5 true bitshift", "5 true", PSERR_TYPECHECK},
    });
}

}  // namespace
