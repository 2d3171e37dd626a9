// Numbers, and the process-wide pool that they come from in constant time, however many are alive. What runs for each
// number of a program is inline.
#pragma once

#include <limits>
#include <new>

#include "objects/Element.h"
#include "objects/Limits.h"
#include "platform/FreeCells.h"

/// Numbers closer to each other than this are equal: to `eq` and its relatives, and as keys of dictionaries.
inline constexpr double NUMBER_TOLERANCE = 1e-6;

/// Truncates a double towards zero; the lowest value of Int for what it can't hold and for a not-a-number.
template <class Int>
[[nodiscard]] constexpr Int Truncate(double value) noexcept {
    constexpr double limit = -static_cast<double>(std::numeric_limits<Int>::min());
    if (!(value > -limit - 1.0 && value < limit)) return std::numeric_limits<Int>::min();
    return static_cast<Int>(value);
}
[[nodiscard]] constexpr std::int32_t TruncateToInt(double value) noexcept { return Truncate<std::int32_t>(value); }

/// An integer or a real. Both are held as a double, told apart by m_nNumKind.
class CNumberElement final : public CElement {
public:
    static bool IsType(int type) noexcept { return type == ET_NUMBER; }

    [[nodiscard]] bool IsGlobal() const override { return true; }
    /// Departure: numbers within NUMBER_TOLERANCE of each other are equal, whatever their kinds.
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    void SetInt(std::int32_t n) noexcept { Set(0, n); }
    void SetInt64(std::int64_t n) noexcept { Set(0, static_cast<double>(n)); }
    void SetReal(double f) noexcept { Set(1, f); }
    /// Truncated towards zero to 32 bits; -2147483648 for what 32 bits can't hold and for a not-a-number.
    [[nodiscard]] std::int32_t GetInt() const noexcept { return TruncateToInt(m_fValue); }
    /// The same with 64 bits.
    [[nodiscard]] std::int64_t GetInt64() const noexcept { return Truncate<std::int64_t>(m_fValue); }
    [[nodiscard]] double GetReal() const noexcept { return m_fValue; }
    [[nodiscard]] bool IsReal() const noexcept { return m_nNumKind == 1; }

    /// Makes the element that AllocNumberElement gave the caller's.
    inline void MarkInUse() noexcept;
    /// Gives the element back to the pool. It is gone.
    void MarkFree() noexcept;

    std::int32_t m_nNumKind = 0;  ///< 0 integer, 1 real
    bool m_bInUse = false;
    double m_fValue = 0.0;

    CNumberElement() noexcept : CElement(ET_NUMBER) {}

private:
    void Set(std::int32_t kind, double value) noexcept {
        m_nNumKind = kind;
        m_fValue = value;
    }
};

/// Cells that the pool starts with and grows by.
inline constexpr std::int32_t NUMBER_POOL_STEP = UsualOrTiny(1000, 1);

/// Cells in the pool.
extern std::int32_t g_nNumberPoolSize;

/// Builds the pool with NUMBER_POOL_STEP cells.
void CreateNumberPool();
/// Destroys every cell, in use or not, and sets the size back.
void DestroyNumberPool() noexcept;

/// The pool: its cells, and the number that AllocNumberElement answers until somebody marks it.
extern CFreeCells<CNumberElement, NUMBER_POOL_STEP> g_NumberCells;
extern CNumberElement* g_pOfferedNumber;

/// A new number. It stays free until MarkInUse: the next call before gives the same one again. The pool grows when no
/// cell is free; numbers never move.
[[nodiscard]] CNumberElement* AllocNumberElement();

/// Makes the pool larger.
[[gnu::cold]] void GrowNumberPool();

inline void CNumberElement::MarkInUse() noexcept {
    assert(this == g_pOfferedNumber);
    g_pOfferedNumber = nullptr;
    m_bInUse = true;
}

inline void CNumberElement::MarkFree() noexcept {
    assert(m_bInUse);
    this->~CNumberElement();
    g_NumberCells.Give(this);
}

/// A new number that is in use and the caller's.
[[nodiscard]] inline TypedPtr<CNumberElement> NewNumber(double value, bool isReal) {
    if (g_NumberCells.IsEmpty()) GrowNumberPool();
    auto* number = new (g_NumberCells.Take()) CNumberElement;
    number->m_nNumKind = isReal ? 1 : 0;
    number->m_fValue = value;
    number->m_bInUse = true;
    return TypedPtr<CNumberElement>(number);
}

/// Drops an element: what FreeElement does, for a number without the call.
inline void DropElement(ElementPtr e) noexcept {
    if (e && e->m_nType == ET_NUMBER) static_cast<CNumberElement*>(e.release())->MarkFree();
}

/// The copy of any object: what Clone answers, for a number without the call.
[[nodiscard]] inline ElementPtr CopyOf(const CElement& e) {
    if (e.m_nType != ET_NUMBER) return e.Clone();
    const auto& number = static_cast<const CNumberElement&>(e);
    TypedPtr<CNumberElement> copy = NewNumber(number.GetReal(), number.IsReal());
    copy->m_bExec = e.m_bExec;
    copy->m_nAccess = e.m_nAccess;
    return copy;
}

/// A new integer or real, in use and owned by the caller.
[[nodiscard]] inline TypedPtr<CNumberElement> NewInt(std::int32_t n) { return NewNumber(n, false); }
[[nodiscard]] inline TypedPtr<CNumberElement> NewReal(double f) { return NewNumber(f, true); }
