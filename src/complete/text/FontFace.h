// Glyphs of a font program, wherever it came from: what showing text asks for. Nothing here knows of the machine; bytes
// are hostile, sizes are bounded, and a glyph that can't be made is left out without an exception.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "complete/geometry/Path.h"
#include "complete/text/Encodings.h"

namespace text {

/// The advance of a glyph for horizontal writing, and where its outline begins, in the unit of its face.
struct GlyphMetrics {
    geometry::Point width;
    geometry::Point bearing;  ///< left side bearing: x of the outline's left side, or the point that sbw gives
};

/// What a font program tells of the face as a whole, for the entries of the font dictionary by the same names.
struct FaceTraits {
    geometry::Point boxMin;  ///< FontBBox, in the unit of the face
    geometry::Point boxMax;
    double italicAngle = 0;        ///< degrees, counterclockwise from the vertical
    double underlinePosition = 0;  ///< of the middle of the line; in the unit of the face, as its thickness
    double underlineThickness = 0;
    bool isFixedPitch = false;
};

/// One face. Its unit: that of the charstrings for Type 1 and CFF (usually 1/1000 em), the em for sfnt.
class FontFace {
public:
    static constexpr std::int32_t NO_GLYPH = -1;

    FontFace() = default;
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    virtual ~FontFace() = default;

    /// PostScript name, empty when the program has none.
    [[nodiscard]] virtual std::string_view Name() const noexcept = 0;
    [[nodiscard]] virtual std::int32_t GlyphCount() const noexcept = 0;
    /// The index of the glyph of a name; NO_GLYPH.
    [[nodiscard]] virtual std::int32_t GlyphOfName(std::string_view name) const = 0;
    /// The name of a glyph; empty when the face has no names.
    [[nodiscard]] virtual std::string_view NameOfGlyph(std::int32_t glyph) const = 0;
    /// Widths are those of the font program, unrounded. Nothing for an index that there is none of and for a glyph that
    /// can't be read.
    [[nodiscard]] virtual std::optional<GlyphMetrics> Metrics(std::int32_t glyph) = 0;
    /// The outline, all of its contours closed; made once, and the face's for as long as it lives. Null as Metrics.
    [[nodiscard]] virtual const geometry::Path* Outline(std::int32_t glyph) = 0;

    /// Whether glyphs are known by CIDs (a CIDFont's CFF data); they have no names then.
    [[nodiscard]] virtual bool IsCidKeyed() const noexcept { return false; }
    /// The index of the glyph of a CID; NO_GLYPH. In a face that isn't CID-keyed CIDs are indices.
    [[nodiscard]] virtual std::int32_t GlyphOfCid(std::int32_t cid) const {
        return cid >= 0 && cid < GlyphCount() ? cid : NO_GLYPH;
    }
    /// Nothing for a face that only serves a font dictionary of the file itself.
    [[nodiscard]] virtual std::optional<FaceTraits> Traits() const { return std::nullopt; }
    /// The names of the glyphs by the face's own character codes, for as long as the face lives; null without any.
    [[nodiscard]] virtual const EncodingVector* BuiltInEncoding() const { return nullptr; }
};

}  // namespace text
