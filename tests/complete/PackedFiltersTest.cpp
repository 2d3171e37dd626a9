// LZWDecode, FlateDecode and their predictors.
#include <zlib.h>

#include "support/FilterCase.h"

namespace {

/// Codes of growing width, as a table of LZW codes would be packed by hand.
class CodePacker {
public:
    CodePacker& Add(unsigned width, std::initializer_list<unsigned> codes) {
        for (const unsigned code : codes) {
            for (unsigned bit = 0; bit < width; ++bit) m_Bits.push_back(code >> (width - 1 - bit) & 1);
        }
        return *this;
    }
    [[nodiscard]] std::string Bytes() const {
        std::string bytes((m_Bits.size() + 7) / 8, '\0');
        for (std::size_t i = 0; i < m_Bits.size(); ++i) {
            if (m_Bits[i]) bytes[i / 8] = static_cast<char>(bytes[i / 8] | 0x80 >> i % 8);
        }
        return bytes;
    }

private:
    std::vector<bool> m_Bits;
};

/// Codes 0, 1, 2, ... one by one, which fill the table with pairs; widths grow where the decoder's table has so many
/// entries.
std::string SingleUnits(unsigned count, unsigned early, std::string& bytes) {
    CodePacker packer;
    packer.Add(9, {256});
    unsigned width = 9, next = 258;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned unit = i * 7 % 256;
        packer.Add(width, {unit});
        bytes.push_back(static_cast<char>(unit));
        if (i > 0 && next < 4096) ++next;
        if (next + early >= 1u << width && width < 12) ++width;
    }
    packer.Add(width, {257});
    return packer.Bytes();
}

FilterParameters Lzw(int early) {
    FilterParameters params;
    params.m_Lzw.nEarlyChange = early;
    return params;
}

TEST(PackedFiltersTest, Lzw) {
    for (const FilterCase& c : {
             FilterCase{"the language reference's example", FromHex("800b6050220c0c8501"), "-----A---B"},
             FilterCase{"nothing", CodePacker().Add(9, {256, 257}).Bytes(), ""},
             FilterCase{"no clear code first", CodePacker().Add(9, {'a', 258, 257}).Bytes(), "aaa"},
             FilterCase{"cleared in between", CodePacker().Add(9, {256, 'a', 258, 256, 'b', 258, 257}).Bytes(),
                        "aaabbb"},
             FilterCase{"no end code", CodePacker().Add(9, {256, 'a', 'b'}).Bytes(), "ab", Ends::WithInput},
             FilterCase{"cut", CodePacker().Add(9, {256, 'a', 'b'}).Bytes().substr(0, 3), "a", Ends::WithInput},
         }) {
        CheckDecoder("LZWDecode", c);
    }
    CheckFailure("LZWDecode", {"beyond the table", CodePacker().Add(9, {256, 'a', 259}).Bytes(), "a"});
    CheckFailure("LZWDecode", {"nothing to repeat", CodePacker().Add(9, {256, 258}).Bytes(), ""});
    // Around each change of width, and beyond a full table.
    for (const unsigned count :
         {252u, 253u, 254u, 255u, 256u, 765u, 766u, 767u, 1789u, 1790u, 1791u, 3836u, 3838u, 5000u}) {
        for (const int early : {0, 1}) {
            std::string bytes;
            const std::string data = SingleUnits(count, static_cast<unsigned>(early), bytes);
            CheckDecoder("LZWDecode", {early ? "early change" : "late change", data, bytes, Ends::Before, Lzw(early)});
        }
    }
}

TEST(PackedFiltersTest, LzwOfOtherUnits) {
    // Units of three bits: clear 8, end 9, codes from 10. Four bits each, then five when 15 is taken.
    FilterParameters params;
    params.m_Lzw.nUnitLength = 3;
    CheckDecoder("LZWDecode", {"three bits", CodePacker().Add(4, {8, 1, 2, 10, 3, 1, 9}).Bytes(),
                               FromHex("01020102 0301"), Ends::Before, params});
    CheckDecoder("LZWDecode", {"and wider", CodePacker().Add(4, {8, 1, 10, 11, 12, 13, 14}).Add(5, {15, 9}).Bytes(),
                               std::string(28, '\1'), Ends::Before, params});
    params.m_Lzw.bLowBitFirst = true;
    CheckDecoder("LZWDecode",
                 {"low bit first", FromHex("18 a2 13 09"), FromHex("01020102 0301"), Ends::Before, params});
    params.m_Lzw.nUnitLength = 8;
    // 256, 'a', 257 in nine bits each.
    CheckDecoder("LZWDecode", {"low bit first, nine bits", FromHex("00c30404"), "a", Ends::Before, params});
}

std::string Deflate(const std::string& bytes, int level, int strategy = Z_DEFAULT_STRATEGY) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, level, Z_DEFLATED, 15, 8, strategy), Z_OK);
    std::string data(bytes.size() + 4096, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(data.data());
    stream.avail_out = static_cast<uInt>(data.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    data.resize(stream.total_out);
    deflateEnd(&stream);
    return data;
}

TEST(PackedFiltersTest, Flate) {
    std::string mixed;
    for (unsigned i = 0; i < 9000; ++i) mixed.push_back(static_cast<char>(i % 11 ? i * i >> 7 : 7));
    const std::string hello = FromHex("78dacb48cdc9c957c8402701680308b1");  // "hello hello hello hello"
    for (const FilterCase& c : {
             FilterCase{"a match", hello, "hello hello hello hello"},
             FilterCase{"stored", FromHex("7801010300fcff616263024d0127"), "abc"},
             FilterCase{"nothing", Deflate("", 9), ""},
             FilterCase{"no check value", hello.substr(0, hello.size() - 4), "hello hello hello hello",
                        Ends::WithInput},
             FilterCase{"a wrong check value", hello.substr(0, hello.size() - 4) + "1234", "hello hello hello hello"},
             FilterCase{"cut", FromHex("7801010300fcff6162"), "ab", Ends::WithInput},
             FilterCase{"own codes", Deflate(mixed, 9), mixed},
             FilterCase{"fixed codes", Deflate(mixed, 9, Z_FIXED), mixed},
             FilterCase{"one byte over and over", Deflate(std::string(70000, 'x'), 9), std::string(70000, 'x')},
         }) {
        CheckDecoder("FlateDecode", c);
    }
    CheckFailure("FlateDecode", {"no header of zlib", "hello", ""});
    CheckFailure("FlateDecode", {"wrong length", FromHex("7801 000300fcff616263 010300fcfe616263"), "abc"});
}

FilterParameters Predict(int predictor, int columns, int colors = 1, int bits = 8) {
    FilterParameters params;
    params.m_Predictor = {predictor, colors, bits, columns};
    return params;
}

TEST(PackedFiltersTest, Predictors) {
    // The five types of PNG, each over 01010101; the row above the first is 0.
    const std::string types = FromHex("0001010101 0101010101 0201010101 0301010101 0401010101");
    const std::string undone = FromHex("01010101 01020304 02030405 02030405 03040506");
    for (const FilterCase& c : {
             FilterCase{"PNG, the row says which", types, undone, Ends::Before, Predict(15, 4)},
             FilterCase{"PNG, whichever is named", types, undone, Ends::Before, Predict(10, 4)},
             FilterCase{"left is a sample away", FromHex("01 010203 010203"), FromHex("010203020406"), Ends::Before,
                        Predict(15, 2, 3)},
             FilterCase{"two bytes a sample", FromHex("01 00ff 0001"), FromHex("00ff0000"), Ends::Before,
                        Predict(11, 2, 1, 16)},
             FilterCase{"less than a byte a sample", FromHex("01 80 01"), FromHex("8081"), Ends::Before,
                        Predict(11, 9, 1, 1)},
             FilterCase{"Paeth takes each of the three", FromHex("00 0a0a3231 04 01010101"),
                        FromHex("0a0a3231 0b0c3333"), Ends::Before, Predict(14, 4)},
             FilterCase{"a cut row", FromHex("02 0102 02 01"), FromHex("010202"), Ends::Before, Predict(12, 2)},
             FilterCase{"TIFF, 8 bits, RGB", FromHex("0a0b0c 010101 ff0000"), FromHex("0a0b0c0b0c0d0a0c0d"),
                        Ends::Before, Predict(2, 3, 3)},
             FilterCase{"TIFF, rows begin anew", FromHex("0102 0304"), FromHex("01030307"), Ends::Before,
                        Predict(2, 2)},
             FilterCase{"TIFF, 16 bits", FromHex("00ff 0001 ffff"), FromHex("00ff010000ff"), Ends::Before,
                        Predict(2, 3, 1, 16)},
             FilterCase{"TIFF, 4 bits", FromHex("12f0 1000"), FromHex("1320 1110"), Ends::Before, Predict(2, 3, 1, 4)},
             FilterCase{"TIFF, 2 bits, two colours", FromHex("1b"), FromHex("18"), Ends::Before, Predict(2, 2, 2, 2)},
             FilterCase{"TIFF, 1 bit", FromHex("a8"), FromHex("cf"), Ends::Before, Predict(2, 8, 1, 1)},
             FilterCase{"TIFF, a cut row", FromHex("0102 03"), FromHex("010303"), Ends::Before, Predict(2, 2)},
             FilterCase{"none, whatever else is said", "ab", "ab", Ends::Before, Predict(1, -1, 0, 77)},
         }) {
        FilterCase packed = c;
        packed.data = Deflate(c.data, 9);
        CheckDecoder("FlateDecode", packed);
    }
    CheckFailure("FlateDecode",
                 {"a type that PNG has not", Deflate(FromHex("00 61 05 61"), 9), "a", {}, Predict(15, 1)});
    // Of a library's making: two rows of three colours, LZW behind TIFF's predictor.
    CheckDecoder("LZWDecode", {"TIFF over LZW", FromHex("80028281e0100806037f01c16130e0080c0326b9d53010"),
                               FromHex("0a141e0c16210f14280b131c0d191f5a00c8"), Ends::Before, Predict(2, 3, 3)});
}

TEST(PackedFiltersTest, Ranges) {
    MemoryReader reader("", 1);
    const auto faultOf = [&reader](std::string_view filter, const FilterParameters& params) {
        FilterFault fault;
        const auto decoder = MakeDecoder(filter, params, reader, nullptr, fault);
        EXPECT_EQ(decoder != nullptr, fault == FilterFault::None);
        return fault;
    };
    EXPECT_EQ(faultOf("flateDecode", {}), FilterFault::Undefined);
    EXPECT_EQ(faultOf("FlateEncode", {}), FilterFault::Undefined);
    for (const FilterParameters& params :
         {Predict(0, 1), Predict(3, 1), Predict(16, 1), Predict(2, 0), Predict(2, 1, 0), Predict(2, 1, 1, 3),
          Predict(12, 1, 1, 32), Predict(12, -5)}) {
        EXPECT_EQ(faultOf("FlateDecode", params), FilterFault::Range);
        EXPECT_EQ(faultOf("LZWDecode", params), FilterFault::Range);
    }
    EXPECT_EQ(faultOf("FlateDecode", Predict(2, 1 << 20)), FilterFault::None);
    EXPECT_EQ(faultOf("FlateDecode", Predict(2, (1 << 20) + 1)), FilterFault::Limit);
    EXPECT_EQ(faultOf("FlateDecode", Predict(15, 2147483647, 2147483647, 16)), FilterFault::Limit);
    EXPECT_EQ(faultOf("LZWDecode", Lzw(2)), FilterFault::Range);
    FilterParameters params;
    params.m_Lzw.nUnitLength = 9;
    EXPECT_EQ(faultOf("LZWDecode", params), FilterFault::Range);
    params = {};
    params.m_Fax.nColumns = 0;
    EXPECT_EQ(faultOf("CCITTFaxDecode", params), FilterFault::Range);
    params.m_Fax.nColumns = (1 << 20) + 1;
    EXPECT_EQ(faultOf("CCITTFaxDecode", params), FilterFault::Limit);
}

}  // namespace
