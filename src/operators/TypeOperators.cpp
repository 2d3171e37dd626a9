// Types, attributes and conversions.
//
// Departure: attributes are recorded and reported, and nobody enforces them.
#include "operators/TypeOperators.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "interp/Operands.h"

std::string_view TypeName(const CElement& object) {
    switch (object.m_nType) {
        case ET_NUMBER:
            return static_cast<const CNumberElement&>(object).IsReal() ? "realtype" : "integertype";
        case ET_ARRAY:
        case ET_PACKEDARRAY:
            return static_cast<const CArrayElement&>(object).IsPacked() ? "packedarraytype" : "arraytype";
        case ET_STRING:
            return "stringtype";
        case ET_DICT:
            return "dicttype";
        case ET_BOOL:
            return "booleantype";
        case ET_MARK:
            return "marktype";
        case ET_OPERATOR:
            return "operatortype";
        case ET_NULL:
            return "nulltype";
        case ET_FILE:
        case ET_FILTER:
            return "filetype";
        case ET_SAVE:
            return "savetype";
        case ET_GSTATE:
            return "gstatetype";
        default:  // names, raw tokens, and the font identifier, which has no type name of its own
            return "nametype";
    }
}

namespace {

// any  type  name                            STACKUNDERFLOW
// Departure: the name is literal.
int OpType(CFilterEPS& m) {
    Operands in(m);
    const CElement* any = in.Any(0);
    if (!in) return -1;
    const std::string_view name = TypeName(*any);
    m.Drop(1);
    m.Push(MakeElement<CSimpElement>(name));
    return 1;
}

// any  cvlit cvx  any                        STACKUNDERFLOW
template <bool Executable>
int OpSetExecutable(CFilterEPS& m) {
    Operands in(m);
    CElement* any = in.Any(0);
    if (!in) return -1;
    any->m_bExec = Executable;
    return 1;
}

// any  xcheck  bool                          STACKUNDERFLOW
int OpXcheck(CFilterEPS& m) {
    Operands in(m);
    const CElement* any = in.Any(0);
    if (!in) return -1;
    const bool executable = any->m_bExec;
    m.Drop(1);
    m.PushBool(executable);
    return 1;
}

/// An object that carries an access attribute.
CElement* ReadAccessible(Operands& in) {
    return in.OneOf(0, {ET_ARRAY, ET_PACKEDARRAY, ET_DICT, ET_FILE, ET_FILTER, ET_STRING});
}

// array file string  executeonly  the same   STACKUNDERFLOW TYPECHECK
int OpExecuteonly(CFilterEPS& m) {
    Operands in(m);
    CElement* object = in.OneOf(0, {ET_ARRAY, ET_PACKEDARRAY, ET_FILE, ET_FILTER, ET_STRING});
    if (!in) return -1;
    object->m_nAccess = ACC_EXECUTEONLY;
    return 1;
}

// array dict file string  noaccess readonly  the same   STACKUNDERFLOW TYPECHECK
// Departure: the attribute of a dictionary, too, is that of this one element.
template <AccessAttribute Access>
int OpSetAccess(CFilterEPS& m) {
    Operands in(m);
    CElement* object = ReadAccessible(in);
    if (!in) return -1;
    object->m_nAccess = Access;
    return 1;
}

// array dict file string  rcheck wcheck  bool           STACKUNDERFLOW TYPECHECK
template <AccessAttribute Least>
int OpCheckAccess(CFilterEPS& m) {
    Operands in(m);
    const CElement* object = ReadAccessible(in);
    if (!in) return -1;
    const bool granted = object->m_nAccess <= Least;
    m.Drop(1);
    m.PushBool(granted);
    return 1;
}

/// Pops a string and takes the number that it begins with, or null with PSERR_SYNTAX.
TypedPtr<CNumberElement> ScanNumber(CFilterEPS& m) {
    const auto string = Take<CStringElement>(m);
    ElementPtr token;
    std::int32_t consumed = 0;
    if (m.ScanToken(*string, token, consumed) < 0 || !As<CNumberElement>(token.get())) {
        m.Fail(PSERR_SYNTAX);
        return nullptr;
    }
    return TypedPtr<CNumberElement>(static_cast<CNumberElement*>(token.release()));
}

void MakeInteger(CNumberElement& n) { n.SetInt(n.GetInt()); }
void MakeReal(CNumberElement& n) { n.SetReal(n.GetReal()); }

// num  cvi cvr  num                          STACKUNDERFLOW TYPECHECK
// string  cvi cvr  num                       SYNTAX for a string that holds no number, with the string gone
template <void (*Convert)(CNumberElement&)>
int OpToNumber(CFilterEPS& m) {
    Operands in(m);
    CElement* operand = in.OneOf(0, {ET_NUMBER, ET_STRING});
    if (!in) return -1;
    if (auto* number = As<CNumberElement>(operand)) {
        Convert(*number);
        return 1;
    }
    TypedPtr<CNumberElement> number = ScanNumber(m);
    if (!number) return -1;
    Convert(*number);
    m.Push(std::move(number));
    return 1;
}

// string  cvn  name                          STACKUNDERFLOW TYPECHECK
int OpCvn(CFilterEPS& m) {
    Operands in(m);
    const auto* string = in.String(0);
    if (!in) return -1;
    auto name = MakeElement<CSimpElement>(string->KeyText());
    name->m_bExec = string->m_bExec;
    m.Drop(1);
    m.Push(std::move(name));
    return 1;
}

/// A real with 7 significant digits: "0.1", "-2.5", "1." and, for magnitudes below 0.1 and from 1e7 on,
/// "1.5e-005". The point always stands, and no zeros at the end behind it.
std::string RealText(double value) {
    constexpr int precision = 7;
    std::array<char, 32> buffer;
    char* const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, precision - 1)
            .ptr;
    const std::string_view text(buffer.data(), static_cast<size_t>(end - buffer.data()));
    const size_t mark = text.find('e');
    if (mark == std::string_view::npos) return std::string(text);  // an infinity or a not-a-number

    // The text is [-]d.dddddde(+|-)dd[d].
    std::string result(text.starts_with('-') ? "-" : "");
    const std::string_view mantissa = text.substr(result.size(), mark - result.size());
    std::string digits{mantissa.front()};
    digits += mantissa.substr(2);
    const std::string_view exponentDigits = text.substr(mark + 2);
    int exponent = 0;
    std::from_chars(exponentDigits.data(), end, exponent);
    if (text[mark + 1] == '-') exponent = -exponent;

    const bool fixed = exponent >= -1 && exponent < precision;
    const size_t whole = fixed ? static_cast<size_t>(exponent + 1) : 1;
    digits.resize(std::max(digits.find_last_not_of('0') + 1, whole));  // with no digit but 0, npos + 1 is 0
    if (whole == 0) result += '0';
    result += digits.substr(0, whole);
    result += '.';
    result += digits.substr(whole);
    if (!fixed) {
        result += 'e';
        result += text[mark + 1];
        result.append(3 - exponentDigits.size(), '0');
        result += exponentDigits;
    }
    return result;
}

/// An integer in a base from 2 to 36, with capital letters. Only in base 10 a negative one has a sign; in the
/// others it is written as its 32 bits.
std::string IntegerText(std::int32_t value, int base) {
    std::array<char, 33> buffer;
    char* const first = buffer.data();
    char* const last = first + buffer.size();
    const auto result = base == 10 ? std::to_chars(first, last, value)
                                   : std::to_chars(first, last, static_cast<std::uint32_t>(value), base);
    return {first, result.ptr};
}

void ToUpper(std::string& text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
}

/// Writes a text into the string on top, drops that many operands with it, and pushes the part that was
/// written. RANGE when the string is too short, nothing popped.
int WriteToString(CFilterEPS& m, std::string_view text, int operands) {
    const auto& string = static_cast<const CStringElement&>(*m.m_OperandStack.Top());
    if (text.size() > static_cast<size_t>(string.GetLength())) return m.Fail(PSERR_RANGE);
    auto part = string.GetInterval(0, static_cast<std::int32_t>(text.size()));
    part->Write(text);
    m.Drop(operands);
    m.Push(std::move(part));
    return 1;
}

// num radix string  cvrs  substring          STACKUNDERFLOW TYPECHECK RANGE
int OpCvrs(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    const std::int32_t radix = in.Int(1);
    const auto* number = in.Number(2);
    in.Require(radix >= 2 && radix <= 36, PSERR_RANGE);
    if (!in) return -1;
    std::string text =
        radix == 10 && number->IsReal() ? RealText(number->GetReal()) : IntegerText(number->GetInt(), radix);
    ToUpper(text);
    return WriteToString(m, text, 3);
}

/// The text of an object, as far as it has one.
std::string TextOf(const CElement& object) {
    switch (object.m_nType) {
        case ET_NUMBER: {
            const auto& number = static_cast<const CNumberElement&>(object);
            return number.IsReal() ? RealText(number.GetReal()) : IntegerText(number.GetInt(), 10);
        }
        case ET_NAME:
            return std::string(static_cast<const CSimpElement&>(object).m_pName->Text());
        case ET_STRING:
            return std::string(static_cast<const CStringElement&>(object).KeyText());
        case ET_BOOL:
            return static_cast<const CBoolElement&>(object).GetValue() ? "true" : "false";
        case ET_OPERATOR:
            return static_cast<const COperatorElement&>(object).GetName();
        default:
            return "--nostringval--";
    }
}

// any string  cvs  substring                 STACKUNDERFLOW TYPECHECK RANGE
int OpCvs(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    const CElement* any = in.Any(1);
    if (!in) return -1;
    return WriteToString(m, TextOf(*any), 2);
}

// Place 17 of the chain.
constexpr OpRow kRows[] = {
    {"type", OpType},
    {"cvlit", OpSetExecutable<false>},
    {"cvx", OpSetExecutable<true>},
    {"xcheck", OpXcheck},
    {"executeonly", OpExecuteonly},
    {"noaccess", OpSetAccess<ACC_NOACCESS>},
    {"readonly", OpSetAccess<ACC_READONLY>},
    {"rcheck", OpCheckAccess<ACC_READONLY>},
    {"wcheck", OpCheckAccess<ACC_UNLIMITED>},
    {"cvi", OpToNumber<MakeInteger>},
    {"cvn", OpCvn},
    {"cvr", OpToNumber<MakeReal>},
    {"cvrs", OpCvrs},
    {"cvs", OpCvs},
};

}  // namespace

constinit const OpTable kTypeOperators{kRows};
