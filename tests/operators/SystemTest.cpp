// Global mode, user objects, and the answers of what an import has no use for.
#include "support/Program.h"

namespace {

TEST(SystemOperatorsTest, GlobalMode) {
    CheckStacks({
        {"setglobal", "currentglobal true setglobal currentglobal", "false true"},
        {"gcheck of composite objects", "[1] true setglobal [1] gcheck exch gcheck", "true false"},
        {"simple objects are global in either mode", "5 gcheck /a gcheck true setglobal 5 gcheck", "true true true"},
        {"setglobal: no boolean", "1 setglobal", "1", PSERR_TYPECHECK},
        {"gcheck on nothing", "gcheck", "", PSERR_STACKUNDERFLOW},
        {"departure: startjob", "true (x) startjob", "true (x)", PSERR_UNSUPPORTED},
    });
}

TEST(SystemOperatorsTest, UserObjects) {
    CheckStacks({
        {"the first makes ten", "0 (x) defineuserobject UserObjects length 0 execuserobject", "10 (x)"},
        {"by the operator", "0 1 defineuserobject systemdict /UserObjects get exec length", "10"},
        {"the first beyond ten", "12 (x) defineuserobject UserObjects length", "13"},
        {"more",
         "0 (x) defineuserobject 12 (y) defineuserobject UserObjects length 0 execuserobject 12 "
         "execuserobject",
         "13 (x) (y)"},
        {"an array fetched before keeps its length",
         "0 1 defineuserobject UserObjects 12 2 defineuserobject 14 3 defineuserobject "
         "length UserObjects length",
         "10 15"},
        {"it keeps its elements, too",
         "0 1 defineuserobject UserObjects 12 2 defineuserobject 0 3 defineuserobject dup 0 get exch 5 9 put "
         "5 execuserobject UserObjects dup 0 get exch 12 get",
         "1 null 3 2"},
        {"whichever way it was fetched",
         "0 1 defineuserobject userdict /UserObjects get 12 2 defineuserobject 0 3 defineuserobject 0 get "
         "3 dict begin [7] dup /UserObjects exch store 1 5 defineuserobject 0 6 defineuserobject 0 get end",
         "1 7"},
        {"an array of the program's own", "/UserObjects [1 2] def 2 3 defineuserobject UserObjects", "[1 2 3]"},
        {"procedures, names and strings run",
         "0 {1 2} defineuserobject 1 /count cvx defineuserobject 2 (3 4) cvx defineuserobject "
         "0 execuserobject 1 execuserobject 2 execuserobject",
         "1 2 2 3 4"},
        {"a raw token runs as in a procedure", "0 {count 1} 0 get cvx defineuserobject 0 execuserobject", "0"},
        {"literals are pushed", "0 [1] defineuserobject 0 execuserobject 1 execuserobject", "[1] null"},
        {"departure: an operator is refused", "0 /count load defineuserobject 0 execuserobject", "", PSERR_UNSUPPORTED},
        {"an error inside", "0 {1 nothing} defineuserobject 0 execuserobject", "1", PSERR_UNDEFINED},
        {"a procedure that undefines itself",
         "0 {0 undefineuserobject 1} defineuserobject 0 execuserobject 0 execuserobject", "1 null"},
        {"undefine", "0 1 defineuserobject 0 undefineuserobject 0 execuserobject", "null"},
        {"departure: none yet: exec", "1 0 execuserobject", "1", PSERR_UNDEFINED},
        {"departure: none yet: undefine", "1 0 undefineuserobject", "1", PSERR_UNDEFINED},
        {"none yet: the array", "UserObjects", "", PSERR_UNDEFINED},
        {"departure: beyond: exec", "0 1 defineuserobject 10 execuserobject", "", PSERR_RANGE},
        {"departure: beyond: undefine", "0 1 defineuserobject 10 undefineuserobject", "", PSERR_RANGE},
        {"departure: negative: exec", "0 1 defineuserobject -1 execuserobject", "", PSERR_RANGE},
        {"negative: define", "-1 5 defineuserobject", "-1 5", PSERR_RANGE},
        {"huge: define", "2147483647 5 defineuserobject", "2147483647 5", PSERR_RANGE},
        {"no index: define", "/a 5 defineuserobject", "/a 5", PSERR_TYPECHECK},
        {"no index: exec", "/a execuserobject", "/a", PSERR_TYPECHECK},
        {"missing", "5 defineuserobject", "5", PSERR_STACKUNDERFLOW},
        {"something else under the key", "userdict /UserObjects 5 put 0 1 defineuserobject", "0 1", PSERR_TYPECHECK},
    });
}

TEST(SystemOperatorsTest, UserObjectsComeBackAtRestore) {
    CheckStacks({
        {"a change", "0 1 defineuserobject save 0 2 defineuserobject 0 execuserobject exch restore 0 execuserobject",
         "2 1"},
        {"growth",
         "0 1 defineuserobject 12 5 defineuserobject save 20 2 defineuserobject 25 2 defineuserobject "
         "restore UserObjects length 12 execuserobject",
         "13 5"},
        {"departure: the first one", "save 0 1 defineuserobject restore 0 execuserobject", "", PSERR_UNDEFINED},
        {"the object", "0 1 defineuserobject save 0 [1 2] defineuserobject restore 0 execuserobject", "1"},
    });
}

TEST(SystemOperatorsTest, DeviceAndCaches) {
    CheckStacks({
        {"departure: the page device is empty at the start", "currentpagedevice /PageSize get", "", PSERR_UNDEFINED},
        {"departure: it is replaced whole",
         "<< /a 1 >> setpagedevice << /PageSize [3 4] >> setpagedevice currentpagedevice dup "
         "/a known exch /PageSize get",
         "false [3 4]"},
        {"departure: its body goes away", "save << /a 1 >> setpagedevice restore currentpagedevice length", "0"},
        {"setpagedevice: no dictionary", "1 setpagedevice", "1", PSERR_TYPECHECK},
        {"departure: pages leave the state alone",
         "3 setlinewidth 1 2 moveto showpage copypage nulldevice currentlinewidth count", "3.0 1"},
        {"cache parameters", "mark 1 2 3 setcacheparams currentcacheparams", "mark 1 2 3"},
        {"at the start", "currentcacheparams", "mark 500000 500 5000"},
        {"the status is fixed", "mark 1 2 3 setcacheparams 100 setcachelimit cachestatus",
         "0 500000 0 200 0 5000 5000"},
        {"departure: the mark stands elsewhere", "1 mark 1 2 setcacheparams", "1 mark 1 2", PSERR_TYPECHECK},
        {"departure: missing", "mark 1 2 setcacheparams", "mark 1 2", PSERR_STACKUNDERFLOW},
        {"no numbers", "mark 1 (2) 3 setcacheparams", "mark 1 (2) 3", PSERR_TYPECHECK},
        {"setcachelimit on nothing", "setcachelimit", "", PSERR_STACKUNDERFLOW},
    });
}

TEST(SystemOperatorsTest, Constants) {
    CheckStacks({
        {"null", "null", "null"},
        {"serialnumber", "serialnumber", "42"},
        {"nothing happens", "1 executive prompt", "1"},
        {"echo", "true echo", ""},
        {"departure: echo: no boolean", "1 echo", "1", PSERR_TYPECHECK},
    });
    for (const char* name :
         {"realtime", "usertime", "infill", "ineofill", "inufill", "inueofill", "instroke", "inustroke",
          "setsystemparams", "setuserparams", "currentuserparams", "vmreclaim", "vmstatus", "ucachestatus"}) {
        EXPECT_EQ(RunText(name).error, PSERR_UNSUPPORTED) << name;
    }
}

}  // namespace
