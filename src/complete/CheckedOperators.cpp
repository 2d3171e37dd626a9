// A row here names an operator of the chain that has an answer of its own where the language reference has an error,
// and the test that comes first. The operator itself is that of the chain; with a test that fails it doesn't run, and
// its operands are where they were. What the tests don't look at (missing operands, types), the operator does.
#include "complete/CheckedOperators.h"

#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "complete/KeptOperands.h"
#include "graphics/GraphState.h"
#include "graphics/MatrixOperators.h"
#include "interp/FilterEPS.h"
#include "interp/Keys.h"
#include "interp/OperatorChain.h"
#include "operators/DictionaryOperators.h"

namespace {

/// What a test found: nothing, or an error with the language's name where the code has no name of its own.
struct Fault {
    ErrorCode code = PSERR_NONE;
    const char* name = nullptr;
};

constexpr Fault NONE;
constexpr Fault RANGE{PSERR_RANGE};
constexpr Fault UNDEFINED_RESULT{PSERR_SYNTAX, "undefinedresult"};
constexpr Fault INVALID_ACCESS{PSERR_SYNTAX, "invalidaccess"};

const CElement* At(const CFilterEPS& m, int depth) { return m.m_OperandStack.AtFromTop(depth); }

const CNumberElement* NumberAt(const CFilterEPS& m, int depth) { return As<CNumberElement>(At(m, depth)); }

/// Elements of an array or bytes of a string; -1 for anything else.
std::int64_t LengthOf(const CElement* e) {
    if (const auto* array = As<CArrayElement>(e)) return array->GetLength();
    const auto* string = As<CStringElement>(e);
    return string ? string->GetLength() : -1;
}

bool IsComposite(const CElement& e) {
    return e.m_nType == ET_ARRAY || e.m_nType == ET_PACKEDARRAY || e.m_nType == ET_STRING || e.m_nType == ET_DICT;
}

/// PLRM, Local and Global VM: what is in global VM may not refer to what is in local VM. Most values are no objects
/// that could; the rest is asked for these alone.
bool IsLocal(const CElement& value) { return IsComposite(value) && !value.IsGlobal() && LengthOf(&value) != 0; }

Fault FaultOfStoring(const CArrayElement& target, const CElement* value) {
    return value && IsLocal(*value) && target.IsGlobal() ? INVALID_ACCESS : NONE;
}

/// systemdict is where this system keeps what is local as well.
Fault FaultOfDefining(const CDictionary& dict, const CElement* value) {
    return value && IsLocal(*value) && dict.m_nDictKind != DICT_SYSTEM && dict.IsGlobal() ? INVALID_ACCESS : NONE;
}

Fault CheckGet(const CFilterEPS& m) {
    const CElement* object = At(m, 1);
    if (!object) return NONE;
    const auto* array = As<CArrayElement>(object);
    if (array && !array->m_bView) return NONE;  // the operator itself knows the end of a body
    if (object->m_nType == ET_DICT) {
        const bool isKnown = CKey(*At(m, 0)).IsIn(static_cast<const CDictionary&>(*object));
        return isKnown ? NONE : Fault{PSERR_UNDEFINED};
    }
    const CNumberElement* index = NumberAt(m, 0);
    const std::int64_t length = LengthOf(object);
    return index && length >= 0 && index->GetInt() >= length ? RANGE : NONE;
}

Fault CheckPut(const CFilterEPS& m) {
    const CElement* object = At(m, 2);
    if (!object) return NONE;
    const CElement* value = At(m, 0);
    const auto* index = As<CNumberElement>(value->m_pPrev);
    if (const auto* array = As<CArrayElement>(object)) {
        if (array->IsPacked()) return INVALID_ACCESS;
        return index && index->GetInt() >= array->GetLength() ? RANGE : FaultOfStoring(*array, value);
    }
    if (object->m_nType == ET_DICT) return FaultOfDefining(static_cast<const CDictionary&>(*object), value);
    const std::int64_t length = LengthOf(object);
    return index && length >= 0 && index->GetInt() >= length ? RANGE : NONE;
}

Fault CheckDef(const CFilterEPS& m) { return FaultOfDefining(*m.TopDict(), At(m, 0)); }

Fault CheckGetinterval(const CFilterEPS& m) {
    const CNumberElement* index = NumberAt(m, 1);
    const CNumberElement* count = NumberAt(m, 0);
    const std::int64_t length = LengthOf(At(m, 2));
    if (!index || !count || length < 0) return NONE;
    return std::int64_t{index->GetInt()} + count->GetInt() > length ? RANGE : NONE;
}

Fault CheckPutinterval(const CFilterEPS& m) {
    if (const auto* array = As<CArrayElement>(At(m, 2)); array && array->IsPacked()) return INVALID_ACCESS;
    const CNumberElement* index = NumberAt(m, 1);
    const std::int64_t length = LengthOf(At(m, 2));
    const std::int64_t count = LengthOf(At(m, 0));
    return index && length >= 0 && count >= 0 && index->GetInt() + count > length ? RANGE : NONE;
}

Fault CheckCopy(const CFilterEPS& m) {
    if (const CNumberElement* count = NumberAt(m, 0)) return count->GetInt() < 0 ? RANGE : NONE;
    const std::int64_t length = LengthOf(At(m, 0));
    return length >= 0 && LengthOf(At(m, 1)) > length ? RANGE : NONE;
}

Fault CheckRoll(const CFilterEPS& m) {
    const CNumberElement* count = NumberAt(m, 1);
    if (!count || !NumberAt(m, 0)) return NONE;
    if (count->GetInt() < 0) return RANGE;
    return count->GetInt() > m.m_OperandStack.GetCount() - 2 ? Fault{PSERR_STACKUNDERFLOW} : NONE;
}

/// The operand that is asked for is there.
Fault CheckIndex(const CFilterEPS& m) {
    const CNumberElement* depth = NumberAt(m, 0);
    const bool isThere = !depth || (depth->GetInt() >= 0 && depth->GetInt() < m.m_OperandStack.GetCount() - 1);
    return isThere ? NONE : RANGE;
}

/// An operand that may not be below zero.
template <int Depth>
Fault CheckNatural(const CFilterEPS& m) {
    const CNumberElement* number = NumberAt(m, Depth);
    return number && number->GetInt() < 0 ? RANGE : NONE;
}

Fault CheckDivisor(const CFilterEPS& m) {
    const CNumberElement* divisor = NumberAt(m, 0);
    return divisor && NumberAt(m, 1) && divisor->GetReal() == 0 ? UNDEFINED_RESULT : NONE;
}

/// Numbers that have to be integers.
template <int Count>
Fault CheckIntegers(const CFilterEPS& m) {
    for (int i = 0; i < Count; ++i) {
        const CNumberElement* number = NumberAt(m, i);
        if (number && number->IsReal()) return {PSERR_TYPECHECK};
    }
    return NONE;
}

Fault CheckWholeDivisor(const CFilterEPS& m) {
    const CNumberElement* divisor = NumberAt(m, 0);
    if (!divisor || !NumberAt(m, 1)) return NONE;
    return divisor->GetInt() == 0 ? UNDEFINED_RESULT : CheckIntegers<2>(m);
}

Fault CheckPassword(const CFilterEPS& m) {
    const CNumberElement* password = NumberAt(m, 0);
    return password && password->GetInt() != INTERNALDICT_PASSWORD ? INVALID_ACCESS : NONE;
}

Fault CheckSqrt(const CFilterEPS& m) {
    const CNumberElement* number = NumberAt(m, 0);
    return number && number->GetReal() < 0 ? RANGE : NONE;
}

Fault CheckLog(const CFilterEPS& m) {
    const CNumberElement* number = NumberAt(m, 0);
    return number && number->GetReal() <= 0 ? RANGE : NONE;
}

Fault CheckExp(const CFilterEPS& m) {
    const CNumberElement* exponent = NumberAt(m, 0);
    const CNumberElement* base = NumberAt(m, 1);
    return exponent && base && !std::isfinite(std::pow(base->GetReal(), exponent->GetReal())) ? UNDEFINED_RESULT : NONE;
}

Fault CheckAtan(const CFilterEPS& m) {
    const CNumberElement* den = NumberAt(m, 0);
    const CNumberElement* num = NumberAt(m, 1);
    return den && num && den->GetReal() == 0 && num->GetReal() == 0 ? UNDEFINED_RESULT : NONE;
}

Fault CheckCvi(const CFilterEPS& m) {
    const CNumberElement* number = NumberAt(m, 0);
    const double value = number ? std::trunc(number->GetReal()) : 0;
    return value >= std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max()
               ? NONE
               : RANGE;
}

/// A segment needs a current point; Numbers are its operands.
template <int Numbers>
Fault CheckCurrentPoint(const CFilterEPS& m) {
    if (m.GetCurrentGState()->GetPathCount() > 0) return NONE;
    for (int i = 0; i < Numbers; ++i) {
        if (!NumberAt(m, i)) return NONE;
    }
    return {PSERR_NOCURRENTPOINT};
}

/// PLRM, setlinecap and setlinejoin: 0, 1 or 2.
Fault CheckLineStyle(const CFilterEPS& m) {
    const CNumberElement* style = NumberAt(m, 0);
    return style && (style->GetInt() < 0 || style->GetInt() > 2) ? RANGE : NONE;
}

Fault CheckMiterLimit(const CFilterEPS& m) {
    const CNumberElement* limit = NumberAt(m, 0);
    return limit && !(limit->GetReal() >= 1) ? RANGE : NONE;
}

/// Lengths of dashes are numbers, none below zero and not all of them zero.
Fault CheckDash(const CFilterEPS& m) {
    const auto* dash = As<CArrayElement>(At(m, 1));
    if (!dash || !NumberAt(m, 0)) return NONE;
    double sum = 0;
    for (std::int32_t i = 0; i < dash->GetLength(); ++i) {
        const auto* length = As<CNumberElement>(dash->GetAt(i));
        if (!length) return {PSERR_TYPECHECK};
        if (length->GetReal() < 0) return RANGE;
        sum += length->GetReal();
    }
    return dash->GetLength() > 0 && sum == 0 ? RANGE : NONE;
}

bool IsSingular(const double six[6]) { return six[0] * six[3] - six[1] * six[2] == 0; }

Fault CheckInverse(const CFilterEPS& m) {
    const auto* matrix = As<CArrayElement>(At(m, 1));
    double six[6];
    const bool isMatrix = matrix && As<CArrayElement>(At(m, 0)) && ReadMatrix(*matrix, six) == PSERR_NONE;
    return isMatrix && IsSingular(six) ? UNDEFINED_RESULT : NONE;
}

/// Of itransform and idtransform: by a matrix on the stack, or the CTM.
Fault CheckInverseMap(const CFilterEPS& m) {
    double six[6];
    if (const auto* matrix = As<CArrayElement>(At(m, 0))) {
        if (ReadMatrix(*matrix, six) != PSERR_NONE) return NONE;
    } else {
        m.GetCurrentGState()->GetCTM(six);
    }
    return IsSingular(six) ? UNDEFINED_RESULT : NONE;
}

struct CheckedRow {
    const char* name;
    Fault (*check)(const CFilterEPS&);
    int kept = 0;  ///< operands that the operator may have taken when it fails (RunKept)
    /// Of an operator whose form for a number (OpRow::onNumber) serves here: whether it may be asked about this one.
    bool (*takes)(const CFilterEPS&, double, bool isReal) = nullptr;
};

bool IsDivisor(const CFilterEPS&, double number, bool) { return number != 0; }
bool IsWholeDivisor(const CFilterEPS& m, double number, bool isReal) {
    return number != 0 && !isReal && CheckIntegers<1>(m).code == PSERR_NONE;
}

constexpr CheckedRow kChecked[] = {
    {"get", CheckGet},
    {"put", CheckPut},
    {"def", CheckDef},
    {"getinterval", CheckGetinterval},
    {"putinterval", CheckPutinterval},
    {"copy", CheckCopy},
    {"index", CheckIndex},
    {"roll", CheckRoll},
    {"repeat", CheckNatural<1>},
    {"div", CheckDivisor, 0, IsDivisor},
    {"idiv", CheckWholeDivisor, 0, IsWholeDivisor},
    {"mod", CheckWholeDivisor, 0, IsWholeDivisor},
    {"not", CheckIntegers<1>},
    {"and", CheckIntegers<2>},
    {"or", CheckIntegers<2>},
    {"xor", CheckIntegers<2>},
    {"bitshift", CheckIntegers<2>},
    {"internaldict", CheckPassword},
    {"sqrt", CheckSqrt},
    {"ln", CheckLog},
    {"log", CheckLog},
    {"exp", CheckExp},
    {"atan", CheckAtan},
    {"cvi", CheckCvi, 1},
    {"lineto", CheckCurrentPoint<2>},
    {"curveto", CheckCurrentPoint<6>},
    {"setlinecap", CheckLineStyle},
    {"setlinejoin", CheckLineStyle},
    {"setmiterlimit", CheckMiterLimit},
    {"setdash", CheckDash},
    {"invertmatrix", CheckInverse},
    {"itransform", CheckInverseMap},
    {"idtransform", CheckInverseMap},
};

/// Looked up when the library is loaded: the chain's tables are constants.
template <std::size_t I>
const OpRow* const CHAIN_ROW = ChainRow(kChecked[I].name);

template <std::size_t I>
int OpChecked(CFilterEPS& m) {
    const OperatorFn run = CHAIN_ROW<I>->run;
    const Fault fault = kChecked[I].check(m);
    if (fault.code != PSERR_NONE) return m.Fail(fault.code, fault.name);
    return kChecked[I].kept > 0 ? RunKept(m, kChecked[I].kept, run) : run(m);
}

template <std::size_t I>
int OnChecked(CFilterEPS& m, double value, bool isReal) {
    return kChecked[I].takes(m, value, isReal) ? CHAIN_ROW<I>->onNumber(m, value, isReal) : 0;
}

template <std::size_t I>
constexpr OnNumberFn NumberForm() {
    if constexpr (kChecked[I].takes != nullptr) return OnChecked<I>;
    return nullptr;
}

template <std::size_t... I>
constexpr std::array<OpRow, sizeof...(I)> CheckedRows(std::index_sequence<I...>) {
    return {OpRow{kChecked[I].name, OpChecked<I>, NumberForm<I>()}...};
}

constexpr auto kRows = CheckedRows(std::make_index_sequence<std::size(kChecked)>());

}  // namespace

constinit const OpTable kCheckedOperators{kRows};
