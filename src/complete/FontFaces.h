// Where the glyphs of a font dictionary come from: the charstrings, sfnts or glyph data that it holds, or the face that
// stands for a font that a program only names. Faces are made once and follow what programs do to the dictionaries.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "complete/geometry/Path.h"
#include "complete/text/CodeMap.h"
#include "complete/text/FontFace.h"
#include "interp/FilterEPS.h"

/// The keys of font dictionaries.
struct FontNames {
    const CName* buildChar = InternName("BuildChar");
    const CName* buildGlyph = InternName("BuildGlyph");
    const CName* cdevProc = InternName("CDevProc");
    const CName* charStrings = InternName("CharStrings");
    const CName* cidFontName = InternName("CIDFontName");
    const CName* cidMap = InternName("CIDMap");
    const CName* cmap = InternName("CMap");
    const CName* codeMap = InternName(".CodeMap");  ///< of a CMap: its contents (text::CodeMap::Encode)
    const CName* encoding = InternName("Encoding");
    const CName* escChar = InternName("EscChar");
    const CName* face = InternName(".Face");  ///< number of the face that stands for a font, NamedFont
    const CName* fDepVector = InternName("FDepVector");
    const CName* fid = InternName("FID");
    const CName* fontMatrices = InternName(".FontMatrices");  ///< of a CMap: dictionary by font number (usematrix)
    const CName* fMapType = InternName("FMapType");
    const CName* fontMatrix = InternName("FontMatrix");
    const CName* fontName = InternName("FontName");
    const CName* fontType = InternName("FontType");
    const CName* glyphDirectory = InternName("GlyphDirectory");
    const CName* glyphNames = InternName(".GlyphNames");  ///< of a CMap: the names that codes select
    const CName* metrics = InternName("Metrics");
    const CName* metrics2 = InternName("Metrics2");
    const CName* notdef = InternName(".notdef");
    const CName* paintType = InternName("PaintType");
    const CName* priv = InternName("Private");
    const CName* sfnts = InternName("sfnts");
    const CName* shiftIn = InternName("ShiftIn");
    const CName* shiftOut = InternName("ShiftOut");
    const CName* subsVector = InternName("SubsVector");
    const CName* wMode = InternName("WMode");
};

/// A glyph in the space of its font.
struct FontGlyph {
    geometry::Point width;
    geometry::Point bearing;
    const geometry::Path* outline = nullptr;  ///< its font's, for as long as the glyph is being shown; null for none
};

/// A font whose program is a face of this system, and how that came.
struct NamedFont {
    std::string name;                      ///< as the program named it
    std::shared_ptr<text::FontFace> face;  ///< null when there is none
    std::string used;                      ///< PostScript name of the face
    bool isEmbedded = false;               ///< the program brought the face along
    bool hasSameWidths = true;             ///< the face is as wide as the font by that name
};

/// The faces of one machine.
class CFontFaces {
public:
    CFontFaces();
    CFontFaces(const CFontFaces&) = delete;
    CFontFaces& operator=(const CFontFaces&) = delete;
    ~CFontFaces();

    [[nodiscard]] const FontNames& Names() const noexcept { return m_Names; }

    // Fonts that are only named.
    /// A new font dictionary in global VM for a name that nobody has defined, with a face or without one.
    [[nodiscard]] ElementPtr MakeFont(CFilterEPS& m, const CName* name);
    /// Defines a CIDFont for a name that nobody has defined: a face of this system if its glyphs have CIDs, or one
    /// without glyphs. 1 with the CIDFont pushed, or -1.
    [[nodiscard]] int MakeCidFont(CFilterEPS& m, const CName* name);
    /// Whether there is a face of just that name, or one with its widths.
    [[nodiscard]] bool Has(const CName* name);
    /// What a font dictionary is tied to by its entry; null for one that brings its glyphs along.
    [[nodiscard]] const NamedFont* NamedOf(const CDictionary& font) const;
    /// Keeps a face that the program brought along. Answers the value of the entry that ties font dictionaries to it.
    [[nodiscard]] std::int32_t Keep(NamedFont font);

    /// Reads a set of fonts and defines each of them (PLRM, FontSet Resources). 1, or -1 with invalidfont.
    [[nodiscard]] int DefineFontSet(CFilterEPS& m, const CElement& key, std::string data);

    /// Whether the outlines of a font are stroked rather than filled (PLRM, PaintType).
    [[nodiscard]] bool IsStroked(const CDictionary& font) const;

    // Glyphs; false when there is none or it can't be made.
    [[nodiscard]] static bool FindInFace(text::FontFace& face, std::int32_t index, FontGlyph& glyph);
    /// Of a Type 1 font, from the charstring that its CharStrings have under the name.
    [[nodiscard]] bool FindCharString(const CDictionary& font, const CName* name, const CStringElement& charString,
                                      FontGlyph& glyph);
    /// Of a Type 42 font, from its sfnts and its glyph directory, by the value that its CharStrings have.
    [[nodiscard]] bool FindInSfnts(const CDictionary& font, std::int32_t index, FontGlyph& glyph);
    /// Of a CIDFont.
    [[nodiscard]] bool FindCid(const CDictionary& font, std::int32_t cid, FontGlyph& glyph);

    /// The contents of a CMap.
    [[nodiscard]] std::shared_ptr<const text::CodeMap> CodeMapOf(const CDictionary& cmap);

private:
    struct Contents;

    FontNames m_Names;
    std::unique_ptr<Contents> m_p;
};
