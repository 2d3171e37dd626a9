// Arcs. How many curves make an arc is the host's affair, so what is looked at is where they begin, end and
// pass.
#include "support/Program.h"

namespace {

/// Runs each program behind a few words to look at the path.
void CheckArcs(std::initializer_list<StackCase> cases) {
    const std::string words =
        "/whole {round cvi} def /cp {currentpoint whole exch whole exch} def "
        "/box {pathbbox 4 {whole 4 1 roll} repeat} def "
        "/lines {0 {pop pop 1 add} {pop pop 1 add} {6 {pop} repeat} {} pathforall} def ";
    for (const StackCase& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.program);
        const RunResult result = RunText(words + c.program);
        EXPECT_EQ(result.stack, c.stack);
        EXPECT_EQ(result.error, c.error);
    }
}

TEST(ArcTest, Arcs) {
    CheckArcs({
        {"a quarter", "0 0 72 0 90 arc cp", "0 72"},
        {"it begins a path", "0 0 72 0 90 arc {} {} {6 {pop} repeat} {} pathforall", "72.0 0.0"},
        {"a quarter stays in its quadrant", "0 0 72 0 90 arc box", "0 0 72 72"},
        {"the other way round", "0 0 72 90 0 arcn cp box", "72 0 0 0 72 72"},
        {"a full turn", "0 0 72 0 360 arc cp pathbbox 60 gt exch 60 gt and exch -60 lt and exch -60 lt and",
         "72 0 true"},
        {"arc goes up to the greater angle", "0 0 100 90 0 arc cp pathbbox pop pop pop -99 lt", "100 0 true"},
        {"arcn goes down to the smaller angle", "0 0 100 0 90 arcn cp pathbbox pop pop pop -99 lt", "0 100 true"},
        {"departure: one turn is added, and no more", "0 0 100 800 0 arc cp", "100 0"},
        {"a line joins it", "0 0 moveto 0 0 72 0 90 arc lines cp", "2 0 72"},
        {"a small gap is not bridged", "71.9 0 moveto 0 0 72 0 90 arc lines", "1"},
        {"a gap just beyond", "71.8 0 moveto 0 0 72 0 90 arc lines", "2"},
        {"behind closepath a subpath begins", "0 0 moveto 9 0 lineto 9 9 lineto closepath 0 0 72 0 90 arc lines", "4"},
        {"two arcs make one subpath", "0 0 72 0 90 arc 0 0 72 90 180 arc lines cp", "1 -72 0"},
        {"the CTM makes it elliptical", "2 1 scale 0 0 36 0 90 arc initmatrix box", "0 0 72 36"},
        {"no sweep", "0 0 72 45 45 arc lines", "1"},
        {"no radius", "10 20 0 0 360 arc cp", "10 20"},
        {"an operand of another type", "0 0 72 (a) 90 arc", "0 0 72 (a) 90", PSERR_TYPECHECK},
        {"too few operands", "0 72 0 90 arcn", "0 72 0 90", PSERR_STACKUNDERFLOW},
        {"no finite angle", "0 0 72 1e38 dup mul dup mul dup mul dup mul dup mul 90 arc lines", "1"},
    });
    // Below version 5 the gap that is not bridged is 3 units of 1/40 mm: 0.2126 points.
    EXPECT_EQ(RunText("71.8 0 moveto 0 0 72 0 90 arc 0 {pop pop 1 add} dup {6 {pop} repeat} {} pathforall",
                      {.hostVersion = 4})
                  .stack,
              "1");
}

TEST(ArcTest, TangentArcs) {
    CheckArcs({
        {"a right corner", "0 0 moveto 10 0 10 10 2 arcto 4 {whole 4 1 roll} repeat", "8 0 10 2"},
        {"its end is the current point", "0 0 moveto 10 0 10 10 2 arct lines cp", "2 10 2"},
        {"a right turn", "0 0 moveto 0 10 10 10 2 arct lines cp", "2 2 10"},
        {"an obtuse corner", "0 0 moveto 10 0 20 10 4 arcto 4 {10 mul whole 4 1 roll} repeat", "83 0 112 12"},
        {"user space", "2 3 scale 0 0 moveto 10 0 10 10 2 arcto 4 {whole 4 1 roll} repeat cp", "8 0 10 2 10 2"},
        {"no line where the arc begins", "8 0 moveto 10 0 10 10 2 arct lines", "1"},
        {"behind closepath", "0 0 moveto 9 0 lineto 9 9 lineto closepath 10 0 10 10 2 arct lines", "4"},
        {"three points in a line", "7 0 0 moveto 10 0 20 0 2 arct", "7", PSERR_SYNTAX},
        {"no leg", "0 0 moveto 0 0 20 0 2 arcto", "", PSERR_SYNTAX},
        {"an empty path", "10 0 10 10 2 arct", "10 0 10 10 2", PSERR_NOCURRENTPOINT},
        {"an operand of another type", "0 0 moveto 10 0 /a 10 2 arcto", "10 0 /a 10 2", PSERR_TYPECHECK},
        {"too few operands", "0 0 moveto 0 10 10 2 arct", "0 10 10 2", PSERR_STACKUNDERFLOW},
    });
}

}  // namespace
