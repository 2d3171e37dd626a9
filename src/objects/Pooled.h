// Free lists for the small objects that a run makes and drops by the million: a dropped object's room is
// handed out again without going to the heap.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define EPS_PLAIN_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define EPS_PLAIN_HEAP 1
#endif
#endif

/// Base for a class T whose objects come from a free list of their own. Under AddressSanitizer the plain heap
/// is used instead, so that a use after free is still seen. When the last object is gone, so is the memory.
template <class T>
class CPooled {
public:
#ifndef EPS_PLAIN_HEAP
    static void* operator new(size_t size) {
        if (size != sizeof(T)) return ::operator new(size);
        if (!s_pFree) Refill();
        Cell* cell = s_pFree;
        s_pFree = cell->next;
        ++s_nLive;
        return cell;
    }
    static void operator delete(void* p, size_t size) noexcept {
        if (!p) return;
        if (size != sizeof(T)) return ::operator delete(p);
        auto* cell = static_cast<Cell*>(p);
        cell->next = s_pFree;
        s_pFree = cell;
        if (--s_nLive == 0) {
            s_pFree = nullptr;
            s_Chunks.clear();
        }
    }

private:
    union Cell {
        Cell* next;
        alignas(std::max_align_t) std::byte room[1];
    };
    static constexpr size_t CHUNK_OBJECTS = 128;

    static void Refill() {
        constexpr size_t align = alignof(std::max_align_t);
        constexpr size_t stride = (sizeof(T) + align - 1) / align * align;
        s_Chunks.reserve(s_Chunks.size() + 1);
        s_Chunks.emplace_back(new std::byte[stride * CHUNK_OBJECTS]);
        std::byte* room = s_Chunks.back().get();
        for (size_t i = CHUNK_OBJECTS; i-- > 0;) {
            auto* cell = reinterpret_cast<Cell*>(room + i * stride);
            cell->next = s_pFree;
            s_pFree = cell;
        }
    }

    static inline Cell* s_pFree = nullptr;
    static inline size_t s_nLive = 0;
    static inline std::vector<std::unique_ptr<std::byte[]>> s_Chunks;
#endif
};
