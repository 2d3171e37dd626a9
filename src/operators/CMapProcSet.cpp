// The procedures of CIDInit as PostScript text, built anew for each file that asks. They work on the current
// dictionary, the CMap under construction, and the tables that they leave there are read by nobody: text is
// never drawn through a CMap. What counts is that a file which defines one runs through.
//
// A CMap's tables are .CodeMapData, three arrays: code space ranges, CID ranges, notdef ranges. While the
// CMap is being defined, .TempMaps gathers for each of them the operands of one pair of begin and end
// operators under the next free integer key.
#include "operators/CMapProcSet.h"

#include "interp/FilterEPS.h"

namespace {

constexpr std::string_view kSources[] = {
    // -  begincmap  -
    "/begincmap {"
    "  /.CodeMapData [ [] [] [] ] def"
    "  /FontMatrices [] def"
    "  /.FontIndex 0 def"
    "  /.TempMaps [ 20 dict 50 dict 50 dict ] def"
    "  /CodeMap null def"
    "} bind def",

    // n  begincodespacerange  mark
    "/begincodespacerange {pop mark}bind def",

    // mark lo hi ..  endcodespacerange  -
    "/endcodespacerange {0 .appendmap}bind def",

    // mark any .. map  .appendmap  -
    "/.appendmap { .TempMaps exch get counttomark 1 add 1 roll ] 1 index length exch put } bind def",

    // n  begincidrange  mark
    "/begincidrange { pop  mark}bind def",

    // mark lo hi cid ..  endcidrange  -
    "/endcidrange{ 1  .endmapranges }bind def",

    // mark lo hi value .. map  .endmapranges  -
    // Each triple becomes five objects: the prefix that lo and hi share, a header, their tails, the value as
    // a string, and the font index. Neighbours of the same prefix, header and font index become one. A tail of
    // more than 255 bytes is a stop, which is held back until the loop is left, since loops swallow it.
    "/.endmapranges {"
    "  counttomark 1 add 1 roll"                  // map mark lo hi value ..
    "  counttomark 3 idiv 1 sub 0 1 3 -1 roll {"  // .. and the number of the triple
    "    counttomark -3 roll"                     // k lo hi value
    "    .endmapvalue 4 2 roll"                   // k values font lo hi
    "    2 copy eq {"
    "      dup length 1 eq { 0 } { 1 } ifelse"
    "    } {"
    "      0 1 index length 1 sub {"
    "        2 index 1 index get 2 index 2 index get ne { exit } if 1 add"
    "      } repeat"
    "    } ifelse"  // k values font lo hi shared
    "    2 index length 1 index sub"
    "    dup 255 gt { true exit } if"  // .. the boolean on top asks for the stop
    "    4 string dup 0 4 -1 roll put dup 1 1 put dup 2 0 put dup 3 2 put"
    "    exch"  // k values font lo hi header shared
    "    3 index 1 index dup 2 index length exch sub getinterval"
    "    3 index 2 index dup 2 index length exch sub getinterval"
    "    concatstrings"                         // k values font lo hi header shared tails
    "    exch 4 index exch 0 exch getinterval"  // k values font lo hi header tails prefix
    "    5 -2 roll pop pop 3 1 roll 5 3 roll"   // k prefix header tails values font
    "    6 -1 roll 0 gt {"
    "      9 index 5 index eq  9 index 5 index eq and  6 index 2 index eq and {"
    "        pop 4 2 roll pop pop"  // prefix header tails values font tails values
    "        3 -1 roll 5 1 roll"    // prefix header font tails values tails values
    "        3 -1 roll exch concatstrings 3 1 roll concatstrings exch"
    "        3 -1 roll"  // prefix header tails values font
    "      } if"
    "    } if"
    "  } for"
    "  dup type /booleantype eq { stop } if"
    "  counttomark 2 add -1 roll .appendmap"
    "} bind def",

    // int  .endmapvalue  string font
    "/.endmapvalue{2 string dup 0 3 index -8 bitshift put dup 1 4 -1 roll 255 and put .FontIndex }bind def",

    // -  endcmap  -
    "/endcmap {"
    "  10 dict begin"
    "  0 1 2 {"
    "    /.map exch def"
    "    /.old .CodeMapData .map get def"
    "    /.new .TempMaps .map get def"
    "    .old length 0 1 .new length 1 sub { .new exch get length add } for array"
    "    0 .old .putmore 0 1 .new length 1 sub { .new exch get .putmore } for pop"
    "    .CodeMapData .map 3 -1 roll put"
    "  } for"
    "  end"
    "  currentdict /.TempMaps undef"
    "  /.CodeMapData .CodeMapData def"
    "  /FontMatrices .CodeMapData .endmap def"
    "} bind def",

    // any  .endmap  any
    "/.endmap {"
    "  dup type dup /arraytype eq {"
    "    pop dup wcheck {"
    "      0 1 2 index length 1 sub { 2 copy get .endmap 2 index 3 1 roll put } for readonly"
    "    } if"
    "  } {"
    "    /stringtype eq { readonly } if"
    "  } ifelse"
    "} bind def",

    // array offset array2  .putmore  array offset2
    "/.putmore{3 copy putinterval length add}bind def",

    // string string  concatstrings  string
    "/concatstrings{exch dup length 2 index length add string dup dup 4 2 roll copy length 4 -1 roll "
    "putinterval}bind def "};

bool g_bBuilding = false;

}  // namespace

ElementPtr BuildCMapProcSet(CFilterEPS& m) {
    if (g_bBuilding) {
        m.Fail(PSERR_RANGE);
        return nullptr;
    }
    struct BuildScope {
        BuildScope() noexcept { g_bBuilding = true; }
        ~BuildScope() { g_bBuilding = false; }
    } building;
    const CBodyPlaceScope global(PLACE_GLOBAL);
    const int dictDepth = m.m_DictStack.GetCount();
    const int operandDepth = m.m_OperandStack.GetCount();

    auto procSet = MakeElement<CDictionary>(35);
    m.m_DictStack.PushCopy(*procSet);
    // A program may have put its own procedures in the place of the operators used. What then goes wrong
    // concerns the set alone: results don't count, and what was left on the stacks goes.
    for (const std::string_view source : kSources) (void)m.ScanBuffer(source);
    while (m.m_DictStack.GetCount() > dictDepth) m.m_DictStack.Pop();
    m.Drop(m.m_OperandStack.GetCount() - operandDepth);
    m.ForgetError();
    return procSet;
}
