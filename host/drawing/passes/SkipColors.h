// Colours that are left out: construction lines, layers for another machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "drawing/Figure.h"

/// Takes the figures of these colours (0x00BBGGRR) out and answers how many those were.
std::size_t SkipColors(std::vector<Figure>& figures, std::span<const std::uint32_t> colors);
