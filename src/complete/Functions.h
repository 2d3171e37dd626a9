// Function dictionaries (PLRM, Function Dictionaries): what shadings take their colours from.
#pragma once

#include <vector>

class CDictionary;

/// The values of a function for as many inputs as it has. Nothing for a dictionary that is none, for one of another
/// number of inputs, and for data that are too short.
[[nodiscard]] std::vector<double> EvaluateFunction(const CDictionary& function, const std::vector<double>& inputs);
