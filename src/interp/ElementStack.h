// The one stack container: an intrusive list through the links of the elements, so that pushing allocates nothing
// and an element stands on one stack at most.
#pragma once

#include <cassert>

#include "objects/Element.h"
#include "objects/Work.h"

/// Owns the elements that stand on it. Indices count from 0.
class CElementStack {
public:
    CElementStack() noexcept = default;
    CElementStack(const CElementStack&) = delete;
    CElementStack& operator=(const CElementStack&) = delete;
    ~CElementStack() { Clear(); }

    /// The element becomes the top; null is ignored.
    void Push(ElementPtr e) noexcept {
        CElement* p = e.release();
        if (!p) return;
        Link(*p);
        p->m_pPrev = m_pTail;
        p->m_pNext = nullptr;
        (m_pTail ? m_pTail->m_pNext : m_pHead) = p;
        m_pTail = p;
        ++m_nTop;
    }
    /// Takes the top off; null when empty.
    ElementPtr Pop() noexcept {
        CElement* p = m_pTail;
        if (!p) return nullptr;
        m_pTail = p->m_pPrev;
        (m_pTail ? m_pTail->m_pNext : m_pHead) = nullptr;
        p->m_pPrev = nullptr;
        --m_nTop;
        return Unlinked(p);
    }
    [[nodiscard]] CElement* Top() const noexcept { return m_pTail; }
    [[nodiscard]] CElement* Bottom() const noexcept { return m_pHead; }
    /// The element i places below the top; below 1 the top, beyond the bottom null. The cost grows with i.
    [[nodiscard]] CElement* AtFromTop(int i) const noexcept {
        if (i > m_nTop) return nullptr;
        if (i > SHALLOW) CountWork(i);
        CElement* p = m_pTail;
        for (; i > 0; --i) p = p->m_pPrev;
        return p;
    }
    /// The element i places above the bottom, with the same bounds.
    [[nodiscard]] CElement* AtFromBottom(int i) const noexcept;
    [[nodiscard]] int GetCount() const noexcept { return m_nTop + 1; }
    /// Elements above the topmost mark; -1 without a mark.
    [[nodiscard]] int CountToMark() const noexcept;
    /// Puts e directly below the element at AtFromTop(i). Beyond the bottom nothing happens and e is dropped.
    void InsertAt(int i, ElementPtr e) noexcept;
    /// Takes out the element at AtFromTop(i); null beyond the bottom.
    ElementPtr RemoveAt(int i) noexcept;
    /// Drops all elements, from the bottom up.
    void Clear() noexcept;
    /// Moves the top count elements up by one place, by times times: the top comes to lie below the others for
    /// each time. Linear in count whatever times is; negative times move down. What `roll` does.
    void Roll(int count, int times) noexcept;

private:
    static constexpr int SHALLOW = 32;  ///< elements that are counted as no work

    // Builds with assertions keep the owner of a linked element in it.
#ifdef NDEBUG
    static void Link(CElement&) noexcept {}
    static ElementPtr Unlinked(CElement* p) noexcept { return ElementPtr(p); }
#else
    void Link(CElement& e) const noexcept {
        assert(!e.m_pStack);
        e.m_pStack = this;
    }
    ElementPtr Unlinked(CElement* p) const noexcept {
        assert(p->m_pStack == this);
        p->m_pStack = nullptr;
        return ElementPtr(p);
    }
#endif

public:
    CElement* m_pHead = nullptr;  ///< bottom
    CElement* m_pTail = nullptr;  ///< top
    int m_nTop = -1;              ///< index of the top from the bottom, -1 when empty
};
