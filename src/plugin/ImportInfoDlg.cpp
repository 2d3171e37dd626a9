// The import dialog: exchange of its two values, and what the file information button shows.
#include "plugin/ImportInfoDlg.h"

#include <cstdio>

#include "hostout/HostCore.h"
#include "platform/LocalResources.h"
#include "plugin/OwnResources.h"

namespace {

/// A text with its format filled. The formats are those of the string table, whose ids say what they take.
template <class... Values>
std::string FilledText(unsigned id, Values... values) {
    const std::string format = LocalText(id);
    const int length = std::snprintf(nullptr, 0, format.c_str(), values...);
    if (length < 0) return {};
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), values...);
    text.pop_back();
    return text;
}

/// Points (1/72 inch) in millimetres. The quotient is rounded to a float before it is scaled.
double Millimetres(std::int32_t points) {
    const float inches = static_cast<float>(points) / 72.0f;
    return static_cast<double>(static_cast<float>(static_cast<double>(inches) * 25.4));
}

}  // namespace

CEPSImportInfoDlg::CEPSImportInfoDlg(CFrameWnd* pParent) : CDialog(IDD_IMPORT, pParent) {}

void CEPSImportInfoDlg::DoDataExchange(CDataExchange* pDX) {
    DDX_Text(pDX, IDC_TOLERANCE, m_fTolerance);
    DDV_MinMaxFloat(pDX, m_fTolerance, 0.0001f, 5.0f);
    DDX_Check(pDX, IDC_FILL_OUTLINE, m_nFillOutline);
}

const AFX_MSGMAP* CEPSImportInfoDlg::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY ENTRIES[] = {
        {IDC_FILE_INFO, static_cast<void (CDialog::*)()>(&CEPSImportInfoDlg::OnFileInfo)}};
    static const AFX_MSGMAP MAP{CDialog::GetThisMessageMap(), ENTRIES};
    return &MAP;
}

int CEPSImportInfoDlg::AnalyseHeader() {
    m_pFile = std::make_unique<CFileBody>(m_pJob->szPath, "r+b");
    m_pFile->SetFileKind(FK_INPUT);
    const AnalysisResult result = m_pFile->Open() == 1 ? AnalyseEpsFile(*m_pFile, m_Info) : AR_IO;
    m_pFile->Close();
    if (result != AR_DONE) m_nFailKind = result;
    return result == AR_DONE ? 1 : -1;
}

void CEPSImportInfoDlg::OnFileInfo() {
    if (AnalyseHeader() != 1) {
        ShowFailure();
        return;
    }
    EnableDlgItem(IDC_FILE_INFO, false);
    SetDlgItemText(IDC_INFO_TEXT, InfoText());
}

std::string CEPSImportInfoDlg::InfoText() const {
    std::string text = LocalText(m_Info.m_nFileType == 0 ? IDS_PLAIN_FILE : IDS_PREVIEW_FILE);
    text += FilledText(IDS_DSC_VERSION, static_cast<double>(m_Info.m_fDSCVersion));
    text += FilledText(IDS_EPS_VERSION, static_cast<double>(m_Info.m_fEPSVersion));
    text += m_Info.m_nLanguageLevel != 0 ? FilledText(IDS_LANGUAGE_LEVEL, m_Info.m_nLanguageLevel)
                                         : LocalText(IDS_LEVEL_UNKNOWN);
    if (m_Info.m_pszTitle) text += FilledText(IDS_TITLE, m_Info.m_pszTitle->c_str());
    if (m_Info.m_pszCreator) text += FilledText(IDS_CREATOR, m_Info.m_pszCreator->c_str());
    if (m_Info.m_pszCreationDate) text += FilledText(IDS_CREATION_DATE, m_Info.m_pszCreationDate->c_str());
    text += FilledText(IDS_BOUNDING_BOX, Millimetres(m_Info.m_nBoxWidth), Millimetres(m_Info.m_nBoxHeight));
    text += FilledText(IDS_FILE_LENGTH, m_Info.m_nFileLength);
    text += FilledText(IDS_SECTION_LENGTH, m_Info.m_nPSLength);
    return text;
}

void CEPSImportInfoDlg::ShowFailure() {
    const std::string message = LocalText(m_nFailKind == AR_FORMAT ? IDS_BAD_FORMAT : IDS_IO_ERROR);
    MessageBox(message.c_str(), LocalText(IDS_WARNING).c_str(), MB_OK | MB_ICONEXCLAMATION);
    EnableDlgItem(IDC_FILE_INFO, false);
    EnableDlgItem(IDOK, false);
    SetDlgItemText(IDC_INFO_TEXT, message + LocalText(IDS_PLEASE_CANCEL));
}
