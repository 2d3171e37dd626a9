// Repaired texts go through nlohmann-json, which knows UTF-8.
#include "cli/Text.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "writers/JsonText.h"

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

std::string ForTerminal(std::string_view text) {
    std::string shown;
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
    const auto repaired = nlohmann::json::parse(JsonText(text)).get<std::string>();
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

std::string ByteText(std::uint64_t bytes) {
    char text[32];
    if (bytes < 1000)
        std::snprintf(text, sizeof text, "%d B", static_cast<int>(bytes));
    else if (bytes < 1000000)
        std::snprintf(text, sizeof text, "%.1f kB", static_cast<double>(bytes) / 1e3);
    else
        std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
    return text;
}

std::string CountText(std::uint64_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}
