// Loading texts.
#include "platform/Resources.h"

#include <cstddef>
#include <cstring>

int LoadStringA(HINSTANCE hInstance, unsigned id, char* buffer, int limit) noexcept {
    if (!buffer || limit < 1) return 0;
    const CStringResource* found = hInstance ? hInstance->FindString(id) : nullptr;
    std::string_view text = found ? found->text : std::string_view();
    if (std::size_t end = static_cast<std::size_t>(limit) - 1; text.size() > end) {
        const auto continues = [&](char c) { return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u; };
        while (end > 0 && continues(text[end])) --end;
        text = text.substr(0, end);
    }
    if (!text.empty()) std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return static_cast<int>(text.size());
}
