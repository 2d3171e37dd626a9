// The analysis of a file's header: the signature, the first line, and the document structuring comments (see
// "PostScript Language Document Structuring Conventions" and "Encapsulated PostScript File Format", both
// version 3). Reads through a file body of its own; no interpreter takes part.
#include "plugin/FileInfo.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "objects/NumberText.h"
#include "plugin/ImportInfoDlg.h"
#include "plugin/PlugFilterMain.h"

namespace {

/// The longest comment line, bytes. A longer one fails the analysis as an unreadable file.
constexpr std::int32_t MAX_LINE = 255;

constexpr std::string_view DSC_PREFIX = "%!PS-Adobe-";
constexpr std::string_view EPS_PREFIX = "EPSF-";

/// As the C library's atof and atoi read, with a point in every locale: as far as it makes sense, else 0.
double NumberOf(std::string_view word, NumberClass numberClass) {
    word.remove_prefix(std::min(word.find_first_not_of("\t\v\f"), word.size()));
    double value = 0;
    // Without '#', which only a radix number of the language has, the conversion can't fail.
    return NumberFromText(word.substr(0, word.find('#')), numberClass, value) ? value : 0;
}
float Real(std::string_view word) { return static_cast<float>(NumberOf(word, NumberClass::real)); }
std::int32_t Integer(std::string_view word) { return static_cast<std::int32_t>(NumberOf(word, NumberClass::integer)); }

/// The distance of two bounds; wraps around instead of overflowing.
std::int32_t Extent(std::string_view low, std::string_view high) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(Integer(high)) -
                                     static_cast<std::uint32_t>(Integer(low)));
}

std::uint32_t LittleEndian32(const unsigned char* bytes) {
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// A comment line and its words.
struct Comment {
    std::string_view line;
    std::vector<std::string_view> words;
};

// A comment with fewer words than its reader uses says nothing.

void ReadLanguageLevel(CEPSFileInfo& info, const Comment& comment) {
    if (comment.words.size() >= 2) info.m_nLanguageLevel = Integer(comment.words[1]);
}

void ReadBoundingBox(CEPSFileInfo& info, const Comment& comment) {
    const auto& words = comment.words;
    if (words.size() < 5) return;
    info.m_nBoxWidth = Extent(words[1], words[3]);
    info.m_nBoxHeight = Extent(words[2], words[4]);
}

void ReadSuppliedResource(CEPSFileInfo& info, const Comment& comment) {
    const auto& words = comment.words;
    if (words.size() >= 5) info.m_SuppliedRes.push_back({std::string(words[2]), Real(words[3]), Real(words[4])});
}

/// The raw line behind as many bytes as the keyword has, also when blanks stand before the keyword.
template <std::optional<std::string> CEPSFileInfo::*Field>
void ReadText(CEPSFileInfo& info, const Comment& comment) {
    info.*Field = std::string(comment.line.substr(comment.words[0].size()));
}

struct Keyword {
    std::string_view text;  ///< with its colon: without a blank behind the colon it is another word
    void (*read)(CEPSFileInfo& info, const Comment& comment);
};

constexpr std::string_view SUPPLIED_RESOURCES = "%%DocumentSuppliedResources:";
constexpr std::string_view CONTINUATION = "%%+";
constexpr std::string_view END_COMMENTS = "%%EndComments";

constexpr Keyword KEYWORDS[] = {
    {"%%LanguageLevel:", ReadLanguageLevel},
    {"%%Creator:", ReadText<&CEPSFileInfo::m_pszCreator>},
    {"%%Title:", ReadText<&CEPSFileInfo::m_pszTitle>},
    {"%%CreationDate:", ReadText<&CEPSFileInfo::m_pszCreationDate>},
    {"%%BoundingBox:", ReadBoundingBox},
    {SUPPLIED_RESOURCES, ReadSuppliedResource},
};

/// A line as text: it ends at its first zero byte.
int ReadTextLine(CFileBody& file, std::string& line) {
    const int result = file.ReadLine(line, MAX_LINE);
    line.resize(std::strlen(line.c_str()));
    return result;
}

}  // namespace

std::vector<std::string_view> SplitWords(std::string_view line) {
    std::vector<std::string_view> words;
    for (size_t at = 0; (at = line.find_first_not_of(' ', at)) != std::string_view::npos;) {
        const size_t end = std::min({line.find(' ', at), at + MAX_WORD, line.size()});
        words.push_back(line.substr(at, end - at));
        at = end + 1;  // over the blank, or over the byte behind a word of full length
        if (at >= line.size()) break;
    }
    return words;
}

int CEPSImportInfoDlg::AnalyseHeader() {
    m_Info = {};
    m_pFile = std::make_unique<CFileBody>(m_pJob->szPath, "r+b");
    m_pFile->SetFileKind(FK_INPUT);
    const bool read = m_pFile->Open() == 1 && CheckFileHeader() == 1 && ReadFirstLine() == 1 && ReadComments() == 1;
    m_Info.m_nFileLength = m_pFile->GetFileSize();
    m_pFile->Close();
    return read ? 1 : -1;
}

int CEPSImportInfoDlg::CheckFileHeader() {
    constexpr unsigned char BINARY_SIGNATURE[] = {0xC5, 0xD0, 0xD3, 0xC6};
    unsigned char bytes[8];
    unsigned count = 0;
    if (m_pFile->ReadBlock(bytes, 4, &count) != 1) return -1;
    if (std::memcmp(bytes, "%!PS", 4) == 0) {
        m_Info.m_nFileType = 0;
        m_Info.m_nPSLength = m_pFile->GetFileSize();
        return m_pFile->SetPosition(0) == 1 ? 1 : -1;
    }
    if (std::memcmp(bytes, BINARY_SIGNATURE, sizeof BINARY_SIGNATURE) != 0) {
        m_nFailKind = AF_FORMAT;
        return -1;
    }
    m_Info.m_nFileType = 1;
    if (m_pFile->ReadBlock(bytes, 8, &count) != 1) return -1;
    const std::uint32_t offset = LittleEndian32(bytes);
    const std::uint32_t length = LittleEndian32(bytes + 4);
    m_Info.m_nPSLength = static_cast<std::int32_t>(length);
    if (m_pFile->SetPosition(offset) != 1) return -1;
    m_pFile->SetLimit(std::int64_t{offset} + length);
    return 1;
}

int CEPSImportInfoDlg::ReadFirstLine() {
    std::string line;
    if (ReadTextLine(*m_pFile, line) == -1) return -1;
    const std::vector<std::string_view> words = SplitWords(line);
    if (words.size() < 2 || !words[0].starts_with(DSC_PREFIX) || !words[1].starts_with(EPS_PREFIX)) {
        m_nFailKind = AF_FORMAT;
        return -1;
    }
    m_Info.m_fDSCVersion = Real(words[0].substr(DSC_PREFIX.size()));
    m_Info.m_fEPSVersion = Real(words[1].substr(EPS_PREFIX.size()));
    return 1;
}

int CEPSImportInfoDlg::ReadComments() {
    bool continues = false;  // whether "%%+" carries on a list of resources
    std::string line;
    for (;;) {
        const int result = ReadTextLine(*m_pFile, line);
        if (result == -1) return -1;
        if (result == 0) return 1;  // also over a last line without a line end
        const Comment comment{line, SplitWords(line)};
        if (comment.words.empty()) continue;
        const std::string_view word = comment.words[0];
        if (word == END_COMMENTS) return 1;
        if (word == CONTINUATION) {
            if (continues) ReadSuppliedResource(m_Info, comment);
            continue;
        }
        continues = word == SUPPLIED_RESOURCES;
        const auto* keyword = std::find_if(std::begin(KEYWORDS), std::end(KEYWORDS),
                                           [word](const Keyword& candidate) { return candidate.text == word; });
        if (keyword != std::end(KEYWORDS)) keyword->read(m_Info, comment);
    }
}
