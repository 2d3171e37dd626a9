// Open addressing, as the name table and the dictionaries use it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The index of the first slot, from that of the hash on, that is free or holds what is sought. The number of slots is
/// a power of two, and one of them at least is free.
template <class T, class IsSought>
[[nodiscard]] std::size_t ProbeSlots(const std::vector<T*>& slots, std::uint32_t hash, IsSought isSought) {
    const std::size_t mask = slots.size() - 1;
    std::size_t slot = hash & mask;
    while (slots[slot] && !isSought(slots[slot])) slot = (slot + 1) & mask;
    return slot;
}

/// The index of the first free slot from that of the hash on.
template <class T>
[[nodiscard]] std::size_t FreeSlot(const std::vector<T*>& slots, std::uint32_t hash) {
    return ProbeSlots(slots, hash, [](const T*) { return false; });
}
