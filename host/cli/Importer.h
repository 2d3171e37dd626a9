// One import from the file's path to the drawing's file: what stands between the command line and the
// plug-in.
#pragma once

#include <string>

#include "HostFrame.h"
#include "Options.h"
#include "PluginLibrary.h"
#include "ProgressLine.h"

class CImporter {
public:
    // With `summarise` each import ends with a line on standard error that says what came.
    CImporter(const Options& options, const CPluginLibrary& plugin, CHostFrame& frame, bool summarise)
        : m_Options(options), m_Plugin(plugin), m_Frame(frame), m_bSummarise(summarise) {}

    // Imports the file and writes its drawing to `output` ("-" is standard output, empty is nowhere). What
    // went wrong stands on standard error. Answers an exit status. `progress` may be null.
    int Run(const std::string& path, const std::string& output, ImportCounters& counters, CProgressLine* progress);

private:
    void Import(const std::string& path, ImportCounters& counters, CProgressLine* progress, Drawing& drawing);

    const Options& m_Options;
    const CPluginLibrary& m_Plugin;
    CHostFrame& m_Frame;
    const bool m_bSummarise;
};
