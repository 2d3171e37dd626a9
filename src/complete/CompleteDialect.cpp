// What the dialect offers, and what it adds to the start-up dictionaries.
#include "complete/CompleteDialect.h"

#include "complete/ErrorOperators.h"
#include "complete/KeptOperands.h"
#include "complete/SystemOperators.h"

std::span<const OpTable* const> CCompleteDialect::OperatorTables() const {
    // Operators of this room first; behind them the operators of the chain that need help to leave their operands.
    static constexpr const OpTable* tables[] = {&kCompleteErrorOperators, &kCompleteSystemOperators, &kKeptOperands};
    return tables;
}

void CCompleteDialect::FinishStartup(CFilterEPS& m) { BuildErrorHandlers(m); }
