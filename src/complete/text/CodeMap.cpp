// The tables of a CMap: code spaces are looked through, ranges are kept apart from each other as they come.
#include "complete/text/CodeMap.h"

#include <algorithm>
#include <utility>

namespace text {

namespace {

constexpr char CODE_SPACE = 's';
constexpr char RANGE = 'r';
constexpr std::size_t NUMBER_BYTES = 4;
constexpr std::size_t CODE_SPACE_BYTES = 2 + 2 * NUMBER_BYTES;
constexpr std::size_t RANGE_BYTES = 4 + 3 * NUMBER_BYTES;

void AppendNumber(std::string& text, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) text.push_back(static_cast<char>(number >> shift));
}

/// The bytes of a code, with zeros behind.
void AppendPadded(std::string& text, std::string_view code) {
    text.append(code);
    text.append(NUMBER_BYTES - code.size(), '\0');
}

}  // namespace

std::uint32_t CodeMap::NumberOf(std::string_view code) noexcept {
    std::uint32_t number = 0;
    for (const char c : code) number = number << 8 | static_cast<unsigned char>(c);
    return number;
}

std::string CodeMap::EncodeCodeSpace(std::string_view low, std::string_view high) {
    std::string text;
    text.push_back(CODE_SPACE);
    text.push_back(static_cast<char>(low.size()));
    AppendPadded(text, low);
    AppendPadded(text, high);
    return text;
}

std::string CodeMap::Encode(const Range& range) {
    std::string text;
    text.push_back(RANGE);
    for (const auto byte : {static_cast<std::uint8_t>(range.target), range.bytes, range.font}) {
        text.push_back(static_cast<char>(byte));
    }
    AppendNumber(text, range.low);
    AppendNumber(text, range.high);
    AppendNumber(text, range.value);
    return text;
}

CodeMap CodeMap::Decode(std::string_view text) {
    CodeMap map;
    while (!text.empty()) {
        if (text[0] == CODE_SPACE && text.size() >= CODE_SPACE_BYTES) {
            const auto bytes = std::min<std::size_t>(static_cast<unsigned char>(text[1]), MAX_CODE_BYTES);
            map.AddCodeSpace(text.substr(2, bytes), text.substr(2 + NUMBER_BYTES, bytes));
            text.remove_prefix(CODE_SPACE_BYTES);
        } else if (text[0] == RANGE && text.size() >= RANGE_BYTES) {
            Range range;
            range.target = static_cast<Target>(text[1] & 3);
            range.bytes = static_cast<std::uint8_t>(text[2]);
            range.font = static_cast<std::uint8_t>(text[3]);
            range.low = NumberOf(text.substr(4, NUMBER_BYTES));
            range.high = NumberOf(text.substr(8, NUMBER_BYTES));
            range.value = NumberOf(text.substr(12, NUMBER_BYTES));
            map.Add(range);
            text.remove_prefix(RANGE_BYTES);
        } else {
            break;
        }
    }
    return map;
}

void CodeMap::AddCodeSpace(std::string_view low, std::string_view high) {
    if (low.size() != high.size() || low.empty() || low.size() > MAX_CODE_BYTES) return;
    m_CodeSpaces.push_back({std::string(low), std::string(high)});
}

void CodeMap::Add(const Range& range) {
    if (range.bytes < 1 || range.bytes > MAX_CODE_BYTES || range.low > range.high) return;
    Insert(range.target == Target::NotDef ? m_NotDefs[range.bytes] : m_Ranges[range.bytes], range);
}

void CodeMap::Insert(Ranges& ranges, Range range) {
    const auto behind = [](Range r, std::uint32_t first) {
        if (r.target != Target::NotDef) r.value += first - r.low;
        r.low = first;
        return r;
    };
    auto at = ranges.upper_bound(range.low);
    if (at != ranges.begin() && std::prev(at)->second.high >= range.low) --at;
    while (at != ranges.end() && at->second.low <= range.high) {
        const Range old = at->second;
        at = ranges.erase(at);
        if (old.low < range.low) {
            Range front = old;
            front.high = range.low - 1;
            ranges.emplace(front.low, front);
        }
        if (old.high > range.high) ranges.emplace(range.high + 1, behind(old, range.high + 1));
    }
    ranges.emplace(range.low, range);
}

const CodeMap::Range* CodeMap::Find(const Ranges& ranges, std::uint32_t code) {
    auto at = ranges.upper_bound(code);
    if (at == ranges.begin()) return nullptr;
    --at;
    return at->second.high >= code ? &at->second : nullptr;
}

std::size_t CodeMap::LengthOf(std::string_view text) const {
    // A code of no space is as long as the shortest space that begins like it, else as the shortest of all.
    std::size_t shortest = MAX_CODE_BYTES + 1;
    std::size_t partial = MAX_CODE_BYTES + 1;
    for (const CodeSpace& space : m_CodeSpaces) {
        std::size_t same = 0;
        const auto byte = [&same](const std::string_view& bytes) { return static_cast<unsigned char>(bytes[same]); };
        const std::size_t length = space.low.size();
        while (same < length && same < text.size() && byte(space.low) <= byte(text) && byte(text) <= byte(space.high)) {
            ++same;
        }
        if (same == length) return same;
        if (same > 0) partial = std::min(partial, length);
        shortest = std::min(shortest, length);
    }
    const std::size_t length = partial <= MAX_CODE_BYTES ? partial : shortest;
    return length <= MAX_CODE_BYTES ? std::min(length, text.size()) : 1;
}

CodeMap::Mapping CodeMap::Map(std::string_view text) const {
    Mapping mapping;
    mapping.bytes = LengthOf(text);
    mapping.code = NumberOf(text.substr(0, mapping.bytes));
    const Range* range = Find(m_Ranges[mapping.bytes], mapping.code);
    const Range* found = range ? range : Find(m_NotDefs[mapping.bytes], mapping.code);
    if (!found) return mapping;
    mapping.font = found->font;
    mapping.target = found->target;
    mapping.value = found->value + (range ? mapping.code - found->low : 0);
    return mapping;
}

}  // namespace text
