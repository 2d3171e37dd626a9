// Copies and comparisons of the simple objects.
#include "objects/SimpleElements.h"

#include "objects/String.h"

bool CBoolElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CBoolElement>(pOther);
    return other && other->m_bValue == m_bValue;
}

ElementPtr CBoolElement::Clone() const { return WithAttributes(MakeElement<CBoolElement>(m_bValue)); }

bool COperatorElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<COperatorElement>(pOther);
    return other && other->m_pName == m_pName;
}

ElementPtr COperatorElement::Clone() const { return WithAttributes(MakeElement<COperatorElement>(m_pName)); }

bool CSimpElement::IsEqual(const CElement* pOther) const {
    if (m_nType == ET_NAME) {
        if (const auto* string = As<CStringElement>(pOther)) return string->KeyText() == m_pName->Text();
    }
    const auto* other = As<CSimpElement>(pOther);
    return other && other->m_nType == m_nType && other->m_pName == m_pName;
}

ElementPtr CSimpElement::Clone() const {
    return WithAttributes(MakeElement<CSimpElement>(m_pName, static_cast<ElementType>(m_nType)));
}

ElementPtr NewMark() { return MakeElement<CSimpElement>("mark", ET_MARK); }

bool CSaveElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CSaveElement>(pOther);
    return other && other->m_nLevel == m_nLevel && other->m_nGStateCount == m_nGStateCount;
}

ElementPtr CSaveElement::Clone() const { return MakeElement<CSaveElement>(m_nLevel, m_nGStateCount); }

bool CNullElement::IsEqual(const CElement* pOther) const { return As<CNullElement>(pOther) != nullptr; }

ElementPtr CNullElement::Clone() const { return MakeElement<CNullElement>(); }
