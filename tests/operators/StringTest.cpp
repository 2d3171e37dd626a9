// Searching in strings and taking tokens out of them.
#include "support/Program.h"

namespace {

TEST(StringTest, Anchorsearch) {
    CheckStacks({
        {"found", "(abcd) (ab) anchorsearch", "(cd) (ab) true"},
        {"the whole", "(ab) (ab) anchorsearch", "() (ab) true"},
        {"only at the start", "(abab) (ba) anchorsearch", "(abab) false"},
        {"longer than the string", "(ab) (abc) anchorsearch", "(ab) false"},
        {"nothing is found at once", "(abc) () anchorsearch", "(abc) () true"},
        {"departure: a zero byte ends the comparison", "(a\\000b) (a\\000c) anchorsearch 3 1 roll length exch length",
         "true 3 0"},
        {"a zero byte in the string alone", "(a\\000b) (ab) anchorsearch exch length", "false 3"},
        {"longer by what is behind a zero byte", "(a) (a\\000b) anchorsearch", "(a) false"},
        {"results share the body", "(abcd) dup (ab) anchorsearch pop exch 0 120 put 0 121 put", "(ybxd)"},
        {"no string", "(a) /a anchorsearch", "(a) /a", PSERR_TYPECHECK},
        {"one operand", "(a) anchorsearch", "(a)", PSERR_STACKUNDERFLOW},
    });
}

TEST(StringTest, Search) {
    CheckStacks({
        {"found", "(a,b,c) (,) search", "(b,c) (,) (a) true"},
        {"absent", "(ab) (x) search", "(ab) false"},
        {"at the start", "(abc) (ab) search", "(c) (ab) () true"},
        {"nothing is found at once", "(abc) () search", "(abc) () () true"},
        {"in nothing", "() (a) search", "() false"},
        {"over zero bytes", "(\\000\\000x) (x) search {length exch pop exch length}{pop} ifelse", "2 0"},
        {"in a view", "(xabyab) 1 5 getinterval (b) search", "(yab) (b) (a) true"},
        {"departure: not past the view", "(aab) 0 2 getinterval (b) search", "(aa) false"},
        {"results share the body", "(a,b) dup (,) search pop 0 120 put pop 0 122 put", "(x,z)"},
        {"no string", "1 (a) search", "1 (a)", PSERR_TYPECHECK},
    });
}

TEST(StringTest, Token) {
    CheckStacks({
        {"departure: a number", "( 12 x) token", "( x) 12 true"},
        {"a real at the end", "(1.5) token", "() 1.5 true"},
        {"departure: a name is literal", "(add 1) token", "( 1) /add true"},
        {"a procedure", "({1 2}3) token 3 1 roll exec", "true (3) 1 2"},
        {"a string", "((a)b) token", "(b) (a) true"},
        {"departure: a bracket", "([1]) token", "(1]) /[ true"},
        {"departure: in a view", "(1 2 3) 2 3 getinterval token", "( 3) 2 true"},
        {"no token", "() token (  ) token (%x) token", "false false false"},
        {"departure: bad text: the string is gone", "1 ({) token", "1", PSERR_SYNTAX},
        {"departure: a file is refused", "(%lineedit) (r) file token", "", PSERR_UNSUPPORTED},
        {"no string", "1 token", "1", PSERR_TYPECHECK},
        {"empty stack", "token", "", PSERR_STACKUNDERFLOW},
        {"through a whole text", "(1 /a (b) 2) {token not {exit} if exch} loop", "1 /a (b) 2"},
    });
}

}  // namespace
