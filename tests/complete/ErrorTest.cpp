// Errors in the complete dialect: handlers, $error, what `stopped` catches, the operands that come back, and how a run
// ends that nobody caught.
#include <algorithm>
#include <random>

#include "complete/CompleteDialect.h"
#include "interp/OperatorNames.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

TEST(CompleteErrorTest, StoppedCatches) {
    CheckStacks(
        {
            {"no error", "{1} stopped", "1 false"},
            {"operands are back", "{1 (a) add} stopped", "1 (a) true"},
            {"an undefined name", "{2 nosuch 3} stopped $error /errorname get", "2 true /undefined"},
            {"what failed", "{pop} stopped $error /command get", "true --pop--"},
            {"a name that failed", "{nosuch} stopped $error /command get dup xcheck", "true nosuch true"},
            {"stop alone", "{1 stop 2} stopped $error /newerror get", "1 true false"},
            {"through loops", "{1 1 9 {dup 3 eq {stop} if} for} stopped", "1 2 3 true"},
            {"through strings", "{(1 stop 2) cvx exec 3} stopped", "1 true"},
            {"nested", "{{pop} stopped stop 1} stopped", "true true"},
            {"the inner one first", "{{stop} stopped 7} stopped", "true 7 false"},
            {"literals stay", "(a) stopped [1] stopped /n stopped", "(a) false [1] false /n false"},
            {"an executable name", "/add cvx stopped", "true"},
            {"syntax", "<28> cvx stopped $error /errorname get", "true /syntaxerror"},
            {"recursion", "/f {f 1} def {f} stopped $error /errorname get", "true /execstackoverflow"},
            {"the stacks", "1 2 {3 pop pop pop pop} stopped pop $error /ostack get", "[]"},
            {"unless it is told not to", "$error /recordstacks false put {pop} stopped $error /ostack known",
             "true false"},
        },
        kComplete);
}

TEST(CompleteErrorTest, Exit) {
    CheckStacks(
        {
            {"leaves a loop", "1 {2 exit 3} loop 4", "1 2 4"},
            {"leaves the innermost", "2 {5 {1 exit} repeat 8} repeat", "1 8 1 8"},
            {"from a text", "{(1 exit 2) cvx exec 3} loop 4", "1 4"},
            {"from forall", "[1 2 3] {dup 2 eq {exit} if} forall", "1 2"},
            {"from pathforall", "0 0 moveto 1 1 lineto {exit} {} {} {} pathforall", "0.0 0.0"},
            {"not beyond stopped", "{{exit} stopped $error /errorname get exit} loop", "true /invalidexit"},
        },
        kComplete);
}

TEST(CompleteErrorTest, Handlers) {
    CheckStacks(
        {
            {"one of the program's own", "errordict /undefined {pop 5} put 1 nosuch 2", "1 5 2"},
            {"it sees operands and command", "errordict /typecheck {3 1 roll exch} put 1 (a) add", "--add-- (a) 1"},
            {"an error in a handler", "errordict /undefined {pop pop pop} put {nosuch} stopped $error /errorname get",
             "true /stackunderflow"},
            {"a handler that stops", "errordict /undefined {pop stop} put {nosuch 1} stopped $error /newerror get",
             "true false"},
            {"signalled by the program",
             "/signal {errordict exch get exec} def {/op cvx /rangecheck signal} stopped $error /errorname get",
             "true /rangecheck"},
            {"handleerror", "{pop} stopped handleerror $error /newerror get", "true false"},
            {"its own handleerror", "errordict /handleerror {7} put handleerror", "7"},
        },
        kComplete);
}

TEST(CompleteErrorTest, UncaughtEndsTheRun) {
    struct Case {
        const char* program;
        int code;
        const char* error;
        const char* running;
    };
    for (const Case& c : {
             Case{"1 (a) add", PSERR_TYPECHECK, "typecheck", "add"},
             Case{"nosuch", PSERR_UNDEFINED, "undefined", "nosuch"},
             Case{"/f {f 1} def f", PSERR_RANGE, "execstackoverflow", "f"},
             Case{"(/no/such/file) (r) file", PSERR_IO, "undefinedfilename", "file"},
             Case{"{pop} stopped pop stop", PSERR_STACKUNDERFLOW, "stackunderflow", "pop"},
             Case{"errordict /undefined {/nosuch /unregistered errordict /unregistered get exec} put nosuch",
                  PSERR_SYNTAX, "unregistered", ""},
             Case{"exit", PSERR_SYNTAX, "invalidexit", "exit"},
             Case{"stop", PSERR_NONE, "stop", "stop"},
             Case{"errordict /handleerror {$error /newerror false put} put nosuch", PSERR_NONE, "stop", "stop"},
             Case{")", PSERR_NONE, "", ""},
             Case{">", PSERR_SYNTAX, "syntaxerror", ""},
         }) {
        SCOPED_TRACE(c.program);
        const RunResult result =
            RunAsFile("%!PS\n0 0 moveto 72 0 lineto stroke\n" + std::string(c.program) + "\n", kComplete);
        EXPECT_EQ(result.entities.size(), 1u);
        EXPECT_EQ(result.error, c.code);
        EXPECT_EQ(result.boxes.size(), c.code == PSERR_NONE ? 0u : 1u);
        EXPECT_EQ(result.report.failure ? result.report.failure->strError : "", c.error);
        EXPECT_EQ(result.report.failure ? result.report.failure->strOperator : "", c.running);
    }
    EXPECT_EQ(RunAsFile("%!PS\n{pop} stopped\n", kComplete).report.failure, std::nullopt);
    EXPECT_EQ(RunAsFile("%!PS\n1 quit nosuch\n", kComplete).result, 1);
}

// Whatever an operator meets, its operands are there afterwards.
TEST(CompleteErrorTest, FailedOperatorsLeaveTheirOperands) {
    constexpr const char* objects[] = {"7",         "-3",
                                       "2.5",       "/name",
                                       "[1 2 3]",   "{1 2}",
                                       "(string)",  "()",
                                       "true",      "<< /a 1 >>",
                                       "mark",      "null",
                                       "/add load", "[1 0 0 1 0 0]",
                                       "0",         "(%lineedit) (r) file",
                                       "gstate",    "<</FontType 3>>",
                                       "save"};
    std::mt19937 random(20261123);
    for (const char* name : g_OperatorNames) {
        const std::string call = name;
        if (call == "loop" || call == "restore" || call == "quit") continue;
        for (int round = 0; round < 12; ++round) {
            std::string program;
            for (auto n = random() % 7; n > 0; --n)
                program += std::string(objects[random() % std::size(objects)]) + " ";
            const RunResult failed = RunText(program + call, kComplete);
            // What a procedure did before it failed is another matter.
            if (failed.result == 1 || !failed.report.failure || failed.report.failure->strOperator != call) continue;
            EXPECT_EQ(failed.stack, RunText(program, kComplete).stack) << program << call;
        }
    }
}

}  // namespace
