// Type 1 charstrings: outlines and widths, and what becomes of faulty ones.
#include <gtest/gtest.h>

#include <map>

#include "complete/text/CharStrings.h"
#include "support/CharStrings.h"
#include "support/Paths.h"

namespace text {
namespace {

using Glyphs = std::map<std::string, std::string, std::less<>>;

/// A font program over charstrings and subroutines as they stand in it. These outlive it.
Type1Program ProgramOf(int lenIV, const std::vector<std::string>& subrs, const Glyphs& charStrings = {}) {
    using Bytes = std::optional<std::string_view>;
    return {lenIV, [&subrs](std::size_t number) { return number < subrs.size() ? Bytes(subrs[number]) : std::nullopt; },
            [&charStrings](std::string_view name) {
                const auto found = charStrings.find(name);
                return found != charStrings.end() ? Bytes(found->second) : std::nullopt;
            }};
}

/// The glyph of a plain charstring, with subroutines and the charstrings of other glyphs.
std::optional<Type1Glyph> MakePlain(std::string_view words, std::vector<std::string> subrs = {}, Glyphs others = {}) {
    for (std::string& subr : subrs) subr = AssembleCharString(subr);
    for (auto& [name, other] : others) other = AssembleCharString(other);
    return MakeType1Glyph(ProgramOf(-1, subrs, others), AssembleCharString(words));
}

std::string OutlineOf(const std::optional<Type1Glyph>& glyph) { return glyph ? TextOf(glyph->outline) : "none"; }

TEST(CharStringsTest, Outlines) {
    const std::vector<std::string> subrs = {"10 20 rlineto return", "0 callsubr 0 callsubr return", "endchar",
                                            "1 2 hstem return", "5 hmoveto 4 vlineto"};
    struct Case {
        const char* name;
        const char* words;
        const char* outline;
    };
    for (const Case& c : {
             Case{"nothing but a width", "0 500 hsbw endchar", ""},
             {"begins at the side bearing", "30 500 hsbw 10 20 rmoveto 5 hlineto 6 vlineto closepath endchar",
              "m 40 20 l 45 20 l 45 26 z"},
             {"at both of sbw", "30 40 500 0 sbw 5 hlineto -6 -7 rlineto endchar", "m 30 40 l 35 40 l 29 33 z"},
             {"curves", "0 0 hsbw 1 2 3 4 5 6 rrcurveto 1 2 3 4 vhcurveto 1 2 3 4 hvcurveto endchar",
              "m 0 0 c 1 2 4 6 9 12 c 9 13 11 16 15 16 c 16 16 18 19 18 23 z"},
             {"moves", "0 0 hsbw 7 vmoveto 8 hmoveto 1 hlineto endchar", "m 8 7 l 9 7 z"},
             {"a move closes what is open", "0 0 hsbw 9 hlineto 5 vmoveto 9 vlineto endchar",
              "m 0 0 l 9 0 z m 9 5 l 9 14 z"},
             {"drawing goes on where a contour closed", "0 0 hsbw 9 hlineto 9 vlineto closepath 2 hlineto endchar",
              "m 0 0 l 9 0 l 9 9 z m 9 9 l 11 9 z"},
             {"a move that nothing follows is nothing", "0 0 hsbw 9 hmoveto closepath 5 vmoveto endchar", ""},
             {"numbers of all sizes",
              "0 0 hsbw 107 -107 rlineto 108 -108 rlineto 1131 -1131 rlineto 1132 -1132 rlineto endchar",
              "m 0 0 l 107 -107 l 215 -215 l 1346 -1346 l 2478 -2478 z"},
             {"quotients aren't rounded", "0 0 hsbw 1 4 div 3 -8 div rlineto endchar", "m 0 0 l 0.25 -0.375 z"},
             {"hints",
              "0 0 hsbw 1 2 hstem 1 2 vstem 1 2 3 4 5 6 hstem3 1 2 3 4 5 6 vstem3 dotsection 3 hlineto endchar",
              "m 0 0 l 3 0 z"},
             {"operands from the bottom", "0 0 hsbw 1 2 3 4 rlineto 5 hlineto endchar", "m 0 0 l 1 2 l 6 2 z"},
             {"subroutines", "0 0 hsbw 0 callsubr 1 callsubr endchar", "m 0 0 l 10 20 l 20 40 l 30 60 z"},
             {"endchar in one", "0 0 hsbw 0 callsubr 2 callsubr 0 callsubr", "m 0 0 l 10 20 z"},
             {"one without return", "0 0 hsbw 4 callsubr 3 hlineto endchar", "m 5 0 l 5 4 l 8 4 z"},
             {"without endchar", "0 0 hsbw 3 hlineto", "m 0 0 l 3 0 z"},
             {"hint replacement", "0 0 hsbw 3 1 3 callothersubr pop callsubr 3 hlineto endchar", "m 0 0 l 3 0 z"},
             {"other OtherSubrs give their arguments back", "0 0 hsbw 7 8 2 99 callothersubr pop pop rlineto endchar",
              "m 0 0 l 7 8 z"},
             {"setcurrentpoint", "0 0 hsbw 7 8 setcurrentpoint 1 hlineto endchar", "m 7 8 l 8 8 z"},
             {"flex",
              "10 0 hsbw 90 hlineto 0 1 callothersubr 50 hmoveto 0 2 callothersubr -20 5 rmoveto 0 2 callothersubr"
              " 10 vmoveto 0 2 callothersubr 20 hmoveto 0 2 callothersubr 10 hmoveto 0 2 callothersubr"
              " 20 -5 rmoveto 0 2 callothersubr 20 -10 rmoveto 0 2 callothersubr 50 210 0 3 0 callothersubr pop pop"
              " setcurrentpoint 4 vlineto endchar",
              "m 10 0 l 100 0 c 130 5 130 15 150 15 c 160 15 180 10 200 0 l 200 4 z"},
         }) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(OutlineOf(MakePlain(c.words, subrs)), c.outline);
    }
}

TEST(CharStringsTest, Metrics) {
    const auto hsbw = MakePlain("5 3 div 5555 10 div hsbw endchar");
    ASSERT_TRUE(hsbw);
    EXPECT_EQ(hsbw->metrics.width, (geometry::Point{555.5, 0}));
    EXPECT_EQ(hsbw->metrics.bearing, (geometry::Point{5.0 / 3, 0}));
    const auto sbw = MakePlain("1 2 3 4 sbw endchar");
    ASSERT_TRUE(sbw);
    EXPECT_EQ(sbw->metrics.width, (geometry::Point{3, 4}));
    EXPECT_EQ(sbw->metrics.bearing, (geometry::Point{1, 2}));
}

TEST(CharStringsTest, CompositeGlyphs) {
    // Code 101 is e, code 194 acute.
    const Glyphs glyphs = {{"e", "30 444 hsbw 10 hlineto 10 vlineto endchar"},
                           {"acute", "90 333 hsbw 100 vmoveto 5 hlineto 5 vlineto endchar"},
                           {"nested", "0 1 hsbw 0 0 0 101 194 seac"}};
    const char* eacute = "30 445 hsbw 90 160 20 101 194 seac";
    const auto whole = MakePlain(eacute, {}, glyphs);
    ASSERT_TRUE(whole);
    EXPECT_EQ(TextOf(whole->outline), "m 30 0 l 40 0 l 40 10 z m 190 120 l 195 120 l 195 125 z");
    EXPECT_EQ(whole->metrics.width.x, 445);
    EXPECT_EQ(whole->metrics.bearing.x, 30);
    EXPECT_TRUE(whole->isComposite);
    EXPECT_FALSE(whole->lacksPart);

    // Without a part it keeps its place in the line.
    const auto lacking = MakePlain(eacute, {}, {{"e", glyphs.at("e")}});
    ASSERT_TRUE(lacking);
    EXPECT_EQ(TextOf(lacking->outline), "");
    EXPECT_EQ(lacking->metrics.width.x, 445);
    EXPECT_TRUE(lacking->isComposite);
    EXPECT_TRUE(lacking->lacksPart);

    EXPECT_FALSE(MakePlain(eacute, {}, {{"e", glyphs.at("nested")}, {"acute", glyphs.at("acute")}}));
    EXPECT_FALSE(MakePlain("0 0 hsbw 0 0 0 101 256 seac", {}, glyphs));
    EXPECT_FALSE(MakePlain("0 0 hsbw 0 0 0 -1 194 seac", {}, glyphs));
    EXPECT_FALSE(MakePlain(eacute, {}, {{"e", "0 0 hsbw pop"}, {"acute", glyphs.at("acute")}}));
}

TEST(CharStringsTest, Encryption) {
    const std::string words = "10 20 hsbw 0 callsubr endchar";
    const std::string subr = "3 hlineto return";
    for (const int lenIV : {0, 1, 4, 11}) {
        SCOPED_TRACE(lenIV);
        const std::vector<std::string> subrs = {EncryptCharString(AssembleCharString(subr), lenIV)};
        const auto glyph = MakeType1Glyph(ProgramOf(lenIV, subrs), EncryptCharString(AssembleCharString(words), lenIV));
        EXPECT_EQ(OutlineOf(glyph), "m 10 0 l 13 0 z");
    }
    // The published key, over bytes known beforehand.
    EXPECT_EQ(EncryptCharString(std::string_view("\0", 1), 0), "\x10");
    EXPECT_TRUE(MakeType1Glyph({1000000000, {}, {}}, "short"));
}

TEST(CharStringsTest, Faults) {
    struct Case {
        const char* name;
        const char* words;
    };
    for (const Case& c : {Case{"too few operands", "0 0 hsbw 1 rlineto"},
                          {"none", "0 0 hsbw hlineto"},
                          {"an unknown command", "0 0 hsbw #02 endchar"},
                          {"an unknown escape", "0 0 hsbw #0c #05 endchar"},
                          {"one beyond the table", "0 0 hsbw #0c #ff endchar"},
                          {"a subroutine that there is none of", "0 0 hsbw 1 callsubr endchar"},
                          {"of a negative number", "0 0 hsbw -1 callsubr endchar"},
                          {"of an infinite number", "0 0 hsbw 1 0 div callsubr endchar"},
                          {"calls without end", "0 0 hsbw 0 callsubr endchar"},
                          {"division by zero", "0 1 0 div hsbw endchar"},
                          {"more operands than fit",
                           "0 0 hsbw 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23"
                           " 24 25 endchar"},
                          {"a result that there is none of", "0 0 hsbw pop endchar"},
                          {"arguments that aren't there", "0 0 hsbw 1 5 99 callothersubr endchar"},
                          {"a negative number of them", "0 0 hsbw 1 -1 99 callothersubr endchar"},
                          {"flex without its points", "0 0 hsbw 0 1 callothersubr 1 hmoveto 0 0 callothersubr endchar"},
                          {"without a begin", "0 0 hsbw 0 0 callothersubr endchar"},
                          {"with too many points",
                           "0 0 hsbw 0 1 callothersubr 1 hmoveto 1 hmoveto 1 hmoveto 1 hmoveto 1 hmoveto 1 hmoveto"
                           " 1 hmoveto 1 hmoveto 0 0 callothersubr endchar"}}) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(MakePlain(c.words, {"0 callsubr return"}));
    }
}

TEST(CharStringsTest, BytesWithoutSense) {
    Random random;
    const auto bytes = [&random](double most) {
        std::string made;
        for (double size = random.Next(most); size > 1; --size) {
            // Commands more often than numbers.
            made.push_back(
                static_cast<char>(static_cast<int>(random.Next(2) < 1 ? random.Next(34) : random.Next(256))));
        }
        return made;
    };
    int whole = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::vector<std::string> subrs = {bytes(20), bytes(20), bytes(20)};
        const std::string part = bytes(20);
        Type1Program program = ProgramOf(-1, subrs);
        program.charString = [&part](std::string_view) { return std::optional<std::string_view>(part); };
        whole += MakeType1Glyph(program, AssembleCharString("0 0 hsbw ") + bytes(60)).has_value();
    }
    EXPECT_GT(whole, 100);
}

TEST(CharStringsTest, WorkIsBounded) {
    // Levels of subroutines, each calling the next a hundred times.
    std::vector<std::string> subrs;
    for (int level = 1; level <= 8; ++level) {
        std::string calls;
        for (int i = 0; i < 100; ++i) calls += std::to_string(level) + " callsubr ";
        subrs.push_back(calls);
    }
    subrs.push_back("1 hlineto return");
    EXPECT_FALSE(MakePlain("0 0 hsbw 0 callsubr endchar", subrs));
}

}  // namespace
}  // namespace text
