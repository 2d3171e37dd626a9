// epsimport: the command-line host.
#include <unistd.h>

#include <memory>

#include "cli/BatchRunner.h"
#include "cli/CliFrame.h"
#include "cli/ImportJob.h"
#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/Outputs.h"
#include "cli/Text.h"
#include "writers/OutputFile.h"

int main(int argc, char** argv) {
    Options options;
    if (const std::optional<int> status = ParseOptions(argc, argv, options)) return *status;
    const std::vector<std::string> outputs = PlanOutputs(options);
    if (const std::optional<int> status = PrepareOutputs(options, outputs)) return *status;

    const bool single = options.files.size() == 1;
    CProgressLine progress;
    CCliFrame frame(options, single ? &progress : nullptr);
    CImportSession session(options.import, frame);
    if (!session.Error().empty()) {
        Complain(session.Error());
        return kExitNotWhole;
    }

    std::unique_ptr<COutputFile> report;
    if (!options.report.empty()) report = std::make_unique<COutputFile>(options.report);

    CatchInterrupts();
    CImportJob job(options, session, ::isatty(STDERR_FILENO) == 1);
    int status = kExitDone;
    if (single) {
        ImportCounters counters;
        const JobResult result = job.Run(options.files.front(), outputs.front(), counters);
        if (report) report->Write(result.reportLine + "\n");
        status = result.status;
    } else {
        const auto importFile = [&](std::size_t index, ImportCounters& counters) {
            return job.Run(options.files[index], outputs[index], counters);
        };
        status = RunBatch(options, importFile, report.get());
    }
    if (report && !report->Close()) {
        Complain(ForTerminal(options.report) + ": can't write the report: " + report->Error());
        status = kExitNotWhole;
    }
    return status;
}
