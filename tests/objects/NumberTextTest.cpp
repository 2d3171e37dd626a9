// The short way from a text to a number against the library's.
#include "objects/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <random>
#include <string>

namespace {

TEST(NumberTextTest, PlainNumbersAreExact) {
    std::minstd_rand random(7);
    int plain = 0;
    for (int i = 0; i < 300'000; ++i) {
        std::string text;
        if (random() % 3 == 0) text += '-';
        for (auto digits = random() % 12; digits-- > 0;) text += static_cast<char>('0' + random() % 10);
        if (random() % 4 != 0) text += '.';
        for (auto digits = random() % 10; digits-- > 0;) text += static_cast<char>('0' + random() % 10);
        double value = 0;
        const NumberClass numberClass = PlainNumber(text, value);
        if (numberClass == NumberClass::none) continue;
        ++plain;
        ASSERT_EQ(numberClass, ClassifyNumber(text)) << text;
        double expected = 0;
        std::from_chars(text.data(), text.data() + text.size(), expected);
        if (numberClass == NumberClass::integer) expected += 0.0;  // an integer has no negative zero
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
    }
    EXPECT_GT(plain, 100'000);
}

TEST(NumberTextTest, WhatIsPlain) {
    struct Case {
        const char* text;
        NumberClass numberClass;
        double value;
    };
    for (const Case& c : {Case{"12", NumberClass::integer, 12},
                          {"-0", NumberClass::integer, 0},
                          {"123456789", NumberClass::integer, 123456789},
                          {"1234567890", NumberClass::none, 0},
                          {".5", NumberClass::real, 0.5},
                          {"5.", NumberClass::real, 5},
                          {"-.25", NumberClass::real, -0.25},
                          {"123456789012.345", NumberClass::real, 123456789012.345},
                          {"1234567890123.456", NumberClass::none, 0},
                          {"", NumberClass::none, 0},
                          {"-", NumberClass::none, 0},
                          {".", NumberClass::none, 0},
                          {"-.", NumberClass::none, 0},
                          {"+1", NumberClass::none, 0},
                          {"1e3", NumberClass::none, 0},
                          {"1.2.3", NumberClass::none, 0},
                          {"1-2", NumberClass::none, 0},
                          {"2#101", NumberClass::none, 0},
                          {"1a", NumberClass::none, 0}}) {
        double value = 0;
        EXPECT_EQ(PlainNumber(c.text, value), c.numberClass) << c.text;
        if (c.numberClass != NumberClass::none) {
            EXPECT_EQ(value, c.value) << c.text;
        }
    }
}

}  // namespace
