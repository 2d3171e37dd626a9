// A dialog whose host does the unexpected, and a main window that overrides only what it must.
#include "platform/Dialog.h"

#include <gtest/gtest.h>

#include "platform/App.h"
#include "support/TestFrame.h"

namespace {

constexpr int EDIT = 10, BOX = 11, BUTTON = 12, LABEL = 13, MISSING = 99;
constexpr CControlTemplate CONTROLS[] = {
    {LABEL, ControlKind::staticText, "Label", 0, 0, 1, 1}, {EDIT, ControlKind::edit, "first", 0, 0, 1, 1},
    {BOX, ControlKind::checkBox, "Box", 0, 0, 1, 1},       {BUTTON, ControlKind::pushButton, "Button", 0, 0, 1, 1},
    {IDOK, ControlKind::defaultButton, "OK", 0, 0, 1, 1},  {IDCANCEL, ControlKind::pushButton, "Cancel", 0, 0, 1, 1}};
constexpr CDialogTemplate DIALOGS[] = {{1, "Caption", 1, 1, "Sans", 9, CONTROLS}};

class DialogTest : public testing::Test {
protected:
    void SetUp() override { AfxGetModuleState()->m_hCurrentResourceHandle = &m_Module; }
    void TearDown() override { AfxGetModuleState()->m_hCurrentResourceHandle = m_Before; }

    int Run(std::function<void(CDialog&)> script, unsigned dialogId = 1) {
        TestFrame frame;
        frame.m_Script = std::move(script);
        CDialog dialog(dialogId, &frame);
        return dialog.DoModal();
    }

    CResourceModule m_Module{{}, DIALOGS};
    HINSTANCE m_Before = AfxGetModuleState()->m_hCurrentResourceHandle;
};

TEST_F(DialogTest, ControlsThatAreNotThereTakeAndGiveNothing) {
    EXPECT_EQ(Run([](CDialog& dialog) {
                  EXPECT_FALSE(dialog.PressButton(MISSING));
                  EXPECT_FALSE(dialog.SetControlText(MISSING, "x"));
                  EXPECT_FALSE(dialog.SetCheck(MISSING, true));
                  EXPECT_FALSE(dialog.GetCheck(MISSING));
                  EXPECT_FALSE(dialog.IsControlEnabled(MISSING));
                  EXPECT_EQ(dialog.GetControlText(MISSING), "");
                  EXPECT_EQ(dialog.GetDlgItem(MISSING), nullptr);
                  dialog.SetDlgItemText(MISSING, "x");
                  dialog.EnableDlgItem(MISSING, false);
                  dialog.PressButton(IDOK);
              }),
              IDOK);
    EXPECT_EQ(Run([](CDialog&) { FAIL() << "a dialog without a template runs"; }, 2), -1);
}

TEST_F(DialogTest, ControlsOfAnotherKindTakeNothing) {
    Run([](CDialog& dialog) {
        EXPECT_FALSE(dialog.SetControlText(BOX, "x"));
        EXPECT_FALSE(dialog.SetControlText(LABEL, "x"));
        EXPECT_FALSE(dialog.SetCheck(EDIT, true));
        EXPECT_FALSE(dialog.GetCheck(EDIT));
        EXPECT_FALSE(dialog.PressButton(EDIT));
        EXPECT_FALSE(dialog.PressButton(LABEL));
        EXPECT_EQ(dialog.GetControlText(LABEL), "Label");
        EXPECT_EQ(dialog.GetControlText(EDIT), "first");
        EXPECT_TRUE(dialog.PressButton(BUTTON));  // without a handler: nothing happens
        EXPECT_EQ(dialog.GetFocus(), BUTTON);
        EXPECT_TRUE(dialog.IsOpen());
    });
}

TEST_F(DialogTest, DisabledControlsTakeNothingUntilTheyAreEnabled) {
    Run([](CDialog& dialog) {
        for (const int id : {EDIT, BOX, IDOK}) dialog.EnableDlgItem(id, false);
        EXPECT_FALSE(dialog.SetControlText(EDIT, "x"));
        EXPECT_FALSE(dialog.SetCheck(BOX, true));
        EXPECT_FALSE(dialog.PressButton(BOX));
        EXPECT_FALSE(dialog.PressButton(IDOK));
        EXPECT_FALSE(dialog.IsControlEnabled(EDIT));
        EXPECT_FALSE(dialog.GetCheck(BOX));
        EXPECT_TRUE(dialog.IsOpen());
        for (const int id : {EDIT, BOX}) dialog.EnableDlgItem(id, true);
        EXPECT_TRUE(dialog.SetControlText(EDIT, "x"));
        EXPECT_TRUE(dialog.PressButton(BOX));
        EXPECT_TRUE(dialog.GetCheck(BOX));
        EXPECT_TRUE(dialog.PressButton(BOX));
        EXPECT_FALSE(dialog.GetCheck(BOX));
        EXPECT_EQ(dialog.GetControlText(EDIT), "x");
    });
}

TEST_F(DialogTest, ADialogLeftOpenIsCancelledAndShutBehindTheLoop) {
    const CDialog* seen = nullptr;
    bool open = true;
    TestFrame frame;
    frame.m_Script = [&](CDialog& dialog) { seen = &dialog; };
    CDialog dialog(1, &frame);
    EXPECT_FALSE(dialog.IsOpen());
    EXPECT_FALSE(dialog.PressButton(IDOK));
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    open = seen->IsOpen();
    EXPECT_FALSE(open);
    EXPECT_FALSE(dialog.PressButton(IDOK));
    EXPECT_EQ(dialog.GetResult(), IDCANCEL);
}

TEST_F(DialogTest, EachRunStartsFromTheTemplate) {
    TestFrame frame;
    frame.m_Script = [](CDialog& dialog) {
        EXPECT_EQ(dialog.GetControlText(EDIT), "first");
        dialog.SetControlText(EDIT, "second");
        dialog.PressButton(IDOK);
    };
    CDialog dialog(1, &frame);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(CDialog(1, nullptr).MessageBox("nobody", "sees it", MB_OK), 0);
}

// A host that knows message boxes and dialogs only.
class PlainFrame final : public CFrameWnd {
public:
    int ShowMessageBox(const char*, const char*, unsigned) override { return IDOK; }
    int RunDialog(CDialog&) override { return -1; }
};

TEST_F(DialogTest, AMainWindowThatOverridesOnlyWhatItMust) {
    PlainFrame frame;
    EXPECT_FALSE(frame.OnProgress({1, 2, 3, 4}));  // nobody wants out
    EXPECT_FALSE(frame.OnMemoryExhausted());       // the run tells by itself
    EXPECT_TRUE(frame.AllowsFileAccess());
    frame.OnRunEnded({});
    frame.ShowWaitCursor(true);
    EXPECT_TRUE(frame.IsWindowEnabled());
    EXPECT_EQ(frame.GetWindowText(), "");
    CDialog dialog(1, &frame);
    EXPECT_EQ(dialog.DoModal(), -1);  // it can't show dialogs
    EXPECT_FALSE(dialog.IsOpen());
}

}  // namespace
