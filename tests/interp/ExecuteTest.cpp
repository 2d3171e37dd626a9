// What names and the elements of procedures do when they run, how `exit` and `stop` travel, and what bounds a run.
#include <set>

#include "interp/OperatorChain.h"
#include "interp/OperatorNames.h"
#include "support/Program.h"

namespace {

TEST(ExecuteTest, EachErrorHasItsText) {
    struct Case {
        const char* program;
        const char* text;
    };
    for (const Case& c : {
             Case{"no program", "文件格式错误"},
             Case{"%!PS\n1 (a) add ", "类型不匹配"},
             Case{"%!PS\nnosuch ", "名称未定义"},
             Case{"%!PS\n> ", "语法错误"},
             Case{"%!PS\n(/nowhere/at/all) (r) file ", "文件I/O错误"},
             Case{"%!PS\npop ", "操作栈下溢"},
             Case{"%!PS\n1 0 idiv ", "操作范围错误"},
             Case{"%!PS\n] ", "mark 不匹配"},
             Case{"%!PS\nend ", "字典栈下溢"},
             Case{"%!PS\n5 {save} repeat ", "VM 栈上溢"},
             Case{"%!PS\ncurrentpoint ", "路径没有起始点"},
             Case{"%!PS\n(abc) /LZWDecode filter ", "遇到了系统暂不支持的操作符"},
         }) {
        EXPECT_EQ(RunAsFile(c.program).boxes,
                  std::vector<std::string>{std::string("EPS文件解释失败!\n错误类型:") + c.text})
            << c.program;
    }
}

TEST(ExecuteTest, ValuesOfNames) {
    CheckStacks({
        {"an operator keeps its own name", "/plus /add load def 1 2 plus", "3"},
        {"a literal array is pushed", "/a [1 2] def a", "[1 2]"},
        {"a procedure runs", "/a {1 2} def a", "1 2"},
        {"a packed procedure runs", "/a /add load 1 packedarray cvx def 1 2 a", "3"},
        {"departure: a literal packed array is pushed as an array", "/a 1 2 2 packedarray def a type", "/arraytype"},
        {"an executable name runs", "/a /b cvx def /b 7 def a", "7"},
        {"a literal name is pushed", "/a /b def a", "/b"},
        {"an executable string runs", "/a (1 2 add) cvx def a", "3"},
        {"a literal string is pushed", "/a (1 2 add) def a", "(1 2 add)"},
        {"departure: an executable file is pushed", "/a (%lineedit) (r) file cvx def a", "-file-"},
        {"unknown", "1 nosuch 2", "1", PSERR_UNDEFINED},
        {"departure: a name that no family claims", "1 vmstatus 2", "1", PSERR_UNSUPPORTED},
        {"the innermost dictionary wins", "/a 1 def 1 dict begin /a 2 def a end a", "2 1"},
    });
}

TEST(ExecuteTest, ElementsOfProcedures) {
    CheckStacks({
        {"a nested procedure is pushed", "{{1}} exec", "{1}"},
        {"names are looked up at each run", "/p {a} def /a 1 def p /a 2 def p", "1 2"},
        {"a procedure may redefine itself", "/p {/p {2} def 1} def p p", "1 2"},
        {"a procedure may change itself", "/p {1 /p load 1 9 put 2 3 4} def p", "1 2 3 4"},
        {"an executable string in a procedure", "/p {1 2} dup 0 (7 8) cvx put def p", "7 8 2"},
        {"what a restore cuts away does not go on", "/s save def /p {s restore 1} def p", ""},
    });
}

TEST(ExecuteTest, FontDirectoryCannotBeHidden) {
    CheckStacks({
        {"departure: a definition is not seen", "/FontDirectory 5 def FontDirectory type", "/dicttype"},
        {"departure: global mode", "/Foo 1 dict definefont pop true setglobal FontDirectory /Foo known", "false"},
        {"departure: local mode", "/Foo 1 dict definefont pop FontDirectory /Foo known", "true"},
    });
}

TEST(ExecuteTest, FlagsTravel) {
    CheckStacks({
        {"departure: exit at the top level stays up until a loop", "{1 2 exit 3} exec {4 count pop 5} exec", "1 2 4 3"},
        {"departure: behind an executable string the flag is not looked at",
         "/p [ (exit) cvx 1 2 /count cvx 3 ] cvx def p", "1 2 2"},
        {"exit leaves the innermost loop", "2 {1 {exit 9} repeat 3} repeat", "3 3"},
        {"departure: stop ends a loop and is swallowed", "{{stop} loop 5} stopped", "5 false"},
        {"stop without a loop", "{1 stop 2} stopped", "1 true"},
        {"departure: exit passes stopped", "{{exit} stopped 7} loop 8", "false 8"},
    });
}

TEST(ExecuteTest, ErrorsPassStopped) {
    CheckStacks(
        {{"departure: in stopped", "{1 0 get} stopped 5", "1 0", PSERR_TYPECHECK},
         {"departure: errordict is not asked", "errordict /undefined {pop 5} put nosuch", "", PSERR_UNDEFINED}});
    const RunResult result =
        RunAsFile("%!PS\n0 0 moveto 9 9 lineto stroke {nosuch} stopped 0 0 moveto 5 5 lineto stroke ");
    EXPECT_EQ(result.entities.size(), 1u);
    ASSERT_EQ(result.boxes.size(), 1u);
    EXPECT_EQ(result.boxes[0], "EPS文件解释失败!\n错误类型:名称未定义");
}

TEST(ExecuteTest, RecursionIsBounded) {
    for (const char* program :
         {"/f {f} def f", "/f {f 1} def f", "/f (f ) cvx def f", "/a /a cvx def a", "/f {{f} exec} def f",
          "/f {true {f} if} def f", "/f {1 {f} repeat} def f", "/f {[1] {pop f} forall} def f",
          "/f {{f} stopped} def f", "/s (s exec) cvx def /s load exec", "/f {gsave f 1} def f", "/f {{f} loop} def f",
          "/f {currentfile f 1} def f"}) {
        EXPECT_EQ(RunText(program).error, PSERR_RANGE) << program;
    }
    EXPECT_EQ(RunText("/f {dup 0 gt {1 sub f} if} def 2000 f").stack, "0") << "what programs need has room";
}

TEST(ExecuteTest, StaleObjectsAreHarmless) {
    // Objects newer than a save, left behind on stacks and in old objects: empty from the restore on.
    for (const char* program :
         {"save [1 2] exch restore length", "save (abc) exch restore length", "save 3 dict exch restore length",
          "save 3 dict begin restore /a 1 def currentdict length",
          "/p 1 array def save p 0 [5] put restore p 0 get length", "save {1 2} exch restore exec",
          "save {1 2} bind exch restore cvx exec", "save (1 2) cvx exch restore exec",
          "save gstate exch restore setgstate 1 1 moveto currentpoint", "save [3] 0 setdash restore currentdash",
          "save << /FontType 3 >> setfont restore (a) {show} stopped",
          "save << >> setpagedevice restore currentpagedevice length", "save [1] cvx exch restore 1 exch repeat",
          "save [1 2] exch restore {} forall", "save [1 2] exch restore aload", "save [1 2] exch restore dup eq",
          "save (a) exch restore cvn", "save currentfile exch restore closefile",
          "true setglobal << >> false setglobal dup /x save [1] exch 4 1 roll put restore /x get length"}) {
        const RunResult result = RunText(program);
        SUCCEED() << program << result.stack;
    }
}

TEST(OperatorChainTest, EveryNameIsClaimedWhereItShouldBe) {
    const std::set<std::string> refused = {"setsystemparams",   "currentsystemparams", "setuserparams",
                                           "currentuserparams", "setdevparams",        "currentdevparams",
                                           "vmreclaim",         "setvmthreshold",      "vmstatus",
                                           "setucacheparams",   "ucachestatus"};
    std::set<std::string> claimed;
    int lastPlace = 0;
    for (const ChainLink& link : OperatorChain()) {
        EXPECT_GE(link.place, lastPlace);
        lastPlace = link.place;
        for (const OpRow& row : *link.table) {
            const bool fresh = claimed.insert(row.name).second;
            EXPECT_TRUE(fresh || std::string(row.name) == "currentfile") << row.name;
        }
    }
    EXPECT_EQ(lastPlace, 31);
    for (const char* name : g_OperatorNames) {
        EXPECT_NE(claimed.count(name) == 1, refused.count(name) == 1) << name;
        claimed.insert(name);
    }
    EXPECT_EQ(claimed.size(), 330u) << "a claimed name that no dictionary holds";
}

}  // namespace
