// Graphics state objects.
#include "graphics/GStateElement.h"

std::unique_ptr<CGraphState> CGStateElement::NewCopy(const CGraphState* source) {
    auto copy = std::make_unique<CGraphState>();
    copy->CopyFrom(source);
    return copy;
}

bool CGStateElement::IsGlobal() const {
    const CGraphState* body = GetBody();
    return body && body->m_bGlobal;
}

bool CGStateElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CGStateElement>(pOther);
    return other && m_Body.SameBody(other->m_Body);
}

ElementPtr CGStateElement::Clone() const {
    auto copy = MakeElement<CGStateElement>();
    copy->m_Body = m_Body;
    return WithAttributes(std::move(copy));
}
