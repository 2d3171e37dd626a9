// The number pool: cells in chunks that never move, the free ones chained through their stack links.
#include "objects/Number.h"

#include <cassert>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

std::int32_t g_nNumberPoolSize = NUMBER_POOL_STEP;

namespace {

std::vector<std::unique_ptr<CNumberElement[]>> g_Chunks;
CNumberElement* g_pFirstFree = nullptr;

void AddChunk() {
    g_Chunks.reserve(g_Chunks.size() + 1);
    g_Chunks.push_back(std::make_unique<CNumberElement[]>(NUMBER_POOL_STEP));
    CNumberElement* cells = g_Chunks.back().get();
    for (std::int32_t i = NUMBER_POOL_STEP; i-- > 0;) {
        cells[i].m_pNext = g_pFirstFree;
        g_pFirstFree = &cells[i];
    }
}

template <class Int>
Int Truncate(double value) noexcept {
    constexpr double limit = -static_cast<double>(std::numeric_limits<Int>::min());
    if (!(value > -limit - 1.0 && value < limit)) return std::numeric_limits<Int>::min();
    return static_cast<Int>(value);
}

}  // namespace

void CreateNumberPool() {
    DestroyNumberPool();
    AddChunk();
}

void DestroyNumberPool() noexcept {
    g_pFirstFree = nullptr;
    g_Chunks.clear();
    g_nNumberPoolSize = NUMBER_POOL_STEP;
}

CNumberElement* AllocNumberElement() {
    if (!g_pFirstFree) {
        AddChunk();
        g_nNumberPoolSize += NUMBER_POOL_STEP;
    }
    g_pFirstFree->m_bExec = false;
    g_pFirstFree->m_nAccess = ACC_UNLIMITED;
    return g_pFirstFree;
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
    if (m_bInUse) return;
    assert(this == g_pFirstFree);
    g_pFirstFree = static_cast<CNumberElement*>(m_pNext);
    m_pNext = nullptr;
    m_pPrev = nullptr;
    m_bInUse = true;
}

void CNumberElement::MarkFree() noexcept {
    assert(m_bInUse);
    m_bInUse = false;
    m_pPrev = nullptr;
    m_pNext = g_pFirstFree;
    g_pFirstFree = this;
}

std::int32_t TruncateToInt(double value) noexcept { return Truncate<std::int32_t>(value); }

std::int32_t CNumberElement::GetInt() const noexcept { return TruncateToInt(m_fValue); }

std::int64_t CNumberElement::GetInt64() const noexcept { return Truncate<std::int64_t>(m_fValue); }

bool CNumberElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CNumberElement>(pOther);
    return other && std::fabs(m_fValue - other->m_fValue) < 1e-6;
}

ElementPtr CNumberElement::Clone() const {
    TypedPtr<CNumberElement> copy = m_nNumKind == 1 ? NewReal(m_fValue) : NewInt(0);
    copy->m_fValue = m_fValue;
    return WithAttributes(std::move(copy));
}
