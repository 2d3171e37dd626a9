// Where the drawings of a command line go.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Options.h"

/// The output of each input file, in order: "-" for standard output, empty for none. With a directory (several
/// input files, or one and an existing directory) a name is the input's base name with the format's ending,
/// and "-2", "-3" before the ending where an earlier input took the name.
std::vector<std::string> PlanOutputs(const Options& options);

/// Makes the directory that the outputs need, and refuses an output that is one of the input files. On failure
/// it has said what is wrong on standard error and answers the exit status; otherwise it answers nothing.
std::optional<int> PrepareOutputs(const Options& options, const std::vector<std::string>& outputs);
