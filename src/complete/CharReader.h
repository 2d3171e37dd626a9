// The characters of a string that is shown: bytes of a base font, or what the mapping of a composite font makes of them
// (PLRM, Character Mapping).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "complete/ShownFont.h"

/// One character.
struct ShownChar {
    const CShownFont* font = nullptr;      ///< base font or CIDFont, for as long as the reader is there
    const double* parentMatrix = nullptr;  ///< of the composite font that it stands in; null for a font of its own
    GlyphSelector selector;
    std::int32_t code = 0;  ///< as widthshow, kshow and cshow have it
};

class CCharReader {
public:
    explicit CCharReader(CFilterEPS& m);
    CCharReader(const CCharReader&) = delete;
    CCharReader& operator=(const CCharReader&) = delete;
    ~CCharReader();

    /// Goes on in a font: the root of what the graphics state has. 1, or -1 with invalidfont.
    [[nodiscard]] int SetFont(const CDictionary& font);
    /// The root font.
    [[nodiscard]] const CDictionary& Root() const noexcept;
    [[nodiscard]] bool IsComposite() const noexcept;
    [[nodiscard]] std::int32_t WMode() const noexcept;
    /// The font that glyphs are taken of without a string: null for a composite one.
    [[nodiscard]] const CShownFont* BaseFont() const noexcept;
    void SetText(std::string text) noexcept;
    [[nodiscard]] bool AtEnd() const noexcept { return m_nAt >= m_Text.size(); }
    /// The next character, of which there is one: 1, or -1 with rangecheck for a code that is not whole or that no font
    /// stands for, and invalidfont.
    [[nodiscard]] int Next(ShownChar& next);

private:
    struct Node;
    /// Takes the next byte: 1, or -1 with rangecheck at the end.
    [[nodiscard]] int TakeByte(std::int32_t& byte);
    [[nodiscard]] Node* Open(const CDictionary& font);
    [[nodiscard]] Node* ChildOf(Node& node, std::int32_t fontNumber);
    /// first: a byte that has been taken already, -1 for none.
    [[nodiscard]] int Decode(Node& node, const Node* parent, std::int32_t first, ShownChar& next);
    [[nodiscard]] int DecodeSubs(const Node& node, std::int32_t first, std::int32_t& fontNumber, std::int32_t& code);
    [[nodiscard]] int DecodeShifts(Node& node, std::int32_t first, std::int32_t& code);
    [[nodiscard]] int DecodeCMap(Node& node, ShownChar& next);

    CFilterEPS& m_Machine;
    std::vector<std::unique_ptr<Node>> m_Nodes;
    Node* m_pRoot = nullptr;
    std::string m_Text;
    std::size_t m_nAt = 0;
    int m_nDepth = 0;
};
