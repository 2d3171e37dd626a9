// The stack operators. Objects are copied by Clone, so that a copy of a composite object shares its body;
// only `copy` between two composite objects writes contents.
#include "operators/StackOperators.h"

#include "interp/Operands.h"
#include "operators/ArrayOperators.h"

namespace {

// any  pop  -                                STACKUNDERFLOW
int OpPop(CFilterEPS& m) {
    if (!m.m_OperandStack.Top()) return m.Fail(PSERR_STACKUNDERFLOW);
    m.Drop(1);
    return 1;
}

// a b  exch  b a                             STACKUNDERFLOW
int OpExch(CFilterEPS& m) {
    Operands in(m);
    in.Any(1);
    if (!in) return -1;
    ElementPtr b = m.Pop();
    ElementPtr a = m.Pop();
    m.Push(std::move(b));
    m.Push(std::move(a));
    return 1;
}

// any  dup  any any                          STACKUNDERFLOW
int OpDup(CFilterEPS& m) {
    const CElement* any = m.m_OperandStack.Top();
    if (!any) return m.Fail(PSERR_STACKUNDERFLOW);
    m.PushCopy(*any);
    return 1;
}

// any(1)..any(n) n  copy  any(1)..any(n) any(1)..any(n)     RANGE, with n gone
int CopyFromStack(CFilterEPS& m, int count) {
    if (count > m.m_OperandStack.GetCount()) return m.Fail(PSERR_RANGE);
    if (count < 1) return 1;  // Departure: a negative count is no error
    const CElement* source = m.m_OperandStack.AtFromTop(count - 1);
    for (int i = 0; i < count; ++i) {
        if (m.IsInterrupted()) return -1;
        m.PushCopy(*source);
        source = source->m_pNext;
    }
    return 1;
}

// array1 array2  copy  subarray2             TYPECHECK; SYNTAX, with both gone
int CopyArray(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(1);
    if (!in) return -1;
    const auto target = Take<CArrayElement>(m);
    const auto source = Take<CArrayElement>(m);
    const std::int32_t length = source->GetLength();
    if (length > target->GetLength()) return m.Fail(PSERR_SYNTAX);  // Departure: no rangecheck
    CopyElements(*source, *target, 0);
    m.Push(target->GetInterval(0, length));
    return 1;
}

// string1 string2  copy  substring2          TYPECHECK; SYNTAX, with both gone
int CopyString(CFilterEPS& m) {
    Operands in(m);
    in.String(1);
    if (!in) return -1;
    const auto target = Take<CStringElement>(m);
    const auto source = Take<CStringElement>(m);
    const std::int32_t length = source->GetLength();
    if (length > target->GetLength()) return m.Fail(PSERR_SYNTAX);  // Departure: no rangecheck
    auto part = target->GetInterval(0, length);
    part->Write(source->Bytes());
    m.Push(std::move(part));
    return 1;
}

// dict1 dict2  copy  dict2                   TYPECHECK; SYNTAX without a body, with both gone
int CopyDictionary(CFilterEPS& m) {
    Operands in(m);
    in.Dict(1);
    if (!in) return -1;
    auto target = Take<CDictionary>(m);
    const auto source = Take<CDictionary>(m);
    if (source->CopyTo(target.get()) == 0) return m.Fail(PSERR_SYNTAX);
    m.Push(std::move(target));
    return 1;
}

// gstate1 gstate2  copy  gstate2             TYPECHECK
int CopyGState(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(1, {ET_GSTATE});
    if (!in) return -1;
    return m.CopyGState();
}

// one of the five forms above, by the type of the top      STACKUNDERFLOW TYPECHECK RANGE SYNTAX
int OpCopy(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.OneOf(0, {ET_NUMBER, ET_ARRAY, ET_PACKEDARRAY, ET_STRING, ET_DICT, ET_GSTATE});
    if (!in) return -1;
    switch (top->m_nType) {
        case ET_NUMBER:
            return CopyFromStack(m, Take<CNumberElement>(m)->GetInt());
        case ET_STRING:
            return CopyString(m);
        case ET_DICT:
            return CopyDictionary(m);
        case ET_GSTATE:
            return CopyGState(m);
        default:
            return CopyArray(m);
    }
}

// any(n)..any(0) n  index  any(n)..any(0) any(n)            STACKUNDERFLOW TYPECHECK; RANGE, with n gone
int OpIndex(CFilterEPS& m) {
    Operands in(m);
    const int depth = in.Int(0);
    if (!in) return -1;
    m.Drop(1);
    const CElement* any = m.m_OperandStack.AtFromTop(depth);  // Departure: a negative n reads as 0
    if (!any) return m.Fail(PSERR_RANGE);
    m.PushCopy(*any);
    return 1;
}

// any(n-1)..any(0) n j  roll  any((j-1) mod n)..any(0) any(n-1)..any(j mod n)     STACKUNDERFLOW TYPECHECK
int OpRoll(CFilterEPS& m) {
    Operands in(m);
    const int times = in.Int(0);
    const int count = in.Int(1);
    if (!in) return -1;
    m.Drop(2);
    m.m_OperandStack.Roll(count, times);  // Departure: with n beyond the depth, or negative, nothing moves
    return 1;
}

// clang-format off
// Place 2 of the chain, its first table.
constexpr OpRow kCoreRows[] = {
    {"pop", OpPop},
    {"exch", OpExch},
    {"dup", OpDup},
    {"copy", OpCopy},
    {"index", OpIndex},
    {"roll", OpRoll},
};
// clang-format on

// any(1)..any(n)  clear  -
int OpClear(CFilterEPS& m) {
    m.m_OperandStack.Clear();
    return 1;
}

// any(1)..any(n)  count  any(1)..any(n) n
int OpCount(CFilterEPS& m) {
    m.PushInt(m.m_OperandStack.GetCount());
    return 1;
}

// -  mark  mark
int OpMark(CFilterEPS& m) {
    m.Push(NewMark());
    return 1;
}

// mark any(1)..any(n)  cleartomark  -        UNMATCHEDMARK
int OpCleartomark(CFilterEPS& m) {
    const int count = m.m_OperandStack.CountToMark();
    if (count < 0) return m.Fail(PSERR_UNMATCHEDMARK);
    m.Drop(count + 1);
    return 1;
}

// mark any(1)..any(n)  counttomark  mark any(1)..any(n) n   UNMATCHEDMARK
int OpCounttomark(CFilterEPS& m) {
    const int count = m.m_OperandStack.CountToMark();
    if (count < 0) return m.Fail(PSERR_UNMATCHEDMARK);
    m.PushInt(count);
    return 1;
}

// Place 10 of the chain.
constexpr OpRow kMarkRows[] = {
    {"clear", OpClear},
    {"count", OpCount},
    {"mark", OpMark},
    {"cleartomark", OpCleartomark},
    {"counttomark", OpCounttomark},
};

}  // namespace

constinit const OpTable kStackCoreOperators{kCoreRows};
constinit const OpTable kMarkOperators{kMarkRows};
