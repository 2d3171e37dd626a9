// The binary data of a CIDFont of type 0: where the charstring of a CID and the subroutines of a font dictionary stand
// (PLRM, CIDFontType 0 CIDFonts).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace text {

/// What the CIDFont's dictionary says of the data.
struct CidType0Layout {
    /// Of one dictionary in FDArray: its Private's entries.
    struct FontDict {
        std::int64_t subrMapOffset = 0;
        std::int64_t sdBytes = 0;    ///< bytes of an offset in the subroutine map, 1 to 4
        std::int64_t subrCount = 0;  ///< 0 for none
        int lenIV = 4;
    };

    std::int64_t cidMapOffset = 0;
    std::int64_t fdBytes = 0;  ///< bytes of a font dictionary's index in the CIDMap, 0 to 4
    std::int64_t gdBytes = 0;  ///< bytes of an offset in the CIDMap, 1 to 4
    std::int64_t cidCount = 0;
    std::vector<FontDict> fontDicts;
};

/// The charstring of a CID; lenIV and the subroutines are those of the font dictionary of that index.
struct CidCharString {
    std::size_t fontDict = 0;
    std::string_view bytes;
};

/// A view of data that outlives it. All of data and layout may be nonsense: what isn't there is nothing.
class CidType0Data {
public:
    CidType0Data(std::string_view data, CidType0Layout layout) noexcept;

    /// Nothing for a CID without glyph: beyond CIDCount, an empty interval, places outside the data.
    [[nodiscard]] std::optional<CidCharString> Find(std::int64_t cid) const noexcept;
    [[nodiscard]] std::optional<std::string_view> Subr(std::size_t fontDict, std::size_t number) const noexcept;
    [[nodiscard]] const CidType0Layout& Layout() const noexcept { return m_Layout; }

private:
    std::string_view m_Data;
    CidType0Layout m_Layout;
};

}  // namespace text
