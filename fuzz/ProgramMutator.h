// Changes to programs that keep most of them valid: libFuzzer's own changes of bytes rarely get past the scanner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/Harness.h"

/// The names of all operators of a dialect.
[[nodiscard]] std::vector<std::string> OperatorNames(DialectMaker dialect);

/// For LLVMFuzzerCustomMutator: changes the program in place, by a random number, and answers its new size. Half of the
/// changes are libFuzzer's own.
std::size_t MutateProgram(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed,
                          const std::vector<std::string>& operators);
