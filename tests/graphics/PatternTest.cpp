// Patterns, which are only remembered, and forms, which are drawn.
#include "support/Program.h"

namespace {

TEST(PatternTest, MakePattern) {
    CheckStacks({
        {"departure: the dictionary itself", "1 dict dup matrix makepattern /x 1 put /x known", "true"},
        {"departure: a packed matrix", "1 dict 1 0 0 1 0 0 6 packedarray makepattern", "<<0>> [1 0 0 1 0 0]",
         PSERR_TYPECHECK},
        {"no dictionary", "1 matrix makepattern", "1 [1.0 0.0 0.0 1.0 0.0 0.0]", PSERR_TYPECHECK},
        {"nothing", "matrix makepattern", "[1.0 0.0 0.0 1.0 0.0 0.0]", PSERR_STACKUNDERFLOW},
    });
}

TEST(PatternTest, SetPattern) {
    CheckStacks({
        {"colored", "7 << /PatternType 1 /PaintType 1 >> setpattern currentcolorspace currentcolor",
         "7 [/Pattern [/DeviceGray]] <<2>>"},
        {"uncolored over RGB",
         "1 0 0 setrgbcolor .1 .2 .3 << /PatternType 1 /PaintType 2 >> setpattern currentcolorspace "
         "currentcolor",
         "[/Pattern [/DeviceRGB]] <<2>> 0.1 0.2 0.3"},
        {"a second one leaves the space alone",
         "/p << /PatternType 1 /PaintType 1 >> def p setpattern p setpattern currentcolorspace",
         "[/Pattern [/DeviceGray]]"},
        {"departure: nothing under the space", "/Pattern setcolorspace .5 << /PatternType 1 /PaintType 2 >> setpattern",
         "0.5", PSERR_SYNTAX},
        {"departure: no kind", "1 dict setpattern", "", PSERR_TYPECHECK},
        {"departure: too few operands", "<< /PatternType 1 /PaintType 2 >> setpattern", "", PSERR_STACKUNDERFLOW},
        {"departure: an operand of another type", "(a) << /PatternType 1 /PaintType 2 >> setpattern", "(a)",
         PSERR_TYPECHECK},
        {"no dictionary", "1 setpattern", "1", PSERR_TYPECHECK},
    });
    EXPECT_EQ(Drawn("1 setgray << /PatternType 1 /PaintType 1 /PaintProc {nosuch} >> setpattern 0 0 moveto "
                    "72 0 lineto fill"),
              "#ffffff open L 0,0 25.4,0")
        << "painted in the last gray";
}

TEST(PatternTest, ExecForm) {
    const std::string form =
        "/f << /Matrix [2 0 0 2 0 0] /PaintProc {/d exch def 0 0 moveto 36 0 lineto stroke} >> def ";
    EXPECT_EQ(Drawn(form + "f execform f execform"), "#000000 open L 0,0 25.4,0\n#000000 open L 0,0 25.4,0");
    EXPECT_EQ(Drawn(form + "0 0 moveto f execform 0 72 lineto stroke"),
              "#000000 open L 0,0 25.4,0\n#000000 open L 0,0 0,25.4")
        << "path and CTM come back";
    CheckStacks({
        {"the procedure finds the form", "<< /Matrix matrix /PaintProc {/Matrix get 0 get} >> execform", "1.0"},
        {"states that it left",
         "2 setlinewidth << /Matrix matrix /PaintProc {pop gsave gsave 3 setlinewidth} >> execform "
         "currentlinewidth",
         "2.0"},
        {"a state that it popped",
         "2 setlinewidth << /Matrix matrix /PaintProc {pop grestore} >> execform currentlinewidth", "2.0"},
        {"departure: an older save restored",
         "/s save def 2 setlinewidth << /Matrix matrix /PaintProc {pop s restore} >> execform "
         "currentlinewidth",
         "0.0"},
        {"no matrix", "<< /PaintProc {} >> execform", "<<1>>", PSERR_TYPECHECK},
        {"a short matrix", "<< /Matrix [1 2] /PaintProc {} >> execform", "<<2>>", PSERR_RANGE},
        {"no procedure", "<< /Matrix matrix /PaintProc [1] >> execform", "<<2>>", PSERR_TYPECHECK},
        {"no form", "[] execform", "[]", PSERR_TYPECHECK},
        {"a failing one", "<< /Matrix matrix /PaintProc {nosuch} >> execform", "<<2>>", PSERR_UNDEFINED},
    });
}

}  // namespace
