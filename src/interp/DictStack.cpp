// How the dictionary stack comes by its shapes, and the search that a remembered meaning saves.
#include "interp/DictStack.h"

DictStackShape CDictStack::ShapeWith(const CDictionary& dict) noexcept {
    CDictionaryBody* body = dict.GetBody();
    const DictStackShape known = body ? body->m_Shapes.Find(m_nShape) : 0;
    if (known != 0) return known;
    if (body) body->m_Shapes.Remember(m_nShape, m_nLastShape + 1);
    return ++m_nLastShape;
}

namespace {

/// Counts the dictionaries that it looks into.
const CDictNode* SearchFrom(const CElement* top, const CName* name, std::int64_t& looked) {
    for (const CElement* e = top; e; e = e->m_pPrev) {
        ++looked;
        if (const CDictNode* node = static_cast<const CDictionary*>(e)->Find(name)) return node;
    }
    return nullptr;
}

}  // namespace

// No work: builds with assertions search at each execution.
const CDictNode* CDictStack::Search(const CName* name) const {
    std::int64_t looked = 0;
    return SearchFrom(Top(), name, looked);
}

const CDictNode* CDictStack::SearchAndRemember(const CName* name) const {
    std::int64_t looked = 0;
    const CDictNode* node = SearchFrom(Top(), name, looked);
    CountWork(looked);
    if (node) name->RememberMeaning(m_nShape, node);
    return node;
}
