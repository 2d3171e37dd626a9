// The import dialog: the two values of an import, and the analysis of the file on demand.
#pragma once

#include <cstdint>
#include <memory>

#include "objects/File.h"
#include "platform/Dialog.h"
#include "plugin/FileInfo.h"
#include "plugin/PlugFilterMain.h"

/// The one window of the plug-in; opens with its defaults every time. After DoModal answered IDOK,
/// m_fTolerance and m_nFillOutline are what the user set.
class CEPSImportInfoDlg final : public CDialog {
public:
    explicit CEPSImportInfoDlg(CFrameWnd* pParent);

    /// The click of the file information button: analyses the file and shows the result in the dialog. Works
    /// once. After a failure only Cancel is left.
    void OnFileInfo();
    /// Reads the header comments into m_Info: 1, or -1 with m_nFailKind set. The file is closed in both
    /// cases.
    [[nodiscard]] int AnalyseHeader();

    float m_fTolerance = 0.01f;                ///< shortest straight segment, millimetres; 0.0001 to 5.0
    std::int32_t m_nFillOutline = 1;           ///< whether filled paths are imported
    std::unique_ptr<CFileBody> m_pFile;        ///< the file of the analysis
    const tagPlugImportJob* m_pJob = nullptr;  ///< tells the path; the host's, set before the dialog runs
    CEPSFileInfo m_Info;
    std::int32_t m_nFailKind = AR_IO;  ///< AR_FORMAT or AR_IO, when the analysis failed

protected:
    const AFX_MSGMAP* GetMessageMap() const override;
    void DoDataExchange(CDataExchange* pDX) override;

private:
    void ShowFailure();
    [[nodiscard]] std::string InfoText() const;
};
