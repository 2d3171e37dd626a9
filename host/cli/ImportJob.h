// One input file on the command line, from its path to the drawing's file and the words about it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/Options.h"
#include "drawing/Check.h"
#include "drawing/FigureReader.h"
#include "drawing/Survey.h"
#include "drawing/passes/Pipeline.h"
#include "import/ImportSession.h"

struct JobResult {
    int status = 0;          ///< an exit status
    std::string reportLine;  ///< for --report
};

class CImportJob {
public:
    /// With `summarise` each import ends with a line on standard error that says what came.
    CImportJob(const Options& options, CImportSession& session, bool summarise)
        : m_Options(options), m_Session(session), m_bSummarise(summarise) {}

    /// Imports the file and writes its drawing to `output` ("-" is standard output, empty is nowhere). What
    /// went wrong stands on standard error.
    JobResult Run(const std::string& path, const std::string& output, ImportCounters& counters);

private:
    /// What the passes made of a drawing.
    struct Prepared {
        FigureReading reading;
        Survey survey;  ///< before the passes
        PassReport passes;
        std::optional<CheckReport> check;
        bool whole = true;  ///< else the passes were left out
    };

    /// Makes figures of the entities and runs the passes, within the limits of time and memory, which began with the
    /// import. Where these don't last, the figures are the entities as they came, and the drawing says why. The
    /// entities go, unless they are to be kept.
    Prepared Prepare(Drawing& drawing, bool keepEntities, const CStopCause& stop, std::uint64_t usedMemory) const;

    /// Writes the figures, or without any (JSON only) the entities as they were delivered. Answers whether the drawing
    /// got to its file.
    bool Write(const Drawing& drawing, const std::vector<Figure>* figures, const std::optional<CheckReport>& check,
               const std::string& output) const;

    const Options& m_Options;
    CImportSession& m_Session;
    const bool m_bSummarise;
};
