// The analysis of a file's header: the signature, the first line, and the document structuring comments (see
// "PostScript Language Document Structuring Conventions" and "Encapsulated PostScript File Format", both
// version 3). Reads an open file; no interpreter and no window takes part.
#include "plugin/FileInfo.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "objects/EpsHeader.h"
#include "objects/File.h"
#include "objects/NumberText.h"

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

namespace {

/// Goes to the start of the PostScript section and tells the file type.
AnalysisResult ReadHeader(CFileBody& file, CEPSFileInfo& info) {
    tagEpsSection section{};
    switch (EnterEpsSection(file, section)) {
        case EpsEntry::program:
            info.m_nFileType = 0;
            info.m_nPSLength = file.GetFileSize();
            return AR_DONE;
        case EpsEntry::section:
            info.m_nFileType = 1;
            info.m_nPSLength = static_cast<std::int32_t>(section.nLength);
            return AR_DONE;
        case EpsEntry::unknown:
            return AR_FORMAT;
        default:
            return AR_IO;
    }
}

AnalysisResult ReadFirstLine(CFileBody& file, CEPSFileInfo& info) {
    std::string line;
    if (ReadTextLine(file, line) == -1) return AR_IO;
    const std::vector<std::string_view> words = SplitWords(line);
    if (words.size() < 2 || !words[0].starts_with(DSC_PREFIX) || !words[1].starts_with(EPS_PREFIX)) {
        return AR_FORMAT;
    }
    info.m_fDSCVersion = Real(words[0].substr(DSC_PREFIX.size()));
    info.m_fEPSVersion = Real(words[1].substr(EPS_PREFIX.size()));
    return AR_DONE;
}

AnalysisResult ReadComments(CFileBody& file, CEPSFileInfo& info) {
    bool continues = false;  // whether "%%+" carries on a list of resources
    std::string line;
    for (;;) {
        const int result = ReadTextLine(file, line);
        if (result == -1) return AR_IO;
        if (result == 0) return AR_DONE;  // also over a last line without a line end
        const Comment comment{line, SplitWords(line)};
        if (comment.words.empty()) continue;
        const std::string_view word = comment.words[0];
        if (word == END_COMMENTS) return AR_DONE;
        if (word == CONTINUATION) {
            if (continues) ReadSuppliedResource(info, comment);
            continue;
        }
        continues = word == SUPPLIED_RESOURCES;
        const auto* keyword = std::find_if(std::begin(KEYWORDS), std::end(KEYWORDS),
                                           [word](const Keyword& candidate) { return candidate.text == word; });
        if (keyword != std::end(KEYWORDS)) keyword->read(info, comment);
    }
}

}  // namespace

AnalysisResult AnalyseEpsFile(CFileBody& file, CEPSFileInfo& info) {
    info = {};
    AnalysisResult result = ReadHeader(file, info);
    if (result == AR_DONE) result = ReadFirstLine(file, info);
    if (result == AR_DONE) result = ReadComments(file, info);
    info.m_nFileLength = file.GetFileSize();
    return result;
}
