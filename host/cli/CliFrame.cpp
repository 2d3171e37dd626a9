// The modal loop of the dialog is the list of what a user with the command line's wishes would do.
#include "cli/CliFrame.h"

#include "cli/Text.h"
#include "platform/Dialog.h"

void CCliFrame::AnswerDialog(CDialog& dialog) {
    if (m_Options.dialog.tolerance) dialog.SetControlText(kToleranceEdit, *m_Options.dialog.tolerance);
    if (!m_Options.dialog.fillOutline) dialog.SetCheck(kFillOutlineBox, false);
    dialog.PressButton(IDOK);
}

int CCliFrame::ShowMessage(const MessageBox& box) {
    if (m_Options.quiet) return IDOK;
    EndProgress();
    std::string shown = ForTerminal(box.caption + ": " + box.text);
    while (!shown.empty() && shown.back() == '\n') shown.pop_back();
    Note(shown);
    return IDOK;
}

void CCliFrame::ShowProgress(const Drawing& drawing, const tagImportProgress& progress) {
    if (m_pProgress == nullptr || !m_pProgress->IsDue()) return;
    std::string line = drawing.source + ": " + ByteText(static_cast<std::uint64_t>(progress.nBytesRead));
    if (progress.nBytesTotal > 0) line += " of " + ByteText(static_cast<std::uint64_t>(progress.nBytesTotal));
    m_pProgress->Show(line + " read, " +
                      CountText(static_cast<std::uint64_t>(progress.nEntities), "entity", "entities"));
}

void CCliFrame::EndProgress() {
    if (m_pProgress != nullptr) m_pProgress->Clear();
}
