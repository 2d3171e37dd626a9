// CEpsApp, the application object of the plug-in.
#pragma once

#include "platform/App.h"

/// Holds the localised resources from loading to unloading the library: the host's for "Eps" if it has them,
/// else the library's own. The one instance is the module's current application object.
class CEpsApp final : public CWinApp {
public:
    bool InitInstance() override;
    int ExitInstance() override;

    HINSTANCE m_hLocalRes = nullptr;  ///< null until InitInstance has run
};
