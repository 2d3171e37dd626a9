// Paths of the complete dialect's geometry from text and back, and what tests measure of them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "complete/geometry/Path.h"

/// A path from letters m, l, c and z and numbers, nan and inf among them, between blanks.
geometry::Path PathOf(std::string_view text);
/// The path as PathOf reads it, numbers as %g prints them.
std::string TextOf(const geometry::Path& path);
/// The area that closed subpaths go around counter-clockwise, less what they go around clockwise. Of curves, by
/// the integral over the curve, which is exact.
double AreaOf(const geometry::Path& path);
/// The length of all lines and curves, these as lines within a thousandth.
double LengthOf(const geometry::Path& path);

/// The same numbers on every machine.
class Random {
public:
    /// From 0 to below the limit.
    double Next(double limit) noexcept {
        m_nState = m_nState * 6364136223846793005U + 1442695040888963407U;
        return static_cast<double>(m_nState >> 11) * 0x1p-53 * limit;
    }

private:
    std::uint64_t m_nState = 1;
};
