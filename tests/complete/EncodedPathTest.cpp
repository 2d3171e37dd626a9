// Encoded number strings and encoded user paths, byte by byte.
#include "complete/geometry/EncodedPath.h"

#include <gtest/gtest.h>

#include <string>

namespace geometry {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(EncodedPathTest, NumberStrings) {
    using Fault = EncodingFault;
    struct Case {
        const char* name;
        Bytes bytes;
        std::vector<double> numbers;
        Fault fault = Fault::None;
    };
    for (const Case& c : {Case{"32-bit integers", {149, 0, 0, 2, 0, 0, 1, 2, 255, 255, 255, 254}, {258, -2}},
                          {"32 bits, 16 behind the point", {149, 16, 0, 1, 255, 254, 128, 0}, {-1.5}},
                          {"32 bits, 31 behind the point", {149, 31, 0, 1, 128, 0, 0, 0}, {-1}},
                          {"low-order first, the count, too", {149, 128, 1, 0, 2, 1, 0, 0}, {258}},
                          {"low-order first, 31 behind the point", {149, 159, 1, 0, 0, 0, 0, 64}, {0.5}},
                          {"16-bit integers", {149, 32, 0, 2, 1, 2, 255, 255}, {258, -1}},
                          {"16 bits, 4 behind the point", {149, 36, 0, 1, 0, 24}, {1.5}},
                          {"16 bits, 15 behind the point", {149, 47, 0, 1, 128, 0}, {-1}},
                          {"16 bits, low-order first", {149, 160, 2, 0, 2, 1, 254, 255}, {258, -2}},
                          {"a real", {149, 48, 0, 1, 0x40, 0x20, 0, 0}, {2.5}},
                          {"a real, low-order first", {149, 176, 1, 0, 0, 0, 0x20, 0x40}, {2.5}},
                          {"native reals", {149, 49, 0, 1, 0xC0, 0x20, 0, 0}, {-2.5}},
                          {"native reals, low-order first", {149, 177, 1, 0, 0, 0, 0x20, 0x40}, {2.5}},
                          {"no numbers", {149, 0, 0, 0}, {}},
                          {"bytes behind", {149, 32, 0, 1, 0, 7, 9, 9, 9}, {7}},
                          {"more than 255 numbers",
                           [] {
                               Bytes bytes{149, 32, 1, 4};
                               for (int i = 0; i < 260; ++i) bytes.insert(bytes.end(), {0, 3});
                               return bytes;
                           }(),
                           std::vector<double>(260, 3)},
                          {"nothing", {}, {}, Fault::NotEncoded},
                          {"half a header", {149, 0, 0}, {}, Fault::NotEncoded},
                          {"another token", {148, 0, 0, 0}, {}, Fault::NotEncoded},
                          {"no such form", {149, 50, 0, 0}, {}, Fault::BadNumberForm},
                          {"nor this", {149, 255, 0, 0}, {}, Fault::BadNumberForm},
                          {"a byte short", {149, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0}, {}, Fault::TooFewNumbers},
                          {"much too short", {149, 32, 255, 255, 0, 1}, {}, Fault::TooFewNumbers}}) {
        SCOPED_TRACE(c.name);
        const DecodedNumbers decoded = DecodeNumberString(c.bytes);
        EXPECT_EQ(decoded.numbers, c.numbers);
        EXPECT_EQ(decoded.fault, c.fault);
    }
}

TEST(EncodedPathTest, UserPaths) {
    using Fault = EncodingFault;
    struct Case {
        const char* name;
        int numbers;  ///< 1, 2, 3 ...
        Bytes operators;
        const char* steps;
        Fault fault = Fault::None;
    };
    for (const Case& c :
         {Case{"a rectangle",
               12,
               {0, 1, 35, 3, 10},
               "1 2 3 4 setbbox 5 6 moveto 7 8 lineto 9 10 lineto 11 12 lineto closepath "},
          {"operators in turn",
           12,
           {11, 0, 1, 5, 10},
           "ucache 1 2 3 4 setbbox 5 6 moveto 7 8 9 10 11 12 curveto closepath "},
          {"each takes its operands",
           27,
           {2, 4, 6, 7, 8, 9},
           "1 2 rmoveto 3 4 rlineto 5 6 7 8 9 10 rcurveto 11 12 13 14 15 arc 16 17 18 19 20 arcn 21 22 23 24 25 arct "},
          {"repeated", 6, {35, 3, 10}, "1 2 lineto 3 4 lineto 5 6 lineto closepath "},
          {"repeated once and never", 2, {33, 1, 32, 3, 10}, "1 2 moveto closepath "},
          {"no operators", 4, {}, ""},
          {"no such operator", 4, {1, 12, 1}, "1 2 moveto ", Fault::BadOperator},
          {"a count by itself", 4, {1, 34}, "1 2 moveto ", Fault::BadOperator},
          {"a count of a count", 4, {34, 34, 1}, "", Fault::BadOperator},
          {"too few numbers", 3, {1, 3, 10}, "1 2 moveto ", Fault::TooFewNumbers}}) {
        SCOPED_TRACE(c.name);
        std::vector<double> numbers;
        for (int i = 1; i <= c.numbers; ++i) numbers.push_back(i);
        EncodedUserPath path(numbers, c.operators);
        std::string steps;
        while (const auto step = path.Next()) {
            for (const double number : step->operands) steps += std::to_string(static_cast<int>(number)) + " ";
            steps += std::string(step->op->name) + " ";
        }
        EXPECT_EQ(path.Fault(), c.fault);
        EXPECT_EQ(steps, c.steps);
        EXPECT_FALSE(path.Next().has_value()) << "the end stays the end";
    }
    // 223 steps for two bytes, and no memory for them.
    Bytes operators;
    for (int i = 0; i < 1000; ++i) operators.insert(operators.end(), {255, 10});
    EncodedUserPath path({}, operators);
    int count = 0;
    while (path.Next()) ++count;
    EXPECT_EQ(count, 223'000);
}

}  // namespace
}  // namespace geometry
