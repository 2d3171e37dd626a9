// Cells of one size for the objects that a run makes and drops by the million: a dropped object's cell is handed out
// again without going to the heap. What numbers, the other elements, and the sections of the host have in common.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define EPS_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define EPS_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef EPS_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

/// Room for objects of class T, made in chunks of ChunkCells cells that never move and stay until Clear. Under
/// AddressSanitizer a free cell is poisoned, so that a read or write of a dropped object is reported.
template <class T, std::size_t ChunkCells>
class CFreeCells {
public:
    CFreeCells() noexcept = default;
    CFreeCells(const CFreeCells&) = delete;
    CFreeCells& operator=(const CFreeCells&) = delete;
    ~CFreeCells() { Clear(); }

    /// Takes a free cell out; makes a chunk when there is none. The cell holds no object yet.
    [[nodiscard]] void* Take() {
        if (!m_pFirst) Grow();
        Cell* cell = m_pFirst;
        Unpoison(cell);
        m_pFirst = cell->next;
        return cell;
    }
    /// Gives back a cell that was taken; its object is gone.
    void Give(void* room) noexcept {
        auto* cell = static_cast<Cell*>(room);
        cell->next = m_pFirst;
        m_pFirst = cell;
        Poison(cell);
    }
    /// Makes a chunk of free cells. The first of them is taken first.
    void Grow() {
        m_Chunks.push_back(std::make_unique_for_overwrite<Cell[]>(ChunkCells));
        Cell* cells = m_Chunks.back().get();
        for (std::size_t i = ChunkCells; i-- > 0;) Give(&cells[i]);
    }
    [[nodiscard]] bool IsEmpty() const noexcept { return !m_pFirst; }
    /// Frees all chunks, taken cells and all.
    void Clear() noexcept {
        for (const auto& chunk : m_Chunks) {
            for (std::size_t i = 0; i < ChunkCells; ++i) Unpoison(&chunk[i]);
        }
        m_Chunks.clear();
        m_pFirst = nullptr;
    }

private:
    union Cell {
        Cell* next;
        alignas(T) std::byte room[sizeof(T)];
    };

#ifdef EPS_ADDRESS_SANITIZER
    static void Poison(Cell* cell) noexcept { ASAN_POISON_MEMORY_REGION(cell, sizeof(Cell)); }
    static void Unpoison(Cell* cell) noexcept { ASAN_UNPOISON_MEMORY_REGION(cell, sizeof(Cell)); }
#else
    static void Poison(Cell*) noexcept {}
    static void Unpoison(Cell*) noexcept {}
#endif

    Cell* m_pFirst = nullptr;
    std::vector<std::unique_ptr<Cell[]>> m_Chunks;
};
