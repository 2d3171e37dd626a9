#include "complete/text/SfntFace.h"

#include <algorithm>
#include <cstddef>

#include "complete/text/CodeMap.h"
#include "complete/text/FreeTypeFace.h"

namespace text {

namespace {

using Tables = std::map<std::string, std::string>;  // by tag

constexpr std::size_t HEAD_BYTES = 12;
constexpr std::size_t ENTRY_BYTES = 16;

std::size_t NumberAt(std::string_view data, std::size_t at, std::size_t bytes) {
    return at + bytes <= data.size() ? CodeMap::NumberOf(data.substr(at, bytes)) : 0;
}

void Append(std::string& data, std::size_t value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) data.push_back(static_cast<char>(value >> shift & 255));
}

/// Sets a number of 16 bits in a table that reaches so far.
void SetNumber(std::string& table, std::size_t at, std::size_t value) {
    if (at + 2 > table.size()) return;
    table[at] = static_cast<char>(value >> 8 & 255);
    table[at + 1] = static_cast<char>(value & 255);
}

/// What lies outside of the data is no table, nor are those that come to more than any font has.
Tables TablesOf(std::string_view sfnt) {
    Tables tables;
    const std::size_t count = NumberAt(sfnt, 4, 2);
    std::size_t room = FreeTypeFace::MAX_BYTES;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = HEAD_BYTES + i * ENTRY_BYTES;
        if (entry + ENTRY_BYTES > sfnt.size()) break;
        const std::size_t start = NumberAt(sfnt, entry + 8, 4);
        const std::size_t size = NumberAt(sfnt, entry + 12, 4);
        if (start > sfnt.size() || size > sfnt.size() - start || size > room) continue;
        room -= size;
        tables.emplace(sfnt.substr(entry, 4), sfnt.substr(start, size));
    }
    return tables;
}

std::string SfntOf(std::string_view version, const Tables& tables) {
    std::string head(version);
    Append(head, tables.size(), 2);
    head.resize(HEAD_BYTES);
    std::string body;
    for (const auto& [tag, data] : tables) {
        head += tag;
        Append(head, 0, 4);
        Append(head, HEAD_BYTES + tables.size() * ENTRY_BYTES + body.size(), 4);
        Append(head, data.size(), 4);
        body += data;
        body.resize((body.size() + 3) / 4 * 4);
    }
    return head + body;
}

}  // namespace

std::unique_ptr<FontFace> MakeSfntFace(std::string bytes) {
    // TrueType outlines only, no collections and no compressed containers.
    constexpr std::string_view versions[] = {std::string_view("\0\1\0\0", 4), std::string_view("\0\2\0\0", 4), "true"};
    for (const std::string_view version : versions) {
        if (bytes.starts_with(version))
            return FreeTypeFace::OpenBytes(std::move(bytes), FreeTypeFace::Driver::TrueType, 0, 1);
    }
    return nullptr;
}

std::string JoinSfntStrings(std::span<const std::string_view> strings) {
    std::string bytes;
    for (const std::string_view string : strings) bytes.append(string.substr(0, string.size() / 2 * 2));
    return bytes;
}

std::string WithGlyphs(std::string_view sfnt, const GlyphDescriptions& descriptions) {
    constexpr std::int32_t most = 0xFFFF;
    constexpr std::size_t places = 50, glyphCount = 4, metricCount = 34;  // numbers in head, maxp and hhea
    Tables tables = TablesOf(sfnt);
    const auto metricBytes = static_cast<std::size_t>(std::clamp<std::int64_t>(descriptions.metricsCount, 0, 4)) * 2;
    std::string glyphs, starts, metrics;
    std::int32_t count = 0;
    for (const auto& [index, description] : descriptions.glyphs) {
        if (index < count || index >= most || description.size() < metricBytes) continue;
        if (glyphs.size() + description.size() > FreeTypeFace::MAX_BYTES) return {};
        for (; count < index; ++count) {  // nothing
            Append(starts, glyphs.size(), 4);
            Append(metrics, 0, 4);
        }
        Append(starts, glyphs.size(), 4);
        if (metricBytes >= 4) metrics += description.substr(metricBytes - 4, 4);
        glyphs += description.substr(metricBytes);
        glyphs.resize((glyphs.size() + 3) / 4 * 4);
        ++count;
    }
    Append(starts, glyphs.size(), 4);
    SetNumber(tables["head"], places, 1);  // of 32 bits
    SetNumber(tables["maxp"], glyphCount, static_cast<std::size_t>(count));
    if (metricBytes >= 4) {
        SetNumber(tables["hhea"], metricCount, static_cast<std::size_t>(count));
        tables["hmtx"] = std::move(metrics);
    }
    tables["glyf"] = std::move(glyphs);
    tables["loca"] = std::move(starts);
    return SfntOf(sfnt.substr(0, 4), tables);
}

}  // namespace text
