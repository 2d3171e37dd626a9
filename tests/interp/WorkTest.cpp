// An operator that touches many elements or bytes counts as many steps, so that the host is asked as often as for small
// ones and a limit of time holds.
#include <gtest/gtest.h>

#include <string>

#include "complete/CompleteDialect.h"
#include "objects/Work.h"
#include "support/Program.h"

namespace {

constexpr int LARGE = 20000;  ///< elements that each operator below touches, or BYTES_PER_STEP times as many bytes
constexpr int TIMES = 8;

struct WorkCase {
    const char* name;
    const char* setup;
    const char* work;
    bool complete = false;
};

TEST(WorkTest, LargeOperandsAreManySteps) {
    const std::string head = "/n " + std::to_string(LARGE) + " def /bytes n " + std::to_string(BYTES_PER_STEP) +
                             " mul def /numbers {0 1 n 1 sub {} for} bind def ";
    const WorkCase cases[] = {
        {"roll", "numbers", "n 1 roll"},
        {"index", "numbers", "n 1 sub index pop"},
        {"copy of the stack", "numbers", "n copy n {pop} repeat"},
        {"counttomark", "mark numbers", "counttomark pop"},
        {"cleartomark", "/a n array def", "mark a aload pop cleartomark"},
        {"clear", "/a n array def", "a aload clear"},
        {"array", "", "n array pop"},
        {"aload and astore", "/a n array def", "a aload astore pop"},
        {"packedarray", "/a n array def", "a aload pop n packedarray pop"},
        {"]", "/a n array def", "[ a aload pop ] pop"},
        {"copy of an array", "/a n array def /b n array def", "a b copy pop"},
        {"putinterval", "/a n array def /b n array def", "a 0 b putinterval"},
        {"copy of a dictionary", "/d 1 dict def numbers n {d exch dup put} repeat", "d 1 dict copy pop"},
        {"forall over a dictionary", "/d 1 dict def numbers n {20 string cvs cvn d exch 0 put} repeat",
         "d {pop pop exit} forall d /x 0 put d /x undef"},
        {"bind", "/a n array cvx def", "/a load bind pop"},
        {"string", "", "bytes string pop"},
        {"copy of a string", "/s bytes string def /t bytes string def", "s t copy pop"},
        {"eq", "/s bytes string def /t bytes string def", "s t eq pop"},
        {"bind below many dictionaries", "n {1 dict begin} bind repeat", "{nosuch} bind pop"},
        {"load from below many dictionaries", "/x 1 def n {1 dict begin} bind repeat", "/x load pop"},
        {"where below many dictionaries", "n {1 dict begin} bind repeat", "/nosuch where pop"},
        {"search", "/s bytes string def", "s (x) search {pop pop} if pop"},
        {"restore", "/d 1 dict def numbers n {d exch dup put} repeat", "save restore"},
        {"save over many states", "n {gsave} repeat", "save restore"},
        {"scalefont", "/f currentfont dup length 1 add dict copy dup /X n array put def", "f 2 scalefont pop"},
        {"stroke", "", "0 0 moveto n {1 1 rlineto} repeat stroke"},
        {"pathbbox", "0 0 moveto n {1 1 rlineto} repeat", "pathbbox pop pop pop pop", true},
        {"clip", "0 0 moveto n {1 1 rlineto} repeat", "clip", true},
        {">>", "", "<< n {rand 1} bind repeat >> pop", true},
    };
    for (const WorkCase& c : cases) {
        RunSettings settings;
        if (c.complete) settings.dialect = MakeDialect<CCompleteDialect>;
        const auto countQuestions = [&](int times) {
            const RunResult result =
                RunText(head + c.setup + " " + std::to_string(times) + " {" + c.work + "} repeat clear", settings);
            EXPECT_EQ(result.error, PSERR_NONE) << c.name;
            return result.questions;
        };
        EXPECT_GE(countQuestions(TIMES + 1) - countQuestions(1), TIMES - 1) << c.name;
    }
}

TEST(WorkTest, AStraightProcedureIsAskedBehindEachLargeOperator) {
    const auto countQuestions = [](int times) {
        std::string body;
        for (int i = 0; i < times; ++i) body += "a aload pop clear ";
        return RunText("/a " + std::to_string(LARGE) + " array def {" + body + "} exec").questions;
    };
    EXPECT_GE(countQuestions(TIMES + 1) - countQuestions(1), TIMES - 1);
}

TEST(WorkTest, TheRunEndsWithTheLargeOperator) {
    RunSettings settings;
    settings.patience = 2;
    const RunResult result = RunText("/s 6000000 string def {s s eq pop} loop", settings);
    EXPECT_EQ(result.result, -1);
    EXPECT_EQ(result.error, PSERR_NONE);
}

}  // namespace
