// The tables of text: encoding vectors and standard widths, spot-checked where their rows differ from each other.
#include "complete/text/Encodings.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "complete/text/StandardMetrics.h"

namespace {

struct Case {
    const char* vector;
    const EncodingVector& encoding;
    int encoded;  ///< codes with a glyph, as the reference counts them
    struct {
        unsigned code;
        const char* glyph;
    } codes[8];
};

TEST(EncodingsTest, CodesAndCounts) {
    const Case cases[] = {
        {"standard",
         kStandardEncoding,
         149,
         {{040, "space"},
          {0176, "asciitilde"},
          {047, "quoteright"},
          {055, "hyphen"},
          {0200, ".notdef"},
          {0251, "quotesingle"},
          {0256, "fi"},
          {0373, "germandbls"}}},
        {"ISO Latin 1",
         kIsoLatin1Encoding,
         205,
         {{055, "minus"},
          {047, "quoteright"},
          {0140, "quoteleft"},
          {0220, "dotlessi"},
          {0231, ".notdef"},
          {0237, "caron"},
          {0255, "hyphen"},
          {0377, "ydieresis"}}},
        {"Symbol",
         kSymbolEncoding,
         189,
         {{0141, "alpha"},
          {0112, "theta1"},
          {0240, "Euro"},
          {0300, "aleph"},
          {0360, ".notdef"},
          {0362, "integral"},
          {0376, "bracerightbt"},
          {0377, ".notdef"}}},
        {"ZapfDingbats",
         kZapfDingbatsEncoding,
         202,
         {{041, "a1"},
          {0101, "a10"},
          {0200, "a89"},
          {0215, "a96"},
          {0216, ".notdef"},
          {0241, "a101"},
          {0360, ".notdef"},
          {0376, "a191"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.vector);
        EXPECT_EQ(std::ranges::count_if(c.encoding, [](std::string_view glyph) { return glyph != ".notdef"; }),
                  c.encoded);
        for (const auto& [code, glyph] : c.codes) EXPECT_EQ(c.encoding[code], glyph) << code;
    }
}

TEST(StandardMetricsTest, WidthsByFace) {
    struct Width {
        StandardFace face;
        const char* glyph;
        std::optional<int> width;
    };
    for (const Width& c :
         {Width{StandardFace::Helvetica, "A", 667}, Width{StandardFace::HelveticaBold, "A", 722},
          Width{StandardFace::TimesRoman, "A", 722}, Width{StandardFace::TimesItalic, "A", 611},
          Width{StandardFace::TimesBoldItalic, "A", 667}, Width{StandardFace::TimesBold, "zero", 500},
          Width{StandardFace::Helvetica, "fraction", 167}, Width{StandardFace::TimesBold, "zcaron", 444},
          Width{StandardFace::Courier, "i", 600}, Width{StandardFace::Courier, "a1", std::nullopt},
          Width{StandardFace::Helvetica, "alpha", std::nullopt}, Width{StandardFace::Helvetica, "", std::nullopt}}) {
        EXPECT_EQ(StandardWidth(c.face, c.glyph), c.width) << c.glyph;
    }
    // Every glyph of the Latin vectors has a width.
    for (const EncodingVector* vector : {&kStandardEncoding, &kIsoLatin1Encoding}) {
        for (const std::string_view glyph : *vector) {
            EXPECT_EQ(StandardWidth(StandardFace::TimesRoman, glyph).has_value(), glyph != ".notdef") << glyph;
        }
    }
}

}  // namespace
