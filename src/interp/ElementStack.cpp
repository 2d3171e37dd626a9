// The walks and splices of the element stack.
#include "interp/ElementStack.h"

CElement* CElementStack::AtFromBottom(int i) const noexcept {
    if (i > m_nTop) return nullptr;
    CountWork(i);
    CElement* p = m_pHead;
    for (; i > 0; --i) p = p->m_pNext;
    return p;
}

int CElementStack::CountToMark() const noexcept {
    int count = 0;
    const CElement* e = m_pTail;
    for (; e; e = e->m_pPrev, ++count) {
        if (e->m_nType == ET_MARK) break;
    }
    CountWork(count);
    return e ? count : -1;
}

void CElementStack::InsertAt(int i, ElementPtr e) noexcept {
    CElement* above = AtFromTop(i);
    if (!above || !e) return;
    CElement* p = e.release();
    Link(*p);
    p->m_pNext = above;
    p->m_pPrev = above->m_pPrev;
    (p->m_pPrev ? p->m_pPrev->m_pNext : m_pHead) = p;
    above->m_pPrev = p;
    ++m_nTop;
}

ElementPtr CElementStack::RemoveAt(int i) noexcept {
    CElement* p = AtFromTop(i);
    if (!p) return nullptr;
    (p->m_pPrev ? p->m_pPrev->m_pNext : m_pHead) = p->m_pNext;
    (p->m_pNext ? p->m_pNext->m_pPrev : m_pTail) = p->m_pPrev;
    p->m_pNext = nullptr;
    p->m_pPrev = nullptr;
    --m_nTop;
    return Unlinked(p);
}

void CElementStack::Clear() noexcept {
    CountWork(GetCount());
    while (CElement* p = m_pHead) {
        m_pHead = p->m_pNext;
        p->m_pNext = nullptr;
        p->m_pPrev = nullptr;
        Unlinked(p).reset();
    }
    m_pTail = nullptr;
    m_nTop = -1;
}

void CElementStack::Roll(int count, int times) noexcept {
    if (count < 2 || count > GetCount()) return;
    int shift = times % count;
    if (shift < 0) shift += count;
    if (shift == 0) return;
    CountWork(count);
    // The group is one run of the list: [first ... last][moved ... top] becomes [moved ... top][first ... last].
    CElement* const top = m_pTail;
    CElement* const moved = AtFromTop(shift - 1);
    CElement* const last = moved->m_pPrev;
    CElement* first = last;
    for (int i = count - shift; i > 1; --i) first = first->m_pPrev;
    CElement* const below = first->m_pPrev;

    (below ? below->m_pNext : m_pHead) = moved;
    moved->m_pPrev = below;
    top->m_pNext = first;
    first->m_pPrev = top;
    last->m_pNext = nullptr;
    m_pTail = last;
}
