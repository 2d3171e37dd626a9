// Several files: one process for each import, since the interpreter is one to a process and no file may touch
// another's drawing, and at most so many at once as the user allows.
#pragma once

#include <functional>

#include "cli/ImportJob.h"
#include "cli/Options.h"
#include "import/ImportCounters.h"
#include "writers/OutputFile.h"

/// Imports the file with this index and writes its drawing. Runs in a process of its own.
using ImportFunction = std::function<JobResult(std::size_t index, ImportCounters& counters)>;

/// Runs `importFile` for every file of `options`. What an import writes to standard error appears in one piece
/// when it and all files before it are done, so that the text doesn't depend on the number of jobs. An import
/// that crashes is reported and touches no other. An interrupt ends the running imports in order and starts no
/// more. The last line on standard error counts the files that were imported whole. `report` receives the report
/// lines in the order of the files; it may be null. Answers an exit status.
int RunBatch(const Options& options, const ImportFunction& importFile, COutputFile* report);
