// Imports through the session by a front of the tests' own, which prints nothing and parses nothing.
#include "import/ImportSession.h"

#include <gtest/gtest.h>

#include <functional>

#include "hostout/HostCore.h"
#include "platform/Dialog.h"
#include "support/Program.h"

namespace {

const std::string kHead = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 612 792\n%%EndComments\n";
const std::string kLine = "0 0 moveto 72 0 lineto stroke\n";

class Front final : public CImportFrame {
public:
    std::function<void(CDialog&)> m_Answer = [](CDialog& dialog) { dialog.PressButton(IDOK); };
    std::atomic<bool>* m_pStopAtProgress = nullptr;
    int m_nDialogs = 0;
    int m_nMessages = 0;

protected:
    void AnswerDialog(CDialog& dialog) override {
        ++m_nDialogs;
        m_Answer(dialog);
    }
    int ShowMessage(const MessageBox&) override { return ++m_nMessages, IDOK; }
    void ShowProgress(const Drawing&, const tagImportProgress&) override {
        if (m_pStopAtProgress != nullptr) *m_pStopAtProgress = true;
    }
};

class ImportSessionTest : public testing::Test {
protected:
    Drawing Import(const std::string& program, const ImportSettings& settings = {}) {
        const TempFile file(program);
        CImportSession session(settings, m_Front);
        EXPECT_EQ(session.Error(), "");
        return session.Import(file.Path(), m_Counters, m_bStop);
    }

    Front m_Front;
    ImportCounters m_Counters;
    std::atomic<bool> m_bStop{false};
};

TEST_F(ImportSessionTest, WhatTheDialogTookIsInTheDrawing) {
    m_Front.m_Answer = [](CDialog& dialog) {
        dialog.SetControlText(kToleranceEdit, "0.5");
        dialog.PressButton(kFillOutlineBox);
        dialog.PressButton(IDOK);
    };
    const Drawing drawing = Import(kHead + kLine);
    EXPECT_EQ(drawing.end, ImportEnd::Whole);
    ASSERT_TRUE(drawing.settings);
    EXPECT_EQ(drawing.settings->tolerance, 0.5f);
    EXPECT_FALSE(drawing.settings->fillOutline);
    EXPECT_EQ(drawing.entities.size(), 1u);
    EXPECT_EQ(m_Counters.entities, 1u);
    EXPECT_EQ(glbf_GetMainFrame(), nullptr);  // the session took its window back
}

TEST_F(ImportSessionTest, ADialogLeftOpenOrRefusingIsRefused) {
    m_Front.m_Answer = [](CDialog&) {};
    EXPECT_EQ(Import(kHead + kLine).end, ImportEnd::Refused);
    m_Front.m_Answer = [](CDialog& dialog) {
        dialog.SetControlText(kToleranceEdit, "9");
        dialog.PressButton(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
    };
    const Drawing drawing = Import(kHead + kLine);
    EXPECT_EQ(drawing.end, ImportEnd::Refused);
    EXPECT_FALSE(drawing.settings);
    EXPECT_EQ(drawing.messages.size(), 1u);
    EXPECT_TRUE(drawing.entities.empty());
}

TEST_F(ImportSessionTest, TheInformationIsADialogOfItsOwnAndKeepsNothingBack) {
    ImportSettings settings;
    settings.wantsInformation = true;
    settings.english = true;
    const Drawing good = Import(kHead + kLine, settings);
    EXPECT_EQ(m_Front.m_nDialogs, 1);  // the front answers the import's alone
    ASSERT_TRUE(good.information);
    EXPECT_NE(good.information->find("215.90mm"), std::string::npos);
    EXPECT_EQ(good.entities.size(), 1u);
    const Drawing bad = Import("%!PS\n" + kLine, settings);
    EXPECT_EQ(bad.end, ImportEnd::Whole);
    EXPECT_EQ(bad.entities.size(), 1u);
    ASSERT_EQ(bad.messages.size(), 1u);
    EXPECT_FALSE(bad.messages[0].HasErrorIcon());
    EXPECT_NE(bad.information->find("can't be read"), std::string::npos) << *bad.information;
}

TEST_F(ImportSessionTest, AnErrorKeepsTheDrawingAndItsBox) {
    const Drawing drawing = Import(kHead + kLine + "(a) 1 add " + kLine);
    EXPECT_EQ(drawing.end, ImportEnd::Failed);
    EXPECT_EQ(drawing.entities.size(), 1u);
    ASSERT_EQ(drawing.messages.size(), 1u);
    EXPECT_TRUE(drawing.messages[0].HasErrorIcon());
    EXPECT_EQ(m_Front.m_nMessages, 1);
    EXPECT_FALSE(drawing.fileAccessDenied);
}

TEST_F(ImportSessionTest, AFileThatAProgramAskedForIsRemembered) {
    const Drawing drawing = Import(kHead + "(/etc/passwd) (r) file pop");
    EXPECT_EQ(drawing.end, ImportEnd::Failed);
    EXPECT_TRUE(drawing.fileAccessDenied);
    ImportSettings settings;
    settings.allowFileAccess = true;
    const Drawing allowed = Import(kHead + "(/dev/null) (r) file pop ", settings);
    EXPECT_FALSE(allowed.fileAccessDenied);
}

TEST_F(ImportSessionTest, AStopAndATimeLimitEndARunWithItsDrawing) {
    m_Front.m_pStopAtProgress = &m_bStop;
    const Drawing stopped = Import(kHead + kLine + "{} loop ");
    EXPECT_EQ(stopped.end, ImportEnd::Interrupted);
    EXPECT_EQ(stopped.entities.size(), 1u);
    m_Front.m_pStopAtProgress = nullptr;
    m_bStop = false;
    ImportSettings settings;
    settings.timeout = 0.05;
    const Drawing late = Import(kHead + kLine + "{} loop ", settings);
    EXPECT_EQ(late.end, ImportEnd::TimedOut);
    EXPECT_EQ(late.entities.size(), 1u);
}

TEST_F(ImportSessionTest, OneSessionImportsOneFileAfterAnother) {
    const TempFile bad(kHead + "1 setgray /x 4 def foo ");
    const TempFile good(kHead + kLine);
    CImportSession session({}, m_Front);
    const Drawing missing = session.Import("/no/such/file.eps", m_Counters, m_bStop);
    EXPECT_EQ(missing.end, ImportEnd::NotOpened);
    EXPECT_EQ(missing.source, "file.eps");
    EXPECT_EQ(missing.openError, "No such file or directory");
    EXPECT_EQ(session.Import(bad.Path(), m_Counters, m_bStop).end, ImportEnd::Failed);
    const Drawing drawing = session.Import(good.Path(), m_Counters, m_bStop);
    EXPECT_EQ(drawing.end, ImportEnd::Whole);
    ASSERT_EQ(drawing.entities.size(), 1u);
    EXPECT_EQ(drawing.entities[0]->m_nColor, 0u);
    EXPECT_TRUE(drawing.messages.empty());
}

TEST_F(ImportSessionTest, TheReportOfTheRunReachesTheDrawingOfThatRunAlone) {
    Drawing drawing;
    CMemoryLimit limit(std::nullopt);
    tagRunReport report;
    report.failure = {1, "typecheck", "add", 41, 1203};
    report.nTail = RT_STRING;
    m_Front.OnRunEnded(report);  // between imports
    const ImportSettings settings;
    const CStopCause stop(std::nullopt, m_bStop);
    m_Front.BeginImport(settings, drawing, m_Counters, limit, stop);
    EXPECT_FALSE(drawing.report.failure);
    m_Front.OnRunEnded(report);
    m_Front.EndImport();
    ASSERT_TRUE(drawing.report.failure);
    EXPECT_EQ(drawing.report.failure->strOperator, "add");
    EXPECT_EQ(drawing.report.nTail, RT_STRING);
}

}  // namespace
