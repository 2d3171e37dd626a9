#include "drawing/passes/SkipColors.h"

#include <algorithm>

std::size_t SkipColors(std::vector<Figure>& figures, std::span<const std::uint32_t> colors) {
    return std::erase_if(figures, [colors](const Figure& figure) {
        return std::find(colors.begin(), colors.end(), figure.color) != colors.end();
    });
}
