// A row here names an operator and how many operands it may have taken when it fails. Its function copies these,
// runs the operator of the chain, and puts the copies back when that has met an error.
#include "complete/KeptOperands.h"

#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "interp/FilterEPS.h"
#include "interp/OperatorChain.h"

namespace {

struct KeptRow {
    const char* name;
    int count;
};

constexpr KeptRow kKept[] = {
    {"astore", 1},     {"cvr", 1},        {"packedarray", 1},   {"load", 1},
    {"deletefile", 1}, {"renamefile", 2}, {"setcolorspace", 1}, {"undefineuserobject", 1},
};

}  // namespace

int RunKept(CFilterEPS& m, int count, OperatorFn run) {
    CElementStack& stack = m.m_OperandStack;
    const int depth = stack.GetCount();
    std::vector<ElementPtr> operands;  // the top first
    for (const CElement* e = stack.Top(); e && static_cast<int>(operands.size()) < count; e = e->m_pPrev) {
        operands.push_back(e->Clone());
    }
    if (run(m) == 1) return 1;
    if (m.m_nError == PSERR_NONE) return -1;  // an error further in, which has been raised, or a way out
    const int below = depth - static_cast<int>(operands.size());
    m.Drop(stack.GetCount() - below);
    for (; !operands.empty(); operands.pop_back()) m.Push(std::move(operands.back()));
    return -1;
}

namespace {

template <std::size_t I>
int OpKept(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator(kKept[I].name);
    return RunKept(m, kKept[I].count, run);
}

template <std::size_t... I>
constexpr std::array<OpRow, sizeof...(I)> KeptRows(std::index_sequence<I...>) {
    return {OpRow{kKept[I].name, OpKept<I>}...};
}

constexpr auto kRows = KeptRows(std::make_index_sequence<std::size(kKept)>());

}  // namespace

constinit const OpTable kKeptOperands{kRows};
