// Types, attributes, and conversions between numbers, names and strings.
#include "support/Program.h"

namespace {

TEST(TypeTest, Type) {
    CheckStacks({
        {"departure: numbers", "1 type 1.0 type", "/integertype /realtype"},
        {"departure: names and relatives", "/a type /a cvx type {a} 0 get type mark type",
         "/nametype /nametype /nametype /marktype"},
        {"departure: arrays", "[] type {} type 0 packedarray type", "/arraytype /arraytype /packedarraytype"},
        {"departure: other composite objects", "() type 1 dict type gstate type", "/stringtype /dicttype /gstatetype"},
        {"departure: files", "(%lineedit) (r) file type (ab) /ASCIIHexDecode filter type", "/filetype /filetype"},
        {"departure: the rest", "true type null type /add load type save type",
         "/booleantype /nulltype /operatortype /savetype"},
        {"departure: the answer is literal", "1 type xcheck", "false"},
        {"empty stack", "type", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(TypeTest, Attributes) {
    CheckStacks({
        {"cvx and cvlit", "/abc cvx dup xcheck exch cvlit dup xcheck", "true /abc false"},
        {"an executable number is a number", "5 cvx dup xcheck exch 1 add", "true 6"},
        {"a copy of null forgets it", "null cvx dup xcheck exch xcheck", "false true"},
        {"readonly", "(abc) readonly dup rcheck exch wcheck", "true false"},
        {"noaccess", "[1] noaccess dup rcheck exch wcheck", "false false"},
        {"executeonly", "{1} executeonly dup rcheck exch wcheck", "false false"},
        {"unlimited", "1 dict dup rcheck exch wcheck", "true true"},
        {"the attribute is the element's own", "[1] dup readonly wcheck exch wcheck", "false true"},
        {"copies carry it", "(a) readonly dup pop dup wcheck", "(a) false"},
        {"departure: nobody enforces it", "[1] noaccess dup 0 2 put 0 get", "2"},
        {"executeonly of a dictionary", "1 dict executeonly", "<<0>>", PSERR_TYPECHECK},
        {"rcheck of a number", "5 rcheck", "5", PSERR_TYPECHECK},
        {"cvx: empty stack", "cvx", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(TypeTest, ToNumbers) {
    CheckStacks({
        {"cvi truncates", "3.7 cvi -3.7 cvi 5 cvi", "3 -3 5"},
        {"departure: cvi of what 32 bits can't hold", "1e20 cvi", "-2147483648"},
        {"cvi of strings", "(12) cvi (3.9) cvi ( 7 x) cvi (16#FF) cvi", "12 3 7 255"},
        {"cvr", "3 cvr (12) cvr (-1.5e2) cvr", "3.0 12.0 -150.0"},
        {"a real with a whole value", "3.0 cvi 2 mul 3 cvr 2 mul", "6 6.0"},
        {"departure: a name in a string: gone", "1 (x) cvi", "1", PSERR_SYNTAX},
        {"departure: nothing in a string", "() cvi", "", PSERR_SYNTAX},
        {"departure: a literal name in a string", "(/a) cvr", "", PSERR_SYNTAX},
        {"departure: broken text", "(\\() cvr", "", PSERR_SYNTAX},
        {"departure: no number in a base", "(99#1) cvi", "", PSERR_SYNTAX},
        {"cvi of a boolean", "true cvi", "true", PSERR_TYPECHECK},
        {"cvr: empty stack", "cvr", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(TypeTest, ToNames) {
    CheckStacks({
        {"literal", "(abc) cvn", "/abc"},
        {"executable", "(abc) cvx cvn xcheck", "true"},
        {"up to a zero byte", "(ab\\000c) cvn", "/ab"},
        {"a name already", "/a cvn", "/a", PSERR_TYPECHECK},
    });
}

TEST(TypeTest, ToStrings) {
    CheckStacks({
        {"integers", "12 10 string cvs -7 10 string cvs", "(12) (-7)"},
        {"names and strings", "/abc 10 string cvs (xy) 10 string cvs /add load 10 string cvs", "(abc) (xy) (add)"},
        {"booleans", "true 5 string cvs false 5 string cvs", "(true) (false)"},
        {"departure: all others", "[1] 15 string cvs mark 15 string cvs null 15 string cvs {a} 0 get 15 string cvs",
         "(--nostringval--) (--nostringval--) (--nostringval--) (--nostringval--)"},
        {"a view of the operand", "true (xxxxxx) dup 3 1 roll cvs", "(truexx) (true)"},
        {"a string within itself", "/s (abcd) def s 1 2 getinterval s cvs s", "(bc) (bccd)"},
        {"too short", "12345 (xxxx) cvs", "12345 (xxxx)", PSERR_RANGE},
        {"no string", "1 /a cvs", "1 /a", PSERR_TYPECHECK},
        {"one operand", "(a) cvs", "(a)", PSERR_STACKUNDERFLOW},
    });
}

TEST(TypeTest, RealsAsText) {
    CheckStacks({
        {"departure: the point always stands", "1.0 20 string cvs 0.0 20 string cvs 1234567.0 20 string cvs",
         "(1.) (0.) (1234567.)"},
        {"departure: seven digits", "0.1 20 string cvs 3.14159265 20 string cvs -99.99999999 20 string cvs",
         "(0.1) (3.141593) (-100.)"},
        {"departure: zeros at the end go", "12.50 20 string cvs 100.0 20 string cvs", "(12.5) (100.)"},
        {"departure: small ones", "0.05 20 string cvs 1e-5 20 string cvs 0.099999999 20 string cvs",
         "(5.e-002) (1.e-005) (0.1)"},
        {"departure: large ones", "12345678.0 20 string cvs 1e10 20 string cvs -1.5e300 20 string cvs",
         "(1.234568e+007) (1.e+010) (-1.5e+300)"},
        {"the text reads back", "0.05 20 string cvs cvr 1.5e-7 20 string cvs cvr", "0.05 1.5e-07"},
        {"departure: infinity", "1 0 div 20 string cvs", "(inf)"},
    });
}

TEST(TypeTest, ToStringsInABase) {
    CheckStacks({
        {"base 16", "255 16 2 string cvrs -1 16 8 string cvrs", "(FF) (FFFFFFFF)"},
        {"base 2", "-2147483648 2 32 string cvrs", "(10000000000000000000000000000000)"},
        {"base 36", "35 36 5 string cvrs 123 36 5 string cvrs", "(Z) (3F)"},
        {"base 10 has a sign", "-12 10 5 string cvrs", "(-12)"},
        {"departure: a real in base 10", "2.5 10 20 string cvrs 1e10 10 20 string cvrs", "(2.5) (1.E+010)"},
        {"a real in another base is truncated", "255.9 16 5 string cvrs", "(FF)"},
        {"too short", "255 2 (xxxx) cvrs", "255 2 (xxxx)", PSERR_RANGE},
        {"departure: a base that is none", "1 37 9 string cvrs", "1 37 (000000000)", PSERR_RANGE},
        {"a number that is none", "/a 10 (x) cvrs", "/a 10 (x)", PSERR_TYPECHECK},
        {"two operands", "10 (x) cvrs", "10 (x)", PSERR_STACKUNDERFLOW},
    });
}

}  // namespace
