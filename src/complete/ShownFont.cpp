// What the entries of a font dictionary mean for its glyphs (PLRM, Font Dictionaries).
#include "complete/ShownFont.h"

#include "complete/CompleteDialect.h"
#include "complete/PathBridge.h"
#include "graphics/MatrixOperators.h"
#include "interp/Operands.h"

namespace {

enum FontType : std::int32_t {
    FT_TYPE1 = 1,
    FT_CFF = 2,
    FT_TYPE3 = 3,
    FT_CID0 = 9,
    FT_CID1 = 10,
    FT_CID2 = 11,
    FT_TYPE42 = 42
};

template <class T>
TypedPtr<T> CloneEntry(const CDictionary& dict, const CName* key) {
    const auto* entry = As<T>(dict.GetValue(key));
    return TypedPtr<T>(entry ? static_cast<T*>(entry->Clone().release()) : nullptr);
}

CFontFaces& FacesOf(const CFilterEPS& m) { return CCompleteDialect::Of(m).Fonts(); }

const CName* NameIn(const CElement* e) {
    const auto* name = As<CSimpElement>(e);
    return name ? name->m_pName : nullptr;
}

}  // namespace

bool CShownFont::Open(CFilterEPS& m, const CDictionary& font) {
    const FontNames& names = FacesOf(m).Names();
    m_pDict.reset(static_cast<CDictionary*>(font.Clone().release()));
    const auto* type = As<CNumberElement>(font.GetValue(names.fontType));
    const auto* matrix = As<CArrayElement>(font.GetValue(names.fontMatrix));
    bool isKnown = type && matrix && ReadMatrix(*matrix, m_Matrix) == PSERR_NONE;
    if (isKnown) {
        m_pEncoding = CloneEntry<CArrayElement>(font, names.encoding);
        m_pCharStrings = CloneEntry<CDictionary>(font, names.charStrings);
        m_pMetrics = CloneEntry<CDictionary>(font, names.metrics);
        m_pMetrics2 = CloneEntry<CDictionary>(font, names.metrics2);
        m_pDevProc = CloneEntry<CArrayElement>(font, names.cdevProc);
        const auto* writing = As<CNumberElement>(font.GetValue(names.wMode));
        m_nWMode = writing && writing->GetInt() == 1 ? 1 : 0;
        m_bStroked = FacesOf(m).IsStroked(font);
        m_pNamed = FacesOf(m).NamedOf(font);
        switch (type->GetInt()) {
            case FT_TYPE1:
            case FT_CFF:
            case FT_TYPE42:
                m_Origin = GlyphOrigin::Program;
                isKnown = m_pCharStrings != nullptr;
                break;
            case FT_TYPE3:
                m_Origin = GlyphOrigin::Procedure;
                isKnown = font.Find(names.buildGlyph) || font.Find(names.buildChar);
                break;
            case FT_CID1:
                m_Origin = GlyphOrigin::CidProcedure;
                isKnown = font.Find(names.buildGlyph) != nullptr;
                break;
            case FT_CID0:
            case FT_CID2:
                m_Origin = GlyphOrigin::CidProgram;
                break;
            default:
                isKnown = false;
        }
    }
    if (!isKnown) m.Fail(PSERR_UNDEFINED, "invalidfont");
    return isKnown;
}

std::string CShownFont::ReportName(const CFilterEPS& m) const {
    const FontNames& names = FacesOf(m).Names();
    if (m_pNamed) return m_pNamed->name;
    for (const CName* key : {names.fontName, names.cidFontName, names.fid}) {
        const CElement* entry = m_pDict->GetValue(key);
        const CName* name = NameIn(entry);
        if (name && name->m_nLength > 0) return std::string(name->Text());
        const auto* string = As<CStringElement>(entry);
        if (string && string->GetLength() > 0) return string->GetText();
    }
    return {};
}

GlyphSelector CShownFont::Select(std::int32_t code) const {
    if (m_Origin == GlyphOrigin::CidProgram || m_Origin == GlyphOrigin::CidProcedure || !m_pEncoding) {
        return {nullptr, code};
    }
    return {NameIn(m_pEncoding->GetAt(code)), code};
}

std::int32_t CShownFont::CodeOf(const CName* name) const {
    const std::int32_t length = m_pEncoding ? m_pEncoding->GetLength() : 0;
    for (std::int32_t code = 0; code < length; ++code) {
        if (NameIn(m_pEncoding->GetAt(code)) == name) return code;
    }
    return -1;
}

bool CShownFont::FindNamed(CFilterEPS& m, const CName* name, FontGlyph& glyph) const {
    const CElement* entry = m_pCharStrings->GetValue(name);
    if (!entry) return false;
    CFontFaces& faces = FacesOf(m);
    if (const auto* charString = As<CStringElement>(entry)) {
        return faces.FindCharString(*m_pDict, name, *charString, glyph);
    }
    const auto* index = As<CNumberElement>(entry);
    if (!index) return false;
    if (!m_pNamed) return faces.FindInSfnts(*m_pDict, index->GetInt(), glyph);
    return m_pNamed->face && CFontFaces::FindInFace(*m_pNamed->face, index->GetInt(), glyph);
}

GlyphFound CShownFont::Find(CFilterEPS& m, const GlyphSelector& selector, FontGlyph& glyph) const {
    const FontNames& names = FacesOf(m).Names();
    glyph = {};
    if (m_Origin == GlyphOrigin::CidProgram) {
        if (FacesOf(m).FindCid(*m_pDict, selector.code, glyph)) return GlyphFound::Yes;
        static_cast<void>(FacesOf(m).FindCid(*m_pDict, 0, glyph));
        return GlyphFound::No;
    }
    const bool isNotdef = !selector.name || selector.name == names.notdef;
    if (!isNotdef && FindNamed(m, selector.name, glyph)) return GlyphFound::Yes;
    // Nothing is drawn for what a face that stands for the font lacks.
    glyph = {};
    static_cast<void>(FindNamed(m, names.notdef, glyph));
    if (m_pNamed && !m_pNamed->isEmbedded) glyph.outline = nullptr;
    return isNotdef ? GlyphFound::Notdef : GlyphFound::No;
}

const CElement* CShownFont::MetricsOf(const CDictionary* metrics, const GlyphSelector& selector) const {
    if (!metrics) return nullptr;
    if (selector.name) return metrics->GetValue(selector.name);
    const auto key = NewInt(selector.code);
    const CDictNode2* node = metrics->FindOther(key.get());
    return node ? node->GetValue() : nullptr;
}

int CShownFont::RunDevProc(CFilterEPS& m, const GlyphSelector& selector, double numbers[10]) const {
    constexpr int count = 10;
    for (int i = 0; i < count; ++i) m.PushReal(numbers[i]);
    if (selector.name) {
        m.Push(MakeElement<CSimpElement>(selector.name));
    } else {
        m.PushInt(selector.code);
    }
    if (m.ExecuteProcedure(m_pDevProc.get()) != 1) return -1;
    Operands in(m);
    for (int i = 0; i < count; ++i) numbers[count - 1 - i] = in.Real(i);
    if (!in) return -1;
    m.Drop(count);
    return 1;
}

int CShownFont::Measure(CFilterEPS& m, const GlyphSelector& selector, const FontGlyph& glyph, std::int32_t wMode,
                        GlyphAdvance& advance) const {
    advance = {glyph.width, {}, {}};
    std::vector<double> numbers;
    const CElement* entry = MetricsOf(m_pMetrics.get(), selector);
    if (const auto* width = As<CNumberElement>(entry)) {
        advance.width = {width->GetReal(), 0};
    } else if (entry && ReadNumbers(*entry, numbers) == PSERR_NONE) {
        if (numbers.size() == 2) {
            advance.shift.x = numbers[0] - glyph.bearing.x;
            advance.width = {numbers[1], 0};
        } else if (numbers.size() == 4) {
            advance.shift = {numbers[0] - glyph.bearing.x, numbers[1] - glyph.bearing.y};
            advance.width = {numbers[2], numbers[3]};
        }
    }
    geometry::Point width1 = advance.width;
    geometry::Point origin;
    const CElement* entry2 = MetricsOf(m_pMetrics2.get(), selector);
    if (entry2 && ReadNumbers(*entry2, numbers) == PSERR_NONE && numbers.size() == 4) {
        width1 = {numbers[0], numbers[1]};
        origin = {numbers[2], numbers[3]};
    } else if (m_Origin == GlyphOrigin::CidProgram) {
        // What CIDFonts have where they say nothing, in thousandths of the em.
        constexpr double height = -1000;
        constexpr double top = 880;
        constexpr double perEm = 1000;
        const double unit = m_Matrix[3] != 0 ? 1 / (perEm * m_Matrix[3]) : 0;
        width1 = {0, height * unit};
        origin = {advance.width.x / 2, top * unit};
    }
    if (HasDevProc()) {
        const auto box = glyph.outline ? geometry::FindBounds(*glyph.outline) : std::nullopt;
        const geometry::Box b = box.value_or(geometry::Box{});
        double all[10] = {advance.width.x, advance.width.y, b.left,   b.bottom, b.right,
                          b.top,           width1.x,        width1.y, origin.x, origin.y};
        if (RunDevProc(m, selector, all) != 1) return -1;
        advance.width = {all[0], all[1]};
        width1 = {all[6], all[7]};
        origin = {all[8], all[9]};
    }
    if (wMode == 1) {
        advance.width = width1;
        advance.origin = origin;
    }
    return 1;
}
