// The import dialog as a user meets it: values and their range, and the buttons before and after an analysis.
#include "plugin/ImportInfoDlg.h"

#include "plugin/OwnResources.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

const char* const HEADER = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 612 792\n%%EndComments\n";

struct Shown {
    int result;
    float tolerance;
    int fillOutline;
    std::vector<TestFrame::Box> boxes;
};

Shown Show(const std::function<void(CDialog&)>& script, const char* bytes = HEADER) {
    const TempFile file(bytes);
    tagPlugImportJob job{};
    std::snprintf(job.szPath, sizeof job.szPath, "%s", file.Path().c_str());
    TestFrame frame;
    frame.m_Script = script;
    CEPSImportInfoDlg dialog(&frame);
    dialog.m_pJob = &job;
    const int result = dialog.DoModal();
    return {result, dialog.m_fTolerance, dialog.m_nFillOutline, frame.m_Boxes};
}

TEST(ImportInfoDlgTest, OpensWithItsDefaultsAndEverythingEnabled) {
    const Shown shown = Show([](CDialog& dialog) {
        EXPECT_EQ(dialog.GetControlText(IDC_TOLERANCE), "0.01");
        EXPECT_EQ(dialog.GetControlText(IDC_INFO_TEXT), "");
        EXPECT_EQ(dialog.GetWindowText(), "EPS 输入");
        for (const int id : {IDOK, IDCANCEL, IDC_FILE_INFO}) EXPECT_TRUE(dialog.IsControlEnabled(id)) << id;
        EXPECT_TRUE(dialog.PressButton(IDOK));
        EXPECT_FALSE(dialog.IsOpen());
        EXPECT_FALSE(dialog.PressButton(IDC_FILE_INFO));
    });
    EXPECT_EQ(shown.result, IDOK);
    EXPECT_EQ(shown.tolerance, 0.01f);
    EXPECT_EQ(shown.fillOutline, 1);
}

TEST(ImportInfoDlgTest, ToleranceInItsRangeIsTaken) {
    struct Case {
        const char* text;
        float value;
    };
    for (const Case& c :
         {Case{"0.0001", 0.0001f}, {"5.0", 5.0f}, {"5", 5.0f}, {"1e-4", 0.0001f}, {" .5\t", 0.5f}, {"+2", 2.0f}}) {
        SCOPED_TRACE(c.text);
        const Shown shown = Show([&](CDialog& dialog) {
            dialog.SetControlText(IDC_TOLERANCE, c.text);
            dialog.PressButton(IDOK);
        });
        EXPECT_EQ(shown.result, IDOK);
        EXPECT_EQ(shown.tolerance, c.value);
    }
}

TEST(ImportInfoDlgTest, RefusedToleranceKeepsTheDialogOpenAndTheValues) {
    const char* const NO_NUMBER = "请输入一个数。";
    const char* const OUT_OF_RANGE = "请输入 0.0001 到 5 之间的数。";
    struct Case {
        const char* text;
        const char* message;
    };
    for (const Case& c : {Case{"0.00009", OUT_OF_RANGE},
                          {"5.00001", OUT_OF_RANGE},
                          {"-1", OUT_OF_RANGE},
                          {"1e30", OUT_OF_RANGE},
                          {"", NO_NUMBER},
                          {" ", NO_NUMBER},
                          {"1,5", NO_NUMBER},
                          {"1 mm", NO_NUMBER},
                          {"nan", NO_NUMBER},
                          {"inf", NO_NUMBER},
                          {"1e99", NO_NUMBER},
                          {"+-1", NO_NUMBER},
                          {"0x1", NO_NUMBER}}) {
        SCOPED_TRACE(c.text);
        const Shown shown = Show([&](CDialog& dialog) {
            dialog.SetControlText(IDC_TOLERANCE, c.text);
            dialog.SetCheck(IDC_FILL_OUTLINE, false);
            dialog.PressButton(IDOK);
            EXPECT_TRUE(dialog.IsOpen());
            EXPECT_EQ(dialog.GetFocus(), IDC_TOLERANCE);
            EXPECT_EQ(dialog.GetControlText(IDC_TOLERANCE), c.text);
        });
        EXPECT_NE(shown.result, IDOK);
        EXPECT_EQ(shown.tolerance, 0.01f);
        EXPECT_EQ(shown.fillOutline, 1);
        ASSERT_EQ(shown.boxes.size(), 1u);
        EXPECT_EQ(shown.boxes[0].text, c.message);
        EXPECT_EQ(shown.boxes[0].style, MB_ICONEXCLAMATION);
    }
}

TEST(ImportInfoDlgTest, ClearedBoxIsZeroAndCancelTakesNothing) {
    const Shown cleared = Show([](CDialog& dialog) {
        EXPECT_TRUE(dialog.PressButton(IDC_FILL_OUTLINE));
        dialog.PressButton(IDOK);
    });
    EXPECT_EQ(cleared.fillOutline, 0);
    const Shown cancelled = Show([](CDialog& dialog) {
        dialog.SetControlText(IDC_TOLERANCE, "2");
        dialog.PressButton(IDCANCEL);
    });
    EXPECT_NE(cancelled.result, IDOK);
    EXPECT_EQ(cancelled.tolerance, 0.01f);
    EXPECT_NE(Show([](CDialog&) {}).result, IDOK);  // closed without a button
}

TEST(ImportInfoDlgTest, AnalysisWorksOnceAndItsTextIsTheUsersToEdit) {
    const Shown shown = Show([](CDialog& dialog) {
        EXPECT_TRUE(dialog.PressButton(IDC_FILE_INFO));
        EXPECT_NE(dialog.GetControlText(IDC_INFO_TEXT).find("215.90mm, 高度: 279.40mm"), std::string::npos);
        EXPECT_TRUE(dialog.SetControlText(IDC_INFO_TEXT, "notes"));
        EXPECT_FALSE(dialog.PressButton(IDC_FILE_INFO));
        EXPECT_EQ(dialog.GetControlText(IDC_INFO_TEXT), "notes");
        EXPECT_TRUE(dialog.PressButton(IDOK));
    });
    EXPECT_EQ(shown.result, IDOK);
    EXPECT_TRUE(shown.boxes.empty());
}

TEST(ImportInfoDlgTest, FailedAnalysisLeavesOnlyCancel) {
    struct Case {
        const char* bytes;
        const char* message;
    };
    for (const Case& c : {Case{"%!PS-Adobe-3.0\n", "EPS文件格式不正确,不能获得文件信息和导入该EPS文件!\f\n"},
                          {"%!P", "文件I/O错误,不能获得此文件的信息和导入该文件!\r\n"}}) {
        const Shown shown = Show(
            [&](CDialog& dialog) {
                dialog.PressButton(IDC_FILE_INFO);
                EXPECT_EQ(dialog.GetControlText(IDC_INFO_TEXT), std::string(c.message) + "\r\n请取消本次导入操作.");
                EXPECT_FALSE(dialog.PressButton(IDOK));
                EXPECT_FALSE(dialog.PressButton(IDC_FILE_INFO));
                EXPECT_TRUE(dialog.IsOpen());
                EXPECT_TRUE(dialog.PressButton(IDCANCEL));
            },
            c.bytes);
        EXPECT_NE(shown.result, IDOK);
        ASSERT_EQ(shown.boxes.size(), 1u);
        EXPECT_EQ(shown.boxes[0].text, c.message);
        EXPECT_EQ(shown.boxes[0].caption, "警告");
        EXPECT_EQ(shown.boxes[0].style, 48u);
    }
}

TEST(ImportInfoDlgTest, WithoutAFrameNothingOpens) { EXPECT_EQ(CEPSImportInfoDlg(nullptr).DoModal(), -1); }

}  // namespace
