// The graphics state: its parameters, the state stack, and that copies of a state are copies, whatever they
// share.
#include "graphics/GraphState.h"

#include <algorithm>
#include <random>

#include "graphics/StateCell.h"
#include "interp/FilterEPS.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

TEST(GraphStateTest, Lines) {
    CheckStacks({
        {"departure: at the start",
         "currentlinewidth currentlinecap currentlinejoin currentmiterlimit currentstrokeadjust currentdash",
         "0.0 0 0 0.0 false [] 0.0"},
        {"departure: nothing is clamped",
         "-2 setlinewidth currentlinewidth 9.7 setlinecap currentlinecap -3 setlinejoin currentlinejoin", "-2.0 9 -3"},
        {"rounded to float", "1.1 setmiterlimit currentmiterlimit 1.1 eq true setstrokeadjust currentstrokeadjust",
         "true true"},
        {"the dash array itself", "[3 1] dup 2 setdash dup 0 7 put currentdash", "[7 1] [7 1] 2.0"},
        {"no dash array", "[1] /a setdash", "[1] /a", PSERR_TYPECHECK},
        {"departure: a packed dash array", "1 1 packedarray 0 setdash", "[1] 0", PSERR_TYPECHECK},
        {"dash without array", "0 setdash", "0", PSERR_STACKUNDERFLOW},
        {"no number", "(a) setlinewidth", "(a)", PSERR_TYPECHECK},
        {"no boolean", "1 setstrokeadjust", "1", PSERR_TYPECHECK},
        {"nothing", "setlinecap", "", PSERR_STACKUNDERFLOW},
        {"clip stack", "clipsave cliprestore cliprestore", ""},
        {"departure: initgraphics",
         "4 setlinewidth 1 setlinecap 2 setlinejoin 3 setmiterlimit 5 setflat [1] 2 setdash 1 2 3 "
         "setrgbcolor .5 setgray "
         "2 2 scale initgraphics currentlinewidth currentlinecap currentlinejoin currentmiterlimit "
         "currentflat "
         "currentdash currentgray currentcolorspace matrix currentmatrix 0 get",
         "4.0 0 0 10.0 5.0 [] 0.0 0.0 [/DeviceGray] 1.0"},
    });
}

TEST(GraphStateTest, Color) {
    CheckStacks({
        {"at the start", "currentcolorspace currentcolor", "[/DeviceGray] 0.0"},
        {"the space follows the setter", "0 setgray 1 0 0 setrgbcolor currentcolorspace", "[/DeviceRGB]"},
        {"departure: stores are apart", ".1 .2 .3 setrgbcolor .5 setgray currentrgbcolor currentcmykcolor",
         "0.1 0.2 0.3 0.0 0.0 0.0 0.0"},
        {"departure: hsb is not converted", "1 2 3 sethsbcolor currentrgbcolor currenthsbcolor currentcolorspace",
         "0.0 0.0 0.0 1.0 2.0 3.0 [/DeviceRGB]"},
        {"setcolor by the space", "/DeviceCMYK setcolorspace 1 2 3 4 setcolor currentcolor currentgray",
         "1.0 2.0 3.0 4.0 0.0"},
        {"departure: setcolorspace leaves the values",
         "7 setgray [/DeviceRGB] setcolorspace [/DeviceGray] setcolorspace currentcolor", "7.0"},
        {"a program's space array is changed in place", "[/DeviceRGB] dup setcolorspace 0 setgray", "[/DeviceGray]"},
        {"a longer one is replaced", "[/Pattern /DeviceRGB] dup setcolorspace 0 setgray currentcolorspace",
         "[/Pattern /DeviceRGB] [/DeviceGray]"},
        {"the array has one identity", "currentcolorspace 1 0 0 setrgbcolor currentcolorspace eq", "true"},
        {"a name is wrapped as it is",
         "/DeviceRGB cvx setcolorspace currentcolorspace 0 get dup xcheck exch gsave currentcolorspace 0 get xcheck "
         "exch",
         "true true DeviceRGB"},
        {"until another kind is set", "/DeviceRGB cvx setcolorspace 0 setgray currentcolorspace 0 get xcheck", "false"},
        {"departure: another family", "[/Separation (a) /DeviceGray {}] setcolorspace", "", PSERR_UNSUPPORTED},
        {"departure: another name", "/CIEBasedABC setcolorspace", "", PSERR_UNSUPPORTED},
        {"departure: an array without name", "[] setcolorspace", "", PSERR_TYPECHECK},
        {"no space", "(DeviceRGB) setcolorspace", "(DeviceRGB)", PSERR_TYPECHECK},
        {"neither number nor pattern", "/a setcolor", "/a", PSERR_TYPECHECK},
        {"a pattern in a device space", "1 dict setcolor", "<<0>>", PSERR_TYPECHECK},
        {"a missing component", "1 2 setrgbcolor", "1 2", PSERR_STACKUNDERFLOW},
        {"a component of another type", "1 (a) 3 setrgbcolor currentrgbcolor", "1 (a) 3", PSERR_TYPECHECK},
    });
}

TEST(GraphStateTest, Patterns) {
    CheckStacks({
        {"before any setcolor", "/Pattern setcolorspace currentcolor", ""},
        {"colored", "/Pattern setcolorspace << /PatternType 1 /PaintType 1 >> setcolor currentcolor", "<<2>>"},
        {"shading", "/Pattern setcolorspace << /PatternType 2 >> setcolor currentcolor", "<<1>>"},
        {"uncolored over RGB",
         "[/Pattern /DeviceRGB] setcolorspace 0 1 2 3 << /PatternType 1 /PaintType 2 >> setcolor "
         "currentcolor",
         "0 <<2>> 1 2 3"},
        {"uncolored over an array",
         "[/Pattern [/DeviceGray]] setcolorspace 1 << /PatternType 1 /PaintType 2 >> setcolor "
         "currentcolor",
         "<<2>> 1"},
        {"departure: nothing under it", "/Pattern setcolorspace 1 << /PatternType 1 /PaintType 2 >> setcolor", "1",
         PSERR_TYPECHECK},
        {"departure: no device space under it",
         "[/Pattern /Indexed] setcolorspace 1 << /PatternType 1 /PaintType 2 >> setcolor", "1", PSERR_UNSUPPORTED},
        {"departure: too few operands",
         "[/Pattern /DeviceRGB] setcolorspace 1 << /PatternType 1 /PaintType 2 >> setcolor", "1", PSERR_STACKUNDERFLOW},
        {"a number", "/Pattern setcolorspace 1 setcolor", "1", PSERR_TYPECHECK},
        {"departure: an empty dictionary", "/Pattern setcolorspace 1 dict setcolor", "", PSERR_TYPECHECK},
    });
}

TEST(GraphStateTest, DeviceParameters) {
    CheckStacks({
        {"numbers at the start", "currentflat currentoverprint currentsmoothness", "1.0 false 0.02"},
        {"numbers", "-1 setflat currentflat true setoverprint currentoverprint 3 setsmoothness currentsmoothness",
         "-1.0 true 3.0"},
        {"elements at the start",
         "currenttransfer currentcolortransfer currentblackgeneration currentundercolorremoval "
         "currentcolorrendering",
         "{} {} {} {} {} {--pop-- 0} {--pop-- 0} <<0>>"},
        {"screens at the start", "currentscreen currentcolorscreen 9 {pop} repeat", "5.599963 0.0 {} 5.999626 0.0 {}"},
        {"halftone at the start", "currenthalftone dup /Frequency get exch /SpotFunction get", "5.999 {}"},
        {"equal values are different objects",
         "currenttransfer currentscreen exch pop exch pop eq "
         "currenttransfer currenttransfer eq",
         "false true"},
        {"a screen by procedure, then by halftone",
         "60 45 {pop} setscreen currentscreen 30 15 << /a 1 >> setscreen currentscreen 1 2 {} setscreen "
         "currentscreen",
         "60.0 45.0 {pop} 30.0 15.0 <<1>> 1.0 2.0 {}"},
        {"four screens", "1 2 {r} 3 4 {g} 5 6 {b} 7 8 {k} setcolorscreen currentcolorscreen",
         "1.0 2.0 {r} 3.0 4.0 {g} 5.0 6.0 {b} 7.0 8.0 {k}"},
        {"departure: the last one tells the kind of all",
         "1 2 /r 3 4 (g) 5 6 null 7 8 1 dict setcolorscreen currentcolorscreen",
         "1.0 2.0 /r 3.0 4.0 (g) 5.0 6.0 null 7.0 8.0 <<0>>"},
        {"four transfers", "{r} {g} {b} {k} setcolortransfer currentcolortransfer", "{r} {g} {b} {k}"},
        {"a packed procedure", "{1} 1 packedarray cvx settransfer currenttransfer", "{{1}}"},
        {"a literal array", "[1] settransfer", "[1]", PSERR_TYPECHECK},
        {"one of four is literal", "{r} [1] {b} {k} setcolortransfer", "{r} [1] {b} {k}", PSERR_TYPECHECK},
        {"no dictionary", "{} sethalftone", "{}", PSERR_TYPECHECK},
        {"no frequency", "(a) 2 {} setscreen", "(a) 2 {}", PSERR_TYPECHECK},
        {"no screen", "1 2 3 setscreen", "1 2 3", PSERR_TYPECHECK},
        {"half a screen", "2 {} setscreen", "2 {}", PSERR_STACKUNDERFLOW},
        {"three screens", "1 2 {r} 3 4 {g} 5 6 {b} setcolorscreen", "1 2 {r} 3 4 {g} 5 6 {b}", PSERR_STACKUNDERFLOW},
        {"no boolean", "1 setoverprint", "1", PSERR_TYPECHECK},
    });
}

TEST(GraphStateTest, Stack) {
    CheckStacks({
        {"gsave and grestore",
         "1 setlinewidth gsave 2 setlinewidth gsave 3 setlinewidth grestore currentlinewidth grestore "
         "currentlinewidth",
         "2.0 1.0"},
        {"the last state stays", "1 setlinewidth grestore grestore currentlinewidth", "1.0"},
        {"grestoreall without save", "1 setlinewidth gsave gsave 2 setlinewidth grestoreall currentlinewidth", "1.0"},
        {"gstate is a copy", "1 setlinewidth gstate 2 setlinewidth setgstate currentlinewidth", "1.0"},
        {"departure: setgstate takes the object itself",
         "gstate dup setgstate 3 setlinewidth gsave 9 setlinewidth setgstate currentlinewidth", "3.0"},
        {"setgstate replaces the top alone",
         "1 setlinewidth gstate 5 setlinewidth gsave setgstate grestore currentlinewidth", "5.0"},
        {"currentgstate", "gstate 7 setlinewidth currentgstate 8 setlinewidth setgstate currentlinewidth", "7.0"},
        {"departure: currentgstate leaves copies of the object alone",
         "1 setlinewidth gstate dup 7 setlinewidth currentgstate pop setgstate currentlinewidth", "1.0"},
        {"a state that is current and on the operand stack",
         "gstate dup setgstate dup currentgstate 4 setlinewidth eq 2 setlinewidth currentlinewidth", "false 2.0"},
        {"no state", "1 setgstate", "1", PSERR_TYPECHECK},
        {"nothing", "currentgstate", "", PSERR_STACKUNDERFLOW},
    });
    EXPECT_EQ(RunText("gsave gsave gstate setgstate").gstateDepth, 3);
}

// Each case changes one of two states through whatever the program can reach, and looks at the other.
TEST(GraphStateTest, CopiesShareNothing) {
    CheckStacks({
        {"dash array held from below",
         "/d [1 2] def d 0 setdash gsave d 0 9 put currentdash pop grestore currentdash pop", "[1 2] [9 2]"},
        {"dash array taken above",
         "[1 2] 0 setdash gsave currentdash pop dup 0 9 put currentdash pop eq grestore currentdash "
         "pop",
         "true [1 2]"},
        {"changed between two copies", "/d [1 2] def d 0 setdash gsave grestore d 0 9 put gsave currentdash pop",
         "[9 2]"},
        {"taken, changed and copied again",
         "[1 2] 0 setdash gsave currentdash pop dup 0 7 put gsave 0 8 put currentdash pop grestore "
         "currentdash pop grestore "
         "currentdash pop",
         "[7 2] [8 2] [1 2]"},
        {"two levels of one copy", "[1 2] 0 setdash gsave gsave currentdash pop 0 5 put grestore currentdash pop",
         "[1 2]"},
        {"the empty default", "gsave currentdash pop currentdash pop eq currentdash pop grestore currentdash pop eq",
         "true false"},
        {"a view becomes whole", "[1 2 3 4] 1 2 getinterval 0 setdash gsave currentdash pop dup length exch 2 get",
         "2 [2 3] 2", PSERR_RANGE},
        {"departure: font held from below",
         "/f << /A 1 >> def f setfont gsave f /X 1 put currentfont /X known grestore currentfont /X known",
         "false true"},
        {"departure: font taken above",
         "<< /A 1 >> setfont gsave currentfont /X 1 put currentfont /X known grestore currentfont /X known",
         "true false"},
        {"departure: array in a font",
         "/f << /A [1 2] >> def f setfont gsave grestore f /A get 0 9 put gsave currentfont /A get f /A get "
         "1 8 put currentfont /A get",
         "[9 2] [9 2]"},
        {"departure: string in a font",
         "/f << /S (abc) >> def f setfont gsave grestore f /S get 0 65 put gsave f /S get 1 66 put "
         "currentfont "
         "/S get",
         "(Abc)"},
        {"array in an array in a font",
         "/f << /A [[1]] >> def f setfont gsave grestore f /A get 0 get 0 9 put gsave currentfont "
         "/A get",
         "[[9]]"},
        {"numbers overwritten in place",
         "/f << /M matrix >> def f setfont gsave grestore 2 3 scale f /M get currentmatrix pop "
         "gsave currentfont /M get 0 get",
         "2.0"},
        {"departure: dictionaries in dictionaries stay shared",
         "<< /D 1 dict >> setfont gsave currentfont /D get /x 1 put grestore currentfont /D get /x known", "true"},
        {"new key", "/f 2 dict def f setfont gsave grestore f /A 1 put gsave currentfont /A known", "true"},
        {"new key that is no text", "/f 2 dict def f setfont gsave grestore f 1 2 put gsave currentfont 1 known",
         "true"},
        {"key that is no text", "/f 2 dict def f 1 2 put f setfont gsave grestore f 1 3 put gsave currentfont 1 get",
         "3"},
        {"undef of a key that is no text",
         "/f 2 dict def f 1 2 put f setfont gsave grestore f 1 undef gsave currentfont 1 known", "false"},
        {"undef at a save level",
         "/f << /A 1 >> def save f /A 2 put f setfont gsave grestore f /A undef gsave currentfont /A get", "-save- 1"},
        {"putinterval",
         "/f << /S (abc) >> def f setfont gsave grestore f /S get 1 (XY) putinterval gsave currentfont /S get",
         "(aXY)"},
        {"departure: bind",
         "/f << /P {add} >> def f setfont gsave grestore f /P get bind pop gsave currentfont /P get 0 get type",
         "/operatortype"},
        {"growth of the user objects",
         "0 1 defineuserobject userdict setfont gsave grestore 12 2 defineuserobject gsave currentfont /UserObjects "
         "get "
         "length",
         "13"},
        {"undef", "/f << /A 1 >> def f setfont gsave grestore f /A undef gsave currentfont /A known", "false"},
        {"departure: the start font", "gsave currentfont /X 1 put grestore currentfont /X known", "false"},
        {"halftone",
         "/h << /A 1 >> def h sethalftone 3 setflat gsave 4 setflat h /X 1 put gsave currenthalftone /X "
         "known grestore "
         "currentflat grestore currentflat currenthalftone /X known",
         "false 4.0 3.0 true"},
        {"the start halftone",
         "gsave currenthalftone /X 1 put currenthalftone /X known grestore currenthalftone /X known", "true false"},
        {"device numbers", "2 setflat gsave 3 setflat true setoverprint grestore currentflat currentoverprint",
         "2.0 false"},
        {"device numbers beside a held element", "{} settransfer gsave grestore 2 setflat gsave currentflat", "2.0"},
        {"procedures",
         "/p {1 2} def /p load settransfer gsave /p load 0 9 put currenttransfer grestore currenttransfer",
         "{1 2} {9 2}"},
        {"color space array",
         "/c [/DeviceRGB] def c setcolorspace gsave 0 setgray c currentcolorspace grestore c "
         "currentcolorspace",
         "[/DeviceRGB] [/DeviceGray] [/DeviceRGB] [/DeviceRGB]"},
        {"an executable color space array",
         "[/DeviceRGB] cvx setcolorspace gsave 0 setgray currentcolorspace xcheck grestore "
         "currentcolorspace",
         "true {/DeviceRGB}"},
        {"pattern",
         "/Pattern setcolorspace << /PatternType 2 >> setcolor gsave currentcolor /X 1 put currentcolor "
         "length grestore "
         "currentcolor length",
         "2 1"},
        {"state objects", "[1 2] 0 setdash gstate currentdash pop 0 9 put setgstate currentdash pop", "[1 2]"},
        {"global mode counts when the copy is made",
         "true setglobal gsave false setglobal currentdash pop gcheck currenttransfer gcheck grestore "
         "currentdash pop gcheck",
         "true true false"},
        {"departure: the start font is global, its copies are not", "currentfont gcheck gsave currentfont gcheck",
         "true false"},
    });
}

/// A program of random steps on one composite parameter, and what it leaves by the rule that every gsave
/// makes a full copy. The program holds up to four objects, each of which has one number under the key 0.
struct RandomWalk {
    RandomWalk(unsigned seed, const std::string& make, const std::string& set, const std::string& get) {
        std::mt19937 random(seed);
        const auto pick = [&random](unsigned n) { return static_cast<size_t>(random() % n); };
        program = "/R 4 array def 0 1 3 {R exch " + make + " put} for R 0 get " + set + " ";
        std::vector<int> values(4);            // of all storage there ever was
        std::vector<size_t> held{0, 1, 2, 3};  // storage of the program's objects
        std::vector<size_t> states{0};         // storage of the parameter in each state
        for (int step = 1; step <= 60; ++step) {
            const size_t k = pick(4);
            const std::string object = "R " + std::to_string(k) + " ";
            switch (pick(7)) {
                case 0:
                    program += object + get + " put ";
                    held[k] = states.back();
                    break;
                case 1:
                case 2:
                    program += object + "get 0 " + std::to_string(step) + " put ";
                    values[held[k]] = step;
                    break;
                case 3:
                    program += object + "get " + set + " ";
                    states.back() = held[k];
                    break;
                case 4:
                    program += "gsave ";
                    values.push_back(values[states.back()]);
                    states.push_back(values.size() - 1);
                    break;
                case 5:
                    program += "grestore ";
                    if (states.size() > 1) states.pop_back();
                    break;
                default:
                    program += get + " 0 get ";
                    stack += std::to_string(values[states.back()]) + " ";
            }
        }
        program += "count";
        stack += std::to_string(std::count(stack.begin(), stack.end(), ' '));
    }

    std::string program;
    std::string stack;
};

TEST(GraphStateTest, CopiesAreAsGoodAsFullOnes) {
    const struct {
        const char *make, *set, *get;
    } parameters[] = {{"[0]", "0 setdash", "currentdash pop"},
                      {"1 dict dup 0 0 put", "setfont", "currentfont"},
                      {"1 dict dup 0 0 put", "sethalftone", "currenthalftone"},
                      {"[0] cvx", "settransfer", "currenttransfer"}};
    for (const auto& parameter : parameters) {
        for (unsigned seed = 0; seed < 200; ++seed) {
            const RandomWalk walk(seed, parameter.make, parameter.set, parameter.get);
            ASSERT_EQ(RunText(walk.program).stack, walk.stack) << walk.program;
        }
    }
}

TEST(GraphStateTest, ValuesOfAnyShape) {
    CheckStacks({
        {"departure: nested deep",
         "[] 300 {1 array dup 0 4 -1 roll put} repeat 0 setdash gsave gsave currentdash pop length grestore "
         "grestore",
         "1"},
        {"departure: an array in itself", "1 array dup dup 0 exch put 0 setdash gsave currentdash pop length grestore",
         "1"},
        {"departure: twice",
         "2 array dup dup 0 exch put dup dup 1 exch put 0 setdash gsave gsave currentdash pop length", "2"},
        {"a font in an array of itself", "/f 2 dict def f /A [f f] put f setfont gsave currentfont /A get length", "2"},
        {"departure: an element without storage", "save [1] exch restore 0 setdash gsave currentdash pop length", "0"},
        {"a state in a font", "<< /G gstate >> setfont gsave grestore gsave currentfont /G get", "-gstate-"},
    });
}

class GraphStateMachineTest : public ::testing::Test {
protected:
    void Run(std::string_view program) { ASSERT_EQ(m_Machine.ScanBuffer(program), 1) << program; }
    static size_t Bodies() {
        return g_RegistryStack.At(PlaceOfLevel(g_nSaveLevel))->GetCount() +
               g_RegistryStack.At(PLACE_GLOBAL)->GetCount();
    }

    TestFrame m_Frame;
    CFilterEPS m_Machine{5};
};

TEST_F(GraphStateMachineTest, StatesAreFreedWhenTheyLeaveTheStack) {
    Run("/f << /A [1 2 3] /S (abc) >> def f setfont {pop} settransfer [1 2] 0 setdash");
    for (const char* pair :
         {"gsave grestore", "gsave gsave grestore grestore", "gsave 1 0 0 setrgbcolor 0 setgray 3 setflat grestore",
          "gsave f /A get 0 9 put gsave grestore grestore", "true setglobal gsave grestore false setglobal",
          "gsave gsave gsave grestoreall", "gsave initgraphics gsave grestore grestore", "save restore",
          "save gsave gsave restore"}) {
        SCOPED_TRACE(pair);
        Run(pair);
        const size_t bodies = Bodies();
        const size_t shared = CSnapshot::CountBodies();
        for (int i = 0; i < 10; ++i) Run(pair);
        EXPECT_EQ(Bodies(), bodies);
        EXPECT_EQ(CSnapshot::CountBodies(), shared);
    }
}

TEST_F(GraphStateMachineTest, RgbAsPainted) {
    const auto painted = [this](std::string_view program) {
        Run(program);
        float rgb[3];
        m_Machine.GetCurrentGState()->GetRGBColor(rgb);
        return std::vector<float>(rgb, rgb + 3);
    };
    using Rgb = std::vector<float>;
    EXPECT_EQ(painted(""), (Rgb{0, 0, 0}));
    EXPECT_EQ(painted("2 setgray"), (Rgb{2, 2, 2}));
    EXPECT_EQ(painted(".1 .2 .3 setrgbcolor"), (Rgb{.1F, .2F, .3F}));
    EXPECT_EQ(painted("1 1 1 sethsbcolor"), (Rgb{.1F, .2F, .3F})) << "hsb is not painted";
    EXPECT_EQ(painted("0 0 0 1 setcmykcolor"), (Rgb{0, 0, 0}));
    EXPECT_EQ(painted(".5 0 .25 .6 setcmykcolor"), (Rgb{0, 1.0F - .6F, 1.0F - (.25F + .6F)}));
    EXPECT_EQ(painted("/Pattern setcolorspace"), (Rgb{2, 2, 2})) << "the last gray";
}

TEST_F(GraphStateMachineTest, RoundsPathPointsOnTheStore) {
    CGraphState* state = m_Machine.GetCurrentGState();
    state->Translate(0.1, 1e-9);
    point_2d points[2] = {{16777216.0F, 1.0F}, {0.2F, 0.0F}};
    state->TransformPathPoints(2, points);
    EXPECT_EQ(points[0].x, 16777216.0F);
    EXPECT_EQ(points[0].y, 1.0F);
    EXPECT_EQ(points[1].x, static_cast<float>(static_cast<double>(0.2F) + 0.1));
    EXPECT_EQ(points[1].y, 1e-9F);
}

}  // namespace
