// Errors as the language has them: handlers in errordict, what is known in $error, and the ways out of what runs.
#pragma once

#include <string_view>

#include "interp/ErrorCodes.h"
#include "interp/OperatorTable.h"

/// exit, stop, stopped, quit, handleerror, and the default error handlers.
extern constinit const OpTable kCompleteErrorOperators;

/// Puts the default handler of each error in errordict, and the entries of $error that are there from the start.
void BuildErrorHandlers(CFilterEPS& m);

/// The code whose message box comes nearest to an error of the language.
[[nodiscard]] ErrorCode NearestCode(std::string_view error) noexcept;
