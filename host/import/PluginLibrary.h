// The plug-in library: found beside the program or where it is installed, loaded, and called by its one
// function.
#pragma once

#include <string>

#include "plugin/PlugFilterMain.h"

class CPluginLibrary {
public:
    // Loads the library. The host's main window, version and resources must be set up by then: the plug-in
    // asks for its localised resources when it is loaded. See Error.
    CPluginLibrary();
    ~CPluginLibrary();
    CPluginLibrary(const CPluginLibrary&) = delete;
    CPluginLibrary& operator=(const CPluginLibrary&) = delete;

    // Why the library couldn't be loaded; empty when it could.
    const std::string& Error() const { return m_Error; }

    // Runs the plug-in's import command: the dialog, then the program in the file. The entities go to the
    // record's list. Answers false when the plug-in doesn't serve the command.
    bool Import(tagPlugImportJob& job) const;

private:
    void* m_hLibrary = nullptr;
    decltype(&PlugFilterMain) m_pfnMain = nullptr;
    std::string m_Error;
};
