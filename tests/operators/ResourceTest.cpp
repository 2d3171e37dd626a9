// Resource operators, category by category, and a CMap from its definition to its tables.
#include "support/Program.h"

namespace {

TEST(ResourceOperatorsTest, Fonts) {
    CheckStacks({
        {"departure: define and find", "/X << /a 1 >> /Font defineresource /a get /X /Font findresource /a get", "1 1"},
        {"departure: a string as the key", "(X) << /a 1 >> /Font defineresource pop /X /Font findresource /a get", "1"},
        {"departure: in the directory of the mode",
         "/X 1 dict /Font defineresource pop FontDirectory /X known "
         "true setglobal FontDirectory /X known",
         "true false"},
        {"departure: a global font in both",
         "true setglobal /X 1 dict /Font defineresource pop FontDirectory /X known "
         "false setglobal FontDirectory /X known",
         "true true"},
        {"departure: an unknown font is the default one, and not entered",
         "/X /Font findresource /FontName get /X /Font resourcestatus", "/Helvetica false"},
        {"departure: status", "/X 1 dict /Font defineresource pop /X /Font resourcestatus", "0 -1 true"},
        {"departure: undefine",
         "true setglobal /X 1 dict /Font defineresource pop /X /Font undefineresource "
         "FontDirectory /X known false setglobal FontDirectory /X known",
         "false false"},
        {"departure: no dictionary", "/X 5 /Font defineresource", "", PSERR_TYPECHECK},
    });
}

TEST(ResourceOperatorsTest, CMaps) {
    CheckStacks({
        {"define and find", "/X << /a 1 >> /CMap defineresource pop /X /CMap findresource /a get", "1"},
        {"status", "/X /CMap resourcestatus /X 1 dict /CMap defineresource pop /X /CMap resourcestatus",
         "false 0 -1 true"},
        {"departure: unknown", "1 /X /CMap findresource", "1", PSERR_UNDEFINED},
        {"undefine", "/X 1 dict /CMap defineresource pop /X /CMap undefineresource /X /CMap resourcestatus", "false"},
        {"departure: no dictionary", "/X 5 /CMap defineresource", "", PSERR_TYPECHECK},
        {"goes with its save level", "save /X 1 dict /CMap defineresource pop restore /X /CMap resourcestatus",
         "false"},
    });
}

TEST(ResourceOperatorsTest, ListsAndRefusals) {
    CheckStacks({
        {"departure: categories", "/Pattern /Category resourcestatus /NoSuch /Category resourcestatus",
         "0 -1 true false"},
        {"departure: procedure sets", "/BitmapFontInit /ProcSet resourcestatus /NoSuch /ProcSet resourcestatus",
         "0 -1 true false"},
        {"departure: a listed set that is not there", "/BitmapFontInit /ProcSet findresource", "", PSERR_UNSUPPORTED},
        {"departure: a category can't be found", "/Font /Category findresource", "", PSERR_UNSUPPORTED},
        {"departure: encodings", "/StandardEncoding findencoding", "", PSERR_UNSUPPORTED},
        {"departure: another category", "1 /X /Pattern findresource", "1", PSERR_UNSUPPORTED},
        {"departure: its status", "1 /X /Pattern resourcestatus", "1", PSERR_UNSUPPORTED},
        {"departure: defining there", "1 /X 1 dict /ProcSet defineresource", "1", PSERR_UNSUPPORTED},
        {"departure: undefining there", "1 /X /Category undefineresource", "1", PSERR_UNSUPPORTED},
        {"departure: the category must be a name", "/X (Font) findresource", "/X (Font)", PSERR_TYPECHECK},
        {"departure: the key a name or a string", "5 /Font findresource", "5 /Font", PSERR_TYPECHECK},
        {"departure: define: the key", "5 1 dict /Font defineresource", "5 <<0>> /Font", PSERR_TYPECHECK},
        {"define: missing", "1 dict /Font defineresource", "<<0>> /Font", PSERR_STACKUNDERFLOW},
        {"departure: a long key", "130 string /Font findresource pop",
         std::string("(" + std::string(130, '0') + ") /Font").c_str(), PSERR_RANGE},
        {"departure: resourceforall", "1 resourceforall", "1", PSERR_UNSUPPORTED},
        {"departure: findcolorrendering", "/X findcolorrendering", "/X", PSERR_UNSUPPORTED},
    });
}

// Leaves a CMap under construction on the dictionary stack, and a procedure `bytes` that shows a string.
#define CMAP_HEAD                      \
    "/bytes {[ exch {} forall ]} def " \
    "/CIDInit /ProcSet findresource begin 12 dict begin begincmap "
// The ranges of the second table, with strings shown as arrays of bytes.
#define CMAP_RANGES "endcmap .CodeMapData 1 get {dup type /stringtype eq {bytes} if} forall count array astore"

TEST(ResourceOperatorsTest, CMapDefinition) {
    CheckStacks({
        {"departure: the set is built anew each time",
         "/CIDInit /ProcSet findresource /CIDInit /ProcSet findresource 1 index /a 1 put /a known exch "
         "gcheck count",
         "false true 2"},
        {"the stacks and the mode are as before", "/CIDInit /ProcSet findresource pop countdictstack currentglobal",
         "3 false"},
        {"departure: what begincmap defines",
         CMAP_HEAD ".CodeMapData FontMatrices .FontIndex .TempMaps {maxlength} forall CodeMap",
         "[[] [] []] [] 0 20 50 50 null"},
        {"departure: an empty one", CMAP_HEAD "endcmap .CodeMapData currentdict /.TempMaps known FontMatrices",
         "[[] [] []] false [[] [] []]"},
        {"departure: code spaces, block by block",
         CMAP_HEAD "2 begincodespacerange <00> <80> <8140> <9FFC> endcodespacerange "
                   "1 begincodespacerange <A0> <DF> endcodespacerange endcmap .CodeMapData 0 get {bytes} forall",
         "[0] [128] [129 64] [159 252] [160] [223]"},
        {"departure: a range: prefix, header, tails, value, font",
         CMAP_HEAD "1 begincidrange <8140> <817E> 633 endcidrange " CMAP_RANGES,
         "[[129] [1 1 0 2] [64 126] [2 121] 0]"},
        {"departure: one code of a byte, and one of two",
         CMAP_HEAD "2 begincidrange <20> <20> 1 <8180> <8180> 2 endcidrange " CMAP_RANGES,
         "[[] [1 1 0 2] [32 32] [0 1] 0 [129] [1 1 0 2] [128 128] [0 2] 0]"},
        {"departure: the last byte is never in the prefix",
         CMAP_HEAD "1 begincidrange <0102> <0202> 5 endcidrange " CMAP_RANGES, "[[] [2 1 0 2] [1 2 2 2] [0 5] 0]"},
        {"departure: neighbours with the same prefix are one, others are not",
         CMAP_HEAD "4 begincidrange <8140> <817E> 1 <8180> <81AC> 300 <8240> <8241> 7 <8142> <8143> 9 "
                   "endcidrange " CMAP_RANGES,
         "[[129] [1 1 0 2] [64 126 128 172] [0 1 1 44] 0 [130] [1 1 0 2] [64 65] [0 7] 0 [129] [1 1 0 2] [66 "
         "67] [0 9] 0]"},
        {"departure: not of another length, not of another font",
         CMAP_HEAD "2 begincidrange <10> <11> 1 <2010> <3011> 2 endcidrange /.FontIndex 3 def "
                   "1 begincidrange <12> <13> 4 endcidrange " CMAP_RANGES,
         "[[] [1 1 0 2] [16 17] [0 1] 0 [] [2 1 0 2] [32 16 48 17] [0 2] 0 [] [1 1 0 2] [18 19] [0 4] 3]"},
        {"departure: an empty block", CMAP_HEAD "0 begincidrange endcidrange " CMAP_RANGES, "[]"},
        {"departure: read-only to the leaves of FontMatrices, which are the tables",
         CMAP_HEAD "1 begincidrange <00> <01> 1 endcidrange endcmap FontMatrices dup wcheck exch 1 get dup "
                   "wcheck exch 0 get wcheck",
         "false false false"},
        {"departure: a tail of more than 255 bytes is a stop",
         CMAP_HEAD "{1 begincidrange 300 string dup dup length string copy dup 0 1 put 5 endcidrange} stopped "
                   ".TempMaps 1 get length 2 array astore /r exch def clear r",
         "[true 0]"},
        {"departure: what the standard has beyond them is not defined", CMAP_HEAD "1 beginbfrange", "1",
         PSERR_UNDEFINED},
        {"departure: a CMap that is kept",
         CMAP_HEAD "1 begincidrange <00> <01> 1 endcidrange endcmap /X currentdict /CMap defineresource pop end end "
                   "/X /CMap findresource /.CodeMapData get 1 get length",
         "5"},
        {"departure: after a save",
         CMAP_HEAD "save 1 begincidrange <00> <01> 1 endcidrange endcmap .CodeMapData 1 get length exch restore", "5"},
    });
}

TEST(ResourceOperatorsTest, ProcSetUnderForeignDefinitions) {
    CheckStacks({
        {"departure: a definition that fails", "/bind {nothing} def /CIDInit /ProcSet findresource type countdictstack",
         "/dicttype 3"},
        {"departure: one that asks again",
         "/def {pop pop /CIDInit /ProcSet findresource} bind def /CIDInit /ProcSet findresource type", "/dicttype"},
        {"one that opens dictionaries",
         "/bind {5 dict begin} def /CIDInit /ProcSet findresource pop countdictstack count", "3 1"},
    });
}

}  // namespace
