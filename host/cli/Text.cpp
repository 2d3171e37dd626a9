// UTF-8 repair, which nlohmann-json knows, and standard error.
#include "Text.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <nlohmann/json.hpp>

using nlohmann::json;

namespace {

void WriteAll(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace

std::string JsonText(std::string_view text) { return json(text).dump(-1, ' ', false, json::error_handler_t::replace); }

std::string ForTerminal(std::string_view text) {
    std::string shown;
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
    const auto repaired = json::parse(JsonText(text)).get<std::string>();
    for (std::size_t i = 0; i < repaired.size(); ++i) {
        const auto byte = static_cast<unsigned char>(repaired[i]);
        if ((byte == '\r' || byte == '\f') && repaired[i + 1] == '\n') continue;
        const bool c1Control = byte == 0xC2 && static_cast<unsigned char>(repaired[i + 1]) < 0xA0;
        if (c1Control) ++i;
        if (c1Control || byte == 0x7F || (byte < 0x20 && byte != '\n' && byte != '\t'))
            shown += kReplacement;
        else
            shown += repaired[i];
    }
    return shown;
}

void Note(std::string_view text) {
    std::string line(text);
    line += '\n';
    WriteAll(line);
}

void Complain(std::string_view text) { Note("epsimport: " + std::string(text)); }
