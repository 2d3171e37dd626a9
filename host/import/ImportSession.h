// Imports through the plug-in: settings in, a drawing and how it ended out. Prints nothing and parses no
// arguments; a front brings a main window, which answers the dialog, and a flag that stops an import.
#pragma once

#include <string>

#include "import/ImportFrame.h"
#include "import/PluginLibrary.h"

/// One at a time in a process: the main window, the version and the resources are the process's.
class CImportSession {
public:
    /// Sets up the host and loads the plug-in. `frame` must outlive the session. See Error.
    CImportSession(const ImportSettings& settings, CImportFrame& frame);
    ~CImportSession();
    CImportSession(const CImportSession&) = delete;
    CImportSession& operator=(const CImportSession&) = delete;

    /// Why nothing can be imported; empty when the plug-in is there.
    const std::string& Error() const { return m_Plugin.Error(); }

    /// Imports one file; "-" is standard input. Whatever happens, what was drawn is in the drawing, whose `end`
    /// tells how it ended, and which may outlive the session.
    Drawing Import(const std::string& path, ImportCounters& counters, const CStopCause& stop);

private:
    void RunCommand(tagPlugImportJob& job, CImportFrame::DialogUse use);

    /// Tells the host library about this host, for as long as the session lives.
    class CHostSetup {
    public:
        CHostSetup(const ImportSettings& settings, CImportFrame& frame);
        ~CHostSetup();
        CHostSetup(const CHostSetup&) = delete;
        CHostSetup& operator=(const CHostSetup&) = delete;
    };

    const ImportSettings m_Settings;
    CImportFrame& m_Frame;
    const CHostSetup m_Setup;  ///< before the plug-in, which asks for its resources when it is loaded
    const CPluginLibrary m_Plugin;
};
