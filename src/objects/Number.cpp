// The ends of the number pool, and what numbers do as objects.
#include "objects/Number.h"

#include <cmath>

std::int32_t g_nNumberPoolSize = NUMBER_POOL_STEP;
CFreeCells<CNumberElement, NUMBER_POOL_STEP> g_NumberCells;
CNumberElement* g_pOfferedNumber = nullptr;

void CreateNumberPool() {
    DestroyNumberPool();
    g_NumberCells.Grow();
}

void DestroyNumberPool() noexcept {
    g_pOfferedNumber = nullptr;
    g_NumberCells.Clear();
    g_nNumberPoolSize = NUMBER_POOL_STEP;
}

CNumberElement* AllocNumberElement() {
    if (g_pOfferedNumber) return g_pOfferedNumber;
    if (g_NumberCells.IsEmpty()) GrowNumberPool();
    g_pOfferedNumber = new (g_NumberCells.Take()) CNumberElement;
    return g_pOfferedNumber;
}

void GrowNumberPool() {
    g_NumberCells.Grow();
    g_nNumberPoolSize += NUMBER_POOL_STEP;
}

void FreeNumber(CElement* number) noexcept { static_cast<CNumberElement*>(number)->MarkFree(); }

bool CNumberElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CNumberElement>(pOther);
    return other && std::fabs(m_fValue - other->m_fValue) < NUMBER_TOLERANCE;
}

ElementPtr CNumberElement::Clone() const { return WithAttributes(NewNumber(m_fValue, IsReal())); }
