// The path operators that look at a path, run one, or do nothing.
#include "support/Program.h"

namespace {

TEST(PathUtilityTest, OperatorsThatLeaveThePathAlone) {
    for (const char* op :
         {"flattenpath", "reversepath", "strokepath", "clippath", "initclip", "clip", "eoclip", "ucache",
          "(text) true charpath", "1 (a) /b 4 setbbox", "{1 2 3} ustrokepath", "{0 0 moveto} matrix ustrokepath"}) {
        SCOPED_TRACE(op);
        const RunResult result = RunText("0 0 moveto 0 0 9 9 72 0 curveto 0 72 lineto " + std::string(op) +
                                         " {/m} {/l} {/c} {/h} pathforall");
        EXPECT_EQ(result.stack, "0.0 0.0 /m 0.0 0.0 9.0 9.0 72.0 0.0 /c 0.0 72.0 /l");
        EXPECT_EQ(result.error, PSERR_NONE);
    }
    CheckStacks({
        {"no path operand", "(a) ustrokepath", "(a)", PSERR_TYPECHECK},
        {"departure: no path below the matrix", "1 matrix ustrokepath", "1", PSERR_TYPECHECK},
        {"departure: half of charpath", "(a) charpath", "(a)", PSERR_STACKUNDERFLOW},
        {"three numbers", "1 2 3 setbbox", "1 2 3", PSERR_STACKUNDERFLOW},
        {"departure: upath", "true upath", "true", PSERR_UNSUPPORTED},
    });
}

TEST(PathUtilityTest, RectClip) {
    CheckStacks({
        {"numbers", "7 0 0 moveto 1 2 3 4 rectclip currentpoint", "7", PSERR_NOCURRENTPOINT},
        {"departure: an array", "7 0 0 moveto [1 2 3] rectclip currentpoint", "7", PSERR_NOCURRENTPOINT},
        {"departure: a string", "7 (1) rectclip", "7"},
        {"departure: another type", "72 0 moveto /a {rectclip} stopped", "/a", PSERR_TYPECHECK},
        {"too few numbers", "2 3 4 rectclip", "2 3 4", PSERR_STACKUNDERFLOW},
    });
}

TEST(PathUtilityTest, PathBBox) {
    CheckStacks({
        {"lines", "72 36 moveto 144 0 lineto 0 72 lineto pathbbox", "0.0 0.0 144.0 72.0"},
        {"control points count", "0 0 moveto 0 72 72 72 72 0 curveto pathbbox", "0.0 0.0 72.0 72.0"},
        {"user space", "2 2 scale 36 36 moveto 72 72 lineto pathbbox", "36.0 36.0 72.0 72.0"},
        {"departure: each corner is mapped by itself", "0 0 moveto 72 36 lineto [0 1 -1 0 0 0] setmatrix pathbbox",
         "0.0 0.0 36.0 -72.0"},
        {"departure: no path", "pathbbox", "", PSERR_SYNTAX},
        {"departure: one point has no box", "0 0 moveto pathbbox", "", PSERR_SYNTAX},
        {"departure: clippath makes no path", "clippath pathbbox", "", PSERR_SYNTAX},
    });
}

TEST(PathUtilityTest, PathForAll) {
    CheckStacks({
        {"a close has no operands", "0 0 moveto 72 0 lineto 72 72 lineto closepath {/m} {/l} {/c} {count} pathforall",
         "0.0 0.0 /m 72.0 0.0 /l 72.0 72.0 /l 9"},
        {"user space of the moment", "72 0 moveto 144 0 lineto 2 2 scale {} {} {} {} pathforall", "36.0 0.0 72.0 0.0"},
        {"exit ends it", "0 0 moveto 72 0 lineto 36 0 lineto {pop pop} {exit} {} {} pathforall 1 {2} exec",
         "72.0 0.0 1 2"},
        {"an emptied path", "0 0 moveto 72 0 lineto 36 0 lineto {newpath} {} {} {} pathforall count", "0.0 0.0 2"},
        {"a path that grows is walked as far as it was",
         "0 0 moveto 72 0 lineto {2 copy lineto} {2 copy lineto} {} {} pathforall", "0.0 0.0 72.0 0.0"},
        {"departure: a replaced path",
         "0 0 moveto 72 0 lineto 36 0 lineto {newpath 9 9 9 9 9 9 curveto} {/l} {} {} pathforall", "0.0 0.0 9.0 9.0",
         PSERR_SYNTAX},
        {"a failing procedure", "0 0 moveto {pop pop nosuch} {} {} {} pathforall", "", PSERR_UNDEFINED},
        {"packed procedures", "0 0 moveto {} 0 packedarray cvx {} {} pathforall", "0.0 0.0"},
        {"a literal array", "{} {} [1] {} pathforall", "{} {} [1] {}", PSERR_TYPECHECK},
        {"three procedures", "{} {} {} pathforall", "{} {} {}", PSERR_STACKUNDERFLOW},
    });
}

TEST(PathUtilityTest, UAppend) {
    CheckStacks({
        {"adds to the path",
         "0 0 moveto {72 0 lineto 72 72 lineto} uappend currentpoint {pop pop 1} {pop pop 2} {} {} "
         "pathforall",
         "72.0 72.0 1 2 2"},
        {"a literal array of tokens", "[0 0 /moveto cvx] uappend currentpoint", "0.0 0.0"},
        {"names mean the operators", "/lineto {nosuch} def {0 0 moveto 72 0 lineto} uappend currentpoint", "72.0 0.0"},
        {"dictionaries that it left", "{1 dict begin 0 0 moveto 2 dict begin} uappend countdictstack", "3"},
        {"departure: an encoded path", "7 [(a) (b)] uappend", "7", PSERR_UNSUPPORTED},
        {"no array", "(a) uappend", "(a)", PSERR_TYPECHECK},
        {"nothing", "uappend", "", PSERR_STACKUNDERFLOW},
    });
    EXPECT_EQ(RunText("{0 0 moveto nosuch} uappend").dictDepth, 3);
    EXPECT_EQ(RunText("{end 0 0 moveto} uappend").dictDepth, 3);
}

}  // namespace
