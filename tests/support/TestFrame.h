// The host's main window as tests need it: it keeps every message box and answers dialogs by a script.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "hostout/HostCore.h"
#include "lib/HostSetup.h"
#include "platform/Dialog.h"
#include "platform/Window.h"

/// The host's main window from construction to destruction, when the one before comes back.
class TestFrame : public CFrameWnd {
public:
    struct Box {
        std::string text;
        std::string caption;
        unsigned style;
    };

    TestFrame() : m_pPrevious(glbf_GetMainFrame()) { SetHostMainFrame(this); }
    ~TestFrame() override { SetHostMainFrame(m_pPrevious); }

    int ShowMessageBox(const char* text, const char* caption, unsigned style) override {
        m_Boxes.push_back({text, caption, style});
        return IDOK;
    }
    int RunDialog(CDialog& dialog) override {
        m_Script(dialog);
        return dialog.GetResult();
    }
    bool OnProgress(const tagImportProgress& progress) override { return m_Progress && m_Progress(progress); }
    bool OnMemoryExhausted() override { return m_bReportsMemory; }
    [[nodiscard]] bool AllowsFileAccess() const override { return m_bAllowsFiles; }
    void ShowWaitCursor(bool on) override { m_WaitCursor += on ? "on " : "off "; }

    std::vector<Box> m_Boxes;
    /// What the user does with a dialog; presses OK unless told otherwise.
    std::function<void(CDialog&)> m_Script = [](CDialog& dialog) { dialog.PressButton(IDOK); };
    /// Asked now and then during a run; true ends it.
    std::function<bool(const tagImportProgress&)> m_Progress;
    bool m_bReportsMemory = false;
    bool m_bAllowsFiles = true;
    std::string m_WaitCursor;  ///< "on off "

private:
    CFrameWnd* m_pPrevious;
};
