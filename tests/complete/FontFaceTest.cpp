// Faces of sfnt and CFF data, and the data of CIDFonts: what is found in them, and that damage is nothing.
#include <gtest/gtest.h>

#include <array>

#include "complete/text/CffFace.h"
#include "complete/text/CidType0.h"
#include "complete/text/SfntFace.h"
#include "support/CharStrings.h"
#include "support/FontBytes.h"
#include "support/Paths.h"

namespace text {
namespace {

std::string OutlineOf(FontFace& face, std::int32_t glyph) {
    const geometry::Path* outline = face.Outline(glyph);
    return outline ? TextOf(*outline) : "none";
}

double WidthOf(FontFace& face, std::int32_t glyph) {
    const auto metrics = face.Metrics(glyph);
    return metrics ? metrics->width.x : -1;
}

const std::vector<SfntGlyph> kGlyphs = {{".notdef", 0, 1024, ""},
                                        {"square", 0, 1536, "512,0 1024,0 1024,512 512,512"},
                                        {"round", 0, 2048, "0,0 2048,0* 2048,2048 / 256,256 512,256 512,512"},
                                        {"moved", 0, 512, "+1 -256 1024"}};

TEST(SfntFaceTest, UnitIsTheEm) {
    const auto face = MakeSfntFace(MakeSfnt(kGlyphs, {2048, "", false}));
    ASSERT_TRUE(face);
    EXPECT_EQ(face->GlyphCount(), 4);
    EXPECT_EQ(WidthOf(*face, 0), 0.5);
    EXPECT_EQ(OutlineOf(*face, 0), "");
    EXPECT_EQ(WidthOf(*face, 1), 0.75);
    EXPECT_EQ(face->Metrics(1)->bearing.x, 0.25);
    EXPECT_EQ(OutlineOf(*face, 1), "m 0.25 0 l 0.5 0 l 0.5 0.25 l 0.25 0.25 z");
    // A quadratic curve, raised.
    EXPECT_EQ(OutlineOf(*face, 2), "m 0 0 c 0.666667 0 1 0.333333 1 1 z m 0.125 0.125 l 0.25 0.125 l 0.25 0.25 z");
    EXPECT_EQ(OutlineOf(*face, 3), "m 0.125 0.5 l 0.375 0.5 l 0.375 0.75 l 0.125 0.75 z");
    EXPECT_EQ(face->Outline(1), face->Outline(1));  // made once
    for (const std::int32_t none : {-1, 4, 70000}) {
        EXPECT_EQ(OutlineOf(*face, none), "none");
        EXPECT_EQ(WidthOf(*face, none), -1);
    }
    EXPECT_EQ(face->GlyphOfName("square"), FontFace::NO_GLYPH);
}

TEST(SfntFaceTest, NamesWhereThereAreSome) {
    const auto face = MakeSfntFace(MakeSfnt(kGlyphs, {1000, "Own-Name", true}));
    ASSERT_TRUE(face);
    EXPECT_EQ(face->Name(), "Own-Name");
    EXPECT_EQ(face->GlyphOfName("round"), 2);
    EXPECT_EQ(face->NameOfGlyph(3), "moved");
    EXPECT_EQ(face->NameOfGlyph(4), "");
}

TEST(SfntFaceTest, StringsOfOddLengthEndWithAPadByte) {
    const std::array<std::string_view, 4> strings = {"abc", "", "de", "f"};
    EXPECT_EQ(JoinSfntStrings(strings), "abde");
}

TEST(SfntFaceTest, DamageIsNothing) {
    const std::string whole = MakeSfnt(kGlyphs);
    EXPECT_FALSE(MakeSfntFace(""));
    EXPECT_FALSE(MakeSfntFace("no font at all"));
    EXPECT_FALSE(MakeSfntFace("OTTO" + whole.substr(4)));
    EXPECT_FALSE(MakeSfntFace("wOFF" + whole.substr(4)));
    for (std::size_t size = 0; size < whole.size(); size += 3) {
        const auto face = MakeSfntFace(whole.substr(0, size));
        for (std::int32_t i = 0; face && i < 4; ++i) static_cast<void>(face->Outline(i));
    }
    Random random;
    for (int i = 0; i < 2000; ++i) {
        std::string bytes = whole;
        for (int change = 0; change < 4; ++change) {
            bytes[static_cast<std::size_t>(random.Next(static_cast<double>(bytes.size())))] =
                static_cast<char>(static_cast<int>(random.Next(256)));
        }
        const auto face = MakeSfntFace(bytes);
        for (std::int32_t glyph = 0; face && glyph < 4; ++glyph) static_cast<void>(face->Outline(glyph));
    }
}

TEST(SfntFaceTest, GlyphsWithinGlyphsAreBounded) {
    const auto part = [](int index) { return "+" + std::to_string(index) + " 1 1"; };
    // Each glyph is the one before it, moved; two at the end are each other, and the last one has a part beyond.
    std::vector<SfntGlyph> glyphs = {{".notdef", 0, 500, "0,0 9,0 9,9"}};
    constexpr int chain = 60'000;
    for (int i = 0; i < chain; ++i) glyphs.push_back({"", 0, 500, part(i)});
    glyphs.push_back({"", 0, 500, part(chain + 2)});
    glyphs.push_back({"", 0, 500, part(chain + 1)});
    glyphs.push_back({"", 0, 500, part(chain + 9)});
    const auto face = MakeSfntFace(MakeSfnt(glyphs));
    ASSERT_TRUE(face);
    EXPECT_EQ(OutlineOf(*face, chain), "none");
    EXPECT_EQ(OutlineOf(*face, 1), "m 0.001 0.001 l 0.01 0.001 l 0.01 0.01 z");
    EXPECT_NE(OutlineOf(*face, 500), "none");
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(OutlineOf(*face, chain + i), "none");
    // Each is twice the one before it.
    glyphs.resize(1);
    for (int i = 0; i < 60; ++i) glyphs.push_back({"", 0, 500, part(i) + " " + part(i)});
    const auto doubles = MakeSfntFace(MakeSfnt(glyphs));
    ASSERT_TRUE(doubles);
    EXPECT_NE(OutlineOf(*doubles, 8), "none");
    EXPECT_EQ(OutlineOf(*doubles, 60), "none");
}

// SIDs 34 and 66 are A and a.
const std::vector<CffGlyph> kCffGlyphs = {{34, "600 100 200 rmoveto 300 hlineto 400 vlineto endchar"},
                                          {66, "500 1 2 rmoveto 10 20 30 40 50 60 rrcurveto endchar"}};

TEST(CffFaceTest, GlyphsWithNames) {
    const auto face = MakeCffFace(MakeCff(kCffGlyphs));
    ASSERT_TRUE(face);
    EXPECT_FALSE(face->IsCidKeyed());
    EXPECT_EQ(face->Name(), "TestFace");
    EXPECT_EQ(face->GlyphOfName("A"), 1);
    EXPECT_EQ(face->NameOfGlyph(2), "a");
    EXPECT_EQ(face->GlyphOfName("B"), FontFace::NO_GLYPH);
    EXPECT_EQ(WidthOf(*face, 0), 250);
    EXPECT_EQ(WidthOf(*face, 1), 600);
    EXPECT_EQ(OutlineOf(*face, 1), "m 100 200 l 400 200 l 400 600 z");
    EXPECT_EQ(OutlineOf(*face, 2), "m 1 2 c 11 22 41 62 91 122 z");
    EXPECT_EQ(face->GlyphOfCid(2), 2);
    EXPECT_EQ(face->GlyphOfCid(3), FontFace::NO_GLYPH);
    const EncodingVector* encoding = face->BuiltInEncoding();
    ASSERT_TRUE(encoding);
    EXPECT_EQ((*encoding)['A'], "A");
    EXPECT_EQ((*encoding)['B'], ".notdef");
    EXPECT_FALSE(MakeCffFace(MakeCff(kCffGlyphs), 1));
}

TEST(CffFaceTest, GlyphsWithCids) {
    const auto face =
        MakeCffFace(MakeCff({{7, kCffGlyphs[0].charString}, {4000, kCffGlyphs[1].charString}}, {true, ""}));
    ASSERT_TRUE(face);
    EXPECT_TRUE(face->IsCidKeyed());
    EXPECT_EQ(OutlineOf(*face, face->GlyphOfCid(7)), "m 100 200 l 400 200 l 400 600 z");
    EXPECT_EQ(WidthOf(*face, face->GlyphOfCid(4000)), 500);
    EXPECT_EQ(WidthOf(*face, face->GlyphOfCid(0)), 250);
    for (const std::int32_t none : {1, 2, 3999, 4001, -1}) EXPECT_EQ(OutlineOf(*face, face->GlyphOfCid(none)), "none");
}

TEST(CffFaceTest, OwnMatrixIsApplied) {
    // FontMatrix [0.0005 0 0 0.0005 0 0] as nibbles of reals.
    const std::string half("\x1e\xa0\x00\x5f", 4);
    const std::string zero = "\x8b";
    const auto face = MakeCffFace(MakeCff(kCffGlyphs, {false, half + zero + zero + half + zero + zero + "\x0c\x07"}));
    ASSERT_TRUE(face);
    EXPECT_EQ(WidthOf(*face, 1), 300);
    EXPECT_EQ(OutlineOf(*face, 1), "m 50 100 l 200 100 l 200 300 z");
}

TEST(CffFaceTest, DamageIsNothing) {
    EXPECT_FALSE(MakeCffFace(""));
    EXPECT_FALSE(MakeCffFace(MakeSfnt(kGlyphs)));
    for (const bool isCidKeyed : {false, true}) {
        const std::string whole = MakeCff(kCffGlyphs, {isCidKeyed, ""});
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const auto face = MakeCffFace(whole.substr(0, size));
            for (std::int32_t i = 0; face && i < 3; ++i) static_cast<void>(face->Outline(i));
        }
    }
}

/// Two CIDs beside an empty one, then a map of two subroutines. The map of CIDs begins at 4: a byte for the font
/// dictionary, two for the offset.
struct CidData {
    std::string bytes = std::string(
        "\0\0\0\0"                          // 0: what the map isn't
        "\0\0\x16\1\0\x19\1\0\x19\0\0\x1c"  // 4: CIDs 0 to 2, and the end
        "\0\0\x1c\0\0\x1e"                  // 16: subroutines 0 and its end
        "abcdefghij",
        32);
    CidType0Layout layout;

    CidData() {
        layout.cidMapOffset = 4;
        layout.fdBytes = 1;
        layout.gdBytes = 2;
        layout.cidCount = 3;
        layout.fontDicts = {{16, 3, 1, 4}, {0, 0, 0, -1}};
    }
    [[nodiscard]] std::string Find(std::int64_t cid) const {
        const auto found = CidType0Data(bytes, layout).Find(cid);
        return found ? std::to_string(found->fontDict) + std::string(found->bytes) : "none";
    }
    [[nodiscard]] std::string Subr(std::size_t fontDict, std::size_t number) const {
        const auto found = CidType0Data(bytes, layout).Subr(fontDict, number);
        return found ? std::string(*found) : "none";
    }
};

TEST(CidType0Test, CharStringsAndSubroutines) {
    const CidData data;
    EXPECT_EQ(data.Find(0), "0abc");
    EXPECT_EQ(data.Find(1), "none");  // an empty interval
    EXPECT_EQ(data.Find(2), "1def");
    EXPECT_EQ(data.Find(3), "none");
    EXPECT_EQ(data.Find(-1), "none");
    EXPECT_EQ(data.Subr(0, 0), "gh");
    EXPECT_EQ(data.Subr(0, 1), "none");
    EXPECT_EQ(data.Subr(1, 0), "none");
    EXPECT_EQ(data.Subr(2, 0), "none");
}

TEST(CidType0Test, WhatLiesOutsideIsNothing) {
    constexpr std::int64_t most = INT64_MAX;
    struct Case {
        const char* name;
        void (*change)(CidData&);
    };
    for (const Case& c : {Case{"map behind the data", [](CidData& d) { d.layout.cidMapOffset = 30; }},
                          {"map before it", [](CidData& d) { d.layout.cidMapOffset = -1; }},
                          {"far away", [](CidData& d) { d.layout.cidMapOffset = most; }},
                          {"entries too wide", [](CidData& d) { d.layout.gdBytes = 5; }},
                          {"without offsets", [](CidData& d) { d.layout.gdBytes = 0; }},
                          {"of negative size", [](CidData& d) { d.layout.fdBytes = -1; }},
                          {"font dictionary", [](CidData& d) { d.layout.fontDicts.clear(); }},
                          {"begin behind the end", [](CidData& d) { d.bytes[6] = 31; }},
                          {"end behind the data", [](CidData& d) { d.bytes[9] = 33; }},
                          {"no CIDs", [](CidData& d) { d.layout.cidCount = 0; }},
                          {"no data", [](CidData& d) { d.bytes.clear(); }}}) {
        SCOPED_TRACE(c.name);
        CidData data;
        c.change(data);
        EXPECT_EQ(data.Find(0), "none");
    }
    CidData many;
    many.layout.cidCount = most;
    EXPECT_EQ(many.Find(most - 1), "none");
    many.layout.fontDicts[0].subrCount = most;
    EXPECT_EQ(many.Subr(0, SIZE_MAX), "none");
    EXPECT_EQ(many.Subr(0, 5), "none");
}

}  // namespace
}  // namespace text
