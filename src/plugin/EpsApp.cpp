// The application object and the way to the texts. The framework starts it when the library is loaded, so
// that the first command finds the resources.
#include "plugin/EpsApp.h"

#include "hostout/HostCore.h"
#include "platform/LocalResources.h"
#include "plugin/OwnResources.h"

bool CEpsApp::InitInstance() {
    m_hLocalRes = m_hInstance;
    if (HINSTANCE localised = glbf_LoadLocalResHandle("Eps")) {
        AfxGetModuleState()->m_hCurrentResourceHandle = localised;
        m_hLocalRes = localised;
    }
    return CWinApp::InitInstance();
}

int CEpsApp::ExitInstance() {
    if (m_hLocalRes != m_hInstance) {
        glbf_FreeLocalResHandle(m_hLocalRes);
        m_hLocalRes = nullptr;
    }
    return CWinApp::ExitInstance();
}

namespace {

CEpsApp g_App;
const CModuleLifetime g_Lifetime(g_App, &g_OwnResources);

}  // namespace

HINSTANCE GetResHandle() noexcept { return g_App.m_hLocalRes; }

int LoadResString(unsigned id, char* buffer, int limit) noexcept {
    return LoadStringA(GetResHandle(), id, buffer, limit);
}

std::string LocalText(unsigned id) {
    constexpr int room = 200;  // of the host's prompt buffer
    char* buffer = glbf_GetPromptString();
    LoadResString(id, buffer, room);
    return buffer;
}
