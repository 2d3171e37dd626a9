// The names that files of earlier language levels and of printers use (PLRM, Appendix D, and the supplements that it
// stands for): papers, statusdict and serverdict. Most tell a printer what to do, and so take their operands and no
// more.
#include "complete/SystemDictionaries.h"

#include <string_view>

#include "interp/FilterEPS.h"

namespace {

constexpr std::string_view kPapers =
    // Width and height in points; B4 and B5 of the Japanese row, as printers have them.
    "systemdict begin"
    "/letter{612 792 .setpagesize}bind def /lettersmall{612 792 .setpagesize}bind def"
    "/note{612 792 .setpagesize}bind def /legal{612 1008 .setpagesize}bind def"
    "/tabloid{792 1224 .setpagesize}bind def /ledger{1224 792 .setpagesize}bind def"
    "/11x17{792 1224 .setpagesize}bind def /10x14{720 1008 .setpagesize}bind def"
    "/executivepage{522 756 .setpagesize}bind def /statement{396 612 .setpagesize}bind def"
    "/halfletter{396 612 .setpagesize}bind def /folio{612 936 .setpagesize}bind def"
    "/quarto{610 780 .setpagesize}bind def"
    "/a0{2384 3370 .setpagesize}bind def /a1{1684 2384 .setpagesize}bind def /a2{1191 1684 .setpagesize}bind def"
    "/a3{842 1191 .setpagesize}bind def /a4{595 842 .setpagesize}bind def /a4small{595 842 .setpagesize}bind def"
    "/a5{420 595 .setpagesize}bind def /a6{298 420 .setpagesize}bind def"
    "/b4{729 1032 .setpagesize}bind def /b5{516 729 .setpagesize}bind def"
    "/com10envelope{297 684 .setpagesize}bind def /monarcenvelope{279 540 .setpagesize}bind def"
    "/dlenvelope{312 624 .setpagesize}bind def /c5envelope{459 649 .setpagesize}bind def"
    " end";

constexpr std::string_view kStatus =
    "statusdict begin"
    // What is told.
    "/jobname()def /jobsource()def /printername{0 0 getinterval}bind def /product product def /revision revision def"
    "/version version def /realformat(IEEE)def /byteorder true def /buildtime 0 def /ramsize 67108864 def"
    "/jobtimeout 0 def /waittimeout 300 def /manualfeed false def /manualfeedtimeout 60 def /timeouts{0 60 300}def"
    "/defaulttimeouts{0 60 300}def /pagecount 0 def /papersize{/letter true}def /papertray 0 def"
    "/pagestackorder true def /duplexmode false def /tumble false def /duplex false def /firstside false def"
    "/doprinterrors true def /dostartpage false def /dosysstart false def /diskonline false def"
    "/diskstatus{0 0}def /margins{0 0}def /resolution 1200 def /hardwareiomode 0 def /softwareiomode 0 def"
    "/sccbatch{pop 9600 0}def /sccinteractive{pop 9600 0}def /pageparams{612 792 0 0}def"
    "/checkpassword{pop false}bind def /checksum 0 def /userdiskpercent 0 def"
    // What is set.
    "/setprintername{pop}bind def /setjobtimeout{pop}bind def /setwaittimeout{pop}bind def"
    "/setmanualfeedtimeout{pop}bind def /setdefaulttimeouts{pop pop pop}bind def /setpagecount{pop}bind def"
    "/setpapertray{pop}bind def /setpagestackorder{pop}bind def /setduplexmode{pop}bind def /settumble{pop}bind def"
    "/setduplex{pop}bind def /setdoprinterrors{pop}bind def /setdostartpage{pop}bind def /setdosysstart{pop}bind def"
    "/setmargins{pop pop}bind def /setresolution{pop}bind def /sethardwareiomode{pop}bind def"
    "/setsoftwareiomode{pop}bind def /setsccbatch{pop pop pop}bind def /setsccinteractive{pop pop pop}bind def"
    "/setpassword{pop pop false}bind def /setuserdiskpercent{pop}bind def /setfoldfeed{pop}bind def"
    "/newsheet{}def /quitserver{}def /initializedisk{pop pop}bind def"
    // Pages: width, height, then how they lie on the film.
    "/setpage{pop .setpagesize}bind def /setpageparams{pop pop pop pop}bind def"
    "/lettertray{612 792 .setpagesize}bind def /legaltray{612 1008 .setpagesize}bind def"
    "/ledgertray{1224 792 .setpagesize}bind def /11x17tray{792 1224 .setpagesize}bind def"
    "/executivetray{522 756 .setpagesize}bind def /statementtray{396 612 .setpagesize}bind def"
    "/a3tray{842 1191 .setpagesize}bind def /a4tray{595 842 .setpagesize}bind def"
    "/a5tray{420 595 .setpagesize}bind def /b4tray{729 1032 .setpagesize}bind def"
    "/b5tray{516 729 .setpagesize}bind def"
    " end";

// A job that leaves the server's loop begins with empty stacks; it is the same job here. The byte that ends a job on a
// serial line is no name.
constexpr std::string_view kServer =
    "systemdict /serverdict 5 dict dup begin"
    "/exitserver{pop clear cleardictstack}bind def /settimeout{pop}bind def"
    " end put systemdict /\004{}put";

// Names of language level 2 that later editions have dropped: of global VM, and of a cache of user paths. And the
// string that interpreters have for `=`, which old programs borrow for their own texts.
constexpr std::string_view kOldNames =
    "systemdict begin"
    "/shareddict globaldict def /currentshared/currentglobal load def /setshared/setglobal load def"
    "/scheck/gcheck load def"
    "/ucachestatus{mark 0 0 0 0 0}bind def /setucacheparams{cleartomark}bind def"
    "/=string 128 string def"
    " end";

// Names of the interactive executive. They are procedures, as in printers, so that bind leaves a program's variables of
// these names alone.
constexpr std::string_view kExecutive = "systemdict begin/start{}def/executive{}def/prompt{}def/echo{pop}def end";

// The procedures by which a program chooses a colour rendering, of a device without a name, and those of trapping,
// which a drawing has no use for (PLRM 7.1.3 and 6.3).
constexpr std::string_view kProcSets =
    "/ColorRendering 3 dict dup begin"
    "/GetPageDeviceName{/none}bind def /GetHalftoneName{/none}bind def"
    "/GetSubstituteCRD{pop/DefaultColorRendering}bind def"
    " end/ProcSet defineresource pop"
    "/Trapping 3 dict dup begin"
    "/currenttrapparams{1 dict dup/Enabled false put}bind def /settrapparams{pop}bind def /settrapzone{newpath}bind def"
    " end/ProcSet defineresource pop";

// One copy of each page, as programs of language level 1 read and set it.
constexpr std::string_view kUser = "userdict/#copies 1 put";

void Run(CFilterEPS& m, BodyPlace place, std::string_view source) {
    const CBodyPlaceScope scope(place);
    static_cast<void>(m.ScanBuffer(source));
}

}  // namespace

void BuildSystemDictionaries(CFilterEPS& m) {
    Run(m, PLACE_GLOBAL, kPapers);
    Run(m, PLACE_GLOBAL, kOldNames);
    Run(m, PLACE_GLOBAL, kExecutive);
    Run(m, PLACE_GLOBAL, kProcSets);
    Run(m, PlaceOfLevel(0), kStatus);
    Run(m, PlaceOfLevel(0), kServer);
    Run(m, PlaceOfLevel(0), kUser);
    // It runs a procedure whatever the access to what that changes, which nothing here asks for (Adobe Type 1 Font
    // Format).
    const CBodyPlaceScope scope(PLACE_GLOBAL);
    m.m_pInternalDict->Put("superexec", MakeElement<COperatorElement>(std::string_view("exec")));
}
