// Windows as the plug-in sees them: the state of any window or control, and the host's main window, through
// which everything that concerns the user goes. Header-only, since the host implements CFrameWnd in a library
// of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
    std::int64_t nPoints;      ///< points of their lines and curves
};

/// Why and where a program ended with an error.
struct tagRunFailure {
    std::int32_t nError = -1;  ///< the code behind the message box
    std::string strError;      ///< the language's name of the error: "typecheck"
    std::string strOperator;   ///< what was running; of an undefined name, that name; empty when nothing was
    std::int64_t nLine = 1;    ///< where the scanner stood in the file, from 1
    std::int64_t nOffset = 0;  ///< the same in bytes from the start of the file
};

/// What the program asked to draw and the drawing lacks.
struct tagLeftOut {
    std::int64_t nTexts = 0;            ///< calls of the show family
    std::vector<std::string> strFonts;  ///< names of the fonts of these texts, each once, by their first text
    std::int64_t nImages = 0;
    std::int64_t nShadings = 0;
    std::int64_t nPatterns = 0;  ///< areas filled with a pattern
    std::int64_t nPoints = 0;    ///< path points beyond the limit
    std::int64_t nClips = 0;     ///< clips that would have cut something off

    [[nodiscard]] bool IsEmpty() const noexcept {
        return nTexts == 0 && nImages == 0 && nShadings == 0 && nPatterns == 0 && nPoints == 0 && nClips == 0;
    }
};

/// What of the program did not run although no error was met.
enum RunTail : std::int32_t {
    RT_NONE = 0,
    RT_TOKEN = 1,      ///< the file ends inside a token, or behind one that nothing ends
    RT_STRING = 2,     ///< the file ends inside a string
    RT_PROCEDURE = 3,  ///< the file ends inside a procedure
    RT_ENDCOMMENT = 4  ///< %%EOF stands before the end, with more program behind it
};

/// A font that texts were shown in.
struct tagFontUse {
    std::string strName;        ///< as the program names it
    std::string strUsed;        ///< PostScript name of the face that stands for it; empty when there was no font
    bool bEmbedded = false;     ///< the file brings it along
    bool bSameWidths = true;    ///< the face has the widths of the font by that name
    std::int64_t nGlyphs = 0;   ///< glyphs drawn
    std::int64_t nMissing = 0;  ///< characters that there was no glyph for
};

/// How a run came out, beside what the message boxes say.
struct tagRunReport {
    std::optional<tagRunFailure> failure;
    tagLeftOut leftOut;
    std::int64_t nPointsDrawn = 0;  ///< of lines and curves
    std::int64_t nTextsDrawn = 0;   ///< calls of the show family that drew
    std::vector<tagFontUse> fonts;  ///< by their first text; of the complete dialect only
    std::int32_t nTail = RT_NONE;   ///< RunTail
    std::string strTail;            ///< RT_TOKEN: the token
    std::int64_t nTailLine = 0;     ///< where it begins, from 1
    std::int64_t nTailOffset = 0;   ///< the same in bytes from the start of the file
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

    /// Called some times a second while a run waits for input that a program reads. True as OnProgress.
    virtual bool OnWait() { return false; }

    /// Called when a run has used up the memory. True when the host tells the user by itself; otherwise the
    /// run ends with a message box.
    virtual bool OnMemoryExhausted() { return false; }

    /// Called once at the end of each run, behind its message box.
    virtual void OnRunEnded(const tagRunReport&) {}

    /// Whether the program inside an imported file may touch files of its own choice.
    [[nodiscard]] virtual bool AllowsFileAccess() const { return true; }

    /// Folders in which fonts are looked for before those of the system, first ones first.
    [[nodiscard]] virtual std::vector<std::string> FontFolders() const { return {}; }

    /// A busy cursor, from on to off.
    virtual void ShowWaitCursor(bool /*on*/) {}
};
