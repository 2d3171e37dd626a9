// One row of the decoders' tables: data in, bytes out, how they end and what of the input is left, the same for blocks
// and reads of any size.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "complete/filters/Filters.h"
#include "support/FilterChain.h"

/// What stands behind the data in every case.
inline constexpr std::string_view BEHIND = "%behind";

/// Bytes of hexadecimal digits; blanks don't count.
inline std::string FromHex(std::string_view digits) {
    std::string bytes;
    int high = -1;
    for (const char c : digits) {
        if (c == ' ') continue;
        const int digit = c <= '9' ? c - '0' : c - 'a' + 10;
        if (high < 0) {
            high = digit;
        } else {
            bytes.push_back(static_cast<char>(high << 4 | digit));
            high = -1;
        }
    }
    return bytes;
}

enum class Ends {
    Before,    ///< orderly, BEHIND untouched
    WithInput  ///< orderly, with the input, which has no BEHIND
};

struct FilterCase {
    const char* name;
    std::string data;
    std::string bytes;
    Ends ends = Ends::Before;
    FilterParameters params = {};
};

/// Checks a case. A failing case is one of CheckFailure.
inline void CheckDecoder(std::string_view filter, const FilterCase& c) {
    SCOPED_TRACE(c.name);
    const std::string_view behind = c.ends == Ends::Before ? BEHIND : "";
    const std::string input = c.data + std::string(behind);
    for (const std::size_t block : {1, 2, 3, 7, 4096}) {
        for (const std::size_t piece : {1, 2, 5, 4096}) {
            MemoryReader reader(input, block);
            FilterFault fault;
            const auto decoder = MakeDecoder(filter, c.params, reader, nullptr, fault);
            ASSERT_TRUE(decoder);
            std::string bytes;
            EXPECT_EQ(ReadAll(*decoder, piece, bytes), 0);
            ASSERT_EQ(bytes, c.bytes) << "blocks of " << block << ", reads of " << piece;
            ASSERT_EQ(reader.Rest(), behind) << "blocks of " << block << ", reads of " << piece;
            unsigned char more;
            EXPECT_EQ(decoder->Read(&more, 1), 0) << "an end stays";
        }
    }
    // A read of all the bytes and no more leaves nothing of the data behind.
    if (c.ends == Ends::WithInput || c.bytes.empty()) return;
    MemoryReader reader(input, 3);
    FilterFault fault;
    const auto decoder = MakeDecoder(filter, c.params, reader, nullptr, fault);
    std::string bytes(c.bytes.size(), '\0');
    for (std::size_t at = 0; at < bytes.size();) {
        const std::ptrdiff_t n = decoder->Read(reinterpret_cast<unsigned char*>(&bytes[at]), bytes.size() - at);
        ASSERT_GT(n, 0);
        at += static_cast<std::size_t>(n);
    }
    EXPECT_EQ(reader.Rest(), behind) << "directly behind the last byte";
}

/// Checks that a decoder gives the bytes and then fails.
inline void CheckFailure(std::string_view filter, const FilterCase& c) {
    SCOPED_TRACE(c.name);
    for (const std::size_t block : {1, 3, 4096}) {
        for (const std::size_t piece : {1, 4096}) {
            MemoryReader reader(c.data, block);
            FilterFault fault;
            const auto decoder = MakeDecoder(filter, c.params, reader, nullptr, fault);
            ASSERT_TRUE(decoder);
            std::string bytes;
            EXPECT_EQ(ReadAll(*decoder, piece, bytes), -1);
            ASSERT_EQ(bytes, c.bytes) << "blocks of " << block << ", reads of " << piece;
            unsigned char more;
            EXPECT_EQ(decoder->Read(&more, 1), -1) << "a failure stays";
        }
    }
}
