// epsimport: the command-line host.
#include <unistd.h>

#include "BatchRunner.h"
#include "EnglishResources.h"
#include "HostFrame.h"
#include "Importer.h"
#include "Interrupt.h"
#include "Options.h"
#include "OutputFile.h"
#include "PluginLibrary.h"
#include "Text.h"
#include "lib/HostSetup.h"

int main(int argc, char** argv) {
    Options options;
    if (const std::optional<int> status = ParseOptions(argc, argv, options)) return *status;
    const std::vector<std::string> outputs = PlanOutputs(options);
    if (const std::optional<int> status = PrepareOutputs(options, outputs)) return *status;

    CHostFrame frame(options);
    SetHostMainFrame(&frame);
    SetHostVersion(options.hostVersion);
    if (options.english) SetHostLocalResources("Eps", EnglishResources());
    const CPluginLibrary plugin;
    if (!plugin.Error().empty()) {
        Complain(plugin.Error());
        return kExitNotWhole;
    }

    CatchInterrupts();
    CImporter importer(options, plugin, frame, ::isatty(STDERR_FILENO) == 1);
    if (options.files.size() == 1) {
        CProgressLine progress;
        ImportCounters counters;
        return importer.Run(options.files.front(), outputs.front(), counters, &progress);
    }
    return RunBatch(options, [&](std::size_t index, ImportCounters& counters) {
        return importer.Run(options.files[index], outputs[index], counters, nullptr);
    });
}
