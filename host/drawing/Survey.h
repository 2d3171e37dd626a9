// The measures of a drawing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "drawing/Figure.h"

struct Survey {
    CBox box;
    std::vector<std::uint32_t> colors;  ///< each once, in the order of appearance
    std::size_t lines = 0;              ///< straight segments
    std::size_t curves = 0;             ///< cubic ones
    std::size_t arcs = 0;               ///< without whole circles
    std::size_t circles = 0;            ///< whole figures
};

Survey Measure(std::span<const Figure> figures);
