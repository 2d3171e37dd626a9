// Comparison, logic and bits.
//
// Departure: numbers closer than 1e-6 compare as equal.
// Departure: the bit operators take reals, which they truncate.
#include "operators/RelationalOperators.h"

#include <cmath>
#include <cstdlib>
#include <functional>

#include "interp/Operands.h"

namespace {

/// 0 within the tolerance, else 1 when a is greater and -1 when not. A not-a-number is less than anything.
int CompareNumbers(double a, double b) {
    if (std::fabs(a - b) < NUMBER_TOLERANCE) return 0;
    return a > b ? 1 : -1;
}

/// The order of the bytes as values from 0 to 255; of two strings that agree as far as both reach the longer
/// one is greater.
int CompareStrings(const CStringElement& a, const CStringElement& b) {
    const int order = a.Bytes().compare(b.Bytes());
    return order > 0 ? 1 : order < 0 ? -1 : 0;
}

// any1 any2  eq ne  bool                     STACKUNDERFLOW
template <bool Expected>
int OpEqual(CFilterEPS& m) {
    Operands in(m);
    const CElement* b = in.Any(0);
    const CElement* a = in.Any(1);
    if (!in) return -1;
    const bool equal = b->IsEqual(a);
    m.Drop(2);
    m.PushBool(equal == Expected);
    return 1;
}

// bool  not  bool                            STACKUNDERFLOW TYPECHECK
// num  not  int
int OpNot(CFilterEPS& m) {
    Operands in(m);
    CElement* a = in.OneOf(0, {ET_NUMBER, ET_BOOL});
    if (!in) return -1;
    if (auto* number = As<CNumberElement>(a)) {
        number->SetInt(~number->GetInt());
        return 1;
    }
    const bool value = in.Bool(0);
    m.Drop(1);
    m.PushBool(!value);
    return 1;
}

// bool1 bool2  and or xor  bool              STACKUNDERFLOW TYPECHECK
// num1 num2  and or xor  int
template <class Function>
int OpBitwise(CFilterEPS& m) {
    Operands in(m);
    const CElement* b = in.OneOf(0, {ET_BOOL, ET_NUMBER});
    const CElement* a = in.OneOf(1, {ET_BOOL, ET_NUMBER});
    in.Require(a && b && a->m_nType == b->m_nType, PSERR_TYPECHECK);
    if (!in) return -1;
    if (a->m_nType == ET_BOOL) {
        const bool result = Function{}(in.Bool(1), in.Bool(0)) != 0;
        m.Drop(2);
        m.PushBool(result);
    } else {
        const std::int32_t result = Function{}(in.Int(1), in.Int(0));
        m.Drop(2);
        m.PushInt(result);
    }
    return 1;
}

// Place 6 of the chain.
constexpr OpRow kCoreRows[] = {
    {"eq", OpEqual<true>},
    {"ne", OpEqual<false>},
    {"not", OpNot},
    {"and", OpBitwise<std::bit_and<>>},
    {"or", OpBitwise<std::bit_or<>>},
};

// num1 num2  ge gt le lt  bool               STACKUNDERFLOW TYPECHECK
// string1 string2  ge gt le lt  bool
template <class Accepts>
int OpOrder(CFilterEPS& m) {
    Operands in(m);
    const CElement* b = in.OneOf(0, {ET_NUMBER, ET_STRING});
    const CElement* a = in.OneOf(1, {ET_NUMBER, ET_STRING});
    in.Require(a && b && a->m_nType == b->m_nType, PSERR_TYPECHECK);
    if (!in) return -1;
    const int order = a->m_nType == ET_NUMBER ? CompareNumbers(static_cast<const CNumberElement*>(a)->GetReal(),
                                                               static_cast<const CNumberElement*>(b)->GetReal())
                                              : CompareStrings(static_cast<const CStringElement&>(*a),
                                                               static_cast<const CStringElement&>(*b));
    m.Drop(2);
    m.PushBool(Accepts{}(order, 0));
    return 1;
}

/// Its form for a second number that has not been pushed.
template <class Accepts>
int OnOrder(CFilterEPS& m, double b, bool) {
    const auto* a = As<CNumberElement>(m.m_OperandStack.Top());
    if (!a) return 0;
    const int order = CompareNumbers(a->GetReal(), b);
    m.Drop(1);
    m.PushBool(Accepts{}(order, 0));
    return 1;
}

// -  true  true
int OpTrue(CFilterEPS& m) {
    m.PushBool(true);
    return 1;
}

// -  false  false
int OpFalse(CFilterEPS& m) {
    m.PushBool(false);
    return 1;
}

// num shift  bitshift  int                   STACKUNDERFLOW TYPECHECK
// Departure: the count is taken modulo 32, and a shift to the right copies the sign.
int OpBitshift(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t shift = in.Int(0);
    const std::int32_t value = in.Int(1);
    if (!in) return -1;
    const auto places = static_cast<int>(std::abs(static_cast<std::int64_t>(shift)) % 32);
    m.Drop(2);
    m.PushInt(shift > 0 ? static_cast<std::int32_t>(static_cast<std::uint32_t>(value) << places) : value >> places);
    return 1;
}

// Place 15 of the chain.
constexpr OpRow kRows[] = {
    {"ge", OpOrder<std::greater_equal<>>, OnOrder<std::greater_equal<>>},
    {"gt", OpOrder<std::greater<>>, OnOrder<std::greater<>>},
    {"le", OpOrder<std::less_equal<>>, OnOrder<std::less_equal<>>},
    {"lt", OpOrder<std::less<>>, OnOrder<std::less<>>},
    {"xor", OpBitwise<std::bit_xor<>>},
    {"true", OpTrue},
    {"false", OpFalse},
    {"bitshift", OpBitshift},
};

}  // namespace

constinit const OpTable kRelationalCoreOperators{kCoreRows};
constinit const OpTable kRelationalOperators{kRows};
