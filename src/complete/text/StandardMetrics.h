// The published metrics of the standard fonts, for faces that stand in for them: programs reckon with these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "complete/text/FontFace.h"

/// The twelve standard text faces by their widths: the oblique ones of Helvetica are as wide as the upright, and every
/// glyph of Courier is as wide as any other.
enum class StandardFace : std::uint8_t {
    Helvetica,
    HelveticaBold,
    TimesRoman,
    TimesBold,
    TimesItalic,
    TimesBoldItalic,
    Courier
};

/// The advance width of a glyph in thousandths of the em; nothing for a glyph outside the standard Latin character set
/// (PLRM E.5, and Euro).
[[nodiscard]] std::optional<int> StandardWidth(StandardFace face, std::string_view glyph) noexcept;

/// The entries that the font dictionary of one of the 35 standard fonts has, in thousandths of the em; nothing for
/// another name or spelling.
[[nodiscard]] std::optional<text::FaceTraits> StandardTraits(std::string_view font) noexcept;
