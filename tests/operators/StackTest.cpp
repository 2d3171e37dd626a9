// Operators that move and copy what stands on the operand stack, and those that look for marks.
#include "support/Program.h"

namespace {

TEST(StackTest, MovesOne) {
    CheckStacks({
        {"pop", "1 2 pop", "1"},
        {"pop: empty stack", "pop", "", PSERR_STACKUNDERFLOW},
        {"exch", "1 (a) 2 exch", "1 2 (a)"},
        {"exch: one operand stays", "1 exch", "1", PSERR_STACKUNDERFLOW},
        {"dup", "/a dup", "/a /a"},
        {"dup shares the body", "[1 2] dup 0 9 put", "[9 2]"},
        {"departure: dup of a packed array is an array", "1 1 packedarray dup type", "[1] /arraytype"},
        {"dup: empty stack", "dup", "", PSERR_STACKUNDERFLOW},
        {"count", "7 8 count", "7 8 2"},
        {"count on an empty stack", "count", "0"},
        {"clear", "1 mark (a) clear", ""},
    });
}

TEST(StackTest, Index) {
    CheckStacks({
        {"the nth below", "10 20 30 2 index", "10 20 30 10"},
        {"a real is truncated", "10 20 1.9 index", "10 20 10"},
        {"departure: a negative one is 0", "1 2 -1 index", "1 2 2"},
        {"departure: beyond the bottom: n is gone", "10 20 2 index", "10 20", PSERR_RANGE},
        {"departure: nothing below n", "-1 index", "", PSERR_RANGE},
        {"no number", "1 (a) index", "1 (a)", PSERR_TYPECHECK},
        {"empty stack", "index", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(StackTest, Roll) {
    CheckStacks({
        {"up", "1 2 3 3 1 roll", "3 1 2"},
        {"down", "1 2 3 3 -1 roll", "2 3 1"},
        {"only the group moves", "0 1 2 3 3 2 roll", "0 2 3 1"},
        {"more than once round", "1 2 3 3 2147483647 roll", "3 1 2"},
        {"more than once round, down", "1 2 3 3 -2147483648 roll", "3 1 2"},
        {"a full turn", "1 2 3 3 -3 roll", "1 2 3"},
        {"a group of one", "1 2 1 1 roll", "1 2"},
        {"a group of none", "1 2 0 5 roll", "1 2"},
        {"departure: a negative group", "1 2 -2 1 roll", "1 2"},
        {"departure: a group beyond the depth", "1 2 3 5 1 roll", "1 2 3"},
        {"the stack still works behind it", "1 2 3 3 1 roll pop pop 4 count", "3 4 2"},
        {"no number", "1 2 (a) 1 roll", "1 2 (a) 1", PSERR_TYPECHECK},
        {"j is looked at first", "/n /j roll", "/n /j", PSERR_TYPECHECK},
        {"one operand", "1 roll", "1", PSERR_STACKUNDERFLOW},
    });
}

TEST(StackTest, CopyOfStack) {
    CheckStacks({
        {"keeps the order", "1 2 3 2 copy", "1 2 3 2 3"},
        {"all", "1 2 2 copy", "1 2 1 2"},
        {"none", "1 0 copy", "1"},
        {"departure: a negative count", "1 -1 copy", "1"},
        {"too many: the count is gone", "1 2 5 copy", "1 2", PSERR_RANGE},
        {"a type that can't be copied", "1 /a copy", "1 /a", PSERR_TYPECHECK},
        {"empty stack", "copy", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(StackTest, CopyOfArrays) {
    CheckStacks({
        {"answers the part that was written", "[1 2] [7 8 9] dup 3 1 roll copy", "[1 2 9] [1 2]"},
        {"elements are copied as objects", "[[1]] dup 1 array copy 0 get 0 5 put", "[[5]]"},
        {"from a packed array", "1 2 2 packedarray 2 array copy", "[1 2]"},
        {"into a packed array", "[5] 1 1 packedarray copy", "[5]"},
        {"an empty one", "[] [1] copy", "[]"},
        {"upwards within one body", "/a [1 2 3 4] def a 0 3 getinterval a 1 3 getinterval copy a", "[1 2 3] [1 1 2 3]"},
        {"downwards within one body", "/a [1 2 3 4] def a 1 3 getinterval a 0 3 getinterval copy a",
         "[2 3 4] [2 3 4 4]"},
        {"departure: too short, both gone", "0 [1 2 3] [0] copy", "0", PSERR_SYNTAX},
        {"a string below", "(abc) [1 2 3] copy", "(abc) [1 2 3]", PSERR_TYPECHECK},
        {"nothing below", "[1] copy", "[1]", PSERR_STACKUNDERFLOW},
    });
}

TEST(StackTest, CopyOfStringsAndDictionaries) {
    CheckStacks({
        {"a string", "(ab) (vwxyz) dup 3 1 roll copy", "(abxyz) (ab)"},
        {"a string within its own body", "/s (abcd) def s 0 3 getinterval s 1 3 getinterval copy pop s", "(aabc)"},
        {"departure: too short, both gone", "(abc) (x) copy", "", PSERR_SYNTAX},
        {"a string on a name", "/a (x) copy", "/a (x)", PSERR_TYPECHECK},
        {"a dictionary", "<< /a 1 /b 2 >> << /b 3 /c 4 >> copy dup /b get exch dup /c get exch length", "2 4 3"},
        {"other keys", "2 dict dup 1 (one) put 0 dict copy 1.0 get", "(one)"},
        {"onto itself", "<< /a 1 >> dup copy length", "1"},
        {"a dictionary on a number", "1 1 dict copy", "1 <<0>>", PSERR_TYPECHECK},
        {"departure: a dictionary that a restore took away: both gone", "save 1 dict exch restore 1 dict copy", "",
         PSERR_SYNTAX},
        {"a state on a number", "1 gstate copy", "1 -gstate-", PSERR_TYPECHECK},
        {"a state", "5 setlinewidth gstate 7 setlinewidth gstate copy 9 setlinewidth setgstate currentlinewidth",
         "5.0"},
    });
}

TEST(StackTest, Marks) {
    CheckStacks({
        {"counttomark", "1 mark 2 3 counttomark", "1 mark 2 3 2"},
        {"the topmost mark counts", "mark 1 mark counttomark", "mark 1 mark 0"},
        {"all that makes marks", "[ << counttomark", "mark mark 0"},
        {"counttomark: no mark", "1 2 counttomark", "1 2", PSERR_UNMATCHEDMARK},
        {"cleartomark", "1 mark 2 mark 3 4 cleartomark", "1 mark 2"},
        {"cleartomark: no mark", "1 2 cleartomark", "1 2", PSERR_UNMATCHEDMARK},
        {"cleartomark: empty stack", "cleartomark", "", PSERR_UNMATCHEDMARK},
    });
}

TEST(StackTest, LargeStacks) {
    CheckStacks({
        {"departure: doubling", "mark 1 17 {counttomark copy} repeat counttomark /n exch def cleartomark n", "131072"},
        {"departure: many turns of many elements",
         "mark 0 1 100000 {} for 100001 2000000000 roll /top exch def cleartomark top", "19999"},
    });
}

}  // namespace
