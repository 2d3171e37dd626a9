// Each mapping takes the bytes of a code, chooses a font by them, and leaves a code for it. A composite font may choose
// another one, which goes on with that code as its first byte.
#include "complete/CharReader.h"

#include <array>
#include <map>

#include "complete/CompleteDialect.h"
#include "graphics/GraphState.h"
#include "graphics/Matrix.h"
#include "graphics/MatrixOperators.h"

namespace {

/// The mapping types (PLRM, FMapType).
enum MapType : std::int32_t {
    MAP_8_8 = 2,
    MAP_ESCAPE = 3,
    MAP_1_7 = 4,
    MAP_9_7 = 5,
    MAP_SUBS = 6,
    MAP_DOUBLE_ESCAPE = 7,
    MAP_SHIFT = 8,
    MAP_CMAP = 9
};

constexpr std::int32_t COMPOSITE = 0;
constexpr int MAX_FONT_DEPTH = 5;

std::int32_t IntegerIn(const CDictionary& dict, const CName* key, std::int32_t otherwise) {
    const auto* number = As<CNumberElement>(dict.GetValue(key));
    return number ? number->GetInt() : otherwise;
}

int FailFont(CFilterEPS& m) { return m.Fail(PSERR_UNDEFINED, "invalidfont"); }

}  // namespace

/// A font of the tree of a composite one, or the only one.
struct CCharReader::Node {
    TypedPtr<CDictionary> dict;
    bool isComposite = false;
    CShownFont font;  ///< of a base font
    // Of a composite font:
    double matrix[6] = {};
    std::int32_t mapType = 0;
    std::int32_t wMode = 0;
    std::int32_t escape = 255;
    std::int32_t shiftIn = 15;
    std::int32_t shiftOut = 14;
    std::string subsVector;
    TypedPtr<CArrayElement> encoding;
    TypedPtr<CArrayElement> fonts;
    std::shared_ptr<const text::CodeMap> codeMap;
    TypedPtr<CArrayElement> glyphNames;
    std::map<std::int32_t, std::array<double, 6>> fontMatrices;  ///< that the CMap has for some fonts, times `matrix`
    std::int32_t current = 0;                                    ///< font number that an escape or a shift has chosen
    std::vector<Node*> children;                                 ///< by font number, as far as they have been asked for

    void ReadFontMatrices(const CDictionary& matrices) {
        for (std::int32_t i = 0; i < matrices.GetOtherCount(); ++i) {
            const CDictNode2* entry = matrices.GetOtherNodeAt(i);
            const auto* number = As<CNumberElement>(entry->m_pKey.get());
            const auto* array = As<CArrayElement>(entry->GetValue());
            double six[6];
            if (!number || !array || ReadMatrix(*array, six) != PSERR_NONE) continue;
            double left[9];
            double right[9];
            MatFromArray6(six, left);
            MatFromArray6(matrix, right);
            MatMultiply(left, right, left);
            MatToArray6(left, fontMatrices[number->GetInt()].data());
        }
    }
};

CCharReader::CCharReader(CFilterEPS& m) : m_Machine(m) {}

CCharReader::~CCharReader() = default;

CCharReader::Node* CCharReader::Open(const CDictionary& font) {
    for (const auto& known : m_Nodes) {
        if (known->dict->IsEqual(&font)) return known.get();
    }
    const FontNames& names = CCompleteDialect::Of(m_Machine).Fonts().Names();
    auto node = std::make_unique<Node>();
    node->dict.reset(static_cast<CDictionary*>(font.Clone().release()));
    node->isComposite = IntegerIn(font, names.fontType, -1) == COMPOSITE;
    if (!node->isComposite) {
        if (!node->font.Open(m_Machine, font)) return nullptr;
        node->wMode = node->font.WMode();
    } else {
        const auto clone = [&](const CName* key) {
            const auto* array = As<CArrayElement>(font.GetValue(key));
            return TypedPtr<CArrayElement>(array ? static_cast<CArrayElement*>(array->Clone().release()) : nullptr);
        };
        const auto* matrix = As<CArrayElement>(font.GetValue(names.fontMatrix));
        node->encoding = clone(names.encoding);
        node->fonts = clone(names.fDepVector);
        node->mapType = IntegerIn(font, names.fMapType, 0);
        node->wMode = IntegerIn(font, names.wMode, 0) == 1 ? 1 : 0;
        node->escape = IntegerIn(font, names.escChar, node->escape);
        node->shiftIn = IntegerIn(font, names.shiftIn, node->shiftIn);
        node->shiftOut = IntegerIn(font, names.shiftOut, node->shiftOut);
        if (const auto* subs = As<CStringElement>(font.GetValue(names.subsVector))) node->subsVector = subs->GetText();
        bool isWhole = matrix && ReadMatrix(*matrix, node->matrix) == PSERR_NONE && node->encoding && node->fonts;
        if (node->mapType == MAP_CMAP) {
            const auto* cmap = As<CDictionary>(font.GetValue(names.cmap));
            if (cmap) {
                node->codeMap = CCompleteDialect::Of(m_Machine).Fonts().CodeMapOf(*cmap);
                const auto* list = As<CArrayElement>(cmap->GetValue(names.glyphNames));
                if (list) node->glyphNames.reset(static_cast<CArrayElement*>(list->Clone().release()));
                if (const auto* matrices = As<CDictionary>(cmap->GetValue(names.fontMatrices))) {
                    node->ReadFontMatrices(*matrices);
                }
            }
            isWhole = isWhole && cmap;
        }
        if (node->mapType == MAP_SUBS) isWhole = isWhole && !node->subsVector.empty();
        if (!isWhole || node->mapType < MAP_8_8 || node->mapType > MAP_CMAP) {
            FailFont(m_Machine);
            return nullptr;
        }
    }
    m_Nodes.push_back(std::move(node));
    return m_Nodes.back().get();
}

int CCharReader::SetFont(const CDictionary& font) {
    if (m_pRoot && m_pRoot->dict->IsEqual(&font)) return 1;
    m_pRoot = Open(font);
    return m_pRoot ? 1 : -1;
}

const CDictionary& CCharReader::Root() const noexcept { return *m_pRoot->dict; }

bool CCharReader::IsComposite() const noexcept { return m_pRoot->isComposite; }

std::int32_t CCharReader::WMode() const noexcept { return m_pRoot->wMode; }

const CShownFont* CCharReader::BaseFont() const noexcept { return m_pRoot->isComposite ? nullptr : &m_pRoot->font; }

void CCharReader::SetText(std::string text) noexcept {
    m_Text = std::move(text);
    m_nAt = 0;
}

int CCharReader::TakeByte(std::int32_t& byte) {
    if (AtEnd()) return m_Machine.Fail(PSERR_RANGE);
    byte = static_cast<unsigned char>(m_Text[m_nAt++]);
    return 1;
}

CCharReader::Node* CCharReader::ChildOf(Node& node, std::int32_t fontNumber) {
    const auto number = static_cast<std::size_t>(fontNumber);
    if (number < node.children.size() && node.children[number]) return node.children[number];
    const auto* index =
        As<CNumberElement>(fontNumber < node.encoding->GetLength() ? node.encoding->GetAt(fontNumber) : nullptr);
    const std::int32_t place = index ? index->GetInt() : -1;
    if (place < 0 || place >= node.fonts->GetLength()) {
        m_Machine.Fail(PSERR_RANGE);
        return nullptr;
    }
    const auto* font = As<CDictionary>(node.fonts->GetAt(place));
    if (!font) {
        FailFont(m_Machine);
        return nullptr;
    }
    Node* child = Open(*font);
    if (!child) return nullptr;
    if (number >= node.children.size()) node.children.resize(number + 1);
    node.children[number] = child;
    return child;
}

int CCharReader::DecodeSubs(const Node& node, std::int32_t first, std::int32_t& fontNumber, std::int32_t& code) {
    const std::string& subs = node.subsVector;
    const std::size_t bytes = std::size_t{static_cast<unsigned char>(subs[0])} + 1;
    constexpr std::size_t mostBytes = 3;
    if (bytes > mostBytes) return FailFont(m_Machine);
    for (std::size_t i = 0; i < bytes; ++i) {
        std::int32_t byte = first;
        if ((i > 0 || first < 0) && TakeByte(byte) != 1) return -1;
        code = code * 256 + byte;
    }
    fontNumber = 0;
    for (std::size_t at = 1; at + bytes <= subs.size(); at += bytes, ++fontNumber) {
        std::int32_t size = 0;
        for (std::size_t i = 0; i < bytes; ++i) size = size * 256 + static_cast<unsigned char>(subs[at + i]);
        if (size == 0) size = 1 << (8 * bytes);
        if (code < size) return 1;
        code -= size;
    }
    return 1;  // beyond all ranges: the font behind the last one
}

int CCharReader::DecodeShifts(Node& node, std::int32_t first, std::int32_t& code) {
    constexpr std::int32_t doubled = 256;
    for (std::int32_t taken = first;; taken = -1) {
        code = taken;
        if (taken < 0 && TakeByte(code) != 1) return -1;
        if (node.mapType == MAP_SHIFT) {
            if (code != node.shiftIn && code != node.shiftOut) return 1;
            node.current = code == node.shiftOut ? 1 : 0;
        } else {
            if (code != node.escape) return 1;
            if (TakeByte(node.current) != 1) return -1;
            if (node.mapType == MAP_DOUBLE_ESCAPE && node.current == node.escape) {
                if (TakeByte(node.current) != 1) return -1;
                node.current += doubled;
            }
        }
        if (AtEnd()) {
            code = -1;  // the string ends with a shift that nothing follows
            return 1;
        }
    }
}

int CCharReader::DecodeCMap(Node& node, ShownChar& next) {
    const text::CodeMap::Mapping mapping = node.codeMap->Map(std::string_view(m_Text).substr(m_nAt));
    m_nAt += mapping.bytes;
    Node* child = ChildOf(node, mapping.font);
    if (!child) return -1;
    if (child->isComposite) return FailFont(m_Machine);
    next.font = &child->font;
    const auto matrix = node.fontMatrices.find(mapping.font);
    next.parentMatrix = matrix != node.fontMatrices.end() ? matrix->second.data() : node.matrix;
    next.code = static_cast<std::int32_t>(mapping.code);
    const auto value = static_cast<std::int32_t>(mapping.value);
    if (mapping.target == text::CodeMap::Target::Name) {
        const auto* name = As<CSimpElement>(node.glyphNames ? node.glyphNames->GetAt(value) : nullptr);
        next.selector = {name ? name->m_pName : nullptr, -1};
    } else {
        next.selector = child->font.Select(value);
    }
    return 1;
}

int CCharReader::Decode(Node& node, const Node* parent, std::int32_t first, ShownChar& next) {
    if (!node.isComposite) {
        std::int32_t code = first;
        if (first < 0 && TakeByte(code) != 1) return -1;
        next.font = &node.font;
        next.parentMatrix = parent ? parent->matrix : nullptr;
        next.selector = node.font.Select(code);
        if (!parent) next.code = code;
        return 1;
    }
    if (m_nDepth >= MAX_FONT_DEPTH) return FailFont(m_Machine);
    if (node.mapType == MAP_CMAP) return first < 0 ? DecodeCMap(node, next) : FailFont(m_Machine);
    std::int32_t fontNumber = 0;
    std::int32_t code = 0;
    if (node.mapType == MAP_SUBS) {
        if (DecodeSubs(node, first, fontNumber, code) != 1) return -1;
    } else if (node.mapType == MAP_ESCAPE || node.mapType == MAP_DOUBLE_ESCAPE || node.mapType == MAP_SHIFT) {
        if (DecodeShifts(node, first, code) != 1) return -1;
        if (code < 0) {
            next.font = nullptr;
            return 1;
        }
        fontNumber = node.current;
    } else {
        std::int32_t byte = first;
        if (first < 0 && TakeByte(byte) != 1) return -1;
        if (node.mapType == MAP_1_7) {
            fontNumber = byte >> 7;
            code = byte & 127;
        } else {
            if (TakeByte(code) != 1) return -1;
            const bool isEven = node.mapType == MAP_8_8;
            fontNumber = isEven ? byte : byte << 1 | code >> 7;
            code = isEven ? code : code & 127;
        }
    }
    Node* child = ChildOf(node, fontNumber);
    if (!child) return -1;
    next.code = fontNumber * 256 + code;
    ++m_nDepth;
    const int result = Decode(*child, &node, code, next);
    --m_nDepth;
    return result;
}

int CCharReader::Next(ShownChar& next) {
    m_nDepth = 0;
    return Decode(*m_pRoot, nullptr, -1, next);
}
