// The module's state, the wait cursor, and the start and end of the application object.
#include "platform/App.h"

#include "hostout/HostCore.h"
#include "platform/Window.h"

AFX_MODULE_STATE* AfxGetModuleState() noexcept {
    static constinit AFX_MODULE_STATE state;
    return &state;
}

CWinApp::CWinApp() noexcept { AfxGetModuleState()->m_pCurrentWinApp = this; }

CWinApp::~CWinApp() {
    if (AfxGetModuleState()->m_pCurrentWinApp == this) AfxGetModuleState()->m_pCurrentWinApp = nullptr;
}

void CWinApp::BeginWaitCursor() {
    CFrameWnd* frame = glbf_GetMainFrame();
    if (m_nWaitCursors++ == 0 && frame) frame->ShowWaitCursor(true);
}

void CWinApp::EndWaitCursor() {
    CFrameWnd* frame = glbf_GetMainFrame();
    if (--m_nWaitCursors == 0 && frame) frame->ShowWaitCursor(false);
}

CModuleLifetime::CModuleLifetime(CWinApp& app, HINSTANCE hInstance) : m_App(app) {
    m_App.m_hInstance = hInstance;
    AfxGetModuleState()->m_hCurrentResourceHandle = hInstance;
    m_App.InitInstance();
}

CModuleLifetime::~CModuleLifetime() { m_App.ExitInstance(); }
