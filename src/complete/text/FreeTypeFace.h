// Faces that FreeType reads: what sfnt data, CFF tables and the font files of the system have in common. No
// instructions of a font run, and nothing is rounded to pixels.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "complete/text/FontFace.h"

struct FT_FaceRec_;
struct FT_GlyphSlotRec_;

namespace text {

class FreeTypeFace final : public FontFace {
public:
    /// Which of FreeType's drivers may look at data out of a file: hostile bytes meet no other one.
    enum class Driver { TrueType, Cff };

    /// emUnits: how many units of the face the em has. Null for data that can't be read, or that is more than
    /// MAX_BYTES.
    [[nodiscard]] static std::unique_ptr<FreeTypeFace> OpenBytes(std::string bytes, Driver driver, int index,
                                                                 double emUnits);
    /// A font file of the system. Glyphs that have the standard Latin characters get the standard names, whatever names
    /// the file has, if any.
    [[nodiscard]] static std::unique_ptr<FreeTypeFace> OpenFile(const std::string& path, int index, double emUnits);
    ~FreeTypeFace() override;

    static constexpr std::size_t MAX_BYTES = std::size_t{64} << 20;
    static constexpr std::uint32_t MAX_PARTS = 1000;

    [[nodiscard]] std::string_view Name() const noexcept override { return m_Name; }
    [[nodiscard]] std::int32_t GlyphCount() const noexcept override;
    [[nodiscard]] std::int32_t GlyphOfName(std::string_view name) const override;
    [[nodiscard]] std::string_view NameOfGlyph(std::int32_t glyph) const override;
    [[nodiscard]] std::optional<GlyphMetrics> Metrics(std::int32_t glyph) override;
    [[nodiscard]] const geometry::Path* Outline(std::int32_t glyph) override;
    [[nodiscard]] bool IsCidKeyed() const noexcept override;
    [[nodiscard]] std::optional<FaceTraits> Traits() const override;
    [[nodiscard]] const EncodingVector* BuiltInEncoding() const override;

private:
    struct Glyph {
        GlyphMetrics metrics;
        geometry::Path outline;
    };
    enum class NamesFrom { Font, Characters };

    FreeTypeFace() = default;

    /// Takes over what FreeType has opened.
    [[nodiscard]] bool Start(double emUnits);
    /// Reads the names when they are first asked for.
    void ReadNames() const;
    void ReadNamesOfCharacters() const;
    [[nodiscard]] Glyph* Load(std::int32_t glyph);
    [[nodiscard]] std::unique_ptr<Glyph> Make(std::int32_t glyph);
    /// The glyphs that a glyph is directly made of (composite glyphs of TrueType); none for another one.
    [[nodiscard]] std::vector<std::int32_t> PartsOf(std::int32_t glyph) const;
    /// Whether a glyph is made of no more than MAX_PARTS, parts of parts included, and not of itself. FreeType, which
    /// makes it by recursion, has no such bound.
    [[nodiscard]] bool HasFewParts(std::int32_t glyph);

    std::string m_Bytes;  ///< that FreeType reads from for as long as the face is open
    FT_FaceRec_* m_pFace = nullptr;
    std::string m_Name;
    double m_fUnit = 0;  ///< a unit of FreeType's in one of the face's
    double m_fEmUnits = 0;
    bool m_bTrueType = false;
    std::unordered_map<std::int32_t, std::uint32_t> m_PartCounts;  ///< by glyph, itself included; up to MAX_PARTS + 1
    NamesFrom m_NamesFrom = NamesFrom::Font;
    mutable bool m_bNamesRead = false;
    mutable std::vector<std::string> m_Names;  ///< by glyph
    mutable std::unordered_map<std::string_view, std::int32_t> m_Indices;
    mutable std::unique_ptr<EncodingVector> m_pEncoding;
    std::unordered_map<std::int32_t, std::unique_ptr<Glyph>> m_Glyphs;  ///< null for one that can't be made
};

}  // namespace text
