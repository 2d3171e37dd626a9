// Numbers with four decimals, against the library's conversion.
#include "writers/OutputFile.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
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
    const TempFile file("", ".txt");
    COutputFile out(file.Path());
    for (const double value : values) {
        out.WriteFixed(value);
        out.Write('\n');
    }
    ASSERT_TRUE(out.Close()) << out.Error();
    std::ifstream in(file.Path());
    std::string line;
    for (const double value : values) {
        ASSERT_TRUE(std::getline(in, line));
        ASSERT_EQ(line, Fixed(value)) << std::hexfloat << value;
    }
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
