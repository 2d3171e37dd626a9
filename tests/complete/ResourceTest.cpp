// Resources in the complete dialect: the general machinery, categories of the system and of programs, and what each
// category of the language has.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

// What a failed program says of its error.
#define CAUGHT(program) "{" program "} stopped $error /errorname get"

TEST(CompleteResourceTest, InstancesComeAndGo) {
    CheckStacks(
        {
            {"define and find", "/X << /a 1 >> /ProcSet defineresource /a get /X /ProcSet findresource /a get", "1 1"},
            {"keys of any type",
             "7 1 dict /Pattern defineresource pop 7 /Pattern resourcestatus true 1 dict /Form defineresource pop "
             "true /Form findresource",
             "0 -1 true <<0>>"},
            {"a string is a name", "(X) 1 dict /Form defineresource pop /X /Form resourcestatus", "0 -1 true"},
            {"the category as a string", "/X 1 dict (Form) defineresource pop /X (Form) resourcestatus", "0 -1 true"},
            {"the instance is read-only", "/X 1 dict /Form defineresource wcheck", "false"},
            {"the object that was defined stays", "1 dict dup /X exch /Form defineresource pop wcheck", "true"},
            {"undefine", "/X 1 dict /Form defineresource pop /X /Form undefineresource /X /Form resourcestatus",
             "false"},
            {"undefining what is not there", "1 /X /Form undefineresource", "1"},
            {"an unknown instance", CAUGHT("/X /Form findresource"), "/X /Form true /undefinedresource"},
            {"an unknown category", CAUGHT("/X /NoSuch findresource"), "/X /NoSuch true /undefined"},
            {"another type of instance", CAUGHT("/X 5 /Form defineresource"), "/X 5 /Form true /typecheck"},
            {"null is no key", CAUGHT("null 1 dict /Form defineresource"), "null <<0>> /Form true /typecheck"},
            {"too few", CAUGHT("1 dict /Form defineresource"), "<<0>> /Form true /stackunderflow"},
            {"a category that is no name", CAUGHT("/X 5 findresource"), "/X 5 true /typecheck"},
        },
        kComplete);
}

TEST(CompleteResourceTest, LocalAndGlobal) {
    CheckStacks(
        {
            {"local ones go with a restore", "save /X 1 dict /Form defineresource pop restore /X /Form resourcestatus",
             "false"},
            {"an older one comes back",
             "/X << /a 1 >> /Form defineresource pop save /X << /a 2 >> /Form defineresource pop restore /X /Form "
             "findresource /a get",
             "1"},
            {"undefined until the restore",
             "/X 1 dict /Form defineresource pop save /X /Form undefineresource /X /Form resourcestatus exch restore "
             "/X /Form resourcestatus",
             "false 0 -1 true"},
            {"global ones stay",
             "save true setglobal /X 1 dict /Form defineresource pop false setglobal restore /X /Form resourcestatus",
             "0 -1 true"},
            {"local ones are not seen in global mode",
             "/X 1 dict /Form defineresource pop true setglobal /X /Form resourcestatus", "false"},
            {"the local one comes first",
             "true setglobal /X << /a 1 >> /Form defineresource pop false setglobal /X << /a 2 >> /Form defineresource "
             "pop /X /Form findresource /a get true setglobal /X /Form findresource /a get",
             "2 1"},
            {"a global one takes the local one's place",
             "/X << /a 2 >> /Form defineresource pop true setglobal /X << /a 1 >> /Form defineresource pop false "
             "setglobal /X /Form findresource /a get",
             "1"},
            {"a local instance can't be global",
             "1 dict {true setglobal /X 1 index /Form defineresource} stopped $error /errorname get",
             "<<0>> /X <<0>> /Form true /invalidaccess"},
            {"undefining in local mode uncovers the global one",
             "true setglobal /X << /a 1 >> /Form defineresource pop false setglobal /X << /a 2 >> /Form defineresource "
             "pop /X /Form undefineresource /X /Form findresource /a get",
             "1"},
            {"in global mode both go",
             "true setglobal /X 1 dict /Form defineresource pop false setglobal /X 1 dict /Form defineresource pop "
             "true setglobal /X /Form undefineresource false setglobal /X /Form resourcestatus",
             "false"},
        },
        kComplete);
}

TEST(CompleteResourceTest, ForAll) {
    CheckStacks(
        {
            {"all of them",
             "/X 1 dict /Form defineresource pop /Y 1 dict /Form defineresource pop "
             "(*) {cvn} 10 string /Form resourceforall",
             "/X /Y"},
            {"each once",
             "true setglobal /X 1 dict /Form defineresource pop false setglobal /X 1 dict /Form defineresource pop "
             "(*) {cvn} 10 string /Form resourceforall",
             "/X"},
            {"by a template", "(Device?M*) {cvn} 20 string /ColorSpaceFamily resourceforall", "/DeviceCMYK"},
            {"a template with two stars", "(*C*d) {cvn} 20 string /ColorSpaceFamily resourceforall", "/ICCBased"},
            {"a star goes on from where it stood",
             "/abc 1 dict /Form defineresource pop (ab*bc) {} 9 string /Form resourceforall", ""},
            {"an escaped star",
             "(a*b) cvn 1 dict /Form defineresource pop /acb 1 dict /Form defineresource pop "
             "(a\\\\*b) {cvn} 20 string /Form resourceforall",
             "/a*b"},
            {"keys that are no texts, as they are",
             "7 1 dict /Form defineresource pop (*) {} 1 string /Form "
             "resourceforall",
             "7"},
            {"only among all", "7 1 dict /Form defineresource pop (?) {} 1 string /Form resourceforall", ""},
            {"integers", "0 (*) {add} 1 string /PatternType resourceforall", "3"},
            {"exit", "(*) {pop 1 exit} 20 string /Filter resourceforall", "1"},
            {"one that undefines",
             "/X 1 dict /Form defineresource pop (*) {cvn /Form undefineresource} 9 string /Form "
             "resourceforall /X /Form resourcestatus",
             "false"},
            {"a short scratch string", CAUGHT("(*) {} 1 string /Filter resourceforall"),
             "(*) {} (\\000) /Filter true /rangecheck"},
            {"an error in the procedure", CAUGHT("(*) {nosuch} 20 string /FormType resourceforall"),
             "1 true /undefined"},
        },
        kComplete);
}

TEST(CompleteResourceTest, CategoriesOfPrograms) {
    CheckStacks(
        {
            {"a copy of the general one",
             "/Generic /Category findresource dup length 2 add dict copy dup /InstanceType /integertype put "
             "/Mine exch /Category defineresource pop /X 5 /Mine defineresource /X /Mine findresource "
             "/X /Mine resourcestatus (*) {cvn} 9 string /Mine resourceforall /Mine /Category findresource "
             "/Category get /X /Mine undefineresource /X /Mine resourcestatus",
             "5 5 0 -1 true /X /Mine false"},
            {"its instances have its type",
             "/Mine /Generic /Category findresource 10 dict copy dup /InstanceType /integertype put /Category "
             "defineresource pop " CAUGHT("/X (a) /Mine defineresource"),
             "/X (a) /Mine true /typecheck"},
            {"procedures of its own run with its dictionary open",
             "/Mine << /n 0 /DefineResource {exch pop n add} /UndefineResource {pop} /FindResource {n exch} "
             "/ResourceStatus {pop false} /ResourceForAll {pop pop pop 8} >> /Category defineresource pop "
             "/X 5 /Mine defineresource /X /Mine findresource /X /Mine resourcestatus (*) {} 1 string /Mine "
             "resourceforall countdictstack",
             "5 0 /X false 8 3"},
            {"an error in one of them",
             "/Mine /Generic /Category findresource 10 dict copy dup /FindResource {begin nosuch} put /Category "
             "defineresource pop 1 dict {/Mine findresource} stopped $error /errorname get countdictstack",
             "true /undefined 3"},
            {"one that goes on to the general one",
             "/Mine /Generic /Category findresource 10 dict copy dup /FindResource "
             "{dup ResourceStatus {pop pop /Generic /Category findresource /FindResource get exec} {pop /none} ifelse} "
             "put /Category defineresource pop /X 7 /Mine defineresource pop /X /Mine findresource /Y /Mine "
             "findresource",
             "7 /none"},
            {"it needs its procedures", CAUGHT("/Mine 1 dict /Category defineresource"),
             "/Mine <<0>> /Category true /undefined"},
            {"the system's own dictionary",
             "/Encoding /Category findresource dup /InstanceType get exch begin /StandardEncoding FindResource end "
             "length",
             "/arraytype 256"},
            {"one in the place of the system's",
             "/Form /Generic /Category findresource 10 dict copy dup /FindResource {pop 9} put /Category "
             "defineresource pop /X /Form findresource",
             "9"},
            {"is known to all", "/Form /Category resourcestatus /Nothing /Category resourcestatus", "2 -1 true false"},
            {"goes with a restore",
             "save /Mine /Generic /Category findresource 10 dict copy /Category defineresource pop restore "
             "/Mine /Category resourcestatus",
             "false"},
        },
        kComplete);
}

TEST(CompleteResourceTest, WhatTheLanguageHas) {
    CheckStacks(
        {
            {"encodings", "/ISOLatin1Encoding /Encoding findresource dup 173 get exch ISOLatin1Encoding eq",
             "/hyphen true"},
            {"findencoding", "/StandardEncoding findencoding 65 get StandardEncoding 174 get", "/A /fi"},
            {"of pi fonts", "/SymbolEncoding findencoding 97 get", "/alpha"},
            {"one of a program", "/Mine [/a] /Encoding defineresource pop /Mine findencoding", "[/a]"},
            {"of a packed array", "/Mine /a 1 packedarray /Encoding defineresource length", "1"},
            {"implicit ones are their keys", "/FlateDecode /Filter findresource 42 /FontType findresource",
             "/FlateDecode 42"},
            {"their status", "/LZWDecode /Filter resourcestatus 7 /ShadingType resourcestatus", "0 0 true 0 0 true"},
            {"integers are no names", "(7) /ShadingType resourcestatus 7.0 /ShadingType resourcestatus", "false false"},
            {"unknown ones", "/NoDecode /Filter resourcestatus 99 /FontType resourcestatus", "false false"},
            {"nobody adds to them", CAUGHT("/X /X /Filter defineresource"), "/X /X /Filter true /invalidaccess"},
            {"empty ones", "(*) {} 9 string /Emulator resourceforall", ""},
            {"a made one is kept",
             "/CIDInit /ProcSet resourcestatus /CIDInit /ProcSet findresource /CIDInit /ProcSet findresource eq "
             "/CIDInit /ProcSet resourcestatus",
             "2 -1 true true 1 -1 true"},
            {"default colour spaces", "/DefaultCMYK /ColorSpace findresource", "[/DeviceCMYK]"},
            {"colour rendering", "/Perceptual findcolorrendering exch /ColorRendering findresource type",
             "false dicttype"},
            {"its procedures",
             "/ColorRendering /ProcSet findresource begin GetPageDeviceName GetHalftoneName /X GetSubstituteCRD",
             "/none /none /DefaultColorRendering"},
            {"trapping",
             "/Trapping /ProcSet findresource begin currenttrapparams settrapparams 1 1 moveto settrapzone"
             " {currentpoint} stopped",
             "true"},
            {"others are there, and empty", "/X /Halftone resourcestatus /X /OutputDevice resourcestatus",
             "false false"},
            {"a font",
             "/X << /FontType 3 /FontMatrix matrix >> /Font defineresource pop FontDirectory /X known /X /Font"
             " resourcestatus",
             "true 0 -1 true"},
        },
        kComplete);
}

}  // namespace
