// What the complete scanners make of a text: strings, names, procedures, dictionaries and binary tokens; and the
// operators that tell of execution.
#include <string>

#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

using namespace std::string_literals;

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

TEST(CompleteScannerTest, Strings) {
    CheckStacks(
        {
            {"base 85", "<~87cURD]i,\"EW~>", "(Hello Wor)"},
            {"with blanks and z", "<~ 87c UR z ~> length", "8"},
            {"none", "<~~>", "()"},
            {"a digit alone", "{(<~8~>) cvx exec} stopped $error /errorname get", "true /syntaxerror"},
            {"too large a group", "{(<~uuuuu~>) cvx exec} stopped", "true"},
            {"an odd digit", "<616>", "(a`)"},
            {"short escapes", "(\\7x\\18\\101) {} forall", "7 120 1 56 65"},
            {"line ends", "(a\r\nb\rc) {} forall", "97 10 98 10 99"},
            {"a backslash in a name", "/a\\b 3 def a\\b", "3"},
            {"an empty name", "/ 3 def / load", "3"},
        },
        kComplete);
    const std::string name(300, 'n');
    EXPECT_EQ(RunText("/" + name, kComplete).stack, "/" + name);
}

TEST(CompleteScannerTest, Numbers) {
    CheckStacks(
        {
            {"of all forms", "+7 -.5 5. 1e3 -2.5E-1 16#fF 36#Z 007", "7 -0.5 5.0 1000.0 -0.25 255 35 7"},
            {"at the end of 32 bits", "2147483647 -2147483648 16#FFFFFFFF", "2147483647 -2147483648 -1"},
            {"beyond", "2147483648 type -99999999999 type -99999999999 0 lt", "realtype realtype true"},
            {"nearly numbers are names",
             "/n {cvlit type} def {1-2 1.2.3 1e --5 +-5 -. 1e5.5 2#3 37#1 1#1 16#ZZ 16# -16#F} {n} forall",
             "nametype nametype nametype nametype nametype nametype nametype nametype nametype nametype nametype "
             "nametype nametype"},
            {"outside of procedures", "/1-2 7 def 1-2", "7"},
            {"cvi and cvr", "{(1-2) cvi} stopped (16#10) cvi (3e9) cvr type", "(1-2) true 16 realtype"},
        },
        kComplete);
}

TEST(CompleteScannerTest, Procedures) {
    CheckStacks(
        {
            {"braces in strings", "{(}) 1} exec", "(}) 1"},
            {"braces in comments", "{ % }\n 1 % {\n} exec", "1"},
            {"nested", "{{1} {{2}}} exec exec exch exec", "{2} 1"},
            {"numbers are numbers", "{1 2.5 add} dup 0 get exch 1 get add", "3.5"},
            {"names are names", "{a /b} dup 0 get dup type exch xcheck 3 -1 roll 1 get xcheck", "nametype true false"},
            {"bind", "{add {sub} 1} bind dup 0 get type exch 1 get 0 get type", "operatortype operatortype"},
            {"bind leaves others", "/add {7} def {add} bind 0 get type", "nametype"},
            {"immediate names", "/x 5 def {//x} 0 get", "5"},
            {"and one that is not there", "{({//nosuch 1} 2) cvx exec} stopped $error /errorname get",
             "true /undefined"},
            {"dictionaries inside", "{<</a [1 2]>>} exec /a get", "[1 2]"},
            {"packed ones",
             "true setpacking /a {{1}} def /a load type /a load 0 get dup type exch cvlit type [1] type {} bind type",
             "packedarraytype packedarraytype packedarraytype arraytype packedarraytype"},
            {"instances of a category of packed ones",
             "/Generic /Category findresource dup length 1 add dict copy dup /InstanceType /packedarraytype put"
             " /Mine exch /Category defineresource pop true setpacking /p {7} def /p dup load /Mine defineresource"
             " pop /p /Mine findresource exec",
             "7"},
            {"packed ones serve as arrays",
             "9 8 2 packedarray 0 setdash 1 0 0 1 5 6 6 packedarray concat currentdash"
             " pop 0 0 transform 5 6 2 packedarray 0 get",
             "[9 8] 5.0 6.0 5"},
            {"nothing is put into packed ones", "{1 1 packedarray 0 2 put} stopped $error /errorname get",
             "[1] 0 2 true /invalidaccess"},
            {"left open", "{({1) cvx exec} stopped $error /errorname get", "true /syntaxerror"},
            {"token", "(add 1) token pop dup xcheck 3 1 roll exch", "true add (1)"},
            {"token and specials", "(a/b) token pop exch", "a (/b)"},
        },
        kComplete);
}

TEST(CompleteScannerTest, DictionariesWithAnyKey) {
    CheckStacks(
        {
            {"numbers", "<<1 (a) 2 (b)>> 2 get", "(b)"},
            {"booleans", "<<true 1>> true get", "1"},
            {"strings are names", "<<(a) 1>> /a get", "1"},
            {"the later one", "<</a 1 /a 2>> /a get", "2"},
            {"not null", "{mark null 1 >>} stopped $error /errorname get", "mark null 1 true /typecheck"},
            {"not an odd one", "{<< 1 >>} stopped $error /errorname get", "mark 1 true /rangecheck"},
            {"no mark", "{>>} stopped $error /errorname get", "true /unmatchedmark"},
        },
        kComplete);
}

TEST(CompleteScannerTest, BinaryTokens) {
    struct Case {
        const char* name;
        std::string program;
        const char* stack;
    };
    for (const Case& c : {
             Case{"integers", "\x84\0\0\1\2\x85\2\1\0\0\x86\xff\xfe\x87\1\0\x88\xff"s, "258 258 -2 1 -1"},
             Case{"a fixed-point number", "\x89\x22\0\6\x89\x80\7\0\0\0"s, "1.5 7"},
             Case{"reals", "\x8a\x3f\x80\0\0\x8b\0\0\0\x40"s, "1.0 2.0"},
             Case{"booleans", "\x8d\1\x8d\0"s, "true false"},
             Case{"strings", "\x8e\2(}\x8f\0\1a\x90\1\0b"s, "((}) (a) (b)"},
             Case{"names run", "1 2 \x92\1"s, "3"},
             Case{"literal ones don't", "\x91\1"s, "/add"},
             Case{"a number array", "\x95\x20\0\2\0\1\0\2"s, "[1 2]"},
             Case{"in a procedure", "{1 \x92\1}"s, "{1 add}"},
             Case{"a sequence runs", "\x80\3\0\x1c\1\0\0\0\0\0\0\4\1\0\0\0\0\0\0\5\x83\0\xff\xff\0\0\0\1"s, "9"},
             Case{"the other order", "\x81\1\x0c\0\1\0\0\0\4\0\0\0"s, "4"},
             Case{"a string in an array", "\x80\1\0\x15\x9\0\0\1\0\0\0\x8\5\0\0\1\0\0\0\x10"s + "a", "[(a)]"},
             Case{"cut off", "{(\x8e\5a) cvx exec} stopped $error /errorname get"s, "true /syntaxerror"},
             Case{"unassigned", "{(\x9f) cvx exec} stopped $error /errorname get"s, "true /syntaxerror"},
         }) {
        SCOPED_TRACE(c.name);
        const RunResult result = RunText(c.program, kComplete);
        EXPECT_EQ(result.stack, c.stack);
    }
    EXPECT_EQ(RunText("currentobjectformat", kComplete).stack, "1");
}

TEST(CompleteScannerTest, BinaryTokensEndOthers) {
    using namespace std::string_literals;
    const std::string add = "\x92\x01"s, dup = "\x92\x38"s;  // names of the system
    EXPECT_EQ(RunText("1 2" + add, kComplete).stack, "3");
    EXPECT_EQ(RunText("/x 1 def x" + dup + add + "/y" + dup, kComplete).stack, "2 /y /y");
    EXPECT_EQ(RunText("{5" + dup + "} exec (6" + dup + ") token pop exch length", kComplete).stack, "5 5 6 2");
}

TEST(CompleteScannerTest, Execution) {
    CheckStacks(
        {
            {"countexecstack", "countexecstack array execstack length", "1"},
            {"no room", "{0 array execstack} stopped $error /errorname get", "[] true /rangecheck"},
            {"user objects of any type",
             "1 {7} defineuserobject 1 execuserobject 2 /add load defineuserobject "
             "3 4 2 execuserobject",
             "7 7"},
            {"startjob", "true (x) startjob", "false"},
            {"superexec", "{7} 1183615869 internaldict /superexec get exec", "7"},
            {"the executive", "start executive prompt true echo", ""},
            {"and bind", "/p {start echo} bind def /start 1 def /echo 2 def p", "1 2"},
            {"many saves", "/back {restore} def 20 {save} repeat 20 /back load repeat", ""},
            {"restore beyond the sixth", "/x 1 def 8 {save /x x 1 add def} repeat x 9 1 roll 7 {pop} repeat restore x",
             "9 1"},
        },
        kComplete);
}

}  // namespace
