// The main window of a host as an import needs it: it keeps what the plug-in says in the drawing, tells a run
// when to end, and leaves to the front that derives from it how a dialog is answered and a message shown.
#pragma once

#include "import/Drawing.h"
#include "import/ImportCounters.h"
#include "import/ImportSettings.h"
#include "import/MemoryLimit.h"
#include "import/StopCause.h"
#include "platform/Window.h"

/// Controls of the import dialog.
enum ImportDialogControl : int {
    kFillOutlineBox = 3012,
    kInformationButton = 4001,
    kInformationText = 4004,
    kToleranceEdit = 4005,
};

class CImportFrame : public CFrameWnd {
public:
    /// From now on everything that the plug-in says goes to `drawing` and `counters`. `limit` is lifted when memory has
    /// run out; the run ends soon after there is a cause to stop.
    void BeginImport(const ImportSettings& settings, Drawing& drawing, ImportCounters& counters, CMemoryLimit& limit,
                     const CStopCause& stop);
    void EndImport();

    /// What the next dialogs are for. In one for the information the frame itself presses the button, takes the text
    /// and cancels; one for the import is the front's.
    enum class DialogUse { Information, Import };
    void SetDialogUse(DialogUse use) { m_DialogUse = use; }

    int ShowMessageBox(const char* text, const char* caption, unsigned style) final;
    int RunDialog(CDialog& dialog) final;
    bool OnProgress(const tagImportProgress& progress) final;
    bool OnWait() final { return IsToStop(); }
    bool OnMemoryExhausted() final;
    void OnRunEnded(const tagRunReport& report) final;
    bool AllowsFileAccess() const final;
    std::vector<std::string> FontFolders() const final;

protected:
    /// For the front; all of it runs while the thread that called the session waits.
    /// The modal loop of the open import dialog. One that it leaves open counts as cancelled.
    virtual void AnswerDialog(CDialog& dialog) = 0;
    /// Shows a message, which is in the drawing already. Answers the id of the button.
    virtual int ShowMessage(const MessageBox&) { return IDOK; }
    virtual void ShowProgress(const Drawing&, const tagImportProgress&) {}
    virtual void EndProgress() {}

private:
    void TakeInformation(CDialog& dialog);
    /// Whether there is a cause to stop, which the drawing is then told.
    bool IsToStop(const DrawnAmount& drawn = {});

    DialogUse m_DialogUse = DialogUse::Import;
    const ImportSettings* m_pSettings = nullptr;
    Drawing* m_pDrawing = nullptr;  ///< null between imports
    ImportCounters* m_pCounters = nullptr;
    CMemoryLimit* m_pMemoryLimit = nullptr;
    const CStopCause* m_pStop = nullptr;
};
