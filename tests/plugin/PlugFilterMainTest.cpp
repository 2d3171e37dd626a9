// The host's view of the plug-in: records written to the byte, and imports from the dialog to the list.
#include "plugin/PlugFilterMain.h"

#include <cstring>
#include <memory>

#include "hostout/HostModel.h"
#include "platform/App.h"
#include "platform/LocalResources.h"
#include "platform/PtrList.h"
#include "plugin/OwnResources.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

const char* const TWO_LINES =
    "%!PS-Adobe-3.0 EPSF-3.0\n1 0 0 setrgbcolor 0 0 moveto 72 0 lineto stroke\n0 0 moveto 0 72 lineto "
    "stroke\n";

int Send(std::uint32_t command, void* record = nullptr) {
    tagPlugRequest request{};
    request.nCommand = command;
    request.pRecord = record;
    return PlugFilterMain(&request);
}

/// The entities that an import delivered, gone with the object.
struct Entities : CPtrList {
    ~Entities() {
        for (void* p : *this) {
            auto* entity = static_cast<CEntity*>(p);
            entity->Release();
            delete entity;
        }
    }
};

/// One import with a list of its own.
struct Import {
    explicit Import(const std::string& path) {
        std::snprintf(job.szPath, sizeof job.szPath, "%s", path.c_str());
        job.pList = &list;
        job.nReset = 7;
        job.nImported = 8;
        answer = Send(PFC_IMPORT, &job);
    }
    Entities list;
    tagPlugImportJob job{};
    int answer;
};

/// Puts other localised resources in place of the host's for as long as it lives, as a restart of the library
/// would.
class LocalResources {
public:
    explicit LocalResources(HINSTANCE resources) { Restart(resources); }
    ~LocalResources() { Restart(nullptr); }

private:
    static void Restart(HINSTANCE resources) {
        CWinApp* app = AfxGetModuleState()->m_pCurrentWinApp;
        app->ExitInstance();
        AfxGetModuleState()->m_hCurrentResourceHandle = app->m_hInstance;
        SetHostLocalResources("Eps", resources);
        EXPECT_TRUE(app->InitInstance());
    }
};

TEST(PlugFilterMainTest, Queries) {
    tagPlugRequest request{};
    std::memset(&request, 0xAA, sizeof request);
    request.nCommand = PFC_QUERY_A;
    EXPECT_EQ(PlugFilterMain(&request), 1);
    EXPECT_EQ(request.nResult, 5005u);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&request)[12], 0xAA);  // a word, not a pointer
    request.nCommand = PFC_QUERY_B;
    EXPECT_EQ(PlugFilterMain(&request), 1);
    EXPECT_EQ(request.nResult, 1u);
}

TEST(PlugFilterMainTest, CommandsNotServedChangeNothing) {
    for (const std::uint32_t command : {0u, 5u, 6u, 8u, 0xFFFFFFFFu}) {
        tagPlugRequest request;
        std::memset(&request, 0xAA, sizeof request);
        request.nCommand = command;
        const tagPlugRequest before = request;
        EXPECT_EQ(PlugFilterMain(&request), 16) << command;
        EXPECT_EQ(std::memcmp(&request, &before, sizeof request), 0) << command;
    }
}

TEST(PlugFilterMainTest, MissingPointers) {
    EXPECT_EQ(PlugFilterMain(nullptr), 0);
    for (const std::uint32_t command : {PFC_DESCRIBE, PFC_IMPORT, PFC_RESET}) EXPECT_EQ(Send(command), 0) << command;
    tagPlugImportJob job{};
    job.nImported = 8;
    EXPECT_EQ(Send(PFC_IMPORT, &job), 0);
    EXPECT_EQ(job.nImported, 8u);
}

TEST(PlugFilterMainTest, DescriptionWritesItsFieldsAndNothingElse) {
    unsigned char record[240];
    std::memset(record, 0xAA, sizeof record);
    unsigned char expected[240];
    std::memset(expected, 0xAA, sizeof expected);
    const auto put = [&](size_t at, const void* bytes, size_t count) { std::memcpy(expected + at, bytes, count); };
    put(0, "EPS 文件过滤器", sizeof "EPS 文件过滤器");
    put(128, "EPS Files (*.eps)", 18);
    put(178, "eps", 4);
    put(228, "\2\0\0\0\x09\1\0\0", 8);
    alignas(tagPlugFilterInfo) unsigned char aligned[sizeof record];
    std::memcpy(aligned, record, sizeof record);
    EXPECT_EQ(Send(PFC_DESCRIBE, aligned), 1);
    for (size_t i = 0; i < sizeof expected; ++i) EXPECT_EQ(aligned[i], expected[i]) << i;
}

TEST(PlugFilterMainTest, ResetClearsOneWord) {
    tagPlugImportJob job{};
    job.nReset = 7;
    job.nImported = 8;
    EXPECT_EQ(Send(PFC_RESET, &job), 1);
    EXPECT_EQ(job.nReset, 0u);
    EXPECT_EQ(job.nImported, 8u);
}

TEST(PlugFilterMainTest, ImportDeliversInOrder) {
    TestFrame frame;
    const TempFile file(TWO_LINES);
    const Import import(file.Path());
    EXPECT_EQ(import.answer, 1);
    EXPECT_EQ(import.job.nImported, 0u);
    EXPECT_EQ(import.job.nReset, 7u);
    ASSERT_EQ(import.list.GetCount(), 2u);
    const auto* first = static_cast<const CEntPLine*>(*import.list.begin());
    EXPECT_EQ(first->m_nColor, 0xFFu);
    EXPECT_EQ(first->m_Sections.GetFirst()->GetPoints()[1].x, 25.4f);
    EXPECT_EQ(frame.m_WaitCursor, "on off ");
    EXPECT_TRUE(frame.m_Boxes.empty());
}

TEST(PlugFilterMainTest, DialogValuesReachTheInterpreter) {
    const TempFile file("%!PS\n0 0 moveto 1 0 lineto stroke 0 0 moveto 72 0 lineto 72 72 lineto fill\n");
    TestFrame frame;
    frame.m_Script = [](CDialog& dialog) {
        dialog.SetControlText(IDC_TOLERANCE, "1");
        dialog.PressButton(IDOK);
    };
    EXPECT_EQ(Import(file.Path()).list.GetCount(), 1u);  // the short line is dropped
    frame.m_Script = [](CDialog& dialog) {
        dialog.SetCheck(IDC_FILL_OUTLINE, false);
        dialog.PressButton(IDOK);
    };
    EXPECT_EQ(Import(file.Path()).list.GetCount(), 1u);  // the filled path is not imported
}

TEST(PlugFilterMainTest, ErrorsDeliverWhatCameBefore) {
    TestFrame frame;
    const TempFile file(std::string(TWO_LINES).append("nonsense 0 0 moveto 9 9 lineto stroke\n"));
    const Import import(file.Path());
    EXPECT_EQ(import.answer, 1);
    EXPECT_EQ(import.list.GetCount(), 2u);
    ASSERT_EQ(frame.m_Boxes.size(), 1u);
    EXPECT_EQ(frame.m_Boxes[0].text, "EPS文件解释失败!\n错误类型:名称未定义");
    EXPECT_EQ(frame.m_Boxes[0].caption, "出错信息");
    EXPECT_EQ(frame.m_Boxes[0].style, 16u);
    EXPECT_EQ(frame.m_WaitCursor, "on off ");
}

TEST(PlugFilterMainTest, TextsOfTheErrors) {
    const std::pair<const char*, const char*> cases[] = {
        {"hello\n", "文件格式错误"},
        {"%!PS-Adobe-3.0\n(a) 1 add\n", "类型不匹配"},
        {"%!PS-Adobe-3.0\nnonsense\n", "名称未定义"},
        {"%!PS-Adobe-3.0\n16#ZZ pop\n", "语法错误"},
        {"%!PS-Adobe-3.0\n(/nowhere/x) (r) file\n", "文件I/O错误"},
        {"%!PS-Adobe-3.0\npop \n", "操作栈下溢"},
        {"%!PS-Adobe-3.0\n-1 array\n", "操作范围错误"},
        {"%!PS-Adobe-3.0\n1 ]\n", "mark 不匹配"},
        {"%!PS-Adobe-3.0\nend \n", "字典栈下溢"},
        {"%!PS-Adobe-3.0\n8 {save} repeat\n", "VM 栈上溢"},
        {"%!PS-Adobe-3.0\nnewpath currentpoint\n", "路径没有起始点"},
        {"%!PS-Adobe-3.0\n(x) run\n", "遇到了系统暂不支持的操作符"},
    };
    for (const auto& [program, text] : cases) {
        SCOPED_TRACE(program);
        TestFrame frame;
        const TempFile file(program);
        EXPECT_EQ(Import(file.Path()).answer, 1);
        ASSERT_EQ(frame.m_Boxes.size(), 1u);
        EXPECT_EQ(frame.m_Boxes[0].text, std::string("EPS文件解释失败!\n错误类型:") + text);
    }
}

TEST(PlugFilterMainTest, ImportsThatDeliverNothing) {
    TestFrame frame;
    const TempFile empty("%!PS\n");
    EXPECT_EQ(Import(empty.Path()).answer, 1);
    EXPECT_EQ(Import("/nowhere/at/all.eps").answer, 1);
    EXPECT_TRUE(frame.m_Boxes.empty());
    const TempFile file(TWO_LINES);
    frame.m_Script = [](CDialog& dialog) { dialog.PressButton(IDCANCEL); };
    const Import cancelled(file.Path());
    EXPECT_EQ(cancelled.answer, 1);
    EXPECT_EQ(cancelled.job.nImported, 0u);
    EXPECT_EQ(cancelled.list.GetCount(), 0u);
    const TempFile foreign("GIF89a");
    frame.m_Script = [](CDialog& dialog) {
        dialog.PressButton(IDC_FILE_INFO);
        dialog.PressButton(IDOK);
        dialog.PressButton(IDCANCEL);
    };
    EXPECT_EQ(Import(foreign.Path()).list.GetCount(), 0u);
    EXPECT_EQ(frame.m_Boxes.size(), 1u);
}

TEST(PlugFilterMainTest, TheUserMayLeaveARun) {
    TestFrame frame;
    std::int64_t total = 0;
    std::int64_t entities = 0;
    frame.m_Progress = [&](const tagImportProgress& progress) {
        total = progress.nBytesTotal;
        entities = progress.nEntities;
        return true;
    };
    const std::string program = std::string(TWO_LINES) + "{ } loop\n";
    const TempFile file(program);
    EXPECT_EQ(Import(file.Path()).list.GetCount(), 2u);
    EXPECT_EQ(total, static_cast<std::int64_t>(program.size()));
    EXPECT_EQ(entities, 2);
    EXPECT_TRUE(frame.m_Boxes.empty());
}

TEST(PlugFilterMainTest, LocalisedResourcesTakeThePlaceOfTheLibrarysOwn) {
    static constexpr CStringResource STRINGS[] = {{IDS_FILTER_NAME,
                                                   "a name of more than a hundred and twenty-eight bytes, "
                                                   "which has to be cut before it runs into the field "
                                                   "behind it, whatever the host gives"},
                                                  {IDS_ERROR_HEAD, "Failed: "},
                                                  {IDS_FIRST_ERROR + 2, "undefined"},
                                                  {IDS_ERROR_CAPTION, "Error"},
                                                  {AFX_IDP_PARSE_REAL, "A number, please."}};
    static constexpr CControlTemplate CONTROLS[] = {{IDC_TOLERANCE, ControlKind::edit, "", 0, 0, 9, 9},
                                                    {IDC_FILL_OUTLINE, ControlKind::checkBox, "", 0, 0, 9, 9},
                                                    {IDOK, ControlKind::defaultButton, "OK", 0, 0, 9, 9}};
    static constexpr CDialogTemplate DIALOGS[] = {{IDD_IMPORT, "EPS import", 99, 99, "Sans", 9, CONTROLS}};
    CResourceModule english(STRINGS, DIALOGS);
    TestFrame frame;
    const TempFile file("%!PS\nnonsense\n");
    {
        const LocalResources local(&english);
        EXPECT_EQ(GetResHandle(), &english);
        tagPlugFilterInfo info{};
        EXPECT_EQ(Send(PFC_DESCRIBE, &info), 1);
        EXPECT_EQ(std::strlen(info.szName), 127u);
        EXPECT_STREQ(info.szFileType, "EPS Files (*.eps)");
        frame.m_Script = [](CDialog& dialog) {
            EXPECT_EQ(dialog.GetWindowText(), "EPS import");
            dialog.SetControlText(IDC_TOLERANCE, "much");
            dialog.PressButton(IDOK);
            dialog.SetControlText(IDC_TOLERANCE, "1");
            dialog.PressButton(IDOK);
        };
        AfxGetModuleState()->m_hCurrentResourceHandle = nullptr;
        const Import import(file.Path());
        EXPECT_EQ(AfxGetModuleState()->m_hCurrentResourceHandle, nullptr);  // put back behind the dialog
    }
    ASSERT_EQ(frame.m_Boxes.size(), 2u);
    EXPECT_EQ(frame.m_Boxes[0].text, "A number, please.");
    EXPECT_EQ(frame.m_Boxes[1].text, "Failed: undefined");
    EXPECT_EQ(GetResHandle(), &g_OwnResources);
    char text[64];
    EXPECT_GT(LoadResString(IDS_ERROR_CAPTION, text, sizeof text), 0);
    EXPECT_STREQ(text, "出错信息");
}

}  // namespace
