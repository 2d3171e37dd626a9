// A plug-in library: found beside the program or where it is installed, loaded, and called by its one
// function.
#pragma once

#include <memory>
#include <string>

#include "plugin/PlugFilterMain.h"

class CPluginLibrary {
public:
    /// Loads the library of the plain or the complete dialect. The host's main window, version and resources must
    /// be set up by then: the plug-in asks for its localised resources when it is loaded. See Error.
    explicit CPluginLibrary(bool complete);

    /// Why the library couldn't be loaded; empty when it could.
    const std::string& Error() const { return m_Error; }

    /// A share in the library, which stays loaded until the last one is gone.
    const std::shared_ptr<void>& Share() const { return m_pLibrary; }

    /// Runs the plug-in's import command: the dialog, then the program in the file. The entities go to the
    /// record's list. Answers false when the plug-in doesn't serve the command.
    bool Import(tagPlugImportJob& job) const;

private:
    std::shared_ptr<void> m_pLibrary;
    decltype(&PlugFilterMain) m_pfnMain = nullptr;
    std::string m_Error;
};
