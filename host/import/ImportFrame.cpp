// The base's share of every import: records, limits, and what became of the dialog.
#include "import/ImportFrame.h"

#include <cstdlib>

#include "platform/Dialog.h"

void CImportFrame::BeginImport(const ImportSettings& settings, Drawing& drawing, ImportCounters& counters,
                               CMemoryLimit& limit, const CStopCause& stop) {
    m_pSettings = &settings;
    m_pDrawing = &drawing;
    m_pCounters = &counters;
    m_pMemoryLimit = &limit;
    m_pStop = &stop;
}

void CImportFrame::EndImport() {
    EndProgress();
    m_pSettings = nullptr;
    m_pDrawing = nullptr;
    m_pCounters = nullptr;
    m_pMemoryLimit = nullptr;
    m_pStop = nullptr;
}

int CImportFrame::ShowMessageBox(const char* text, const char* caption, unsigned style) {
    if (m_pDrawing == nullptr) return IDOK;
    m_pDrawing->messages.push_back({caption, text, style});
    return ShowMessage(m_pDrawing->messages.back());
}

int CImportFrame::RunDialog(CDialog& dialog) {
    if (m_pDrawing == nullptr) return IDCANCEL;
    if (m_DialogUse == DialogUse::Information)
        TakeInformation(dialog);
    else
        AnswerDialog(dialog);
    if (dialog.IsOpen()) dialog.PressButton(IDCANCEL);
    if (dialog.GetResult() == IDOK) {
        const std::string tolerance = dialog.GetControlText(kToleranceEdit);
        m_pDrawing->settings = {std::strtof(tolerance.c_str(), nullptr), dialog.GetCheck(kFillOutlineBox)};
    }
    return dialog.GetResult();
}

void CImportFrame::TakeInformation(CDialog& dialog) {
    dialog.PressButton(kInformationButton);
    m_pDrawing->information = dialog.GetControlText(kInformationText);
}

bool CImportFrame::OnProgress(const tagImportProgress& progress) {
    if (m_pDrawing == nullptr) return false;
    m_pCounters->bytesRead.store(static_cast<std::uint64_t>(progress.nBytesRead), std::memory_order_relaxed);
    m_pCounters->entities.store(static_cast<std::uint64_t>(progress.nEntities), std::memory_order_relaxed);
    ShowProgress(*m_pDrawing, progress);
    return IsToStop({progress.nEntities, progress.nPoints});
}

bool CImportFrame::IsToStop(const DrawnAmount& drawn) {
    if (m_pDrawing == nullptr) return false;
    const std::optional<ImportEnd> cause = m_pStop->Get(drawn);
    if (cause) m_pDrawing->end = *cause;
    return cause.has_value();
}

// The limit has served its purpose: what has been drawn must still find room to be handed over.
bool CImportFrame::OnMemoryExhausted() {
    if (m_pDrawing == nullptr) return false;
    m_pDrawing->end = ImportEnd::OutOfMemory;
    m_pMemoryLimit->Lift();
    return true;
}

void CImportFrame::OnRunEnded(const tagRunReport& report) {
    if (m_pDrawing != nullptr) m_pDrawing->report = report;
}

// Asked when a program wants a file, and only then.
bool CImportFrame::AllowsFileAccess() const {
    if (m_pDrawing == nullptr) return false;
    if (!m_pSettings->allowFileAccess) m_pDrawing->fileAccessDenied = true;
    return m_pSettings->allowFileAccess;
}

std::vector<std::string> CImportFrame::FontFolders() const {
    return m_pSettings != nullptr ? m_pSettings->fontFolders : std::vector<std::string>();
}
