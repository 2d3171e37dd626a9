// Operators on values and stacks in the complete dialect: the reference's errors, with their operands left, and what
// differs from the plain dialect otherwise.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

// What a failed program says of its error.
#define CAUGHT(program) "{" program "} stopped $error /errorname get"

struct Fault {
    const char* program;
    const char* stack;  ///< what it leaves
    const char* error;
};

TEST(CompleteValueTest, ErrorsOfTheReference) {
    for (const Fault& c : {
             Fault{"(abc) 3 get", "(abc) 3", "rangecheck"},
             Fault{"[1 2] 2 get", "[1 2] 2", "rangecheck"},
             Fault{"[1 2 3] 0 2 getinterval 2 get", "[1 2] 2", "rangecheck"},
             Fault{"1 dict /x get", "<<0>> /x", "undefined"},
             Fault{"[1] 1 7 put", "[1] 1 7", "rangecheck"},
             Fault{"(a) 1 7 put", "(a) 1 7", "rangecheck"},
             Fault{"(abc) 2 2 getinterval", "(abc) 2 2", "rangecheck"},
             Fault{"[1] 0 2 getinterval", "[1] 0 2", "rangecheck"},
             Fault{"[1 2] 1 [3 4] putinterval", "[1 2] 1 [3 4]", "rangecheck"},
             Fault{"(a) 2147483647 (b) putinterval", "(a) 2147483647 (b)", "rangecheck"},
             Fault{"[1 2] [1] copy", "[1 2] [1]", "rangecheck"},
             Fault{"(ab) (c) copy", "(ab) (c)", "rangecheck"},
             Fault{"1 -1 copy", "1 -1", "rangecheck"},
             Fault{"1 -1 index", "1 -1", "rangecheck"},
             Fault{"1 2 3 1 roll", "1 2 3 1", "stackunderflow"},
             Fault{"1 2 -1 1 roll", "1 2 -1 1", "rangecheck"},
             Fault{"-1 {} repeat", "-1 {}", "rangecheck"},
             Fault{"1 0 div", "1 0", "undefinedresult"},
             Fault{"1 0.0 div", "1 0.0", "undefinedresult"},
             Fault{"1 0 idiv", "1 0", "undefinedresult"},
             Fault{"1 0 mod", "1 0", "undefinedresult"},
             Fault{"7.5 2 idiv", "7.5 2", "typecheck"},
             Fault{"7 2.0 mod", "7 2.0", "typecheck"},
             Fault{"{7.5 2 mod} exec", "7.5 2", "typecheck"},
             Fault{"1.5 not", "1.5", "typecheck"},
             Fault{"1 2.5 xor", "1 2.5", "typecheck"},
             Fault{"1 internaldict", "1", "invalidaccess"},
             Fault{"-1 sqrt", "-1", "rangecheck"},
             Fault{"0 ln", "0", "rangecheck"},
             Fault{"-1 log", "-1", "rangecheck"},
             Fault{"-1 0.5 exp", "-1 0.5", "undefinedresult"},
             Fault{"0 0 atan", "0 0", "undefinedresult"},
             Fault{"1e10 cvi", "1e+10", "rangecheck"},
             Fault{"1 (a) get", "1 (a)", "typecheck"},
             Fault{"1.25 (abc) cvs", "1.25 (abc)", "rangecheck"},
             Fault{"1 add", "1", "stackunderflow"},
             Fault{"(a) 1 mul", "(a) 1", "typecheck"},
             Fault{"7 maxlength", "7", "typecheck"},
             Fault{"newpath 1 2 lineto", "1 2", "nocurrentpoint"},
             Fault{"newpath 1 (a) lineto", "1 (a)", "typecheck"},
             Fault{"newpath 1 2 3 4 5 6 curveto", "1 2 3 4 5 6", "nocurrentpoint"},
             Fault{"3 setlinecap", "3", "rangecheck"},
             Fault{"-1 setlinejoin", "-1", "rangecheck"},
             Fault{"0.5 setmiterlimit", "0.5", "rangecheck"},
             Fault{"[1 -1] 0 setdash", "[1 -1] 0", "rangecheck"},
             Fault{"[0 0] 0 setdash", "[0 0] 0", "rangecheck"},
             Fault{"[1 true] 0 setdash", "[1 true] 0", "typecheck"},
             Fault{"[1 2 2 4 0 0] 6 array invertmatrix", "[1 2 2 4 0 0] [null null null null null null]",
                   "undefinedresult"},
             Fault{"1 2 [0 0 0 1 0 0] itransform", "1 2 [0 0 0 1 0 0]", "undefinedresult"},
             Fault{"1 0 scale 1 2 idtransform", "1 2", "undefinedresult"},
         }) {
        SCOPED_TRACE(c.program);
        const RunResult result = RunText(std::string("{") + c.program + "} stopped $error /errorname get", kComplete);
        EXPECT_EQ(result.stack, std::string(c.stack) + " true /" + c.error);
    }
}

TEST(CompleteValueTest, Answers) {
    CheckStacks(
        {
            {"sums beyond 32 bits are reals", "2147483647 1 add -2147483647 2 sub 65536 65536 mul",
             "2.147484e+09 -2.147484e+09 4.294967e+09"},
            {"others stay whole", "2147483646 1 add 3 4 mul 1 2 sub", "2147483647 12 -1"},
            {"with a real, a real", "1 2.0 add 2.0 3 mul", "3.0 6.0"},
            {"a common generator of numbers", "16807 1234567 mul 2147483647 div floor", "9.0"},
            {"types are executable",
             "1 type xcheck /integertype 1 type eq << /integertype {7} >> begin 1 type exec end", "true true 7"},
            {"reals as texts",
             "[2.0 0.1 -1.5 100000.0 1234567.0 1e-5 0.333333333] {20 string cvs} forall 2.0 10 9 string cvrs 2.6 2 9 "
             "string cvrs",
             "(2.0) (0.1) (-1.5) (100000.0) (1.23457e+06) (1e-05) (0.333333) (2.0) (10)"},
            {"others as before", "7 9 string cvs /abc 9 string cvs true 9 string cvs 255 16 9 string cvrs",
             "(7) (abc) (true) (FF)"},
            {"a new string has zero bytes", "2 string dup 0 get exch 1 get", "0 0"},
            {"and begins with no other", "3 string (abc) anchorsearch exch pop (ab\\000c) (ab\\000) anchorsearch",
             "false (c) (ab\\000) true"},
            {"search", "(abcd) (bc) search (abcd) (x) anchorsearch", "(d) (bc) (a) true (abcd) false"},
            {"shifts lose bits", "1 32 bitshift 1 31 bitshift -1 -28 bitshift 8 -40 bitshift -8 0 bitshift",
             "0 -2147483648 15 0 -8"},
            {"a dictionary grows", "1 dict dup begin /a 1 def /b 2 def end maxlength 5 dict maxlength", "2 5"},
        },
        kComplete);
}

TEST(CompleteValueTest, KeysOfAnyLength) {
    const std::string key(300, 'x');
    EXPECT_EQ(RunText("/" + key + " 7 def " + key + " currentdict (" + key + ") known", kComplete).stack, "7 true");
    EXPECT_EQ(RunText("<< /" + key + " 1 >> (" + key + ") cvn get", kComplete).stack, "1");
}

TEST(CompleteValueTest, BinaryObjects) {
    const auto readBack = [](const std::string& object, int format) {
        const std::string program = std::to_string(format) +
                                    " setobjectformat /s 300 string def /f s /NullEncode filter def f " + object +
                                    " 7 writeobject f closefile s 1 get s cvx exec";
        return RunText(program, kComplete).stack;
    };
    for (int format = 1; format <= 4; ++format) {
        EXPECT_EQ(readBack("[1 -2 2.5 (ab) /n true null [3 [4]] {5 x add 0.5 (c)}]", format),
                  "1 [1 -2 2.5 (ab) /n true null [3 [4]] {5 x add 0.5 (c)}]");
        EXPECT_EQ(readBack("/name", format), "1 /name");
    }
    CheckStacks(
        {
            {"a tag for one byte", CAUGHT("7 256 printobject"), "7 256 true /rangecheck"},
            {"no format", "0 setobjectformat " CAUGHT("7 1 printobject"), "7 1 true /undefined"},
            {"no binary form", CAUGHT("[1 dict] 1 printobject"), "[<<0>>] 1 true /typecheck"},
            {"an array in itself",
             "1 array dup 0 2 index put {1 printobject} stopped $error /errorname get 4 1 roll 3 {pop} repeat",
             "/limitcheck"},
            {"a format that there is not", CAUGHT("5 setobjectformat"), "5 true /rangecheck"},
            {"no file", CAUGHT("1 2 3 writeobject"), "1 2 3 true /typecheck"},
        },
        kComplete);
}

TEST(CompleteValueTest, SaveAndRestore) {
    CheckStacks(
        {
            {"what is newer may not stay on a stack", "save [1] {1 index restore} stopped $error /errorname get exch",
             "-save- [1] -save- /invalidrestore true"},
            {"nor a dictionary on its stack",
             "save 1 dict begin {restore} stopped $error /errorname get countdictstack",
             "-save- true /invalidrestore 4"},
            {"what is older may", "[1] (a) save restore 2 array astore", "[[1] (a)]"},
            {"global objects may", "true setglobal save [1] exch restore", "[1]"},
            {"empty ones may", "save () [] 3 -1 roll restore", "() []"},
            {"a save counts once", "save dup restore {restore} stopped $error /errorname get",
             "-save- true /invalidrestore"},
            {"the inner one goes with the outer one", "save save exch restore {restore} stopped", "-save- true"},
            {"grestore stops at a save",
             "1 setlinewidth gsave 2 setlinewidth save 3 setlinewidth grestore currentlinewidth grestore grestore "
             "currentlinewidth exch pop exch restore currentlinewidth grestore currentlinewidth",
             "2.0 2.0 1.0"},
            {"so does grestoreall",
             "1 setlinewidth gsave 2 setlinewidth save gsave 3 setlinewidth grestoreall currentlinewidth exch restore "
             "grestoreall currentlinewidth",
             "2.0 1.0"},
            {"behind the last restore there is no stop", "save restore gsave 2 setlinewidth grestore currentlinewidth",
             "1.0"},
            {"a state is set as a copy", "gstate dup setgstate 5 setlinewidth setgstate currentlinewidth", "1.0"},
        },
        kComplete);
}

TEST(CompleteValueTest, LocalInGlobal) {
    CheckStacks(
        {
            {"into a dictionary", "globaldict /x [1] {put} stopped $error /errorname get exch",
             "<<0>> /x [1] /invalidaccess true"},
            {"by def", "globaldict begin {/x (a) def} stopped end $error /errorname get exch",
             "/x (a) /invalidaccess true"},
            {"into an array", "true setglobal 1 array false setglobal 0 (a) {put} stopped $error /errorname get exch",
             "[null] 0 (a) /invalidaccess true"},
            {"simple objects may", "globaldict /x 7 put globaldict /y /n put globaldict length", "2"},
            {"global ones may", "true setglobal globaldict /x [1] put globaldict length", "1"},
        },
        kComplete);
}

}  // namespace
