// Filter objects over shared bodies.
#include "objects/Filter.h"

#include <string_view>

FilterKind FilterKindOf(std::string_view name) noexcept {
    constexpr std::string_view names[] = {"ASCIIHexDecode", "ASCII85Decode", "RunLengthDecode", "DCTDecode",
                                          "ReusableStreamDecode"};
    for (int kind = 0; kind < 5; ++kind) {
        if (name == names[kind]) return static_cast<FilterKind>(kind);
    }
    return FILTER_NONE;
}

CFilterElement::CFilterElement(FilterKind kind, ElementPtr source, TypedPtr<CDictionary> params)
    : CElement(ET_FILTER),
      m_Body(AdoptBody(std::make_unique<CFilterBody>(kind, std::move(source), std::move(params)))) {}

CElement* CFilterElement::GetSource() const noexcept {
    const CFilterBody* body = GetBody();
    return body ? body->m_pSource.get() : nullptr;
}

FilterKind CFilterElement::GetFilterKind() const noexcept {
    const CFilterBody* body = GetBody();
    return body ? body->m_nFilterKind : FILTER_NONE;
}

bool CFilterElement::IsGlobal() const {
    const CFilterBody* body = GetBody();
    return body && body->m_bGlobal;
}

bool CFilterElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CFilterElement>(pOther);
    return other && m_Body.SameBody(other->m_Body);
}

ElementPtr CFilterElement::Clone() const {
    auto copy = MakeElement<CFilterElement>();
    copy->m_Body = m_Body;
    return WithAttributes(std::move(copy));
}
