// A base font or CIDFont as its dictionary says when a text is shown in it, and the glyphs that it gives.
#pragma once

#include <optional>

#include "complete/FontFaces.h"
#include "objects/Array.h"
#include "objects/Dictionary.h"

/// Kinds of fonts by where their glyphs come from.
enum class GlyphOrigin {
    Program,       ///< CharStrings: charstrings, or indices of a face
    Procedure,     ///< BuildGlyph or BuildChar
    CidProgram,    ///< a CIDFont of glyph data or sfnts
    CidProcedure,  ///< a CIDFont with BuildGlyph
};

/// Whether a font has the glyph that was asked for.
enum class GlyphFound {
    Yes,
    Notdef,  ///< it was `.notdef` that was asked for
    No       ///< `.notdef` stands for it, or nothing
};

/// What selects a glyph.
struct GlyphSelector {
    const CName* name = nullptr;  ///< null when a code or a CID does
    std::int32_t code = 0;        ///< of a character; -1 when a name came without one
};

/// How a glyph moves the current point, in the space of its font.
struct GlyphAdvance {
    geometry::Point width;
    geometry::Point origin;  ///< what the glyph is moved back by: the position vector of writing mode 1
    geometry::Point shift;   ///< what the outline is moved by, where Metrics gives another side bearing
};

class CShownFont {
public:
    /// False with invalidfont when texts can't be shown in it.
    [[nodiscard]] bool Open(CFilterEPS& m, const CDictionary& font);

    [[nodiscard]] const CDictionary& Dict() const noexcept { return *m_pDict; }
    [[nodiscard]] const double* Matrix() const noexcept { return m_Matrix; }
    [[nodiscard]] GlyphOrigin Origin() const noexcept { return m_Origin; }
    [[nodiscard]] bool HasProcedure() const noexcept {
        return m_Origin == GlyphOrigin::Procedure || m_Origin == GlyphOrigin::CidProcedure;
    }
    [[nodiscard]] std::int32_t WMode() const noexcept { return m_nWMode; }
    /// Whether its outlines are stroked rather than filled.
    [[nodiscard]] bool IsStroked() const noexcept { return m_bStroked; }
    /// The face that stands for the font, if one does.
    [[nodiscard]] const NamedFont* Named() const noexcept { return m_pNamed; }
    /// The name that the report has for it.
    [[nodiscard]] std::string ReportName(const CFilterEPS& m) const;

    /// What a character code selects.
    [[nodiscard]] GlyphSelector Select(std::int32_t code) const;
    /// The code that a name has in the encoding; -1.
    [[nodiscard]] std::int32_t CodeOf(const CName* name) const;

    /// The glyph of a selector, in a font without procedures; `.notdef` or CID 0, or nothing at all, for one that there
    /// is none for.
    [[nodiscard]] GlyphFound Find(CFilterEPS& m, const GlyphSelector& selector, FontGlyph& glyph) const;
    [[nodiscard]] bool HasDevProc() const noexcept { return m_pDevProc && m_pDevProc->m_bExec; }
    /// How the glyph moves the current point; runs a CDevProc. 1, or -1.
    [[nodiscard]] int Measure(CFilterEPS& m, const GlyphSelector& selector, const FontGlyph& glyph, std::int32_t wMode,
                              GlyphAdvance& advance) const;

private:
    [[nodiscard]] bool FindNamed(CFilterEPS& m, const CName* name, FontGlyph& glyph) const;
    [[nodiscard]] const CElement* MetricsOf(const CDictionary* metrics, const GlyphSelector& selector) const;
    [[nodiscard]] int RunDevProc(CFilterEPS& m, const GlyphSelector& selector, double numbers[10]) const;

    TypedPtr<CDictionary> m_pDict;
    TypedPtr<CArrayElement> m_pEncoding;
    TypedPtr<CDictionary> m_pCharStrings;
    TypedPtr<CDictionary> m_pMetrics;
    TypedPtr<CDictionary> m_pMetrics2;
    TypedPtr<CArrayElement> m_pDevProc;
    const NamedFont* m_pNamed = nullptr;
    double m_Matrix[6] = {};
    GlyphOrigin m_Origin = GlyphOrigin::Program;
    std::int32_t m_nWMode = 0;
    bool m_bStroked = false;
};
