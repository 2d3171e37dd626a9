// Dictionaries: the two key spaces, the order of iteration, and the value slots of the save levels.
#include "interp/Dialect.h"
#include "interp/FilterEPS.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

TEST(DictionaryTest, KeySpaces) {
    CheckStacks({
        {"names and strings are one key", "/a 1 def (a) load", "1"},
        {"a string key ends at its first zero byte", "/a 1 def (a\\000b) load", "1"},
        {"numbers within 1e-6 are one key", "<< >> begin 1 (x) def 1.0 load 1.0000005 load currentdict length",
         "(x) (x) 1"},
        {"numbers farther apart are two", "<< >> begin 1 (x) def 1.00001 (y) def currentdict length 1 load", "2 (x)"},
        {"cells of the index do not part neighbours",
         "<< >> begin 0.0000009999 (x) def 0.0000010001 load << >> begin 0.0000001 (y) def -0.0000001 load", "(x) (y)"},
        {"booleans, null and operators",
         "<< >> begin true 1 def null 2 def /add load 3 def true load null load /add load load", "1 2 3"},
        {"arrays are keys by identity", "<< >> begin /k [1] def k 5 def k load currentdict [1] known", "5 false"},
        {"departure: a not-a-number finds nothing", "<< >> begin -1 sqrt 1 def currentdict length -1 sqrt load", "1",
         PSERR_UNDEFINED},
        {"departure: capacity limits nothing",
         "0 dict begin 0 1 999 {dup def} for currentdict maxlength currentdict length", "0 1000"},
    });
}

TEST(DictionaryTest, ManyNames) {
    // More than any table starts with: each name is found again, and no other one is.
    CheckStacks({
        {"as keys",
         "/d 10 dict def 0 1 9999 {dup 10 string cvs cvn exch d 3 1 roll put} for d length "
         "0 1 9999 {dup 10 string cvs cvn d exch get sub} for 10000 {0 eq {} {(wrong)} ifelse} repeat d /10000 known",
         "10000 false"},
        {"removed again, every other one",
         "/d 10 dict def 0 1 999 {10 string cvs cvn d exch 1 put} for 0 2 999 {10 string cvs cvn d exch undef} for "
         "d length 0 1 999 {10 string cvs cvn d exch known {1} {0} ifelse} for 998 {add} repeat add d /998 known "
         "d /999 known",
         "500 500 false true"},
    });
}

TEST(DictionaryTest, IterationGoesByBucketThenAge) {
    // In 3 buckets: a is 97 = 1, b is 98 = 2, c is 99 = 0 modulo 3; d joins a, e joins b.
    CheckStacks({
        {"texts", "3 dict begin /e 0 def /b 0 def /d 0 def /a 0 def /c 0 def currentdict end {pop} forall",
         "/c /d /a /e /b"},
        {"other keys follow in order of definition",
         "3 dict begin 2 0 def /c 0 def true 0 def 1 0 def currentdict end {pop} forall", "/c 2 true 1"},
        {"40 gives 41 buckets, not more", "40 dict begin /+ 0 def /S 0 def /* 0 def currentdict end {pop} forall",
         "/S /* /+"},
        {"removal and redefinition change the age",
         "3 dict begin /a 0 def /d 0 def currentdict /a undef /a 0 def currentdict end {pop} forall", "/d /a"},
    });
}

TEST(DictionaryTest, SaveLevels) {
    CheckStacks({
        {"an older value comes back", "/a 1 def save /a 2 def a exch restore a", "2 1"},
        {"a new key goes", "save /a 2 def restore /a where", "false"},
        {"undef takes only the current level's value", "/a 1 def save /a 2 def userdict /a undef a exch restore a",
         "1 1"},
        {"undef of an older key removes nothing", "/a 1 def save userdict /a undef a exch restore a", "1 1"},
        {"a literal array is copied on the first read", "/a [1] def save a 0 9 put a 0 get exch restore a 0 get",
         "9 1"},
        {"a string stays changed", "/a (x) def save a 0 65 put restore a", "(A)"},
        {"a procedure stays changed", "/a {1} def save /a load 0 9 put restore a", "9"},
        {"length counts a key once",
         "1 dict dup begin /a 1 def save /a 2 def currentdict length exch restore end exch length", "1 1"},
        {"global dictionaries do not take part",
         "true setglobal 1 dict false setglobal dup /a 1 put save 1 index /a 2 put restore /a get", "2"},
        {"element keys take part", "<< >> begin 1 (a) def save 1 (b) def 2 (c) def restore 1 load currentdict length",
         "(a) 1"},
        {"three levels",
         "/a 1 def save /a 2 def save /a 3 def save /a 4 def a exch restore a 3 -1 roll restore a 4 -1 roll restore a",
         "4 3 2 1"},
        {"an array that contains itself twice is copied within bounds",
         "/a [0 0] def a 0 a put a 1 a put save pop a length", "2"},
        {"many keys of one level go at once",
         "2000 dict begin 0 1 499 {20 string cvs cvn 1 def} for save 500 1 999 {20 string cvs cvn 1 def} for restore "
         "currentdict length",
         "500"},
    });
}

TEST(DictionaryTest, ValuesOfAnyNumberOfSaveLevels) {
    TestFrame frame;
    struct ManyLevels final : CDialect {
        [[nodiscard]] std::int32_t SaveLimit() const override { return 300; }
    };
    CFilterEPS machine(5, std::make_unique<ManyLevels>());
    EXPECT_EQ(machine.ScanBuffer("/r {exch restore a add l 0 get sub} def /l [0] def /a 0 def 1 1 300 {save exch dup l "
                                 "0 3 -1 roll put /a exch def} for"),
              1);
    EXPECT_EQ(machine.ScanBuffer("save"), -1);
    EXPECT_EQ(machine.m_nError, PSERR_VMOVERFLOW);
    EXPECT_EQ(machine.ScanBuffer("0 200 /r load repeat a add l 0 get add"), 1);
    const auto* sum = As<CNumberElement>(machine.m_OperandStack.Top());
    ASSERT_TRUE(sum);
    EXPECT_EQ(sum->GetInt(), 200) << "a and the element of l are 100 again, and were the same all the way";
}

}  // namespace
