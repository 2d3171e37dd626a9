// The chain of operator groups: in which order a name is offered to the families, and the one list of all of them.
#pragma once

#include <span>
#include <string_view>

#include "interp/OperatorTable.h"

class CDialect;

/// A table at its place in the chain. A place that two families share has several tables.
struct ChainLink {
    int place;
    const OpTable* table;
};

/// The links in the order in which a name is offered to them.
[[nodiscard]] std::span<const ChainLink> OperatorChain() noexcept;

/// Puts the function of each operator in the entry of its name: that of the first row that has it, of a dialect's
/// tables and then of the chain.
void ResolveOperators(const CDialect& dialect);

/// The row that the chain alone has for a name, for those who stand before it and go on to it; null without one.
[[nodiscard]] const OpRow* ChainRow(std::string_view name) noexcept;
/// Its operator.
[[nodiscard]] OperatorFn ChainOperator(std::string_view name) noexcept;
