// Where the program of a file begins and ends in the complete dialect; and what it tells of memory and time.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};
const std::string kLine = "0 0 moveto 72 0 lineto stroke\n";

TEST(CompleteProgramTest, Begins) {
    struct Case {
        const char* name;
        std::string head;
        bool runs;
    };
    for (const Case& c : {
             Case{"as ever", "%!PS-Adobe-3.0 EPSF-3.0\n", true},
             Case{"two characters", "%!\n", true},
             Case{"blanks and ^D", "\4\r\n \n%!PS\n", true},
             Case{"a byte order mark", "\xef\xbb\xbf%!PS\n", true},
             Case{"job control", "\x1b%-12345X@PJL JOB\r\n@PJL ENTER LANGUAGE = POSTSCRIPT\r\n%!PS\n", true},
             Case{"directly behind the escape", "\x1b%-12345X%!PS\n", true},
             Case{"at the end of 8 KiB", std::string(8190, '\n') + "%!\n", true},
             Case{"beyond 8 KiB", std::string(8191, '\n') + "%!\n", false},
             Case{"behind a line of something else", "hello\n%!PS\n", false},
             Case{"a comment", "% !PS\n", false},
             Case{"nothing", "", false},
         }) {
        SCOPED_TRACE(c.name);
        const RunResult result = RunAsFile(c.head + kLine, kComplete);
        EXPECT_EQ(result.entities.size(), c.runs ? 1u : 0u);
        EXPECT_EQ(result.error, c.runs ? PSERR_NONE : PSERR_FORMAT);
    }
}

TEST(CompleteProgramTest, Ends) {
    struct Case {
        const char* name;
        std::string program;
        std::size_t entities;
        int error;
    };
    for (const Case& c : {
             Case{"%%EOF is a comment", "%%EOF\n" + kLine, 1, PSERR_NONE},
             Case{"what follows it is no error", kLine + "%%EOF\nnosuch\n", 1, PSERR_NONE},
             Case{"nor is a preview", kLine + "%%EOF\n\x01\xff{(\n", 1, PSERR_NONE},
             Case{"with more on the line", kLine + "%%EOF -- \r\n> >\n", 1, PSERR_NONE},
             Case{"nor is the byte that ends a job", kLine + "\4\n", 1, PSERR_NONE},
             Case{"before the last one it is", "%%EOF\nnosuch\n%%EOF\n", 0, PSERR_UNDEFINED},
             Case{"inside a string it is no end", "(\n%%EOF\n) nosuch\n", 0, PSERR_UNDEFINED},
             Case{"the last token runs", "0 0 moveto 72 0 lineto stroke", 1, PSERR_NONE},
             Case{"behind a CR, too", "0 0 moveto 72 0 lineto stroke\r", 1, PSERR_NONE},
             Case{"an open string is an error", kLine + "(abc", 1, PSERR_SYNTAX},
             Case{"an open procedure", kLine + "{abc", 1, PSERR_SYNTAX},
         }) {
        SCOPED_TRACE(c.name);
        const RunResult result = RunAsFile("%!PS\n" + c.program, kComplete);
        EXPECT_EQ(result.entities.size(), c.entities);
        EXPECT_EQ(result.error, c.error);
        EXPECT_EQ(result.boxes.size(), c.error == PSERR_NONE ? 0u : 1u);
    }
}

TEST(CompleteProgramTest, MemoryAndTime) {
    CheckStacks(
        {
            {"vmstatus", "vmstatus exch sub 1000000 gt exch", "true 0"},
            {"of the font cache",
             "mark 7 8 setcacheparams mark 1 2 3 4 setcacheparams mark 9 setcacheparams currentcacheparams",
             "mark 2 3 9"},
            {"without a mark", "{5 setcacheparams} stopped $error /errorname get", "5 true /unmatchedmark"},
            {"its level", "save vmstatus pop pop exch pop", "1"},
            {"vmreclaim", "-2 vmreclaim 2 vmreclaim {3 vmreclaim} stopped", "3 true"},
            {"setvmthreshold", "-1 setvmthreshold {true setvmthreshold} stopped", "true true"},
            {"time goes on", "usertime realtime usertime exch sub exch pop 0 gt", "true"},
            {"waiting ends", "usertime 100 add {dup usertime lt {exit} if} loop pop", ""},
            {"about itself", "languagelevel version type product type revision type serialnumber type",
             "3 stringtype stringtype integertype integertype"},
        },
        kComplete);
}

}  // namespace
