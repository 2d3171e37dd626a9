// Windows as the plug-in sees them: the state of any window or control, and the host's main window, through
// which everything that concerns the user goes. Header-only, since the host implements CFrameWnd in a library
// of its own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class CDialog;

// Styles of a message box: one kind of buttons, one icon.
inline constexpr unsigned MB_OK = 0;
inline constexpr unsigned MB_ICONERROR = 16;
inline constexpr unsigned MB_ICONEXCLAMATION = 48;

// The buttons that end a dialog or a message box, and its result.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;

/// How far a run has come.
struct tagImportProgress {
    std::int64_t nBytesRead;   ///< position in the input file
    std::int64_t nBytesTotal;  ///< position at which the input ends
    std::int64_t nEntities;    ///< entities made so far
};

/// Any window or control: its text (UTF-8), and whether it takes the user's input.
class CWnd {
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd() = default;

    void SetWindowText(std::string_view text) { m_strText = text; }
    [[nodiscard]] const std::string& GetWindowText() const noexcept { return m_strText; }
    void EnableWindow(bool enable) noexcept { m_bEnabled = enable; }
    [[nodiscard]] bool IsWindowEnabled() const noexcept { return m_bEnabled; }

private:
    std::string m_strText;
    bool m_bEnabled = true;
};

/// The host's main window. The host implements it and answers it from glbf_GetMainFrame; all of it runs on
/// the thread that called the plug-in.
class CFrameWnd : public CWnd {
public:
    /// Shows a message box (UTF-8) and comes back when the user has closed it. Answers the id of the button.
    virtual int ShowMessageBox(const char* text, const char* caption, unsigned style) = 0;

    /// The modal loop of an open dialog: hands the user's input to its SetControlText, SetCheck and
    /// PressButton until it is no longer open. A dialog left open counts as cancelled. Answers the dialog's
    /// GetResult(); below 0 when the host can't show dialogs.
    virtual int RunDialog(CDialog& dialog) = 0;

    /// Called now and then during a run. True when the user wants out: the run then ends in order and without
    /// a message, and what was drawn so far is delivered.
    virtual bool OnProgress(const tagImportProgress&) { return false; }

    /// Called when a run has used up the memory. True when the host tells the user by itself; otherwise the
    /// run ends with a message box.
    virtual bool OnMemoryExhausted() { return false; }

    /// Whether the program inside an imported file may touch files of its own choice.
    [[nodiscard]] virtual bool AllowsFileAccess() const { return true; }

    /// A busy cursor, from on to off.
    virtual void ShowWaitCursor(bool /*on*/) {}
};
