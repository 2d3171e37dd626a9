// Small font programs that tests make: sfnt data and CFF tables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct SfntGlyph {
    std::string name;      ///< for a table of names; may be empty
    char32_t unicode = 0;  ///< 0 for none
    int advance = 0;
    /// Contours with a slash between them, of points "x,y", those off the curve "x,y*". Its left side bearing is the
    /// least x. Or "+G dx dy", perhaps several: glyph G, moved.
    std::string contours;
};

struct SfntOptions {
    int unitsPerEm = 1000;
    /// Makes it a font file: names of the face and, with hasGlyphNames, of the glyphs, and a map from characters.
    /// Empty: no more tables than a Type 42 font has.
    std::string postScriptName;
    bool hasGlyphNames = false;
};

/// Glyph 0 is .notdef, which the caller gives, too.
std::string MakeSfnt(const std::vector<SfntGlyph>& glyphs, const SfntOptions& options = {});

struct CffGlyph {
    int sid = 0;             ///< of its name (Technical Note 5176, Appendix A), or its CID
    std::string charString;  ///< as AssembleCharString has it, by the rules of Type 2
};

struct CffOptions {
    bool isCidKeyed = false;
    std::string topDict;  ///< more operands and operators, as bytes
};

/// Glyph 0, .notdef or CID 0, is an empty one of width 250 and not among those given. Codes are those of
/// StandardEncoding.
std::string MakeCff(const std::vector<CffGlyph>& glyphs, const CffOptions& options = {});
