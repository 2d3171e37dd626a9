// The one way in which operators read their operands: by depth from the top, checked in the order of the reads,
// with nothing popped. The first read that fails sets the code; later reads are inert and answer null.
#pragma once

#include <cassert>
#include <functional>
#include <initializer_list>

#include "interp/FilterEPS.h"

/// Reads operands of a machine. A missing operand is PSERR_STACKUNDERFLOW, one of another type PSERR_TYPECHECK.
///
///     Operands in(m);
///     const auto* proc = in.Procedure(0);
///     const auto* flag = in.Get<CBoolElement>(1);
///     if (!in) return -1;
class Operands {
public:
    explicit Operands(CFilterEPS& machine) noexcept : m_Machine(machine) {}

    /// An operand of any type.
    CElement* Any(int depth) noexcept {
        if (!m_bOk) return nullptr;
        CElement* e = m_Machine.m_OperandStack.AtFromTop(depth);
        if (!e) Refuse(PSERR_STACKUNDERFLOW);
        return e;
    }
    /// An operand of class T.
    template <class T>
    T* Get(int depth) noexcept {
        CElement* e = Any(depth);
        T* typed = As<T>(e);
        if (e && !typed) Refuse(PSERR_TYPECHECK);
        return typed;
    }
    CNumberElement* Number(int depth) noexcept { return Get<CNumberElement>(depth); }
    /// A number as the operators read it: truncated to 32 bits, or as it is; 0 after a failure.
    std::int32_t Int(int depth) noexcept {
        const CNumberElement* n = Number(depth);
        return n ? n->GetInt() : 0;
    }
    double Real(int depth) noexcept {
        const CNumberElement* n = Number(depth);
        return n ? n->GetReal() : 0.0;
    }
    bool Bool(int depth) noexcept {
        const auto* b = Get<CBoolElement>(depth);
        return b && b->GetValue();
    }
    CStringElement* String(int depth) noexcept { return Get<CStringElement>(depth); }
    CDictionary* Dict(int depth) noexcept { return Get<CDictionary>(depth); }
    /// An array or a packed array.
    CArrayElement* AnyArray(int depth) noexcept { return Get<CArrayElement>(depth); }
    /// An array; a packed array is refused.
    CArrayElement* Array(int depth) noexcept { return static_cast<CArrayElement*>(OneOf(depth, {ET_ARRAY})); }
    /// An executable array or packed array.
    CArrayElement* Procedure(int depth) noexcept {
        CElement* e = Any(depth);
        if (e && !e->IsProcedure()) e = Refuse(PSERR_TYPECHECK);
        return static_cast<CArrayElement*>(e);
    }
    /// A name; marks and raw tokens are refused.
    CSimpElement* Name(int depth) noexcept { return static_cast<CSimpElement*>(OneOf(depth, {ET_NAME})); }
    /// An operand of one of the types.
    CElement* OneOf(int depth, std::initializer_list<ElementType> types) noexcept {
        CElement* e = Any(depth);
        if (!e) return nullptr;
        // A constant, as the types are.
        std::uint32_t allowed = 0;
        for (const ElementType type : types) allowed |= BitOf(type);
        return (allowed & BitOf(e->m_nType)) != 0 ? e : Refuse(PSERR_TYPECHECK);
    }
    /// Another test of the operator's own: when it does not hold, the code is set.
    void Require(bool holds, ErrorCode code) noexcept {
        if (m_bOk && !holds) Refuse(code);
    }
    [[nodiscard]] explicit operator bool() const noexcept { return m_bOk; }

private:
    static constexpr std::uint32_t BitOf(std::int32_t type) noexcept { return 1u << (type - ET_RAWTOKEN); }

    CElement* Refuse(ErrorCode code) noexcept {
        m_bOk = false;
        m_Machine.Fail(code);
        return nullptr;
    }

    CFilterEPS& m_Machine;
    bool m_bOk = true;
};

/// Pops the top as an owned element of class T, whose type a read through Operands has shown.
template <class T>
[[nodiscard]] TypedPtr<T> Take(CFilterEPS& m) {
    assert(As<T>(m.m_OperandStack.Top()));
    return TypedPtr<T>(static_cast<T*>(m.Pop().release()));
}

/// The operator that takes its operands and has no other effect. Each read, a member of Operands or a function that is
/// called like one, tests one operand, from the top down.
template <auto... Reads>
int OpDiscard(CFilterEPS& m) {
    Operands in(m);
    int depth = 0;
    (static_cast<void>(std::invoke(Reads, in, depth++)), ...);
    if (!in) return -1;
    m.Drop(depth);
    return 1;
}
