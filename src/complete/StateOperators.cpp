// save, restore and the graphics state stack (PLRM, Save and Restore; Graphics State). The chain's operators do the
// work; here is what they may not do.
#include "complete/StateOperators.h"

#include "complete/CompleteDialect.h"
#include "graphics/GStateStack.h"
#include "interp/Operands.h"
#include "interp/OperatorChain.h"

namespace {

/// Whether an object that a restore to a level leaves on a stack would lose its storage.
bool IsNewerThan(const CElement& e, std::int32_t level) {
    const CBody* body = nullptr;
    if (const auto* array = As<CArrayElement>(&e)) {
        body = array->GetLength() > 0 ? array->GetBody() : nullptr;
    } else if (const auto* string = As<CStringElement>(&e)) {
        body = string->GetLength() > 0 ? string->GetBody() : nullptr;
    } else if (const auto* dict = As<CDictionary>(&e)) {
        body = dict->GetBody();
    }
    return body && PlaceOf(*body) > PlaceOfLevel(level);
}

bool HoldsNewer(const CElementStack& stack, std::int32_t level) {
    for (const CElement* e = stack.Bottom(); e; e = e->m_pNext) {
        if (IsNewerThan(*e, level)) return true;
    }
    return false;
}

// -  save  save                              limitcheck
int OpSave(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("save");
    if (run(m) != 1) return -1;
    CCompleteDialect::Of(m).SaveDepths().push_back(m.m_GStateStack.GetCount());
    return 1;
}

// save  restore  -                           stackunderflow typecheck invalidrestore
int OpRestore(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("restore");
    Operands in(m);
    const auto* save = in.Get<CSaveElement>(0);
    if (!in) return -1;
    const std::int32_t level = save->GetLevel();
    if (level >= g_nSaveLevel || HoldsNewer(m.m_OperandStack, level) || HoldsNewer(m.m_DictStack.Elements(), level)) {
        return m.Fail(PSERR_SYNTAX, "invalidrestore");
    }
    const int result = run(m);
    CCompleteDialect::Of(m).SaveDepths().resize(static_cast<std::size_t>(g_nSaveLevel));
    return result;
}

/// How many states grestore leaves: that of the innermost save is the last that it goes back to.
int LeastStates(const CFilterEPS& m) {
    const auto& depths = CCompleteDialect::Of(m).SaveDepths();
    return depths.empty() ? 1 : depths.back();
}

/// Pops the top state; that of a save becomes again what it was then.
void PopState(CFilterEPS& m) {
    const bool isOfSave = m.m_GStateStack.GetCount() <= LeastStates(m);
    m.PopGState();
    if (isOfSave && g_nSaveLevel > 0) m.PushGState();
}

// -  grestore  -
int OpGrestore(CFilterEPS& m) {
    PopState(m);
    return 1;
}

// -  grestoreall  -
int OpGrestoreall(CFilterEPS& m) {
    while (m.m_GStateStack.GetCount() > LeastStates(m)) m.PopGState();
    if (g_nSaveLevel > 0) PopState(m);
    return 1;
}

// gstate  setgstate  -                       stackunderflow typecheck
int OpSetgstate(CFilterEPS& m) {
    Operands in(m);
    const auto* gstate = in.Get<CGStateElement>(0);
    if (!in) return -1;
    if (const CGraphState* state = gstate->GetBody()) {
        auto copy = MakeElement<CGStateElement>(state);
        copy->GetBody()->m_bPrivate = true;
        ReplaceTopGState(m, std::move(copy));
    }
    m.Drop(1);
    return 1;
}

constexpr OpRow kRows[] = {
    {"save", OpSave},           {"restore", OpRestore}, {"grestore", OpGrestore}, {"grestoreall", OpGrestoreall},
    {"setgstate", OpSetgstate},
};

}  // namespace

constinit const OpTable kCompleteStateOperators{kRows};
