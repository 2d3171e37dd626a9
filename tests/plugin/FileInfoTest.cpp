// The analysis of header comments, to the byte: words, keywords, limits and failures.
#include "plugin/FileInfo.h"

#include "plugin/ImportInfoDlg.h"
#include "plugin/OwnResources.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

using namespace std::string_literals;

const std::string FIRST_LINE = "%!PS-Adobe-3.0 EPSF-3.0\n";

struct Analysis {
    int result;
    int failKind;
    CEPSFileInfo info;
};

Analysis AnalysePath(const std::string& path) {
    tagPlugImportJob job{};
    std::snprintf(job.szPath, sizeof job.szPath, "%s", path.c_str());
    CEPSImportInfoDlg dialog(nullptr);
    dialog.m_pJob = &job;
    const int result = dialog.AnalyseHeader();
    return {result, dialog.m_nFailKind, dialog.m_Info};
}

Analysis Analyse(const std::string& bytes) { return AnalysePath(TempFile(bytes).Path()); }

/// The comments of a file that starts as it should.
CEPSFileInfo Info(const std::string& comments) {
    const Analysis analysis = Analyse(FIRST_LINE + comments);
    EXPECT_EQ(analysis.result, 1);
    return analysis.info;
}

std::string Words(const std::string& line) {
    std::string text;
    for (const std::string_view word : SplitWords(line)) text.append("[").append(word).append("]");
    return text;
}

TEST(FileInfoTest, WordsEndAtSpacesAndAtTheir49thByte) {
    const std::string digits = "1234567890123456789012345678901234567890123456789";  // 49
    struct Case {
        std::string line;
        std::string words;
    };
    for (const Case& c : {Case{"", ""},
                          {"   ", ""},
                          {" a  b ", "[a][b]"},
                          {"a\tb c", "[a\tb][c]"},
                          {digits, "[" + digits + "]"},
                          {digits + " a", "[" + digits + "][a]"},
                          {digits + "X", "[" + digits + "]"},
                          {digits + "Xa b", "[" + digits + "][a][b]"},
                          {digits + "X a", "[" + digits + "][a]"},
                          {digits + "X" + digits + "Y", "[" + digits + "][" + digits + "]"}}) {
        EXPECT_EQ(Words(c.line), c.words) << c.line;
    }
}

TEST(FileInfoTest, Signatures) {
    struct Case {
        const char* name;
        std::string bytes;
        int result;
        int failKind = AR_IO;
    };
    const std::string header = "\xC5\xD0\xD3\xC6"s;
    for (const Case& c : {Case{"whole", FIRST_LINE, 1},
                          {"first line alone, unfinished", "%!PS-Adobe-3.0 EPSF-3.0", 1},
                          {"three bytes", "%!P", -1},
                          {"empty", "", -1},
                          {"another file", "%PDF-1.4\n", -1, AR_FORMAT},
                          {"no EPSF word", "%!PS-Adobe-3.0\n", -1, AR_FORMAT},
                          {"another second word", "%!PS-Adobe-3.0 Resource-CMap\n", -1, AR_FORMAT},
                          {"plain PostScript", "%!PS\n", -1, AR_FORMAT},
                          {"blank first line", "%!PS", -1, AR_FORMAT},
                          {"header cut", header + "\x1e\0\0\0\x10"s, -1},
                          {"section outside the file", header + "\x7f\0\0\0\x10\0\0\0"s, -1, AR_FORMAT},
                          {"offset and length of all ones", header + std::string(8, '\xff'), -1, AR_FORMAT}}) {
        SCOPED_TRACE(c.name);
        const Analysis analysis = Analyse(c.bytes);
        EXPECT_EQ(analysis.result, c.result);
        EXPECT_EQ(analysis.failKind, c.failKind);
    }
    EXPECT_EQ(AnalysePath("/nowhere/at/all.eps").failKind, AR_IO);
    EXPECT_EQ(AnalysePath(::testing::TempDir()).result, -1);
}

TEST(FileInfoTest, VersionsAreTheNumbersOfTheFirstLine) {
    struct Case {
        const char* line;
        float dsc, eps;
    };
    for (const Case& c : {Case{"%!PS-Adobe-3.0 EPSF-3.1\n", 3.0f, 3.1f},
                          {"%!PS-Adobe- EPSF-\n", 0.0f, 0.0f},
                          {" %!PS", 0, 0},
                          {"%!PS-Adobe-2.0x   EPSF-1e0 more\n", 2.0f, 1.0f}}) {
        const Analysis analysis = Analyse(c.line);
        EXPECT_EQ(analysis.info.m_fDSCVersion, c.dsc) << c.line;
        EXPECT_EQ(analysis.info.m_fEPSVersion, c.eps) << c.line;
    }
}

TEST(FileInfoTest, TextsKeepTheRawLine) {
    const CEPSFileInfo info =
        Info("%%Title: abc\n%%Creator:  (x  y) \r\n%%CreationDate: 1\r%%Title:hidden\n%%Title: def\t\n");
    EXPECT_EQ(info.m_pszTitle, " def\t");
    EXPECT_EQ(info.m_pszCreator, "  (x  y) ");
    EXPECT_EQ(info.m_pszCreationDate, " 1");
    EXPECT_EQ(Info("%%Title: abc\n").m_pszTitle, " abc");
    EXPECT_EQ(Info("%%Title:abc\n").m_pszTitle, std::nullopt);
    EXPECT_EQ(Info("%%Title:\n").m_pszTitle, "");
    EXPECT_EQ(Info("%%Title: a\0b\n"s).m_pszTitle, " a");
}

TEST(FileInfoTest, NumbersOfComments) {
    const CEPSFileInfo info = Info("%%LanguageLevel: 2x\n%%BoundingBox: -10 5.9 612 792 7\n");
    EXPECT_EQ(info.m_nLanguageLevel, 2);
    EXPECT_EQ(info.m_nBoxWidth, 622);
    EXPECT_EQ(info.m_nBoxHeight, 787);
    EXPECT_EQ(Info("%%BoundingBox: -2147483648 0 2147483647 1\n").m_nBoxWidth, -1);
    // Too few words: the comment says nothing.
    const CEPSFileInfo kept =
        Info("%%LanguageLevel: 3\n%%BoundingBox: 0 0 1 2\n%%LanguageLevel:\n%%BoundingBox: (atend)\n");
    EXPECT_EQ(kept.m_nLanguageLevel, 3);
    EXPECT_EQ(kept.m_nBoxHeight, 2);
}

TEST(FileInfoTest, SuppliedResourcesContinue) {
    const CEPSFileInfo info = Info(
        "%%DocumentSuppliedResources: procset\n"
        "%%+ procset second 1.2 3\n"
        "\n"
        "%%+ procset third 1 0 extra\n"
        "%%+ procset short 1\n"
        "%%Creator: me\n"
        "%%+ procset stray 1 0\n"
        "%%DocumentSuppliedResources: font fourth 2.5 7\n");
    ASSERT_EQ(info.m_SuppliedRes.size(), 3u);
    EXPECT_EQ(info.m_SuppliedRes[0].m_strName, "second");
    EXPECT_EQ(info.m_SuppliedRes[0].m_fVersion, 1.2f);
    EXPECT_EQ(info.m_SuppliedRes[0].m_fRevision, 3.0f);
    EXPECT_EQ(info.m_SuppliedRes[1].m_strName, "third");
    EXPECT_EQ(info.m_SuppliedRes[2].m_strName, "fourth");
}

TEST(FileInfoTest, ReadingEndsAtEndCommentsAndFailsOnALongLine) {
    EXPECT_EQ(Info("%%EndComments\n%%Title: late\n").m_pszTitle, std::nullopt);
    EXPECT_EQ(Info("%%Title: last, without a line end").m_pszTitle, std::nullopt);
    EXPECT_EQ(Analyse(FIRST_LINE + "%" + std::string(254, 'x') + "\n").result, 1);
    const Analysis analysis = Analyse(FIRST_LINE + "%" + std::string(255, 'x') + "\n");
    EXPECT_EQ(analysis.result, -1);
    EXPECT_EQ(analysis.failKind, AR_IO);
    EXPECT_EQ(Analyse(FIRST_LINE + "%%EndComments\n" + std::string(300, 'x')).result, 1);
    const Analysis first = Analyse("%!PS-Adobe-3.0 EPSF-3.0 " + std::string(300, 'x') + "\n");
    EXPECT_EQ(first.result, -1);
    EXPECT_EQ(first.failKind, AR_IO);
}

TEST(FileInfoTest, BinaryHeaderConfinesTheReading) {
    const std::string program = FIRST_LINE + "%%Title: inside\n";
    const auto length = static_cast<char>(program.size());
    const std::string bytes =
        "\xC5\xD0\xD3\xC6\x1e\0\0\0"s + length + "\0\0\0"s + std::string(18, '\0') + program + "%%Title: outside\n";
    const Analysis analysis = Analyse(bytes);
    EXPECT_EQ(analysis.result, 1);
    EXPECT_EQ(analysis.info.m_nFileType, 1);
    EXPECT_EQ(analysis.info.m_nPSLength, static_cast<int>(program.size()));
    EXPECT_EQ(analysis.info.m_nFileLength, static_cast<int>(bytes.size()));
    EXPECT_EQ(analysis.info.m_pszTitle, " inside");
}

TEST(FileInfoTest, EveryByteOfAHeaderCounts) {
    // Sections at far ends of a file that is mostly a hole.
    for (const unsigned offset : {0x1eu, 0x1234u, 0x123456u, 0x01234567u}) {
        SCOPED_TRACE(offset);
        const std::string program = FIRST_LINE + "%%Title: far\n";
        std::string header = "\xC5\xD0\xD3\xC6";
        for (const unsigned word : {offset, 0x02000000u}) {
            for (int shift = 0; shift < 32; shift += 8) header += static_cast<char>(word >> shift & 255);
        }
        const TempFile file(header);
        std::FILE* stream = std::fopen(file.Path().c_str(), "r+b");
        std::fseek(stream, static_cast<long>(offset), SEEK_SET);
        std::fputs(program.c_str(), stream);
        std::fclose(stream);
        const Analysis analysis = AnalysePath(file.Path());
        EXPECT_EQ(analysis.result, 1);
        EXPECT_EQ(analysis.info.m_pszTitle, " far");
        EXPECT_EQ(analysis.info.m_nPSLength, 0x02000000);
        EXPECT_EQ(analysis.info.m_nFileLength, static_cast<std::int32_t>(offset + program.size()));
    }
}

TEST(FileInfoTest, TextOfTheDialog) {
    struct Case {
        std::string bytes;
        std::string text;
    };
    for (const Case& c :
         {Case{FIRST_LINE + "%%BoundingBox: 0 0 612 792\n",
               "EPS文件类型: 纯ASCII EPS文件\r\nDSC 版本: 3.0\r\nEPS 版本: 3.0\r\nPostscript 语言级: "
               "(unkonwn)\r\n"
               "文件嵌入程序的边界盒：(宽度: 215.90mm, 高度: 279.40mm)\r\nEPS文件长度: 51 字节\r\n"
               "Postscript语言段长度: 51 字节"},
          {"\xC5\xD0\xD3\xC6\x0c\0\0\0\x60\0\0\0%!PS-Adobe-2.04 EPSF-1.26\n%%CreationDate: c\n%%Creator: "
           "b%d\n"
           "%%Title: a\n%%LanguageLevel: 2\n"s,
           "EPS文件类型: 带预览的EPS文件\r\nDSC 版本: 2.0\r\nEPS 版本: 1.3\r\nPostscript 语言版本: "
           "2\r\n文件标题:  a\r\n"
           "EPS输出系统:  b%d\r\n文件创建时间:  c\r\n文件嵌入程序的边界盒：(宽度: 0.00mm, 高度: 0.00mm)\r\n"
           "EPS文件长度: 101 字节\r\nPostscript语言段长度: 96 字节"}}) {
        const TempFile file(c.bytes);
        tagPlugImportJob job{};
        std::snprintf(job.szPath, sizeof job.szPath, "%s", file.Path().c_str());
        TestFrame frame;
        frame.m_Script = [&](CDialog& dialog) {
            dialog.PressButton(IDC_FILE_INFO);
            EXPECT_EQ(dialog.GetControlText(IDC_INFO_TEXT), c.text);
        };
        CEPSImportInfoDlg dialog(&frame);
        dialog.m_pJob = &job;
        dialog.DoModal();
    }
}

}  // namespace
