// Modal dialogs: the run from template to result, the data exchange, and the message map. The host's frame
// window is what shows them.
#include "platform/Dialog.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "platform/App.h"

namespace {

constexpr CStringResource PLATFORM_TEXTS[] = {
    {AFX_IDP_PARSE_REAL, "请输入一个数。"},
    {AFX_IDP_PARSE_REAL_RANGE, "请输入 %1 到 %2 之间的数。"},
};
constexpr CResourceModule PLATFORM_RESOURCES{PLATFORM_TEXTS, {}};

std::string PlatformText(unsigned id) {
    const CResourceModule* current = AfxGetModuleState()->m_hCurrentResourceHandle;
    const CStringResource* text = current ? current->FindString(id) : nullptr;
    if (!text) text = PLATFORM_RESOURCES.FindString(id);
    return std::string(text->text);
}

void Replace(std::string& text, std::string_view mark, std::string_view value) {
    if (const size_t at = text.find(mark); at != std::string::npos) text.replace(at, mark.size(), value);
}

/// Up to six digits, as printf's %g without a locale.
std::string NumberText(float value) {
    char text[32];
    const std::to_chars_result end =
        std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general, 6);
    return {text, end.ptr};
}

bool ParseNumber(std::string_view text, float& value) {
    constexpr std::string_view BLANKS = " \t\r\n";
    const size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos) return false;
    text = text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const char* end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

bool IsPushButton(ControlKind kind) { return kind == ControlKind::pushButton || kind == ControlKind::defaultButton; }

bool IsEdit(ControlKind kind) { return kind == ControlKind::edit || kind == ControlKind::multiLineEdit; }

}  // namespace

CControl::CControl(const CControlTemplate& control) : m_nId(control.id), m_Kind(control.kind) {
    SetWindowText(control.text);
}

// Data exchange

CControl* CDataExchange::PrepareControl(int id) {
    if (m_bFailed) return nullptr;
    m_nLastControl = id;
    return m_Dialog.GetDlgItem(id);
}

void CDataExchange::Fail(std::string_view message) {
    m_bFailed = true;
    for (auto undo = m_Undo.rbegin(); undo != m_Undo.rend(); ++undo) (*undo)();
    m_Dialog.SetFocus(m_nLastControl);
    m_Dialog.MessageBox(std::string(message).c_str(), m_Dialog.GetWindowText().c_str(), MB_OK | MB_ICONEXCLAMATION);
}

void DDX_Text(CDataExchange* pDX, int id, float& value) {
    CControl* control = pDX->PrepareControl(id);
    if (!control) return;
    if (!pDX->m_bSaveAndValidate) {
        control->SetWindowText(NumberText(value));
    } else if (float number = 0; ParseNumber(control->GetWindowText(), number)) {
        pDX->Assign(value, number);
    } else {
        pDX->Fail(PlatformText(AFX_IDP_PARSE_REAL));
    }
}

void DDX_Check(CDataExchange* pDX, int id, int& value) {
    CControl* control = pDX->PrepareControl(id);
    if (!control) return;
    if (pDX->m_bSaveAndValidate) {
        pDX->Assign(value, control->m_nCheck);
    } else {
        control->m_nCheck = value != 0 ? 1 : 0;
    }
}

void DDV_MinMaxFloat(CDataExchange* pDX, float value, float low, float high) {
    if (!pDX->IsChecking() || (value >= low && value <= high)) return;
    std::string message = PlatformText(AFX_IDP_PARSE_REAL_RANGE);
    Replace(message, "%1", NumberText(low));
    Replace(message, "%2", NumberText(high));
    pDX->Fail(message);
}

// The dialog

int CDialog::DoModal() {
    const CResourceModule* resources = AfxGetModuleState()->m_hCurrentResourceHandle;
    const CDialogTemplate* dialog = resources ? resources->FindDialog(m_nTemplate) : nullptr;
    if (!dialog || !m_pParent) return -1;
    SetWindowText(dialog->caption);
    m_Controls.clear();
    for (const CControlTemplate& control : dialog->controls) m_Controls.emplace_back(control);
    m_nFocus = dialog->controls.empty() ? 0 : dialog->controls.front().id;
    m_bOpen = true;
    UpdateData(false);
    const int shown = m_pParent->RunDialog(*this);
    if (m_bOpen) EndDialog(shown < 0 ? -1 : IDCANCEL);
    return m_nResult;
}

CControl* CDialog::GetDlgItem(int id) noexcept {
    const auto found = std::find_if(m_Controls.begin(), m_Controls.end(),
                                    [id](const CControl& control) { return control.m_nId == id; });
    return found == m_Controls.end() ? nullptr : &*found;
}

const CControl* CDialog::GetDlgItem(int id) const noexcept { return const_cast<CDialog*>(this)->GetDlgItem(id); }

void CDialog::SetDlgItemText(int id, std::string_view text) {
    if (CControl* control = GetDlgItem(id)) control->SetWindowText(text);
}

void CDialog::EnableDlgItem(int id, bool enable) noexcept {
    if (CControl* control = GetDlgItem(id)) control->EnableWindow(enable);
}

bool CDialog::PressButton(int id) {
    CControl* control = GetDlgItem(id);
    if (!m_bOpen || !control || !control->IsWindowEnabled()) return false;
    if (control->m_Kind == ControlKind::checkBox) return SetCheck(id, control->m_nCheck == 0);
    if (!IsPushButton(control->m_Kind)) return false;
    m_nFocus = id;
    for (const AFX_MSGMAP* map = GetMessageMap(); map; map = map->base) {
        for (const AFX_MSGMAP_ENTRY& entry : map->entries) {
            if (entry.id != id) continue;
            (this->*entry.handler)();
            return true;
        }
    }
    return true;
}

bool CDialog::SetControlText(int id, std::string_view text) {
    CControl* control = GetDlgItem(id);
    if (!control || !control->IsWindowEnabled() || !IsEdit(control->m_Kind)) return false;
    control->SetWindowText(text);
    return true;
}

std::string CDialog::GetControlText(int id) const {
    const CControl* control = GetDlgItem(id);
    return control ? control->GetWindowText() : std::string();
}

bool CDialog::SetCheck(int id, bool check) {
    CControl* control = GetDlgItem(id);
    if (!control || !control->IsWindowEnabled() || control->m_Kind != ControlKind::checkBox) return false;
    control->m_nCheck = check ? 1 : 0;
    return true;
}

bool CDialog::IsControlEnabled(int id) const {
    const CControl* control = GetDlgItem(id);
    return control && control->IsWindowEnabled();
}

bool CDialog::GetCheck(int id) const {
    const CControl* control = GetDlgItem(id);
    return control && control->m_Kind == ControlKind::checkBox && control->m_nCheck != 0;
}

int CDialog::MessageBox(const char* text, const char* caption, unsigned style) {
    return m_pParent ? m_pParent->ShowMessageBox(text, caption, style) : 0;
}

bool CDialog::UpdateData(bool saveAndValidate) {
    CDataExchange exchange(*this, saveAndValidate);
    DoDataExchange(&exchange);
    return !exchange.HasFailed();
}

const AFX_MSGMAP* CDialog::GetThisMessageMap() {
    static constexpr AFX_MSGMAP_ENTRY ENTRIES[] = {{IDOK, &CDialog::OnOK}, {IDCANCEL, &CDialog::OnCancel}};
    static constexpr AFX_MSGMAP MAP{nullptr, ENTRIES};
    return &MAP;
}

const AFX_MSGMAP* CDialog::GetMessageMap() const { return GetThisMessageMap(); }

void CDialog::OnOK() {
    if (UpdateData(true)) EndDialog(IDOK);
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

void CDialog::EndDialog(int result) noexcept {
    m_nResult = result;
    m_bOpen = false;
}
