// Imports through the session by a front of the tests' own, which prints nothing and parses nothing.
#include "import/ImportSession.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>

#include "hostout/HostCore.h"
#include "platform/Dialog.h"
#include "support/Program.h"
#include "writers/JsonWriter.h"

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
        return session.Import(file.Path(), m_Counters, CStopCause(settings.timeout, m_bStop));
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
    const CStopCause stop(std::nullopt, m_bStop);
    const Drawing missing = session.Import("/no/such/file.eps", m_Counters, stop);
    EXPECT_EQ(missing.end, ImportEnd::NotOpened);
    EXPECT_EQ(missing.source, "file.eps");
    EXPECT_EQ(missing.openError, "No such file or directory");
    EXPECT_EQ(session.Import(bad.Path(), m_Counters, stop).end, ImportEnd::Failed);
    const Drawing drawing = session.Import(good.Path(), m_Counters, stop);
    EXPECT_EQ(drawing.end, ImportEnd::Whole);
    ASSERT_EQ(drawing.entities.size(), 1u);
    EXPECT_EQ(drawing.entities[0]->m_nColor, 0u);
    EXPECT_TRUE(drawing.messages.empty());
}

/// What a front could write of a drawing, bit for bit.
std::string TextOf(const Drawing& drawing) {
    const TempFile file("", ".json");
    COutputFile out(file.Path());
    WriteJson(drawing, std::nullopt, out);
    EXPECT_TRUE(out.Close());
    std::ostringstream text;
    text << std::ifstream(file.Path()).rdbuf();
    return text.str();
}

TEST_F(ImportSessionTest, AHostileImportLeavesNoTrace) {
    // Draws by all that a program before it may have changed.
    const TempFile good(kHead + R"(
/at {rand 97 mod rand 89 mod} bind def
at moveto at lineto count countdictstack lineto 1 setlinewidth stroke
1 0 0 setrgbcolor at at at at moveto curveto gsave currentlinewidth 10 mul 5 rmoveto 7 7 rlineto stroke grestore
userdict length systemdict length lineto FontDirectory length errordict length lineto $error length 3 lineto stroke
currentgray 10 mul currentlinecap moveto matrix currentmatrix {72 mul 0 rlineto} forall stroke
/Helvetica findfont 10 scalefont setfont 5 5 moveto (Ab) show (ab) stringwidth lineto stroke
5 6 moveto {1 2 add 3 mul 10 lineto} exec save /x 4 def restore currentdict /x known {9 9 lineto} if stroke
)");
    const std::string hostile[] = {
        "/f {f 1} def f",
        "/f {gsave save f} def f",
        "save 1 setgray /add {sub} def (a) 1 add",
        "true setglobal /a 9 array def 7 srand 3 {save} repeat nosuch",
        "{} loop",
        "{10 setlinewidth true setglobal gsave 0 0 moveto currentfile} loop",
        "systemdict /moveto {pop pop 0 0 lineto} put systemdict /add {sub} put /rand {4} def 1 0 0 1 5 5 cm",
        "systemdict begin /show {pop} def /lineto {exch moveto} def /count 5 def end userdict /x 1 put",
        "<< /MaxFormItem 5 >> setuserparams 5 setcacheparams << /PageSize [9 9] >> setpagedevice 7 srand",
        "true setglobal globaldict /moveto {} put /Helvetica << /FontType 3 >> definefont",
        "/Helvetica << /FontType 3 /FontMatrix [1 0 0 1 0 0] /FontBBox [0 0 1 1] /Encoding 256 array "
        "/BuildChar {pop pop 900 0 setcharwidth} >> definefont setfont (abc) show",
        "$error /newerror true put $error /errorname /typecheck put errordict /undefined {pop pop} put "
        "$error /x 1 put errordict /y 1 put nosuch",
        "/Helvetica findfont /FontMatrix [9 0 0 9 0 0] put /Helvetica findfont /Encoding get 65 /B put",
        "7 setlinewidth [1] 0 setdash 3 3 scale 45 rotate {1 exch sub} settransfer gsave gsave (",
        "currentfile /ASCIIHexDecode filter cvx exec 7b 31 20",
        "<< /a 1 >> begin /b 2 def {exit stop} stopped {stop} exec",
        "2147483647 array",
    };
    for (const bool complete : {false, true}) {
        ImportSettings settings;
        settings.complete = complete;
#ifndef __SANITIZE_ADDRESS__
        settings.memoryLimit = std::uint64_t{200} << 20;
#endif
        CImportSession session(settings, m_Front);
        if (complete && !session.Error().empty()) continue;  // that library isn't built
        ASSERT_EQ(session.Error(), "");
        const auto import = [&](const TempFile& file, double seconds) {
            Drawing drawing = session.Import(file.Path(), m_Counters, CStopCause(seconds, m_bStop));
            drawing.source = "";
            return TextOf(drawing);
        };
        constexpr double enough = 100;
        const std::string fresh = import(good, enough);
        for (const std::string& program : hostile) {
            SCOPED_TRACE(program);
            import(TempFile(kHead + kLine + program), 0.2);
            EXPECT_EQ(import(good, enough), fresh);
        }
#ifndef __SANITIZE_ADDRESS__
        import(TempFile(kHead + "{9999 array} loop"), enough);
        EXPECT_EQ(import(good, enough), fresh) << "behind exhausted memory";
#endif
    }
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
