// The number pool, and the arithmetic of a number's value.
#include "objects/Number.h"

#include <cassert>
#include <cmath>
#include <limits>
#include <new>

#include "objects/FreeCells.h"

std::int32_t g_nNumberPoolSize = NUMBER_POOL_STEP;

namespace {

CFreeCells<CNumberElement, NUMBER_POOL_STEP> g_Cells;
CNumberElement* g_pOffered = nullptr;  // what AllocNumberElement answers until somebody marks it

template <class Int>
Int Truncate(double value) noexcept {
    constexpr double limit = -static_cast<double>(std::numeric_limits<Int>::min());
    if (!(value > -limit - 1.0 && value < limit)) return std::numeric_limits<Int>::min();
    return static_cast<Int>(value);
}

}  // namespace

void CreateNumberPool() {
    DestroyNumberPool();
    g_Cells.Grow();
}

void DestroyNumberPool() noexcept {
    g_pOffered = nullptr;
    g_Cells.Clear();
    g_nNumberPoolSize = NUMBER_POOL_STEP;
}

CNumberElement* AllocNumberElement() {
    if (g_pOffered) return g_pOffered;
    if (g_Cells.IsEmpty()) {
        g_Cells.Grow();
        g_nNumberPoolSize += NUMBER_POOL_STEP;
    }
    g_pOffered = new (g_Cells.Take()) CNumberElement;
    return g_pOffered;
}

TypedPtr<CNumberElement> NewInt(std::int32_t n) {
    CNumberElement* number = AllocNumberElement();
    number->SetInt(n);
    number->MarkInUse();
    return TypedPtr<CNumberElement>(number);
}

TypedPtr<CNumberElement> NewReal(double f) {
    CNumberElement* number = AllocNumberElement();
    number->SetReal(f);
    number->MarkInUse();
    return TypedPtr<CNumberElement>(number);
}

void CNumberElement::MarkInUse() noexcept {
    assert(this == g_pOffered);
    g_pOffered = nullptr;
    m_bInUse = true;
}

void CNumberElement::MarkFree() noexcept {
    assert(m_bInUse);
    this->~CNumberElement();
    g_Cells.Give(this);
}

std::int32_t TruncateToInt(double value) noexcept { return Truncate<std::int32_t>(value); }

std::int32_t CNumberElement::GetInt() const noexcept { return TruncateToInt(m_fValue); }

std::int64_t CNumberElement::GetInt64() const noexcept { return Truncate<std::int64_t>(m_fValue); }

bool CNumberElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CNumberElement>(pOther);
    return other && std::fabs(m_fValue - other->m_fValue) < NUMBER_TOLERANCE;
}

ElementPtr CNumberElement::Clone() const {
    TypedPtr<CNumberElement> copy = m_nNumKind == 1 ? NewReal(m_fValue) : NewInt(0);
    copy->m_fValue = m_fValue;
    return WithAttributes(std::move(copy));
}
