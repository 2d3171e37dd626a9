// What --report writes: a line of JSON for each input file.
#pragma once

#include <optional>
#include <string>

#include "import/Drawing.h"

/// One input file's line without its line feed. No times: the same files give the same bytes.
///   source    the path on the command line
///   output    the path of the drawing ("-" is standard output); null when none was written
///   dialect   "plain" or "complete"
///   status    0 or 1, as an exit status
///   end       "whole", "not-opened", "refused", "failed", "no-section", "timed-out", "interrupted",
///             "out-of-memory"; of an import without a drawing "killed" or "not-started"
///   reason    the words for it; null when the file was imported whole
///   entities  how many were delivered
///   messages  the texts of the message boxes
///   failure, leftOut  as in the drawing's JSON, when there are such
///   tail      { "kind", "line", "offset" }: what of the file did not run, though no error was met
std::string ReportLine(const std::string& path, const std::optional<std::string>& output, int status,
                       const std::string& reason, std::size_t entities, const Drawing& drawing);

/// The line of an import that gave no drawing, for a reason that `end` names.
std::string ReportLineWithoutDrawing(const std::string& path, const char* end, const std::string& reason);
