// All numbers of the binary data have their highest byte first.
#include "complete/text/CidType0.h"

#include <utility>

namespace text {

namespace {

constexpr std::int64_t MAX_NUMBER_BYTES = 4;

/// Bytes of the data; nothing when some of them lie outside.
std::optional<std::string_view> Slice(std::string_view data, std::int64_t from, std::int64_t count) noexcept {
    const auto size = static_cast<std::int64_t>(data.size());
    if (from < 0 || count < 0 || from > size || count > size - from) return std::nullopt;
    return data.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(count));
}

std::int64_t NumberOf(std::string_view bytes) noexcept {
    std::int64_t number = 0;
    for (const char byte : bytes) number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

/// What lies between the offsets at the ends of two entries of a map, one behind the other: the entry of an index
/// begins at `map + index * entryBytes` and ends with an offset of offsetBytes; others may stand in front of it.
struct Entry {
    std::int64_t prefix = 0;
    std::string_view bytes;
};

std::optional<Entry> FindEntry(std::string_view data, std::int64_t map, std::int64_t index, std::int64_t prefixBytes,
                               std::int64_t offsetBytes) noexcept {
    if (prefixBytes < 0 || prefixBytes > MAX_NUMBER_BYTES || offsetBytes < 1 || offsetBytes > MAX_NUMBER_BYTES)
        return std::nullopt;
    const std::int64_t entryBytes = prefixBytes + offsetBytes;
    const auto size = static_cast<std::int64_t>(data.size());
    if (map < 0 || map > size || index < 0 || index >= (size - map) / entryBytes) return std::nullopt;
    const auto both = Slice(data, map + index * entryBytes, 2 * entryBytes);
    if (!both) return std::nullopt;
    const auto at = [&both](std::int64_t from, std::int64_t count) {
        return NumberOf(both->substr(static_cast<std::size_t>(from), static_cast<std::size_t>(count)));
    };
    const std::int64_t begin = at(prefixBytes, offsetBytes);
    const auto bytes = Slice(data, begin, at(entryBytes + prefixBytes, offsetBytes) - begin);
    if (!bytes) return std::nullopt;
    return Entry{at(0, prefixBytes), *bytes};
}

}  // namespace

CidType0Data::CidType0Data(std::string_view data, CidType0Layout layout) noexcept
    : m_Data(data), m_Layout(std::move(layout)) {}

std::optional<CidCharString> CidType0Data::Find(std::int64_t cid) const noexcept {
    if (cid < 0 || cid >= m_Layout.cidCount) return std::nullopt;
    const auto entry = FindEntry(m_Data, m_Layout.cidMapOffset, cid, m_Layout.fdBytes, m_Layout.gdBytes);
    if (!entry || entry->bytes.empty()) return std::nullopt;
    const auto fontDict = static_cast<std::size_t>(entry->prefix);
    if (fontDict >= m_Layout.fontDicts.size()) return std::nullopt;
    return CidCharString{fontDict, entry->bytes};
}

std::optional<std::string_view> CidType0Data::Subr(std::size_t fontDict, std::size_t number) const noexcept {
    if (fontDict >= m_Layout.fontDicts.size()) return std::nullopt;
    const CidType0Layout::FontDict& dict = m_Layout.fontDicts[fontDict];
    if (dict.subrCount < 0 || number >= static_cast<std::size_t>(dict.subrCount)) return std::nullopt;
    const auto entry = FindEntry(m_Data, dict.subrMapOffset, static_cast<std::int64_t>(number), 0, dict.sdBytes);
    return entry ? std::optional(entry->bytes) : std::nullopt;
}

}  // namespace text
