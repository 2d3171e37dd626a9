// How a string of bytes falls into character codes, and what each of them selects in which font: the contents of a CMap
// (PLRM, CMap Dictionaries). Knows nothing of the machine.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace text {

class CodeMap {
public:
    /// What a code selects.
    enum class Target : std::uint8_t {
        Cid,    ///< a CID; the codes of a range select CIDs that count up
        Code,   ///< a character code of a base font, counting up
        Name,   ///< a glyph name, by its place in a list of names, counting up
        NotDef  ///< a CID, the same for all codes of a range, where nothing else is said
    };
    /// Longest code, in bytes.
    static constexpr std::size_t MAX_CODE_BYTES = 4;

    struct Range {
        Target target = Target::Cid;
        std::uint8_t bytes = 0;  ///< of each code, 1 to MAX_CODE_BYTES
        std::uint8_t font = 0;   ///< number of the font that `usefont` has chosen
        std::uint32_t low = 0;   ///< first code, its first byte the highest
        std::uint32_t high = 0;  ///< last code
        std::uint32_t value = 0;
    };
    struct Mapping {
        std::size_t bytes = 0;  ///< that the code took, at least 1
        std::uint32_t code = 0;
        std::uint8_t font = 0;
        Target target = Target::NotDef;
        std::uint32_t value = 0;
    };

    /// Codes whose every byte lies between those of low and high, texts of one length up to MAX_CODE_BYTES.
    void AddCodeSpace(std::string_view low, std::string_view high);
    /// Of ranges that share codes the last one counts.
    void Add(const Range& range);

    /// What the front of a text, which is not empty, selects: the CID of a notdef range, else 0, for a code that
    /// nothing is said of.
    [[nodiscard]] Mapping Map(std::string_view text) const;

    // The form in which a program's dictionary keeps the contents: records one behind the other, so that two texts
    // joined are the contents of both.
    [[nodiscard]] static std::string EncodeCodeSpace(std::string_view low, std::string_view high);
    [[nodiscard]] static std::string Encode(const Range& range);
    /// Reads such a text; what is no record ends it.
    [[nodiscard]] static CodeMap Decode(std::string_view text);

    /// The number of a code's bytes, the first one the highest.
    [[nodiscard]] static std::uint32_t NumberOf(std::string_view code) noexcept;

private:
    struct CodeSpace {
        std::string low;
        std::string high;
    };
    using Ranges = std::map<std::uint32_t, Range>;  ///< by the first code; none shares a code with another

    static void Insert(Ranges& ranges, Range range);
    [[nodiscard]] static const Range* Find(const Ranges& ranges, std::uint32_t code);
    [[nodiscard]] std::size_t LengthOf(std::string_view text) const;

    std::vector<CodeSpace> m_CodeSpaces;
    Ranges m_Ranges[MAX_CODE_BYTES + 1];  ///< by the length of the codes
    Ranges m_NotDefs[MAX_CODE_BYTES + 1];
};

}  // namespace text
