// Numbers with four decimals, against the library's conversion.
#include "writers/OutputFile.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

#include "support/Program.h"

namespace {

std::string Fixed(double value) {
    char room[512];
    char* end = std::to_chars(room, room + sizeof room, value, std::chars_format::fixed, 4).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    const std::string text(room, end);
    return text == "-0" ? "0" : text;
}

/// What is written of each value, one on a line.
template <class T, class Write>
std::vector<std::string> Lines(const std::vector<T>& values, Write write) {
    const TempFile file("", ".txt");
    COutputFile out(file.Path());
    for (const T value : values) {
        write(out, value);
        out.Write('\n');
    }
    EXPECT_TRUE(out.Close()) << out.Error();
    std::ifstream in(file.Path());
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

TEST(OutputFileTest, ShortestDecimalsAreThoseOfTheLibrary) {
    std::vector<float> values = {0.0f, -0.0f, 1.0f, -64.0f, 0.1f, 100.0f, 65537.0f, 99999.99f, 1e5f, 16777216.0f};
    for (const float edge : {0x1p-9f, 1e5f, 1e-45f, 3.4e38f, 0.3f, 8388609.0f}) {
        values.push_back(std::nextafter(edge, 0.0f));
        values.push_back(std::nextafter(edge, 1e38f));
    }
    std::minstd_rand random(5);
    for (int i = 0; i < 200'000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random() * 2 + i % 2);
        if (const auto any = std::bit_cast<float>(bits); std::isfinite(any)) values.push_back(any);
        values.push_back(std::bit_cast<float>((bits & 0x8FFFFFFF) | 0x40000000));  // 2 to 2^33, where coordinates lie
        values.push_back(static_cast<float>(random() % 1'000'000) / 1000);         // few decimals
    }
    const auto lines = Lines(values, [](COutputFile& out, float value) { out.WriteShortest(value); });
    ASSERT_EQ(lines.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        char room[64];
        const std::string expected(room, std::to_chars(room, room + sizeof room, values[i]).ptr);
        ASSERT_EQ(lines[i], expected) << std::hexfloat << values[i];
    }
}

TEST(OutputFileTest, FixedDecimalsAreRoundedCorrectly) {
    std::vector<double> values = {0.0,  -0.0,  0.00004,     -0.00004,     0.00005,  0.00015,  1.0,
                                  -1.0, 10.0,  0.03125,     0.00625,      2.5e-5,   99.99995, 9.9999,
                                  1e11, 1e300, -1e20,       123456.78125, 1e7 - .1, 1.00005,  -1.99995,
                                  1e6,  0.1,   -1000000.05, 1e-300};
    std::minstd_rand random(3);
    for (int i = 0; i < 50'000; ++i) {
        const double exponent = static_cast<double>(random() % 24) - 8;
        const double value = (static_cast<double>(random()) / 1e9 - 1) * std::pow(10, exponent);
        values.push_back(value);
        values.push_back(static_cast<float>(value));
        values.push_back(std::round(value * 1e5) / 1e5);                                        // many near a tie
        values.push_back((std::floor(value) + static_cast<double>(random() % 65536) / 65536));  // some on one
    }
    const auto lines = Lines(values, [](COutputFile& out, double value) { out.WriteFixed(value); });
    ASSERT_EQ(lines.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) ASSERT_EQ(lines[i], Fixed(values[i])) << std::hexfloat << values[i];
}

TEST(OutputFileTest, TextsOfAnyLengthArriveInOrder) {
    const TempFile file("", ".txt");
    std::string expected;
    COutputFile out(file.Path());
    for (std::size_t i = 0; i < 40; ++i) {
        const std::string text((i * i * 971) % 600'000, static_cast<char>('a' + i % 26));
        out.Write(text);
        out.Write('-');
        expected += text + '-';
    }
    ASSERT_TRUE(out.Close());
    std::ostringstream written;
    written << std::ifstream(file.Path()).rdbuf();
    EXPECT_TRUE(written.str() == expected);
}

}  // namespace
