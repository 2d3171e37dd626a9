// What all filters share: limits, failing inputs, chains, the encoders held against the decoders, and the store of a
// reusable stream.
#include "complete/filters/ReusableStore.h"
#include "support/FilterCase.h"

namespace {

std::string Encode(std::string_view filter, const FilterParameters& params, std::string_view bytes, std::size_t piece) {
    MemorySink sink;
    FilterFault fault;
    const auto encoder = MakeEncoder(filter, params, sink, fault);
    EXPECT_TRUE(encoder) << filter;
    if (!encoder) return {};
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        const std::string_view part = bytes.substr(at, piece);
        EXPECT_TRUE(encoder->Write({reinterpret_cast<const unsigned char*>(part.data()), part.size()}));
    }
    EXPECT_TRUE(encoder->Close());
    return sink.m_Bytes;
}

std::string Mixed(std::size_t size) {
    std::string bytes;
    for (unsigned i = 0; bytes.size() < size; ++i) bytes.append(i % 13, static_cast<char>(i * i % 64));
    bytes.resize(size);
    return bytes;
}

TEST(FilterLimitsTest, WhatIsEncodedDecodes) {
    const std::string mixed = Mixed(20'000);
    for (const std::string& bytes : {std::string(), std::string("a"), std::string(4, '\0'), mixed}) {
        for (const std::string_view name : {"ASCIIHex", "ASCII85", "RunLength", "LZW", "Flate"}) {
            SCOPED_TRACE(name);
            const std::string encoded = Encode(std::string(name) + "Encode", {}, bytes, 1000);
            EXPECT_EQ(encoded, Encode(std::string(name) + "Encode", {}, bytes, 7)) << "pieces don't show";
            CheckDecoder(std::string(name) + "Decode", {"round", encoded, bytes});
        }
    }
    EXPECT_EQ(Encode("NullEncode", {}, "as it is", 3), "as it is");
    EXPECT_EQ(Encode("DCTEncode", {}, "pixels", 3), "");
    EXPECT_EQ(Encode("ASCII85Encode", {}, "Hello Wor", 3), "87cURD]i,\"EW~>");
    EXPECT_EQ(Encode("LZWEncode", {}, "-----A---B", 3), FromHex("800b6050220c0c8501"));
    FilterParameters params;
    params.nRecordSize = 4;
    EXPECT_EQ(Encode("RunLengthEncode", params, "aaaaaabc", 3), FromHex("fd61 0361616263 80"));
    params = {};
    for (const int early : {0, 1}) {
        for (const bool low : {false, true}) {
            params.m_Lzw.nEarlyChange = early;
            params.m_Lzw.bLowBitFirst = low;
            CheckDecoder("LZWDecode", {"LZW", Encode("LZWEncode", params, mixed, 999), mixed, Ends::Before, params});
        }
    }
    params = {};
    for (const int predictor : {2, 10, 11, 12, 13, 14, 15}) {
        for (const int bits : {1, 2, 4, 8, 16}) {
            SCOPED_TRACE(std::to_string(predictor) + " " + std::to_string(bits));
            params.m_Predictor = {predictor, 3, bits, 8};
            const std::string rows = mixed.substr(0, static_cast<std::size_t>(bits) * 3 * 20);
            CheckDecoder("FlateDecode", {"rows", Encode("FlateEncode", params, rows, 11), rows, Ends::Before, params});
        }
    }
}

TEST(FilterLimitsTest, BombsEndAtTheLimit) {
    const std::string zeros(40'000'000, '\0');
    const std::string flate = Encode("FlateEncode", {}, zeros, zeros.size());
    const std::string jpeg = FromHex("ffd8 ffc0 000b 08 ffff ffff ff 011100 ffd9");
    FilterParameters fax;
    fax.m_Fax.nK = -1;
    fax.m_Fax.nColumns = 1 << 20;
    const std::string ones(1000, '\xff');        // each bit a row like the one above
    const std::string clears(10'000'000, '\0');  // long without a byte of output
    FilterParameters group3;
    const struct {
        const char* filter;
        std::string data;
        FilterParameters params = {};
    } cases[] = {{"FlateDecode", flate},     {"DCTDecode", jpeg},        {"CCITTFaxDecode", ones, fax},
                 {"CCITTFaxDecode", clears}, {"ASCIIHexDecode", clears}, {"ASCII85Decode", clears}};
    for (const auto& [filter, data, params] : cases) {
        SCOPED_TRACE(filter);
        MemoryReader reader(data, 4096);
        ByteBudget budget(1'000'000);
        FilterFault fault;
        const auto decoder = MakeDecoder(filter, params, reader, &budget, fault);
        ASSERT_TRUE(decoder);
        std::string bytes;
        EXPECT_EQ(ReadAll(*decoder, 4096, bytes), -1);
        EXPECT_LE(bytes.size(), 1'000'000 + FILTER_BLOCK);
        EXPECT_TRUE(budget.m_bUsedUp);
    }
}

TEST(FilterLimitsTest, AFailingInputFailsBehindItsBytes) {
    const struct {
        const char* filter;
        std::string data, bytes;
        FilterParameters params = {};
    } cases[] = {
        {"ASCIIHexDecode", "616", "a`"},
        {"ASCII85Decode", "87cURD]i*", "Hello W"},
        {"RunLengthDecode", FromHex("05 6162"), "ab"},
        {"SubFileDecode", "abcEN", "abcEN", {.m_Predictor = {}, .m_Lzw = {}, .m_Fax = {}, .strEODString = "END"}},
        {"LZWDecode", FromHex("80184c40"), "ab"},
        {"FlateDecode", FromHex("7801010300fcff6162"), "ab"},
    };
    for (const auto& c : cases) {
        for (const std::size_t piece : {1, 4096}) {
            SCOPED_TRACE(c.filter);
            MemoryReader reader(c.data, 2, true);
            FilterFault fault;
            const auto decoder = MakeDecoder(c.filter, c.params, reader, nullptr, fault);
            std::string bytes;
            EXPECT_EQ(ReadAll(*decoder, piece, bytes), -1);
            EXPECT_EQ(bytes, c.bytes);
        }
    }
}

TEST(FilterLimitsTest, ChainsAndTheStore) {
    const std::string bytes = Mixed(5000);
    const std::string text =
        Encode("ASCII85Encode", {}, Encode("LZWEncode", {}, Encode("RunLengthEncode", {}, bytes, 100), 100), 100);
    for (const std::size_t block : {1, 3, 4096}) {
        const std::string input = text + "\nshowpage";
        MemoryReader file(input, block);
        FilterFault fault;
        const auto digits = MakeDecoder("ASCII85Decode", {}, file, nullptr, fault);
        SourceReader digitReader(*digits, 4096);
        const auto codes = MakeDecoder("LZWDecode", {}, digitReader, nullptr, fault);
        SourceReader codeReader(*codes, block);
        const auto runs = MakeDecoder("RunLengthDecode", {}, codeReader, nullptr, fault);
        CReusableStore store;
        ASSERT_EQ(store.Collect(*runs, 10'000, nullptr), CReusableStore::Collected);
        EXPECT_EQ(file.Rest(), "\nshowpage");
        EXPECT_EQ(store.Size(), bytes.size());

        std::string all, tail;
        EXPECT_EQ(ReadAll(store, 999, all), 0);
        EXPECT_EQ(all, bytes);
        ASSERT_TRUE(store.SetPosition(4990));
        EXPECT_FALSE(store.SetPosition(5001));
        EXPECT_EQ(store.Position(), 4990u);
        EXPECT_EQ(ReadAll(store, 4, tail), 0);
        EXPECT_EQ(tail, bytes.substr(4990));
    }
    MemoryReader file(bytes, 4096);
    FilterFault fault;
    const auto all = MakeDecoder("SubFileDecode", {}, file, nullptr, fault);
    CReusableStore small;
    EXPECT_EQ(small.Collect(*all, 4999, nullptr), CReusableStore::TooLong);
    EXPECT_EQ(small.Size(), 4999u);
}

}  // namespace
