// epsimport: the command-line host.
#include <unistd.h>

#include "cli/BatchRunner.h"
#include "cli/CliFrame.h"
#include "cli/ImportJob.h"
#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/Outputs.h"
#include "cli/Text.h"

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

    CatchInterrupts();
    CImportJob job(options, session, ::isatty(STDERR_FILENO) == 1);
    if (single) {
        ImportCounters counters;
        return job.Run(options.files.front(), outputs.front(), counters);
    }
    return RunBatch(options, [&](std::size_t index, ImportCounters& counters) {
        return job.Run(options.files[index], outputs[index], counters);
    });
}
