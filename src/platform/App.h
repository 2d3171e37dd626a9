// The application object of the library and the state of its module.
#pragma once

#include "platform/Resources.h"

/// Base of the application object. One static object of a derived class stands for the library.
class CWinApp {
public:
    /// Makes this the module's current application object.
    CWinApp() noexcept;
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    virtual ~CWinApp();

    /// Runs when the library has been loaded. Whether it succeeded.
    virtual bool InitInstance() { return true; }
    /// Runs before the library goes; the exit code.
    virtual int ExitInstance() { return 0; }

    /// Between the two the host shows a busy cursor. Pairs may nest.
    void BeginWaitCursor();
    void EndWaitCursor();

    HINSTANCE m_hInstance = nullptr;  ///< the library's own resources; set before InitInstance runs

private:
    int m_nWaitCursors = 0;
};

struct AFX_MODULE_STATE {
    HINSTANCE m_hCurrentResourceHandle = nullptr;  ///< where dialogs and the platform's texts are looked up
    CWinApp* m_pCurrentWinApp = nullptr;
};

/// The state of this library; never null.
AFX_MODULE_STATE* AfxGetModuleState() noexcept;

/// Starts the application object when the library is loaded and ends it when the library goes. A static
/// object of this class stands directly behind the application object, in the same source, so that the order
/// of the two is certain.
class CModuleLifetime {
public:
    CModuleLifetime(CWinApp& app, HINSTANCE hInstance);
    CModuleLifetime(const CModuleLifetime&) = delete;
    CModuleLifetime& operator=(const CModuleLifetime&) = delete;
    ~CModuleLifetime();

private:
    CWinApp& m_App;
};

/// A busy cursor for as long as the object lives.
class CWaitCursor {
public:
    CWaitCursor() : m_pApp(AfxGetModuleState()->m_pCurrentWinApp) {
        if (m_pApp) m_pApp->BeginWaitCursor();
    }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    ~CWaitCursor() {
        if (m_pApp) m_pApp->EndWaitCursor();
    }

private:
    CWinApp* m_pApp;
};
