// The memory of the objects that a drawing has by the million: cells of their size, not blocks of the heap. It is given
// back when the last object of a class is gone. Under AddressSanitizer it is the heap.
#pragma once

#include <cstddef>
#include <new>

#include "platform/FreeCells.h"

template <class T>
class CCells {
public:
    static void* Take(std::size_t size) {
#ifndef EPS_ADDRESS_SANITIZER
        if (size == sizeof(T)) {
            void* cell = s_Cells.Take();
            ++s_nLive;
            return cell;
        }
#endif
        return ::operator new(size);
    }
    static void Give(void* p, [[maybe_unused]] std::size_t size) noexcept {
#ifndef EPS_ADDRESS_SANITIZER
        if (size == sizeof(T)) {
            if (!p) return;
            s_Cells.Give(p);
            if (--s_nLive == 0) s_Cells.Clear();
            return;
        }
#endif
        ::operator delete(p);
    }

private:
#ifndef EPS_ADDRESS_SANITIZER
    static constexpr std::size_t kChunkCells = 512;
    static inline CFreeCells<T, kChunkCells> s_Cells;
    static inline std::size_t s_nLive = 0;
#endif
};
