// ASCIIHexDecode, ASCII85Decode, RunLengthDecode and SubFileDecode.
#include "support/FilterCase.h"

namespace {

TEST(TextFiltersTest, AsciiHex) {
    for (const FilterCase& c : {
             FilterCase{"both cases", "4aFf00>", FromHex("4aff00")},
             FilterCase{"blanks anywhere", std::string(" 4\n a\r\n\tf\f\0f >", 14), FromHex("4aff")},
             FilterCase{"an odd digit is the high one", "414>", "A@"},
             FilterCase{"nothing", " >", ""},
             FilterCase{"no mark", "4142", "AB", Ends::WithInput},
             FilterCase{"no mark, odd", "4142 5", "ABP", Ends::WithInput},
         }) {
        CheckDecoder("ASCIIHexDecode", c);
    }
    CheckFailure("ASCIIHexDecode", {"no digit", "4142zz>", "AB"});
    CheckFailure("ASCIIHexDecode", {"no digit inside a pair", "4142 4<>", "AB"});
}

TEST(TextFiltersTest, Ascii85) {
    for (const FilterCase& c : {
             FilterCase{"whole groups", "87cURD]i,\"~>", "Hello Wo"},
             FilterCase{"last group of two", "87cURD]i,\"EW~>", "Hello Wor"},
             FilterCase{"last group of three", "87cURD]f~>", "Hello "},
             FilterCase{"last group of four", "87cURD]i*~>", "Hello W"},
             FilterCase{"z", "z!!!!\"zz~>", FromHex("00000000 00000001 00000000 00000000")},
             FilterCase{"highest group", "s8W-!~>", FromHex("ffffffff")},
             FilterCase{"blanks, also in the mark", " 87\ncUR\r\nD] i*~\n>", "Hello W"},
             FilterCase{"opened", "<~87cURD]i*~>", "Hello W"},
             FilterCase{"opened behind blanks", "\n <~\n87cURD]i*~>", "Hello W"},
             FilterCase{"< is a digit", "<<<<<~>", FromHex("550204bf")},
             FilterCase{"opened, nothing", "<~~>", ""},
             FilterCase{"nothing", "~>", ""},
             FilterCase{"no mark", "87cURD]i*", "Hello W", Ends::WithInput},
             FilterCase{"half a mark", "87cURD]i*~", "Hello W", Ends::WithInput},
             FilterCase{"no mark, one digit", "87cUR!", "Hell", Ends::WithInput},
         }) {
        CheckDecoder("ASCII85Decode", c);
    }
    for (const FilterCase& c : {
             FilterCase{"beyond 2^32 - 1", "87cURs8W-\"~>", "Hell"},
             FilterCase{"last group beyond it", "87cURuuu~>", "Hell"},
             FilterCase{"last group of one digit", "87cUR!~>", "Hell"},
             FilterCase{"z inside a group", "87cUR!z~>", "Hell"},
             FilterCase{"no digit", "87cUR{", "Hell"},
             FilterCase{"no mark behind ~", "87cUR~a", "Hell"},
         }) {
        CheckFailure("ASCII85Decode", c);
    }
}

TEST(TextFiltersTest, RunLength) {
    for (const FilterCase& c : {
             FilterCase{"copies and repeats", FromHex("02 616263 fe 78 00 79 80"), "abcxxxy"},
             FilterCase{"longest", FromHex("81 7a 7f") + std::string(128, 'q') + FromHex("80"),
                        std::string(128, 'z') + std::string(128, 'q')},
             FilterCase{"nothing", FromHex("80"), ""},
             FilterCase{"no mark", FromHex("01 6162"), "ab", Ends::WithInput},
             FilterCase{"cut in a copy", FromHex("05 6162"), "ab", Ends::WithInput},
             FilterCase{"cut before the byte to repeat", FromHex("00 61 f0"), "a", Ends::WithInput},
         }) {
        CheckDecoder("RunLengthDecode", c);
    }
    // Many pieces in one block take a way of their own.
    std::string data, bytes;
    for (int i = 0; i < 300; ++i) {
        const auto n = static_cast<std::size_t>(i * 37 % 128);
        const std::string piece(n + 1, static_cast<char>(i));
        data += static_cast<char>(n) + piece + static_cast<char>(257 - (n + 2)) + static_cast<char>(i + 1);
        bytes += piece + std::string(n + 2, static_cast<char>(i + 1));
        if (n + 2 > 128) data.resize(data.size() - 2), bytes.resize(bytes.size() - n - 2);
    }
    CheckDecoder("RunLengthDecode", {"many", data + FromHex("80"), bytes});
}

TEST(TextFiltersTest, AReadTakesNoByteOfWhatFollowsMissingMarks) {
    // A program that knows how many bytes it wants need not write a mark.
    for (const auto& [filter, data] : {std::pair<const char*, std::string>{"RunLengthDecode", FromHex("01 6162")},
                                       {"ASCIIHexDecode", "6162"},
                                       {"LZWDecode", FromHex("80184c40")}}) {
        SCOPED_TRACE(filter);
        const std::string input = data + "pop";
        MemoryReader reader(input, 4096);
        FilterFault fault;
        const auto decoder = MakeDecoder(filter, {}, reader, nullptr, fault);
        unsigned char buffer[2];
        ASSERT_EQ(decoder->Read(buffer, 2), 2);
        EXPECT_EQ(std::string(buffer, buffer + 2), "ab");
        EXPECT_EQ(reader.Rest(), "pop");
    }
}

FilterParameters Until(std::int64_t count, std::string mark) {
    FilterParameters params;
    params.nEODCount = count;
    params.strEODString = std::move(mark);
    return params;
}

TEST(TextFiltersTest, SubFile) {
    for (const FilterCase& c : {
             FilterCase{"count 0: before the mark, which goes", "abcENDdef", "abc", Ends::Before, Until(0, "ENDdef")},
             FilterCase{"mark at once", "END", "", Ends::Before, Until(0, "END")},
             FilterCase{"starts of the mark pass", "EENEENDx", "EENEE", Ends::Before, Until(0, "NDx")},
             FilterCase{"a start inside a start", "aabaabaaabaac", "aabaaba", Ends::Before, Until(0, "aabaac")},
             FilterCase{"mark of one byte", "abc\004", "abc", Ends::Before, Until(0, "\004")},
             FilterCase{"count 2: with the second mark", "a--b--", "a--b--", Ends::Before, Until(2, "--")},
             FilterCase{"marks don't overlap", "eeeeeee", "eeeeeee", Ends::WithInput, Until(3, "eee")},
             FilterCase{"two of five", "eeeeee", "eeeeee", Ends::Before, Until(2, "eee")},
             FilterCase{"no string: so many bytes", "END~>", "END~>", Ends::Before, Until(5, "")},
             FilterCase{"no string, count 0: all", "END~>", "END~>", Ends::WithInput, Until(0, "")},
             FilterCase{"input ends in the mark", "abcEN", "abcEN", Ends::WithInput, Until(0, "END")},
             FilterCase{"input ends before the count", "abc", "abc", Ends::WithInput, Until(10, "")},
             FilterCase{"input ends before the second", "a--b", "a--b", Ends::WithInput, Until(2, "--")},
         }) {
        CheckDecoder("SubFileDecode", c);
    }
    MemoryReader reader("", 1);
    FilterFault fault;
    EXPECT_FALSE(MakeDecoder("SubFileDecode", Until(-1, ""), reader, nullptr, fault));
    EXPECT_EQ(fault, FilterFault::Range);
}

}  // namespace
