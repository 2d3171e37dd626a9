// CCITTFaxDecode and DCTDecode. The long data are of libraries' making.
#include "support/FilterCase.h"

namespace {

/// Bytes of bits written one by one; blanks don't count, the last byte is filled up with zeros.
std::string Bits(std::string_view bits) {
    std::string bytes;
    int count = 0;
    for (const char bit : bits) {
        if (bit == ' ') continue;
        if (count++ % 8 == 0) bytes.push_back('\0');
        if (bit == '1') bytes.back() = static_cast<char>(bytes.back() | 0x80 >> (count - 1) % 8);
    }
    return bytes;
}

FilterParameters Fax(int k, int columns, int rows = 0) {
    FilterParameters params;
    params.m_Fax.nK = k;
    params.m_Fax.nColumns = columns;
    params.m_Fax.nRows = rows;
    return params;
}

/// Rows end the data, not a block's end.
FilterParameters FaxRows(int k, int columns, int rows, bool align = false) {
    FilterParameters params = Fax(k, columns, rows);
    params.m_Fax.bEndOfBlock = false;
    params.m_Fax.bEncodedByteAlign = align;
    return params;
}

FilterParameters FaxLines(int k, int columns, bool align) {
    FilterParameters params = Fax(k, columns);
    params.m_Fax.bEndOfLine = true;
    params.m_Fax.bEncodedByteAlign = align;
    return params;
}

FilterParameters BlackIs1(FilterParameters params) {
    params.m_Fax.bBlackIs1 = true;
    return params;
}

constexpr const char* EOL = "000000000001";

std::string Eols(int count, const char* tag = "") {
    std::string bits;
    for (int i = 0; i < count; ++i) bits += std::string(EOL) + tag;
    return bits;
}

TEST(PictureFiltersTest, FaxOfLibraries) {
    // 26 pixels, 8 rows: runs from 1 to 26, all modes.
    const std::string rows = FromHex("cf007cc0 cf007cc0 c700fcc0 00000000 ffffffc0 55555540 f03f1f80 e03e0f00");
    for (const FilterCase& c : {
             FilterCase{"Group 4",
                        FromHex("26b97668617ff75c444326a194ca1ca1ca1ca1ca1ca1ca1ca1ca1ca1ca1c254311623188bd5350010010"),
                        rows, Ends::Before, BlackIs1(Fax(-1, 26))},
             FilterCase{"Group 3",
                        FromHex("00135ddd0df00135ddd0df00135e2993e0024c004d4328004743a1d0e8743a1d0e8743a1d0e874"
                                "0026af8a08700135bcf1b8"),
                        rows, Ends::Before, BlackIs1(FaxRows(0, 26, 8))},
             FilterCase{
                 "Group 3, of two dimensions",
                 FromHex("0019aeee86f800bfc0066bc5327c0042221800cd4328004ca1ca1ca1ca1ca1ca1ca1ca1ca1ca1ca1c250019ab"
                         "e2821c00554d4"
                         "0"),
                 rows, Ends::Before, BlackIs1(FaxRows(4, 26, 8))},
             FilterCase{"EOLs that end bytes",
                        FromHex("000135ddd0df000135ddd0df000135e2993e0001260001350ca0011d0e8743a1d0e"
                                "8743a1d0e8743a1d00001357c5043800135bcf1b8"),
                        rows, Ends::WithInput, BlackIs1(FaxLines(0, 26, true))},
             FilterCase{"no EOLs, rows begin bytes",
                        FromHex("35ddd0df35ddd0df35e2993e26350ca01d0e8743a1d0e8743a1d0e8743a1d0357c50438035bcf1b8"),
                        rows, Ends::Before, BlackIs1(FaxRows(0, 26, 8, true))},
         }) {
        CheckDecoder("CCITTFaxDecode", c);
    }
    // 5300 pixels: runs of more than one make-up code.
    std::string wide(663 * 2, '\xff');
    wide[662] = wide[663 + 662] = '\xf0';
    wide[663 + 1] = '\xc0';
    std::fill(wide.begin() + 663 + 2, wide.begin() + 663 + 651, '\0');
    wide[663 + 651] = '\x3f';
    CheckDecoder("CCITTFaxDecode", {"wide, Group 4", FromHex("26a03e03e19004921007c07f7540040040"), wide, Ends::Before,
                                    BlackIs1(Fax(-1, 5300))});
    CheckDecoder("CCITTFaxDecode", {"wide, Group 3", FromHex("0013501f01f0c8024001350803e03fba80f0ca"), wide,
                                    Ends::Before, BlackIs1(FaxRows(0, 5300, 2))});
}

TEST(PictureFiltersTest, FaxEnds) {
    // Eight columns. White 8: 10011. White 3, black 2, white 3: 1000 11 1000.
    const std::string white = "10011", mixed = "1000 11 1000";
    const std::string two = FromHex("ffe7");
    for (const FilterCase& c : {
             FilterCase{"rows end behind the byte of their last bit", Bits(white + mixed), two, Ends::Before,
                        FaxRows(0, 8, 2)},
             FilterCase{"EndOfBlock goes before Rows", Bits(white + mixed + Eols(6)), two, Ends::Before, Fax(0, 8, 1)},
             FilterCase{"six EOLs", Bits(Eols(1) + white + Eols(1) + mixed + Eols(6)), two, Ends::Before, Fax(0, 8)},
             FilterCase{"two will do at the end", Bits(white + mixed + Eols(2)), two, Ends::WithInput, Fax(0, 8)},
             FilterCase{"fill before an EOL", Bits(white + "00000000000000" + Eols(1) + mixed + "000" + Eols(6)), two,
                        Ends::Before, Fax(0, 8)},
             FilterCase{"tags in six EOLs", Bits(Eols(1, "1") + white + Eols(1, "1") + mixed + Eols(6, "1")), two,
                        Ends::Before, Fax(1, 8)},
             FilterCase{"tags without EOLs", Bits("1" + white + "0 001 1000 11 1"), two, Ends::Before,
                        FaxRows(1, 8, 2)},
             FilterCase{"no end but the input's", Bits(white + mixed), two, Ends::WithInput, Fax(0, 8)},
             FilterCase{"a row that is cut", Bits(white + "1000 11 "), FromHex("ffe7"), Ends::WithInput, Fax(0, 8)},
             FilterCase{"Group 4, empty", Bits(Eols(2)), "", Ends::Before, Fax(-1, 8)},
             FilterCase{"Group 4, one EOL", Bits("1" + Eols(1)), FromHex("ff"), Ends::WithInput, Fax(-1, 8)},
             FilterCase{"nothing", "", "", Ends::WithInput, Fax(-1, 8)},
         }) {
        CheckDecoder("CCITTFaxDecode", c);
    }
    CheckDecoder("CCITTFaxDecode",
                 {"BlackIs1", Bits(white + mixed), FromHex("0018"), Ends::Before, BlackIs1(FaxRows(0, 8, 2))});

    // Damage: a code that is none, a run beyond the row.
    CheckFailure("CCITTFaxDecode", {"no code", Bits(white + "000000001 1111"), FromHex("ff"), {}, Fax(0, 8)});
    CheckFailure("CCITTFaxDecode", {"too long a run", Bits(white + "10100"), FromHex("ff"), {}, Fax(0, 8)});
    CheckFailure("CCITTFaxDecode", {"left of the row", Bits("1 0000010"), FromHex("ff"), {}, Fax(-1, 2)});
    FilterParameters tolerant = Fax(0, 8);
    tolerant.m_Fax.nDamagedRowsBeforeError = 2;
    const std::string damaged = "000000001 1" + std::string(EOL);
    CheckDecoder("CCITTFaxDecode", {"two damaged rows: the one before, and white",
                                    Bits(mixed + Eols(1) + damaged + damaged + mixed + Eols(6)), FromHex("e7e7ffe7"),
                                    Ends::Before, tolerant});
    CheckFailure("CCITTFaxDecode", {"three",
                                    Bits(mixed + Eols(1) + damaged + damaged + damaged + mixed + Eols(6)),
                                    FromHex("e7e7ff"),
                                    {},
                                    tolerant});
}

TEST(PictureFiltersTest, Dct) {
    const std::string head = FromHex("ffd8 ffe0 0006 ffd9ffd9");  // a length hides what looks like an end
    const std::string frame = FromHex("ffc0 000b 08 0003 0005 01 011100");
    const std::string scan = FromHex("ffda 0008 01 0100 003f00");
    const std::string gray(15, '\x80');
    for (const FilterCase& c : {
             FilterCase{"baseline", head + frame + scan + FromHex("12ff0034 ffd9"), gray},
             FilterCase{"restart markers, fill bytes, two scans",
                        head + frame + scan + FromHex("12ffd034ffd156ff00 ffff") + scan + FromHex("78 ffffffd9"), gray},
             FilterCase{"progressive, three components",
                        FromHex("ffd8 ffc2 0011 08 0003 0005 03 011100 022200 033300") + scan + FromHex("12 ffd9"),
                        std::string(45, '\x80')},
             FilterCase{"tables between scans",
                        head + frame + scan + FromHex("12 ffc4 0004 ffd9") + scan + FromHex("ffd9"), gray},
             FilterCase{"lines told behind the first scan",
                        FromHex("ffd8 ffc0 000b 08 0000 0005 01 011100") + scan + FromHex("12 ffdc 0004 0003 34 ffd9"),
                        gray},
             FilterCase{"a line end before it", "\n" + head + frame + scan + FromHex("ffd9"), gray},
             FilterCase{"cut in a scan", head + frame + scan + FromHex("1234"), gray, Ends::WithInput},
             FilterCase{"cut in a segment", head + frame + FromHex("ffda 0008 01"), gray, Ends::WithInput},
         }) {
        CheckDecoder("DCTDecode", c);
    }
    CheckFailure("DCTDecode", {"no frame", head + scan + FromHex("ffd9"), ""});
    CheckFailure("DCTDecode", {"no picture", "hello", ""});
    CheckFailure("DCTDecode", {"cut in the frame", head + FromHex("ffc0 000b 08 0003"), ""});
}

}  // namespace
