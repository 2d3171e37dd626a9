// The name table: open addressing over entries that stand, text behind record, in large blocks.
#include "objects/Name.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "objects/Limits.h"
#include "objects/Probing.h"

namespace {

constexpr size_t BLOCK_BYTES = UsualOrTiny<size_t>(64 * 1024, 64);
constexpr size_t FIRST_SLOTS = UsualOrTiny<size_t>(2048, 2);

/// Cuts the text at its first zero byte and mixes what is left, in one pass.
std::uint32_t CutAndHash(std::string_view& text) {
    std::uint64_t h = 0x9E3779B97F4A7C15u;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\0') {
            text = text.substr(0, i);
            break;
        }
        h = (h ^ static_cast<unsigned char>(text[i])) * 0x100000001B3u;
    }
    h ^= h >> 32;
    return static_cast<std::uint32_t>(h ^ (h >> 15));
}

std::uint32_t BucketHash(std::string_view text) {
    std::uint32_t h = 0;
    for (const char c : text) h = h * 8 + static_cast<std::uint32_t>(static_cast<signed char>(c));
    return h;
}

class NameTable {
public:
    const CName* Intern(std::string_view text) {
        if (m_Slots.empty()) m_Slots.resize(FIRST_SLOTS);
        const std::uint32_t hash = CutAndHash(text);
        const size_t slot =
            ProbeSlots(m_Slots, hash, [&](const CName* name) { return name->m_nHash == hash && name->Text() == text; });
        if (m_Slots[slot]) return m_Slots[slot];
        const CName* name = Make(text, hash);
        m_Slots[slot] = name;
        if (++m_nCount * 2 > m_Slots.size()) Grow();
        return name;
    }

    void Clear() noexcept {
        m_Slots.clear();
        m_Blocks.clear();
        m_nCount = 0;
        m_nLeft = 0;
    }

private:
    void Grow() {
        std::vector<const CName*> old(m_Slots.size() * 2);
        old.swap(m_Slots);
        for (const CName* name : old) {
            if (name) m_Slots[FreeSlot(m_Slots, name->m_nHash)] = name;
        }
    }

    const CName* Make(std::string_view text, std::uint32_t hash) {
        constexpr size_t align = alignof(CName);
        const size_t bytes = (sizeof(CName) + text.size() + 1 + align - 1) / align * align;
        if (bytes > m_nLeft) {
            const size_t block = bytes > BLOCK_BYTES ? bytes : BLOCK_BYTES;
            m_Blocks.push_back(std::make_unique<std::byte[]>(block));
            m_pFree = m_Blocks.back().get();
            m_nLeft = block;
        }
        auto* name = new (m_pFree) CName{};
        m_pFree += bytes;
        m_nLeft -= bytes;
        name->m_nLength = static_cast<std::uint32_t>(text.size());
        name->m_nHash = hash;
        name->m_nBucketHash = BucketHash(text);
        name->m_nNumberClass = ClassifyNumber(text);
        name->m_bValidNumber = name->IsNumber() && NumberFromText(text, name->m_nNumberClass, name->m_fNumber);
        char* copy = reinterpret_cast<char*>(name + 1);
        if (!text.empty()) std::memcpy(copy, text.data(), text.size());
        copy[text.size()] = '\0';
        return name;
    }

    std::vector<const CName*> m_Slots;
    std::vector<std::unique_ptr<std::byte[]>> m_Blocks;
    std::byte* m_pFree = nullptr;
    size_t m_nLeft = 0;
    size_t m_nCount = 0;
};

NameTable g_Names;

}  // namespace

const CName* InternName(std::string_view text) { return g_Names.Intern(text); }

void ClearNames() noexcept { g_Names.Clear(); }
