// Host units, in which path records and entities are measured: millimetres from host version 5 on, 1/40 mm before. The
// order of the roundings is part of the result, so that whoever converts otherwise than here takes the constants alone.
#pragma once

#include "hostout/HostCore.h"
#include "interp/FilterEPS.h"

inline constexpr double POINTS_PER_INCH = 72.0;
inline constexpr double MM_PER_INCH = 25.4;

/// Host units in a millimetre.
[[nodiscard]] inline float UnitsPerMillimetre(const CFilterEPS& m) noexcept {
    return m.m_nHostVersion < FIRST_MM_VERSION ? 40.0f : 1.0f;
}

/// A length or coordinate of default user space (1/72 inch) in host units: rounded to a float as millimetres, and once
/// more below version 5.
[[nodiscard]] inline float ToHostUnits(const CFilterEPS& m, double points) noexcept {
    return static_cast<float>(points / POINTS_PER_INCH * MM_PER_INCH) * UnitsPerMillimetre(m);
}

/// Host units in default user space, with the same roundings.
[[nodiscard]] inline float ToPoints(const CFilterEPS& m, float units) noexcept {
    return static_cast<float>(units / MM_PER_INCH * POINTS_PER_INCH) / UnitsPerMillimetre(m);
}
