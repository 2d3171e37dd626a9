// Operators on values whose answers are the language's here, and other ones in the plain dialect.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "complete/CheckedOperators.h"
#include "interp/Operands.h"
#include "interp/OperatorChain.h"
#include "operators/TwoNumbers.h"
#include "operators/TypeOperators.h"

namespace {

// num1 num2  add sub mul  result             stackunderflow typecheck
// A result that 32 bits can't hold is a real.
template <class Function>
void Combine(CNumberElement& a, double b, bool isReal) {
    const double result = Function{}(a.GetReal(), b);
    if (a.IsReal() || isReal || !(std::fabs(result) <= std::numeric_limits<std::int32_t>::max())) {
        a.SetReal(result);
    } else {
        a.SetInt(static_cast<std::int32_t>(result));
    }
}

// any  type  name                            stackunderflow
int OpType(CFilterEPS& m) {
    Operands in(m);
    const CElement* any = in.Any(0);
    if (!in) return -1;
    auto name = MakeElement<CSimpElement>(any->m_nType == ET_FONTID ? "fonttype" : TypeName(*any));
    name->m_bExec = true;
    m.Drop(1);
    m.Push(std::move(name));
    return 1;
}

/// A real with up to 6 digits: "0.1", "2.0", "1e-05".
std::string RealText(double value) {
    char buffer[32];
    constexpr int digits = 6;
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits).ptr;
    std::string text(buffer, end);
    if (text.find_first_of(".ein") == std::string::npos) text += ".0";
    return text;
}

/// A real number that is to be written in base 10 as the string on top; null for anything else.
const CNumberElement* RealBelowString(const CFilterEPS& m, int depth) {
    const auto* number = As<CNumberElement>(m.m_OperandStack.AtFromTop(depth));
    return number && number->IsReal() && As<CStringElement>(m.m_OperandStack.Top()) ? number : nullptr;
}

int WriteReal(CFilterEPS& m, double value, int operands) {
    const std::string text = RealText(value);
    const auto& string = static_cast<const CStringElement&>(*m.m_OperandStack.Top());
    if (std::ssize(text) > string.GetLength()) return m.Fail(PSERR_RANGE);
    auto part = string.GetInterval(0, static_cast<std::int32_t>(text.size()));
    part->Write(text);
    m.Drop(operands);
    m.Push(std::move(part));
    return 1;
}

// any string  cvs  substring                 stackunderflow typecheck rangecheck
int OpCvs(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("cvs");
    const CNumberElement* real = RealBelowString(m, 1);
    return real ? WriteReal(m, real->GetReal(), 2) : run(m);
}

// num radix string  cvrs  substring          stackunderflow typecheck rangecheck
int OpCvrs(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("cvrs");
    const CNumberElement* real = RealBelowString(m, 2);
    const auto* radix = As<CNumberElement>(m.m_OperandStack.AtFromTop(1));
    return real && radix && radix->GetInt() == 10 ? WriteReal(m, real->GetReal(), 3) : run(m);
}

// n  string  string                          stackunderflow typecheck rangecheck
int OpString(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("string");
    if (run(m) != 1) return -1;
    const auto& string = static_cast<const CStringElement&>(*m.m_OperandStack.Top());
    if (CStringBody* body = string.GetBody()) std::fill(body->Change().begin(), body->Change().end(), '\0');
    return 1;
}

// string seek  anchorsearch  post match true      stackunderflow typecheck
//                            string false
int OpAnchorsearch(CFilterEPS& m) {
    Operands in(m);
    const auto* seek = in.String(0);
    const auto* string = in.String(1);
    if (!in) return -1;
    const bool found = string->Bytes().starts_with(seek->Bytes());
    const std::int32_t matched = seek->GetLength();
    ElementPtr post = found ? string->GetInterval(matched, string->GetLength() - matched) : nullptr;
    ElementPtr match = found ? string->GetInterval(0, matched) : nullptr;
    m.Drop(found ? 2 : 1);
    m.Push(std::move(post));
    m.Push(std::move(match));
    m.PushBool(found);
    return 1;
}

// dict  maxlength  int                       stackunderflow typecheck
int OpMaxlength(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* dict = in.Dict(0);
    if (!in) return -1;
    const std::int32_t capacity = std::max(dict->GetMaxLength(), dict->GetCount());
    m.Drop(1);
    m.PushInt(capacity);
    return 1;
}

// int shift  bitshift  int                   stackunderflow typecheck
int OpBitshift(CFilterEPS& m) {
    constexpr std::int32_t bits = 32;
    Operands in(m);
    const std::int32_t shift = in.Int(0);
    CNumberElement* number = in.Number(1);
    if (!in) return -1;
    const auto value = static_cast<std::uint32_t>(number->GetInt());
    std::uint32_t result = 0;
    if (shift >= 0 && shift < bits) result = value << shift;
    if (shift < 0 && shift > -bits) result = value >> -shift;
    number->SetInt(static_cast<std::int32_t>(result));
    m.Drop(1);
    return 1;
}

constexpr OpRow kRows[] = {
    {"add", OpTwoNumbers<Combine<std::plus<>>>, OnSecondNumber<Combine<std::plus<>>>},
    {"sub", OpTwoNumbers<Combine<std::minus<>>>, OnSecondNumber<Combine<std::minus<>>>},
    {"mul", OpTwoNumbers<Combine<std::multiplies<>>>, OnSecondNumber<Combine<std::multiplies<>>>},
    {"type", OpType},
    {"cvs", OpCvs},
    {"cvrs", OpCvrs},
    {"string", OpString},
    {"anchorsearch", OpAnchorsearch},
    {"maxlength", OpMaxlength},
    {"bitshift", OpBitshift},
};

}  // namespace

constinit const OpTable kValueOperators{kRows};
