// Modal dialogs made from templates: controls, message map, and the exchange of values between controls and
// members.
#pragma once

#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Resources.h"
#include "platform/Window.h"

/// Ids of the texts that refuse a value: not a number; out of range, where %1 and %2 stand for the bounds.
/// The platform has texts of its own, which the module's current resources may replace.
inline constexpr unsigned AFX_IDP_PARSE_REAL = 0xF111;
inline constexpr unsigned AFX_IDP_PARSE_REAL_RANGE = 0xF113;

/// A control of a dialog.
class CControl final : public CWnd {
public:
    explicit CControl(const CControlTemplate& control);

    const int m_nId;
    const ControlKind m_Kind;
    int m_nCheck = 0;  ///< 1 when a check box is set
};

/// What a click of a control calls; a handler of a derived class goes in by a static_cast.
struct AFX_MSGMAP_ENTRY {
    int id;
    void (CDialog::*handler)();
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* base;  ///< where to look next; null ends the search
    std::span<const AFX_MSGMAP_ENTRY> entries;
};

/// One run of DoDataExchange, in one direction. When a value is refused, the rest of the run does nothing,
/// and all members get back what they held before.
class CDataExchange {
public:
    CDataExchange(CDialog& dialog, bool saveAndValidate) noexcept
        : m_Dialog(dialog), m_bSaveAndValidate(saveAndValidate) {}

    /// The control, for one step of the exchange; null once a value was refused, and for an unknown id.
    [[nodiscard]] CControl* PrepareControl(int id);
    /// Whether checks apply now.
    [[nodiscard]] bool IsChecking() const noexcept { return m_bSaveAndValidate && !HasFailed(); }
    [[nodiscard]] bool HasFailed() const noexcept { return m_bFailed; }
    /// Assigns what came from a control.
    template <class T>
    void Assign(T& member, T value) {
        m_Undo.push_back([&member, old = member] { member = old; });
        member = value;
    }
    /// Refuses the value of the control that was prepared last: the focus goes there, and the user is told
    /// why.
    void Fail(std::string_view message);

    CDialog& m_Dialog;
    const bool m_bSaveAndValidate;  ///< from the controls to the members

private:
    std::vector<std::function<void()>> m_Undo;
    int m_nLastControl = 0;
    bool m_bFailed = false;
};

/// A number in an edit control: decimal, with a point in every locale, finite, blanks around it allowed.
void DDX_Text(CDataExchange* pDX, int id, float& value);
/// The state of a check box, 0 or 1.
void DDX_Check(CDataExchange* pDX, int id, int& value);
/// Refuses a value outside the closed range. The bounds are rounded like the value, so that a bound typed in
/// as it is written here is accepted.
void DDV_MinMaxFloat(CDataExchange* pDX, float value, float low, float high);

/// A modal dialog. The host drives it from its modal loop through the operations marked so; those are virtual
/// or inline, because the host lives in another library.
class CDialog : public CWnd {
public:
    /// The template is looked up in the module's current resources when the dialog runs. The parent is the
    /// host's.
    CDialog(unsigned templateId, CFrameWnd* pParent) : m_nTemplate(templateId), m_pParent(pParent) {}

    /// Opens the dialog, lets the host run it, and answers the result: IDOK, another value when it was
    /// cancelled, or -1 when it can't be shown.
    int DoModal();

    // For the host.
    /// Whether the modal loop goes on.
    [[nodiscard]] bool IsOpen() const noexcept { return m_bOpen; }
    [[nodiscard]] int GetResult() const noexcept { return m_nResult; }
    /// A click; a check box changes its state. False, with nothing done, when the control is disabled or no
    /// button, and when the dialog isn't open.
    virtual bool PressButton(int id);
    /// What the user types into an edit control. False for any other control.
    virtual bool SetControlText(int id, std::string_view text);
    /// Empty for an unknown control.
    [[nodiscard]] virtual std::string GetControlText(int id) const;
    /// Sets or clears a check box. False for any other control.
    virtual bool SetCheck(int id, bool check);
    [[nodiscard]] virtual bool IsControlEnabled(int id) const;
    /// Whether a check box is set; false for any other control.
    [[nodiscard]] virtual bool GetCheck(int id) const;
    /// The control that has the focus.
    [[nodiscard]] int GetFocus() const noexcept { return m_nFocus; }

    // For the dialog's own code.
    /// Null for an unknown id, and before the dialog is open.
    [[nodiscard]] CControl* GetDlgItem(int id) noexcept;
    [[nodiscard]] const CControl* GetDlgItem(int id) const noexcept;
    // These do nothing for an id that the template hasn't got.
    void SetDlgItemText(int id, std::string_view text);
    void EnableDlgItem(int id, bool enable) noexcept;
    void SetFocus(int id) noexcept { m_nFocus = id; }
    /// Shows a message box in front of the dialog.
    int MessageBox(const char* text, const char* caption, unsigned style);
    /// Runs DoDataExchange: to the members (true) or to the controls (false). False when a value was refused.
    bool UpdateData(bool saveAndValidate);

protected:
    virtual const AFX_MSGMAP* GetMessageMap() const;
    /// The base's own map: OK and Cancel.
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual void DoDataExchange(CDataExchange*) {}
    /// Takes the values over and closes with IDOK; a refused value keeps the dialog open.
    virtual void OnOK();
    virtual void OnCancel();
    void EndDialog(int result) noexcept;

private:
    unsigned m_nTemplate;
    CFrameWnd* m_pParent;
    std::deque<CControl> m_Controls;
    int m_nFocus = 0;
    int m_nResult = 0;
    bool m_bOpen = false;
};
