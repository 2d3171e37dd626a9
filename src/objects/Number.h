// Numbers, and the process-wide pool that they come from in constant time, however many are alive.
#pragma once

#include "objects/Element.h"
#include "objects/Limits.h"

/// Numbers closer to each other than this are equal: to `eq` and its relatives, and as keys of dictionaries.
inline constexpr double NUMBER_TOLERANCE = 1e-6;

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
    [[nodiscard]] std::int32_t GetInt() const noexcept;
    /// The same with 64 bits.
    [[nodiscard]] std::int64_t GetInt64() const noexcept;
    [[nodiscard]] double GetReal() const noexcept { return m_fValue; }
    [[nodiscard]] bool IsReal() const noexcept { return m_nNumKind == 1; }

    /// Makes the element that AllocNumberElement gave the caller's.
    void MarkInUse() noexcept;
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

/// Truncates a double towards zero to 32 bits by the rule of CNumberElement::GetInt.
[[nodiscard]] std::int32_t TruncateToInt(double value) noexcept;

/// Cells that the pool starts with and grows by.
inline constexpr std::int32_t NUMBER_POOL_STEP = UsualOrTiny(1000, 1);

/// Cells in the pool.
extern std::int32_t g_nNumberPoolSize;

/// Builds the pool with NUMBER_POOL_STEP cells.
void CreateNumberPool();
/// Destroys every cell, in use or not, and sets the size back.
void DestroyNumberPool() noexcept;

/// A new number. It stays free until MarkInUse: the next call before gives the same one again. The pool grows when no
/// cell is free; numbers never move.
[[nodiscard]] CNumberElement* AllocNumberElement();

/// A new integer or real, in use and owned by the caller.
[[nodiscard]] TypedPtr<CNumberElement> NewInt(std::int32_t n);
[[nodiscard]] TypedPtr<CNumberElement> NewReal(double f);
