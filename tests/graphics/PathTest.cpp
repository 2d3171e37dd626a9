// The path store and the operators that build a path of lines and curves.
#include "graphics/PathStore.h"

#include "graphics/GraphState.h"
#include "interp/FilterEPS.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

struct RecordCase {
    const char* name;
    const char* program;
    const char* records;
};

/// Runs each program and compares the records that it leaves, each as its point and /m, /l, /c or /h.
void CheckRecords(std::initializer_list<RecordCase> cases) {
    for (const RecordCase& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.program);
        EXPECT_EQ(RunText(std::string(c.program) + " {/m} {/l} {/c} {/h} pathforall").stack, c.records);
    }
}

/// Leaves the number of records on the stack.
constexpr const char* kCountRecords = " 0 {pop pop 1 add} {pop pop 1 add} {6 {pop} repeat 3 add} {1 add} pathforall";

TEST(PathTest, Records) {
    CheckRecords({
        {"nothing", "", ""},
        {"move, line and curve", "0 0 moveto 72 36 lineto 1 2 144 4 72 72 curveto",
         "0.0 0.0 /m 72.0 36.0 /l 1.0 2.0 144.0 4.0 72.0 72.0 /c"},
        {"the second of two movetos counts", "0 0 moveto 72 0 moveto 72 72 lineto", "72.0 0.0 /m 72.0 72.0 /l"},
        {"departure: no moveto is needed", "72 0 lineto 0 72 lineto", "72.0 0.0 /l 0.0 72.0 /l"},
        {"points relative to one current point", "72 72 moveto 72 0 rlineto 36 0 36 72 0 72 rcurveto -72 -72 rmoveto",
         "72.0 72.0 /m 144.0 72.0 /l 180.0 72.0 180.0 144.0 144.0 144.0 /c 72.0 72.0 /m"},
        {"the CTM counts when the operator runs", "72 0 moveto 2 2 scale 72 0 lineto .5 .5 scale",
         "72.0 0.0 /m 144.0 0.0 /l"},
        {"relative points under a CTM", "10 20 translate 2 3 scale 36 36 moveto 36 36 rlineto initmatrix",
         "82.0 128.0 /m 154.0 236.0 /l"},
        {"newpath", "0 0 moveto 72 0 lineto newpath 36 0 moveto", "36.0 0.0 /m"},
    });
}

TEST(PathTest, ClosePath) {
    CheckRecords({
        {"an empty path", "closepath", ""},
        {"departure: one line stays open", "0 0 moveto 72 0 lineto closepath", "0.0 0.0 /m 72.0 0.0 /l"},
        {"two lines", "36 0 moveto 72 0 lineto 72 72 lineto closepath", "36.0 0.0 /m 72.0 0.0 /l 72.0 72.0 /l /h"},
        {"a curve alone", "36 0 moveto 0 0 72 0 72 72 curveto closepath",
         "36.0 0.0 /m 0.0 0.0 72.0 0.0 72.0 72.0 /c /h"},
        {"the second does nothing", "0 0 moveto 72 0 lineto 72 72 lineto closepath closepath",
         "0.0 0.0 /m 72.0 0.0 /l 72.0 72.0 /l /h"},
        {"the path goes on behind it", "0 0 moveto 72 0 lineto 72 72 lineto closepath 0 72 lineto closepath",
         "0.0 0.0 /m 72.0 0.0 /l 72.0 72.0 /l /h 0.0 72.0 /l"},
        {"back to the last moveto",
         "0 0 moveto 72 0 lineto 36 36 moveto 72 36 lineto 72 72 lineto closepath 0 36 rlineto",
         "0.0 0.0 /m 72.0 0.0 /l 36.0 36.0 /m 72.0 36.0 /l 72.0 72.0 /l /h 36.0 72.0 /l"},
        {"a replaced moveto", "0 0 moveto 36 0 moveto 72 0 lineto closepath", "36.0 0.0 /m 72.0 0.0 /l"},
        {"behind an emptied path", "0 0 moveto 72 0 lineto newpath 72 0 lineto 72 72 lineto closepath",
         "72.0 0.0 /l 72.0 72.0 /l"},
    });
    CheckStacks(
        {{"the current point behind it", "36 72 moveto 72 0 lineto 72 72 lineto closepath currentpoint", "36.0 72.0"}});
}

TEST(PathTest, Failures) {
    CheckStacks({
        {"no current point", "currentpoint", "", PSERR_NOCURRENTPOINT},
        {"nor behind newpath", "0 0 moveto newpath currentpoint", "", PSERR_NOCURRENTPOINT},
        {"rmoveto keeps its operands", "1 2 rmoveto", "1 2", PSERR_NOCURRENTPOINT},
        {"rlineto", "1 2 rlineto", "1 2", PSERR_NOCURRENTPOINT},
        {"rcurveto", "1 2 3 4 5 6 rcurveto", "1 2 3 4 5 6", PSERR_NOCURRENTPOINT},
        {"a missing operand", "1 moveto", "1", PSERR_STACKUNDERFLOW},
        {"no number", "1 (a) lineto", "1 (a)", PSERR_TYPECHECK},
        {"no number far down", "1 /a 3 4 5 6 curveto", "1 /a 3 4 5 6", PSERR_TYPECHECK},
        {"an inverse that is none", "72 0 moveto 0 0 scale currentpoint pop dup eq", "false"},
    });
}

TEST(PathTest, Limit) {
    const auto check = [](const char* name, const std::string& program, const char* stack) {
        SCOPED_TRACE(name);
        EXPECT_EQ(RunText(program).stack, stack);
    };
    const std::string fill = "0 0 moveto 1 1 9997 {0 lineto} for ";  // 9998 records
    check("a curve is never cut", fill + "1 1 2 2 3 3 curveto" + kCountRecords, "9998");
    check("a line fits", fill + "72 72 lineto currentpoint" + kCountRecords, "72.0 72.0 9999");
    const std::string full = fill + "72 72 lineto 72 0 lineto ";
    check("the last one", full + "currentpoint" + kCountRecords, "72.0 0.0 10000");
    check("what is too much is dropped", full + "36 36 lineto closepath 0 72 moveto currentpoint" + kCountRecords,
          "72.0 0.0 10000");
    check("a full path does not replace its last moveto either",
          fill + "72 72 lineto 72 0 moveto 0 0 moveto currentpoint", "72.0 0.0");
    check("a curve to the brim",
          "0 0 moveto 1 1 9996 {0 lineto} for 1 1 2 2 72 72 curveto currentpoint" + std::string(kCountRecords),
          "72.0 72.0 10000");
}

TEST(PathTest, CopiesOfTheStateHaveTheirOwnPath) {
    CheckRecords({
        {"added behind gsave", "0 0 moveto gsave 72 0 lineto grestore 0 72 lineto", "0.0 0.0 /m 0.0 72.0 /l"},
        {"seen behind gsave", "0 0 moveto gsave 72 0 lineto", "0.0 0.0 /m 72.0 0.0 /l"},
        {"emptied behind gsave", "0 0 moveto 72 0 lineto gsave newpath 36 0 moveto grestore", "0.0 0.0 /m 72.0 0.0 /l"},
        {"added below a copy", "0 0 moveto 72 0 lineto gstate 0 72 lineto newpath 36 36 moveto setgstate",
         "0.0 0.0 /m 72.0 0.0 /l"},
        {"replaced in the copy", "0 0 moveto gsave 36 0 moveto grestore", "0.0 0.0 /m"},
        {"a subpath's start is kept", "36 0 moveto 72 0 lineto gsave 0 0 moveto grestore 72 72 lineto closepath",
         "36.0 0.0 /m 72.0 0.0 /l 72.0 72.0 /l /h"},
    });
}

TEST(PathTest, HostUnits) {
    for (const int version : {4, 5}) {
        SCOPED_TRACE(version);
        TestFrame frame;
        CFilterEPS machine(version);
        ASSERT_EQ(machine.ScanBuffer("72 -72 moveto 30 30 lineto"), 1);
        const CGraphState& state = *machine.GetCurrentGState();
        tagPLPoint record;
        ASSERT_EQ(state.GetPathRecord(0, record), 1);
        point_2d point = record.pt;
        EXPECT_EQ(point.x, version < 5 ? 1016.0f : 25.4f);
        EXPECT_EQ(point.y, version < 5 ? -1016.0f : -25.4f);
        ASSERT_EQ(state.GetPathRecord(1, record), 1);
        point = record.pt;
        // Rounded to float before the scale of the old versions, and not only behind it.
        EXPECT_EQ(point.x, version < 5 ? 0x1.a75554p+8f : 0x1.52aaaap+3f);
        EXPECT_EQ(state.GetPathRecord(2, record), 0);
        EXPECT_EQ(state.GetPathRecord(-1, record), 0);
    }
    EXPECT_EQ(RunText("72 36 moveto currentpoint", {.hostVersion = 4}).stack, "72.0 36.0");
}

}  // namespace
