// One input file on the command line, from its path to the drawing's file and the words about it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Options.h"
#include "drawing/Check.h"
#include "drawing/Figure.h"
#include "import/ImportSession.h"

struct JobResult {
    int status = 0;          // an exit status
    std::string reportLine;  // for --report
};

class CImportJob {
public:
    // With `summarise` each import ends with a line on standard error that says what came.
    CImportJob(const Options& options, CImportSession& session, bool summarise)
        : m_Options(options), m_Session(session), m_bSummarise(summarise) {}

    // Imports the file and writes its drawing to `output` ("-" is standard output, empty is nowhere). What
    // went wrong stands on standard error.
    JobResult Run(const std::string& path, const std::string& output, ImportCounters& counters);

private:
    // Writes the figures, or without any (JSON only) the entities as they were delivered. Answers whether the drawing
    // got to its file.
    bool Write(const Drawing& drawing, const std::vector<Figure>* figures, const std::optional<CheckReport>& check,
               const std::string& output) const;

    const Options& m_Options;
    CImportSession& m_Session;
    const bool m_bSummarise;
};
