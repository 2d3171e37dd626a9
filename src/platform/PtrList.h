// CPtrList, the list in which the host takes delivery of entities. Header-only, since it crosses the border
// between the host program and the plug-in.
#pragma once

#include <cstddef>
#include <deque>

/// Pointers in the order in which they were added. Owns none of them.
class CPtrList {
public:
    void AddTail(void* p) { m_Items.push_back(p); }
    void RemoveAll() noexcept { m_Items.clear(); }
    [[nodiscard]] std::size_t GetCount() const noexcept { return m_Items.size(); }
    [[nodiscard]] auto begin() const noexcept { return m_Items.begin(); }
    [[nodiscard]] auto end() const noexcept { return m_Items.end(); }

private:
    std::deque<void*> m_Items;
};
