// Names of colours, which become layers, and their places in the palette of DXF.
#include "writers/ColorNames.h"

#include <gtest/gtest.h>

namespace {

std::uint32_t Rgb(std::uint32_t value) { return (value & 0xFF) << 16 | (value & 0xFF00) | value >> 16; }

TEST(ColorNamesTest, HueComesFirst) {
    struct Case {
        std::uint32_t rgb;
        const char* name;
    };
    for (const Case& c : {Case{0x000000, "black"},
                          {0xFF0000, "red"},
                          {0x804000, "brown"},
                          {0xE6DA73, "yellow-E6DA73"},  // nearer to light gray by its values
                          {0xE51919, "red-E51919"},
                          {0x7A0A08, "dark-red-7A0A08"},
                          {0xC8E6C8, "green-C8E6C8"},
                          {0x004020, "dark-green-004020"},
                          {0x90A0FF, "blue-90A0FF"},
                          {0xFF00F0, "magenta-FF00F0"},
                          {0xFF0005, "red-FF0005"},  // from the other side of the circle
                          {0x0A0000, "black-0A0000"},
                          {0x808283, "gray-808283"},
                          {0xFDFDF8, "white-FDFDF8"}})
        EXPECT_EQ(ColorName(Rgb(c.rgb)), c.name);
}

TEST(ColorNamesTest, TheNearestIndexOfThePalette) {
    struct Case {
        std::uint32_t rgb;
        int index;
    };
    for (const Case& c : {Case{0x000000, 7},
                          {0xFFFFFF, 7},
                          {0xFF0000, 1},
                          {0xFFFF00, 2},
                          {0x00FF00, 3},
                          {0x00FFFF, 4},
                          {0x0000FF, 5},
                          {0xFF00FF, 6},
                          {0xFE0201, 1}})
        EXPECT_EQ(NearestColorIndex(Rgb(c.rgb)), c.index) << std::hex << c.rgb;
}

}  // namespace
