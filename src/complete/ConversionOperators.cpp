// Reals as texts in the form that printers give them, so that labels that programs make of numbers read as they do on
// paper: 2.0, 0.25, 1e+10.
#include "complete/ConversionOperators.h"

#include <array>
#include <charconv>
#include <string>

#include "interp/Operands.h"
#include "interp/OperatorChain.h"

namespace {

std::string RealText(double value) {
    constexpr int digits = 6;
    std::array<char, 32> buffer{};
    char* const first = buffer.data();
    const auto result = std::to_chars(first, first + buffer.size(), value, std::chars_format::general, digits);
    std::string text(first, result.ptr);
    if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
    return text;
}

/// ... string  cv..  substring                stackunderflow typecheck rangecheck
/// Writes the real that lies so many places below the string; all else is the chain's.
template <int Depth>
int WriteReal(CFilterEPS& m, OperatorFn chain) {
    const CElementStack& stack = m.m_OperandStack;
    const auto* string = As<CStringElement>(stack.Top());
    const auto* number = As<CNumberElement>(stack.AtFromTop(Depth));
    if (!string || !number || !number->IsReal()) return chain(m);
    const std::string text = RealText(number->GetReal());
    if (static_cast<std::int32_t>(text.size()) > string->GetLength()) return m.Fail(PSERR_RANGE);
    TypedPtr<CStringElement> part = string->GetInterval(0, static_cast<std::int32_t>(text.size()));
    part->Write(text);
    m.Drop(Depth + 1);
    m.Push(std::move(part));
    return 1;
}

// any string  cvs  substring                 stackunderflow typecheck rangecheck
int OpCvs(CFilterEPS& m) {
    static const OperatorFn chain = ChainOperator("cvs");
    return WriteReal<1>(m, chain);
}

// num radix string  cvrs  substring          stackunderflow typecheck rangecheck
int OpCvrs(CFilterEPS& m) {
    static const OperatorFn chain = ChainOperator("cvrs");
    constexpr std::int32_t decimal = 10;
    const auto* radix = As<CNumberElement>(m.m_OperandStack.AtFromTop(1));
    return radix && radix->GetInt() == decimal ? WriteReal<2>(m, chain) : chain(m);
}

constexpr OpRow kRows[] = {{"cvs", OpCvs}, {"cvrs", OpCvrs}};

}  // namespace

constinit const OpTable kCompleteConversionOperators{kRows};
