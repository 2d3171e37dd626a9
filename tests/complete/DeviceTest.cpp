// The page device in the complete dialect, parameters, and the names that files for printers expect.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

#define CAUGHT(program) "{" program "} stopped $error /errorname get"

TEST(CompleteDeviceTest, PageSize) {
    CheckStacks(
        {
            {"of the start", "currentpagedevice /PageSize get clippath pathbbox", "[612.0 792.0] 0.0 0.0 612.0 792.0"},
            {"makes the clip",
             "<< /PageSize [100 200] >> setpagedevice clippath pathbbox currentpagedevice /PageSize get",
             "0.0 0.0 100.0 200.0 [100 200]"},
            {"others leave it",
             "<< /PageSize [100 200] >> setpagedevice << /Duplex true >> setpagedevice "
             "currentpagedevice dup /PageSize get exch /Duplex get",
             "[100 200] true"},
            {"goes with a restore",
             "save << /PageSize [100 200] >> setpagedevice restore clippath pathbbox currentpagedevice /PageSize get",
             "0.0 0.0 612.0 792.0 [612.0 792.0]"},
            {"begins anew with the graphics state",
             "2 3 scale 5 setlinewidth 1 0 0 setrgbcolor 1 1 moveto << /PageSize [100 200] >> setpagedevice "
             "matrix currentmatrix currentlinewidth currentgray {currentpoint} stopped",
             "[1.0 0.0 0.0 1.0 0.0 0.0] 1.0 0.0 true"},
            {"a size that is none", CAUGHT("<< /PageSize [0 7] >> setpagedevice"), "<<1>> true /rangecheck"},
            {"nor this", CAUGHT("<< /PageSize [1] >> setpagedevice"), "<<1>> true /typecheck"},
            {"nor a string", CAUGHT("<< /PageSize (ab) >> setpagedevice"), "<<1>> true /typecheck"},
            {"null is nothing asked", "<< /PageSize null >> setpagedevice currentpagedevice /PageSize get", "null"},
            {"papers", "a4 clippath pathbbox currentpagedevice /PageSize get", "0.0 0.0 595.0 842.0 [595 842]"},
            {"papers can be asked for", "/a3 where {/a3 get xcheck} if systemdict /11x17 known /executive load length",
             "true true 0"},
            {"a tray", "statusdict begin legaltray end clippath pathbbox", "0.0 0.0 612.0 1008.0"},
        },
        kComplete);
}

TEST(CompleteDeviceTest, Keys) {
    CheckStacks(
        {
            {"are kept", "<< /Mine (x) 7 true >> setpagedevice currentpagedevice dup /Mine get exch 7 get", "(x) true"},
            {"what printers have",
             "currentpagedevice dup /Duplex get exch dup /NumCopies get exch /InputAttributes get", "false null <<0>>"},
            {"the answer is a copy", "currentpagedevice /Mine 1 put currentpagedevice /Mine known", "false"},
            {"policies are merged",
             "<< /Policies << /PageSize 3 >> >> setpagedevice << /Policies << /Duplex 1 >> >> setpagedevice "
             "currentpagedevice /Policies get dup /PageSize get exch dup /Duplex get exch /PolicyNotFound get",
             "3 1 1"},
            {"a procedure that is none", CAUGHT("<< /BeginPage 7 >> setpagedevice"), "<<1>> true /typecheck"},
        },
        kComplete);
}

TEST(CompleteDeviceTest, Pages) {
    CheckStacks(
        {
            {"procedures of a page, in their turns",
             "/n 0 def << /Install {/i} /BeginPage {/b exch} /EndPage {/e 3 1 roll true} >> setpagedevice "
             "showpage copypage",
             "/i /b 0 /e 0 0 /b 1 /e 1 1 /b 2"},
            {"a page that isn't shown doesn't count",
             "<< /EndPage {pop pop false} /BeginPage {} >> setpagedevice showpage", "0 0"},
            {"EndPage has to answer", "<< /EndPage {pop} >> setpagedevice " CAUGHT("showpage"), "0 true /typecheck"},
            {"a new device ends the old one's page",
             "<< /EndPage {exch pop false} >> setpagedevice << /Duplex true >> setpagedevice", "2"},
            {"showpage begins anew", "2 2 scale 1 setgray showpage matrix currentmatrix currentgray",
             "[1.0 0.0 0.0 1.0 0.0 0.0] 0.0"},
            {"copypage doesn't", "1 setgray copypage currentgray", "1.0"},
        },
        kComplete);
    EXPECT_EQ(Drawn("2 2 scale 0 0 moveto 9 9 lineto stroke showpage 0 0 moveto 72 72 lineto stroke", kComplete),
              "#000000 open L 0,0 6.35,6.35\n#000000 open L 0,0 25.4,25.4");
    EXPECT_EQ(Drawn("<< /BeginPage {pop 2 2 scale} >> setpagedevice 0 0 moveto 36 36 lineto stroke", kComplete),
              "#000000 open L 0,0 25.4,25.4");
}

TEST(CompleteDeviceTest, NullDevice) {
    constexpr const char* line = "#000000 open L 0,0 25.4,25.4";
    for (const char* program : {
             "gsave nulldevice 0 0 moveto 9 9 lineto stroke 0 0 9 9 rectfill initclip 0 0 9 9 rectstroke grestore "
             "0 0 moveto 72 72 lineto stroke",
             "nulldevice 0 0 moveto 9 9 lineto stroke gsave 0 0 9 9 rectfill grestore a4 0 0 moveto 72 72 lineto "
             "stroke",
             "nulldevice clipsave 0 0 9 9 rectclip cliprestore 0 0 9 9 rectfill initgraphics 0 0 9 9 rectfill "
             "<<>> setpagedevice 0 0 moveto 72 72 lineto stroke",
         }) {
        EXPECT_EQ(Drawn(program, kComplete), line) << program;
    }
    CheckStacks({{"has a clip without area", "nulldevice clippath pathbbox", "0.0 0.0 0.0 0.0"},
                 {"the path is used up", "nulldevice 0 0 moveto 9 9 lineto stroke {currentpoint} stopped", "true"}},
                kComplete);
}

TEST(CompleteDeviceTest, Parameters) {
    CheckStacks(
        {
            {"user parameters are kept", "<< /MaxFontItem 7 >> setuserparams currentuserparams /MaxFontItem get", "7"},
            {"until a restore", "save << /JobName (x) >> setuserparams restore currentuserparams /JobName get", "()"},
            {"their own copy",
             "(x) dup << /JobName 3 -1 roll >> setuserparams dup 0 65 put currentuserparams /JobName get", "(A) (x)"},
            {"unknown ones are not", "<< /Mine 7 8 9 >> setuserparams currentuserparams dup /Mine known exch 8 known",
             "false false"},
            {"of their type", CAUGHT("<< /JobName 7 >> setuserparams"), "<<1>> true /typecheck"},
            {"system parameters outlive it",
             "save << /PrinterName (x) >> setsystemparams restore currentsystemparams "
             "/PrinterName get",
             "(x)"},
            {"what programs ask for", "currentsystemparams dup /RealFormat get exch /ByteOrder get", "(IEEE) true"},
            {"the answer is a copy", "currentsystemparams /PageCount (x) put currentsystemparams /PageCount get", "0"},
            {"of devices", "(%disk0%) << /x 1 >> setdevparams (%disk0%) currentdevparams length", "0"},
            {"no dictionary", CAUGHT("7 setuserparams"), "7 true /typecheck"},
            {"and none", CAUGHT("setsystemparams"), "true /stackunderflow"},
        },
        kComplete);
}

TEST(CompleteDeviceTest, NamesOfPrinters) {
    CheckStacks(
        {
            {"statusdict",
             "statusdict /setduplexmode known statusdict begin true setduplexmode duplexmode false settumble "
             "jobname jobtimeout product end",
             "true false () 0 (Orvelle 5.0)"},
            {"its variables are a program's to set", "statusdict /manualfeed true put statusdict begin manualfeed end",
             "true"},
            {"a page of a typesetter", "statusdict begin 300 400 1 setpage end clippath pathbbox",
             "0.0 0.0 300.0 400.0"},
            {"out of the server's loop", "1 2 serverdict begin 0 exitserver count countdictstack", "0 3"},
            {"of older language levels", "true setshared currentshared currentglobal shareddict globaldict eq 1 scheck",
             "true true true true"},
            {"a string for texts", "42 =string cvs =string length userdict /#copies get", "(42) 128 1"},
            {"a cache of user paths", "mark 9 setucacheparams ucachestatus counttomark", "mark 0 0 0 0 0 5"},
            {"names of this kind are a program's to define", "/letter 7 def letter /note {8} def note", "7 8"},
        },
        kComplete);
}

}  // namespace
