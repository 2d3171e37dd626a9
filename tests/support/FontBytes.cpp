#include "support/FontBytes.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <utility>

#include "support/CharStrings.h"

namespace {

/// Numbers with their highest byte first.
std::string Number(std::int64_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) text.push_back(static_cast<char>(value >> shift & 255));
    return text;
}
std::string U8(std::int64_t value) { return Number(value, 1); }
std::string U16(std::int64_t value) { return Number(value, 2); }
std::string U32(std::int64_t value) { return Number(value, 4); }

struct SfntPoint {
    int x = 0;
    int y = 0;
    bool isOnCurve = true;
};

std::vector<std::vector<SfntPoint>> ParseContours(const std::string& text) {
    std::vector<std::vector<SfntPoint>> contours;
    std::istringstream words(text);
    bool isNew = true;
    for (std::string word; words >> word; isNew = word == "/") {
        if (word == "/") continue;
        if (isNew) contours.emplace_back();
        const std::size_t comma = word.find(',');
        contours.back().push_back({std::stoi(word), std::stoi(word.substr(comma + 1)), !word.ends_with('*')});
    }
    return contours;
}

struct GlyphData {
    std::string bytes;
    int left = 0;
    int points = 0;
    int contours = 0;
};

GlyphData GlyphDataOf(const SfntGlyph& glyph) {
    GlyphData data;
    if (glyph.contours.starts_with('+')) {
        constexpr int argsAreWordsAndOffsets = 3;
        constexpr int moreFollow = 32;
        std::istringstream words(glyph.contours);
        std::string parts;
        int dx = 0;
        int dy = 0;
        for (std::string part; words >> part >> dx >> dy;) {
            const bool isLast = (words >> std::ws).eof();
            parts += U16(argsAreWordsAndOffsets | (isLast ? 0 : moreFollow)) + U16(std::stoi(part)) + U16(dx) + U16(dy);
        }
        data.left = dx;
        data.bytes = U16(-1) + U16(dx) + U16(dy) + U16(dx) + U16(dy) + parts;
        return data;
    }
    const auto contours = ParseContours(glyph.contours);
    if (contours.empty()) return data;
    SfntPoint low{32767, 32767};
    SfntPoint high{-32768, -32768};
    std::string ends;
    std::string flags;
    std::string xs;
    std::string ys;
    SfntPoint last;
    for (const auto& contour : contours) {
        for (const SfntPoint& p : contour) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
            flags += U8(p.isOnCurve ? 1 : 0);
            xs += U16(p.x - last.x);
            ys += U16(p.y - last.y);
            last = p;
            ++data.points;
        }
        ends += U16(data.points - 1);
    }
    data.left = low.x;
    data.contours = static_cast<int>(contours.size());
    data.bytes =
        U16(data.contours) + U16(low.x) + U16(low.y) + U16(high.x) + U16(high.y) + ends + U16(0) + flags + xs + ys;
    return data;
}

std::string NameTable(const std::string& postScriptName) {
    // Family, style, full name, PostScript name, of platform 3 in UTF-16.
    const std::pair<int, std::string> names[] = {
        {1, postScriptName}, {2, "Regular"}, {4, postScriptName}, {6, postScriptName}};
    std::string records;
    std::string texts;
    for (const auto& [id, name] : names) {
        records += U16(3) + U16(1) + U16(0x409) + U16(id) + U16(static_cast<std::int64_t>(2 * name.size())) +
                   U16(static_cast<std::int64_t>(texts.size()));
        for (const char c : name) texts += U16(c);
    }
    return U16(0) + U16(4) + U16(6 + 4 * 12) + records + texts;
}

std::string CharacterMap(const std::vector<SfntGlyph>& glyphs) {
    std::vector<std::pair<char32_t, std::size_t>> characters;
    for (std::size_t i = 0; i < glyphs.size(); ++i)
        if (glyphs[i].unicode != 0) characters.emplace_back(glyphs[i].unicode, i);
    std::sort(characters.begin(), characters.end());
    std::string groups;
    for (const auto& [unicode, glyph] : characters)
        groups += U32(unicode) + U32(unicode) + U32(static_cast<std::int64_t>(glyph));
    const auto size = static_cast<std::int64_t>(groups.size());
    return U16(0) + U16(1) + U16(3) + U16(10) + U32(12) +  // one map, of platform 3 for all of Unicode
           U16(12) + U16(0) + U32(16 + size) + U32(0) + U32(size / 12) + groups;
}

std::string PostTable(const std::vector<SfntGlyph>& glyphs, bool hasGlyphNames) {
    std::string table = U32(hasGlyphNames ? 0x20000 : 0x30000) + std::string(28, '\0');
    if (!hasGlyphNames) return table;
    constexpr int ownNames = 258;
    std::string texts;
    table += U16(static_cast<std::int64_t>(glyphs.size()));
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        table += U16(static_cast<std::int64_t>(ownNames + i));
        texts += U8(static_cast<std::int64_t>(glyphs[i].name.size())) + glyphs[i].name;
    }
    return table + texts;
}

}  // namespace

std::string MakeSfnt(const std::vector<SfntGlyph>& glyphs, const SfntOptions& options) {
    const auto count = static_cast<std::int64_t>(glyphs.size());
    std::string glyf;
    std::string loca;
    std::string hmtx;
    int points = 0;
    int contours = 0;
    for (const SfntGlyph& glyph : glyphs) {
        GlyphData data = GlyphDataOf(glyph);
        data.bytes.resize((data.bytes.size() + 3) / 4 * 4);
        loca += U32(static_cast<std::int64_t>(glyf.size()));
        glyf += data.bytes;
        hmtx += U16(glyph.advance) + U16(data.left);
        points = std::max(points, data.points);
        contours = std::max(contours, data.contours);
    }
    loca += U32(static_cast<std::int64_t>(glyf.size()));
    std::vector<std::pair<std::string, std::string>> tables = {
        {"glyf", glyf},
        {"head", U32(0x10000) + U32(0) + U32(0) + U32(0x5F0F3CF5) + U16(0) + U16(options.unitsPerEm) +
                     std::string(16, '\0') + std::string(8, '\0') + U16(0) + U16(8) + U16(2) + U16(1) + U16(0)},
        {"hhea", U32(0x10000) + U16(800) + U16(-200) + std::string(26, '\0') + U16(count)},
        {"hmtx", hmtx},
        {"loca", loca},
        {"maxp", U32(0x10000) + U16(count) + U16(points) + U16(contours) + U16(points) + U16(contours) + U16(2) +
                     std::string(12, '\0') + U16(1) + U16(1)}};
    if (!options.postScriptName.empty()) {
        tables.emplace_back("cmap", CharacterMap(glyphs));
        tables.emplace_back("name", NameTable(options.postScriptName));
        tables.emplace_back("post", PostTable(glyphs, options.hasGlyphNames));
    }
    std::sort(tables.begin(), tables.end());
    std::string directory = U32(0x10000) + U16(static_cast<std::int64_t>(tables.size())) + std::string(6, '\0');
    std::string data;
    const std::size_t start = directory.size() + 16 * tables.size();
    for (auto& [tag, table] : tables) {
        directory += tag + U32(0) + U32(static_cast<std::int64_t>(start + data.size())) +
                     U32(static_cast<std::int64_t>(table.size()));
        data += table;
        data.resize((data.size() + 3) / 4 * 4);
    }
    return directory + data;
}

namespace {

std::string CffIndex(const std::vector<std::string>& items) {
    if (items.empty()) return U16(0);
    std::string offsets;
    std::string data;
    for (const std::string& item : items) {
        offsets += U16(static_cast<std::int64_t>(1 + data.size()));
        data += item;
    }
    offsets += U16(static_cast<std::int64_t>(1 + data.size()));
    return U16(static_cast<std::int64_t>(items.size())) + U8(2) + offsets + data;
}

/// An operand of a DICT, always of five bytes.
std::string Operand(std::size_t value) { return U8(29) + U32(static_cast<std::int64_t>(value)); }

}  // namespace

std::string MakeCff(const std::vector<CffGlyph>& glyphs, const CffOptions& options) {
    std::vector<std::string> charStrings = {AssembleCharString("250 endchar")};
    std::string charset = U8(0);
    for (const CffGlyph& glyph : glyphs) {
        charset += U16(glyph.sid);
        charStrings.push_back(AssembleCharString(glyph.charString));
    }
    const std::string charStringIndex = CffIndex(charStrings);
    const std::string fdSelect = options.isCidKeyed ? U8(0) + std::string(charStrings.size(), '\0') : std::string();
    // The first pass finds how long the front is, the second has the offsets.
    std::string front;
    std::size_t end = 0;
    for (int pass = 0; pass < 2; ++pass) {
        const std::size_t charsetAt = front.size();
        const std::size_t charStringsAt = charsetAt + charset.size();
        const std::size_t fdSelectAt = charStringsAt + charStringIndex.size();
        const std::size_t fdArrayAt = fdSelectAt + fdSelect.size();
        constexpr std::size_t ownStrings = 391;
        std::string dict;
        if (options.isCidKeyed) dict += Operand(ownStrings) + Operand(ownStrings + 1) + Operand(0) + "\x0c\x1e";
        dict += options.topDict + Operand(charsetAt) + "\x0f" + Operand(charStringsAt) + "\x11";
        if (options.isCidKeyed) dict += Operand(fdArrayAt) + "\x0c\x24" + Operand(fdSelectAt) + "\x0c\x25";
        end = fdArrayAt;
        const std::string fontDict = Operand(0) + Operand(options.isCidKeyed ? end : fdSelectAt) + "\x12";
        if (!options.isCidKeyed) dict += fontDict;
        front = U8(1) + U8(0) + U8(4) + U8(2) + CffIndex({"TestFace"}) + CffIndex({dict}) +
                CffIndex({"Adobe", "Identity"}) + CffIndex({});
    }
    std::string table = front + charset + charStringIndex + fdSelect;
    if (options.isCidKeyed) table += CffIndex({Operand(0) + Operand(0) + "\x12"});
    return table;
}
