// Colour in the complete dialect: what colours of each family are drawn as, and what programs are told.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

struct Case {
    const char* name;
    const char* program;
    const char* color;  ///< as entities write it
};

TEST(CompleteColorTest, EachFamilyHasItsColor) {
    for (const Case& c : {
             Case{"a device space begins with black", "0.5 setgray /DeviceRGB setcolorspace", "#000000"},
             Case{"that of CMYK, too", "/DeviceCMYK setcolorspace", "#000000"},
             Case{"CIEBasedA", "[/CIEBasedA <</WhitePoint [1 1 1]>>] setcolorspace 0.2 setcolor", "#333333"},
             Case{"its range", "[/CIEBasedA <</RangeA [0 100]>>] setcolorspace 20 setcolor", "#333333"},
             Case{"CIEBasedABC", "[/CIEBasedABC <<>>] setcolorspace 1 0 0.2 setcolor", "#ff0033"},
             Case{"beyond its range", "[/CIEBasedABC <<>>] setcolorspace 7 -1 0 setcolor", "#ff0000"},
             Case{"CIEBasedDEF", "[/CIEBasedDEF <</RangeDEF [0 2 0 2 -1 1]>>] setcolorspace 2 0 0 setcolor", "#ff007f"},
             Case{"CIEBasedDEFG", "[/CIEBasedDEFG <<>>] setcolorspace 0 1 1 0 setcolor", "#ff0000"},
             Case{"ICCBased by N", "[/ICCBased <</N 3>>] setcolorspace 0 0 1 setcolor", "#0000ff"},
             Case{"by its alternate",
                  "[/ICCBased <</N 1 /Alternate [/Separation /x /DeviceRGB {0 0}]>>] setcolorspace 1 setcolor",
                  "#ff0000"},
             Case{"Lab white", "[/Lab <</WhitePoint [0.9505 1 1.089]>>] setcolorspace 100 0 0 setcolor", "#ffffff"},
             Case{"Lab red", "[/Lab <<>>] setcolorspace 53.24 80.09 67.2 setcolor", "#ff0000"},
             Case{"Indexed", "[/Indexed /DeviceRGB 1 <000000 00FF00>] setcolorspace 1 setcolor", "#00ff00"},
             Case{"beyond its greatest", "[/Indexed /DeviceRGB 1 <000000 00FF00>] setcolorspace 9.7 setcolor",
                  "#00ff00"},
             Case{"by a procedure", "[/Indexed /DeviceRGB 9 {10 div 0 0}] setcolorspace 2 setcolor", "#330000"},
             Case{"Separation", "[/Separation /Gold /DeviceCMYK {0 exch dup 0}] setcolorspace 1 setcolor", "#ff0000"},
             Case{"begins with its full tint", "[/Separation /Gold /DeviceGray {0.8 mul}] setcolorspace", "#cccccc"},
             Case{"DeviceN", "[/DeviceN [/a /b] /DeviceRGB {0}] setcolorspace 0.2 1 setcolor", "#33ff00"},
             Case{"Indexed over Separation",
                  "[/Indexed [/Separation /x /DeviceRGB {0 0}] 1 <00FF>] setcolorspace 1 setcolor", "#ff0000"},
             Case{"Indexed over Lab stretches to its range",
                  "[/Indexed [/Lab <</Range [-128 127 -128 127]>>] 0 <FF8080>] setcolorspace 0 setcolor", "#ffffff"},
             Case{"a device space again",
                  "[/Separation /x /DeviceRGB {0 0}] setcolorspace 1 setcolor 0 1 0 setrgbcolor", "#00ff00"},
             Case{"gsave keeps it",
                  "[/Separation /x /DeviceGray {}] setcolorspace 0.2 setcolor gsave 0 setgray grestore", "#333333"},
             Case{"sethsbcolor", "0.5 1 1 sethsbcolor", "#00ffff"},
             Case{"a gray of it", "0 0 0.2 sethsbcolor", "#333333"},
         }) {
        SCOPED_TRACE(c.name);
        const RunResult result = RunText(std::string(c.program) + " 0 0 moveto 72 0 lineto stroke", kComplete);
        EXPECT_EQ(result.error, PSERR_NONE);
        ASSERT_EQ(result.entities.size(), 1u);
        EXPECT_EQ(result.entities[0].substr(0, 7), c.color);
    }
}

TEST(CompleteColorTest, WhatProgramsAreTold) {
    CheckStacks(
        {
            {"the components given", "[/Separation /x /DeviceRGB {0 0}] setcolorspace 0.25 setcolor currentcolor",
             "0.25"},
            {"the first ones", "[/Separation /x /DeviceRGB {0 0}] setcolorspace currentcolor", "1.0"},
            {"the space", "[/Separation /x /DeviceRGB {0 0}] setcolorspace currentcolorspace 0 get", "/Separation"},
            {"after setgray", "[/Separation /x /DeviceGray {}] setcolorspace 0 setgray currentcolorspace 0 get",
             "/DeviceGray"},
            {"rgb of a gray", "0.5 setgray currentrgbcolor", "0.5 0.5 0.5"},
            {"gray of a green", "0 1 0 setrgbcolor currentgray", "0.59"},
            {"cmyk of a gray", "0.25 setgray currentcmykcolor", "0.0 0.0 0.0 0.75"},
            {"an unknown family", "{[/NoSpace] setcolorspace} stopped $error /errorname get exch",
             "[/NoSpace] /rangecheck true"},
            {"an unknown name", "{/NoSpace setcolorspace} stopped $error /errorname get exch",
             "/NoSpace /undefined true"},
            {"too few components",
             "[/CIEBasedABC <<>>] setcolorspace {1 2 setcolor} stopped $error /errorname get exch",
             "1 2 /stackunderflow true"},
            {"a tint that fails", "{[/Separation /x /DeviceGray {nosuch}] setcolorspace} stopped $error /errorname get",
             "1.0 true /undefined"},
            {"a space over itself",
             "/s [/Separation /x /DeviceGray {}] def s 2 s put {s setcolorspace} stopped $error /errorname get exch "
             "pop exch pop",
             "/limitcheck"},
            {"a table too short",
             "[/Indexed /DeviceRGB 1 <000000>] setcolorspace {1 setcolor} stopped $error /errorname get",
             "1 true /rangecheck"},
        },
        kComplete);
}

}  // namespace
