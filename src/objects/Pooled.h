// The base of the classes whose objects come from free cells instead of the heap.
#pragma once

#include <cstddef>
#include <new>

#include "objects/Limits.h"
#include "platform/FreeCells.h"

/// Base for a class T whose objects come from free cells of their own. When the last object is gone, so is the memory.
/// Under AddressSanitizer the plain heap is used, which keeps dropped memory out of use for longer than poisoned cells.
template <class T>
class CPooled {
#ifndef EPS_ADDRESS_SANITIZER
public:
    static void* operator new(std::size_t size) {
        if (size != sizeof(T)) return ::operator new(size);
        void* cell = s_Cells.Take();
        ++s_nLive;
        return cell;
    }
    static void operator delete(void* p, std::size_t size) noexcept {
        if (!p) return;
        if (size != sizeof(T)) return ::operator delete(p);
        s_Cells.Give(p);
        if (--s_nLive == 0) s_Cells.Clear();
    }

private:
    static constexpr std::size_t CHUNK_CELLS = UsualOrTiny<std::size_t>(128, 1);

    static inline CFreeCells<T, CHUNK_CELLS> s_Cells;
    static inline std::size_t s_nLive = 0;
#endif
};
