// Array elements over shared bodies.
#include "objects/Array.h"

#include "objects/SimpleElements.h"
#include "objects/Work.h"

namespace {

int g_nCopyDepth = 0;
std::int64_t g_nCopiedElements = 0;

std::vector<ElementPtr> Nulls(std::int32_t count) {
    std::vector<ElementPtr> elements;
    if (count > 0) elements.reserve(static_cast<size_t>(count));
    CountWork(count);
    for (std::int32_t i = 0; i < count; ++i) elements.push_back(MakeElement<CNullElement>());
    return elements;
}

}  // namespace

CArrayElement::CArrayElement(std::vector<ElementPtr> elements)
    : CElement(ET_ARRAY), m_Body(AdoptBody(std::make_unique<CArrayBody>(std::move(elements)))), m_bSole(true) {}

CArrayElement::CArrayElement(std::int32_t count) : CArrayElement(Nulls(count)) {}

TypedPtr<CArrayElement> CArrayElement::GetInterval(std::int32_t nStart, std::int32_t nCount) const {
    if (nStart < 0 || nCount < 0 || nStart > GetLength() || nCount > GetLength() - nStart) return nullptr;
    TypedPtr<CArrayElement> view = CloneArray();
    view->m_bView = true;
    view->m_nStart = nStart + (m_bView ? m_nStart : 0);
    view->m_nLength = nCount;
    return view;
}

bool CArrayElement::IsGlobal() const {
    const CArrayBody* body = GetBody();
    return body && body->m_bGlobal;
}

bool CArrayElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CArrayElement>(pOther);
    return other && other->m_nType == m_nType && m_Body.SameBody(other->m_Body);
}

ElementPtr CArrayElement::Clone() const { return CloneArray(); }

ElementPtr CArrayElement::DeepCopy() const {
    if (!GetBody()) return nullptr;
    if (g_nCopyDepth == 0) g_nCopiedElements = 0;
    if (g_nCopyDepth >= MAX_COPY_DEPTH || g_nCopiedElements > MAX_COPIED_ELEMENTS) return Clone();
    struct DepthScope {
        DepthScope() { ++g_nCopyDepth; }
        ~DepthScope() { --g_nCopyDepth; }
    } scope;
    const std::int32_t length = GetLength();
    g_nCopiedElements += length;
    CountWork(length);
    std::vector<ElementPtr> elements;
    elements.reserve(static_cast<size_t>(length));
    for (std::int32_t i = 0; i < length; ++i) {
        const CElement* source = GetAt(i);
        ElementPtr copy = source ? source->DeepCopy() : nullptr;
        if (!copy) copy = source ? source->Clone() : MakeElement<CNullElement>();
        elements.push_back(std::move(copy));
    }
    auto copy = MakeElement<CArrayElement>(std::move(elements));
    if (GetBody()->IsPacked()) copy->GetBody()->Pack();
    return WithAttributes(std::move(copy));
}
