// The main window of the command line: it answers the import dialog as the options say, and shows messages and
// progress on standard error.
#pragma once

#include "cli/Options.h"
#include "cli/ProgressLine.h"
#include "import/ImportFrame.h"

class CCliFrame final : public CImportFrame {
public:
    /// `progress` may be null.
    CCliFrame(const Options& options, CProgressLine* progress) : m_Options(options), m_pProgress(progress) {}

protected:
    void AnswerDialog(CDialog& dialog) override;
    int ShowMessage(const MessageBox& box) override;
    void ShowProgress(const Drawing& drawing, const tagImportProgress& progress) override;
    void EndProgress() override;

private:
    const Options& m_Options;
    CProgressLine* m_pProgress;
};
