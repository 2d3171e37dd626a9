// The main window of this host: it keeps the message boxes, answers the import dialog as the command line
// says, and tells a run when to end.
#pragma once

#include <chrono>

#include "Drawing.h"
#include "MemoryLimit.h"
#include "Options.h"
#include "ProgressLine.h"
#include "platform/Window.h"

class CHostFrame final : public CFrameWnd {
public:
    explicit CHostFrame(const Options& options) : m_Options(options) {}

    // From now on everything that the plug-in says goes to `drawing` and `counters`. The time limit starts.
    // `limit` is lifted when memory has run out. A progress line is shown if `progress` is given.
    void BeginImport(Drawing& drawing, ImportCounters& counters, CMemoryLimit& limit, CProgressLine* progress);
    void EndImport();

    int ShowMessageBox(const char* text, const char* caption, unsigned style) override;
    int RunDialog(CDialog& dialog) override;
    bool OnProgress(const tagImportProgress& progress) override;
    bool OnMemoryExhausted() override;
    bool AllowsFileAccess() const override { return m_Options.allowFileAccess; }

private:
    void ShowProgress(const tagImportProgress& progress);

    const Options& m_Options;
    Drawing* m_pDrawing = nullptr;
    ImportCounters* m_pCounters = nullptr;
    CMemoryLimit* m_pMemoryLimit = nullptr;
    CProgressLine* m_pProgress = nullptr;
    std::chrono::steady_clock::time_point m_Deadline;
};
