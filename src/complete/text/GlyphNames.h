// Names of the standard Latin characters' glyphs, for faces whose glyphs have other names or none.
#pragma once

#include <string_view>
#include <vector>

namespace text {

struct NamedCharacter {
    std::string_view name;
    char32_t unicode = 0;
};

/// The standard Latin character set (PLRM E.5, and Euro), in the order of the names' bytes.
[[nodiscard]] const std::vector<NamedCharacter>& StandardCharacters();
[[nodiscard]] bool IsStandardName(std::string_view name);

}  // namespace text
