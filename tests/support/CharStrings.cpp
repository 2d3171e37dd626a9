#include "support/CharStrings.h"

#include <charconv>
#include <cstdint>
#include <map>
#include <stdexcept>

namespace {

// Behind an escape: 256 and the second byte.
const std::map<std::string_view, int> kCommands = {
    {"hstem", 1},      {"vstem", 3},        {"vmoveto", 4},         {"rlineto", 5},   {"hlineto", 6},
    {"vlineto", 7},    {"rrcurveto", 8},    {"closepath", 9},       {"callsubr", 10}, {"return", 11},
    {"hsbw", 13},      {"endchar", 14},     {"rmoveto", 21},        {"hmoveto", 22},  {"vhcurveto", 30},
    {"hvcurveto", 31}, {"dotsection", 256}, {"vstem3", 257},        {"hstem3", 258},  {"seac", 262},
    {"sbw", 263},      {"div", 268},        {"callothersubr", 272}, {"pop", 273},     {"setcurrentpoint", 289}};

void AppendNumber(std::string& bytes, int value) {
    const auto put = [&bytes](int byte) { bytes.push_back(static_cast<char>(byte)); };
    if (value >= -107 && value <= 107) {
        put(value + 139);
    } else if (value >= 108 && value <= 1131) {
        put((value - 108) / 256 + 247);
        put((value - 108) % 256);
    } else if (value >= -1131 && value <= -108) {
        put((-value - 108) / 256 + 251);
        put((-value - 108) % 256);
    } else {
        put(255);
        for (int shift = 24; shift >= 0; shift -= 8) put(value >> shift & 255);
    }
}

}  // namespace

std::string AssembleCharString(std::string_view words) {
    std::string bytes;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        if (word.empty()) continue;
        int value = 0;
        const char* end = word.data() + word.size();
        if (word[0] == '#') {
            std::from_chars(word.data() + 1, end, value, 16);
            bytes.push_back(static_cast<char>(value));
        } else if (const auto command = kCommands.find(word); command != kCommands.end()) {
            if (command->second >= 256) bytes.push_back(12);
            bytes.push_back(static_cast<char>(command->second % 256));
        } else if (std::from_chars(word.data(), end, value).ptr == end) {
            AppendNumber(bytes, value);
        } else {
            throw std::invalid_argument("no charstring word: " + std::string(word));
        }
    }
    return bytes;
}

std::string EncryptCharString(std::string_view plain, int lenIV) {
    std::string bytes;
    std::uint16_t key = 4330;
    for (const char c : std::string(static_cast<std::size_t>(lenIV), '\0') + std::string(plain)) {
        const auto cipher = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ key >> 8);
        key = static_cast<std::uint16_t>((cipher + key) * 52845u + 22719u);
        bytes.push_back(static_cast<char>(cipher));
    }
    return bytes;
}
