// The published glyph widths of the standard text faces, for faces that stand in for them with other metrics.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

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
