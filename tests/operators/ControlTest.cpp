// Control operators: loops to the last pass, the ways out of them, and what runs and what stays.
#include "support/Program.h"

namespace {

TEST(ControlOperatorsTest, Conditions) {
    CheckStacks({
        {"if", "true {1} if false {2} if", "1"},
        {"ifelse", "true {1} {2} ifelse false {1} {2} ifelse", "1 2"},
        {"if: no procedure", "true [1] if", "true [1]", PSERR_TYPECHECK},
        {"if: no boolean", "1 {1} if", "1 {1}", PSERR_TYPECHECK},
        {"if: missing", "{1} if", "{1}", PSERR_STACKUNDERFLOW},
        {"ifelse: no procedure below", "true 1 {2} ifelse", "true 1 {2}", PSERR_TYPECHECK},
        {"ifelse: missing", "{1} {2} ifelse", "{1} {2}", PSERR_STACKUNDERFLOW},
        {"the error of what ran", "true {1 nothing 2} if", "1", PSERR_UNDEFINED},
    });
}

TEST(ControlOperatorsTest, For) {
    CheckStacks({
        {"up", "0 1 3 {} for", "0 1 2 3"},
        {"down", "3 -1 0 {} for", "3 2 1 0"},
        {"not once", "3 1 0 {} for 0 -1 3 {} for", ""},
        {"once", "5 1 5 {} for", "5"},
        {"departure: a real limit makes reals", "0 1 3.0 {} for", "0.0 1.0 2.0 3.0"},
        {"a real increment", "1 0.5 2 {} for", "1.0 1.5 2.0"},
        {"products and no running sums", "0 0 0.1 1 {pop 1 add} for 0 0.1 1 {} for 11 1 roll 10 {pop} repeat",
         "11 1.0"},
        {"departure: an increment of 0 runs nothing", "0 0 5 {} for 5 0 5 {} for 5 0 0 {} for", ""},
        {"departure: nor does a count beyond 32 bits", "0 1e-9 5 {} for 0 1 3e9 {} for", ""},
        {"limits of an integer", "2147483646 1 2147483647 {} for", "2147483646 2147483647"},
        {"no numbers", "0 (1) 3 {} for", "0 (1) 3 {}", PSERR_TYPECHECK},
        {"no procedure", "0 1 3 [] for", "0 1 3 []", PSERR_TYPECHECK},
        {"missing", "1 3 {} for", "1 3 {}", PSERR_STACKUNDERFLOW},
        {"exit", "0 1 9 {dup 2 eq {exit} if} for", "0 1 2"},
        {"error in a pass", "0 1 9 {dup 2 eq {nothing} if} for", "0 1 2", PSERR_UNDEFINED},
    });
}

TEST(ControlOperatorsTest, RepeatAndLoop) {
    CheckStacks({
        {"repeat", "3 {1} repeat 2.9 {2} repeat", "1 1 1 2 2"},
        {"departure: a negative count is no error", "-1 {1} repeat 0 {1} repeat", ""},
        {"repeat: no number", "() {1} repeat", "() {1}", PSERR_TYPECHECK},
        {"repeat: missing", "{1} repeat", "{1}", PSERR_STACKUNDERFLOW},
        {"loop", "0 {1 add dup 5 eq {exit} if} loop", "5"},
        {"loop: no procedure", "1 loop", "1", PSERR_TYPECHECK},
        {"loop: missing", "loop", "", PSERR_STACKUNDERFLOW},
        {"exit ends the innermost", "2 {3 {1 exit} repeat 2} repeat", "1 2 1 2"},
        {"the procedure's body goes away", "save {restore 1 exit} loop 2", "2"},
    });
}

TEST(ControlOperatorsTest, TheFlags) {
    CheckStacks({
        {"departure: exit at the top ends the next procedure behind its first name", "{1 2 exit 3} exec {4 pop 5} exec",
         "1 2"},
        {"departure: a loop clears it", "exit {} loop {4 pop 5} exec", "5"},
        {"departure: strings go on scanning", "{(1 exit 2) cvx exec 3} exec", "1 2"},
        {"departure: no look behind an executable string element", "[(exit) cvx 1 2 /pop cvx 3] cvx exec", "1"},
        {"stop", "{1 stop 2} stopped", "1 true"},
        {"no stop", "{1} stopped", "1 false"},
        {"through calls", "/p {stop 9} def {{p 8} exec 7} stopped", "true"},
        {"departure: a loop swallows stop",
         "{{stop} loop 1} stopped {1 {stop} repeat 2} stopped {[1] {stop} forall} stopped", "1 false 2 false 1 false"},
        {"departure: exit passes through stopped", "{{exit} stopped 1} loop 2", "false 2"},
        {"departure: errors pass through stopped", "{1 0 get} stopped", "1 0", PSERR_TYPECHECK},
    });
}

TEST(ControlOperatorsTest, ExecAndStopped) {
    CheckStacks({
        {"names, operators, strings, procedures",
         "1 2 /add cvx exec 3 /add load exec (4 add) cvx exec {5 add} exec [6 /add cvx] cvx exec", "21"},
        {"literals stay", "/x exec 5 exec [1] exec", "/x 5 [1]"},
        {"literals stay under stopped", "5 stopped /x stopped", "5 false /x false"},
        {"executable objects that don't run stay", "mark cvx exec 5 cvx exec 1 dict cvx stopped", "mark 5 <<0>> false"},
        {"departure: raw tokens stay, made executable they run as in a procedure",
         "{add 7} 0 get exec pop 1 2 {add 7} 0 get cvx exec {add 7} 1 get cvx exec", "3 7"},
        {"departure: as the value of a name they are pushed", "/x {add} 0 get cvx def 1 2 x dup xcheck count",
         "1 2 add true 4"},
        {"departure: files are refused", "(%lineedit) (r) file cvx exec", "-file-", PSERR_UNSUPPORTED},
        {"departure: under stopped, too", "() /ASCIIHexDecode filter cvx stopped", "-filter-", PSERR_UNSUPPORTED},
        {"an unknown name", "/nothing cvx exec", "", PSERR_UNDEFINED},
        {"exec on nothing", "exec", "", PSERR_STACKUNDERFLOW},
        {"stopped on nothing", "stopped", "", PSERR_STACKUNDERFLOW},
        {"recursion without end", "/p {p} def p", "", PSERR_RANGE},
        {"a string that runs itself", "/s (s) cvx def s", "", PSERR_RANGE},
        {"an object that goes away while it runs", "save {pop restore 1 2} exec", "", PSERR_STACKUNDERFLOW},
    });
    for (const char* name : {"countexecstack", "execstack", "quit", "start"}) {
        EXPECT_EQ(RunText(name).error, PSERR_UNSUPPORTED) << name;
    }
}

/// That many bytes of one value.
std::string Zeros(size_t count) { return std::string(count, '0'); }

TEST(ControlOperatorsTest, Eexec) {
    // What stands behind the zeros runs, and cleartomark finds the mark.
    const auto error = [&](const std::string& program) {
        return RunAsFile("%!PS\n" + program +
                         "cleartomark count 1 ne {/wrong load} if currentdict /x known {} {/wrong load} ifelse\n")
            .error;
    };
    const std::string begin = "/x 1 def 7 currentfile eexec ";
    EXPECT_EQ(error(begin + "/wrong load\n" + Zeros(100) + "\r\n\t " + Zeros(100)), PSERR_NONE);
    EXPECT_EQ(error(begin + Zeros(199) + "x" + Zeros(200)), PSERR_NONE) << "a letter sets the count back";
    EXPECT_EQ(error(begin + Zeros(199) + "x" + Zeros(201)), PSERR_UNDEFINED) << "the 201st zero is read";
    EXPECT_EQ(error("/x 1 def 7 5 dict currentfile eexec " + Zeros(200)), PSERR_NONE) << "the dictionary goes";
    EXPECT_EQ(RunAsFile("%!PS\ncurrentfile eexec 0000 /wrong load\n").error, PSERR_NONE) << "the end of the file";
    CheckStacks({
        {"a string is dropped", "1 dict (abc) eexec", "<<0>>"},
        {"departure: a file that is not open", "(%lineedit) (r) file eexec", "mark", PSERR_IO},
        {"departure: a filter is refused", "() /ASCIIHexDecode filter eexec", "-filter-", PSERR_TYPECHECK},
        {"nothing", "eexec", "", PSERR_STACKUNDERFLOW},
    });
}

}  // namespace
