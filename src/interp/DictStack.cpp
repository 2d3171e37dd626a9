// How the dictionary stack comes by its shapes, and the search that a remembered meaning saves.
#include "interp/DictStack.h"

DictStackShape CDictStack::ShapeWith(const CDictionary& dict) noexcept {
    CDictionaryBody* body = dict.GetBody();
    const DictStackShape known = body ? body->m_Shapes.Find(m_nShape) : 0;
    if (known != 0) return known;
    if (body) body->m_Shapes.Remember(m_nShape, m_nLastShape + 1);
    return ++m_nLastShape;
}

const CDictNode* CDictStack::Search(const CName* name) const {
    for (const CElement* e = Top(); e; e = e->m_pPrev) {
        CountWork(1);
        if (const CDictNode* node = static_cast<const CDictionary*>(e)->Find(name)) return node;
    }
    return nullptr;
}

const CDictNode* CDictStack::SearchAndRemember(const CName* name) const {
    const CDictNode* node = Search(name);
    if (node) name->RememberMeaning(m_nShape, node);
    return node;
}
