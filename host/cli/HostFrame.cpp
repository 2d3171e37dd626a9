// The modal loop of the dialog is the list of what a user with the command line's wishes would do.
#include "HostFrame.h"

#include <cstdlib>

#include "Interrupt.h"
#include "Text.h"
#include "platform/Dialog.h"

namespace {

// Controls of the import dialog.
enum DialogControl : unsigned {
    kFillOutlineBox = 3012,
    kInformationButton = 4001,
    kInformationText = 4004,
    kToleranceEdit = 4005,
};

}  // namespace

void CHostFrame::BeginImport(Drawing& drawing, ImportCounters& counters, CMemoryLimit& limit, CProgressLine* progress) {
    m_pDrawing = &drawing;
    m_pCounters = &counters;
    m_pMemoryLimit = &limit;
    m_pProgress = progress;
    m_Deadline = std::chrono::steady_clock::time_point::max();
    if (m_Options.timeout && *m_Options.timeout < 1e9) {
        const std::chrono::duration<double> time(*m_Options.timeout);
        m_Deadline = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::nanoseconds>(time);
    }
}

void CHostFrame::EndImport() {
    if (m_pProgress != nullptr) m_pProgress->Clear();
    m_pDrawing = nullptr;
    m_pCounters = nullptr;
    m_pMemoryLimit = nullptr;
    m_pProgress = nullptr;
}

int CHostFrame::ShowMessageBox(const char* text, const char* caption, unsigned style) {
    if (m_pDrawing == nullptr) return IDOK;
    m_pDrawing->messages.push_back({caption, text, style});
    if (!m_Options.quiet) {
        if (m_pProgress != nullptr) m_pProgress->Clear();
        std::string shown = ForTerminal(std::string(caption) + ": " + text);
        while (!shown.empty() && shown.back() == '\n') shown.pop_back();
        Note(shown);
    }
    return IDOK;
}

int CHostFrame::RunDialog(CDialog& dialog) {
    if (m_Options.tolerance) dialog.SetControlText(kToleranceEdit, *m_Options.tolerance);
    if (!m_Options.fillOutline) dialog.SetCheck(kFillOutlineBox, false);
    if (m_Options.wantsInformation) {
        dialog.PressButton(kInformationButton);
        if (m_pDrawing != nullptr) m_pDrawing->information = dialog.GetControlText(kInformationText);
    }
    dialog.PressButton(IDOK);
    // OK is disabled after a failed analysis, and leaves the dialog open when it refuses a value.
    if (dialog.IsOpen()) dialog.PressButton(IDCANCEL);
    if (m_pDrawing != nullptr && dialog.GetResult() == IDOK) {
        const std::string tolerance = dialog.GetControlText(kToleranceEdit);
        m_pDrawing->settings = {std::strtof(tolerance.c_str(), nullptr), m_Options.fillOutline};
    }
    return dialog.GetResult();
}

bool CHostFrame::OnProgress(const tagImportProgress& progress) {
    if (m_pDrawing == nullptr) return false;
    m_pCounters->bytesRead.store(static_cast<std::uint64_t>(progress.nBytesRead), std::memory_order_relaxed);
    m_pCounters->entities.store(static_cast<std::uint64_t>(progress.nEntities), std::memory_order_relaxed);
    if (m_pProgress != nullptr && m_pProgress->IsDue()) ShowProgress(progress);
    if (InterruptRequested())
        m_pDrawing->end = ImportEnd::Interrupted;
    else if (std::chrono::steady_clock::now() >= m_Deadline)
        m_pDrawing->end = ImportEnd::TimedOut;
    else
        return false;
    return true;
}

void CHostFrame::ShowProgress(const tagImportProgress& progress) {
    std::string line = m_pDrawing->source + ": " + ByteText(static_cast<std::uint64_t>(progress.nBytesRead));
    if (progress.nBytesTotal > 0) line += " of " + ByteText(static_cast<std::uint64_t>(progress.nBytesTotal));
    m_pProgress->Show(line + " read, " +
                      CountText(static_cast<std::uint64_t>(progress.nEntities), "entity", "entities"));
}

// The limit has served its purpose: what has been drawn must still find room to be handed over.
bool CHostFrame::OnMemoryExhausted() {
    if (m_pDrawing == nullptr) return false;
    m_pDrawing->end = ImportEnd::OutOfMemory;
    m_pMemoryLimit->Lift();
    return true;
}
