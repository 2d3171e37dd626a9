// What the document structuring comments in a file's header say, and the splitting of comment lines into
// words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A resource that the file brings along, from a comment that lists them.
struct CDocSuppliedRes {
    std::string m_strName;
    float m_fVersion;
    float m_fRevision;
};

/// The result of an analysis. A text is a copy of its comment line behind the keyword, so that it keeps the
/// blank behind the colon.
struct CEPSFileInfo {
    std::int32_t m_nFileType = 0;    ///< 0 plain text, 1 with the binary header that goes with a preview
    float m_fDSCVersion = 0;         ///< behind "%!PS-Adobe-" in the first line
    float m_fEPSVersion = 0;         ///< behind "EPSF-" in the first line
    std::int32_t m_nFileLength = 0;  ///< of the whole file, bytes
    std::int32_t m_nPSLength = 0;    ///< of the PostScript section, bytes
    std::optional<std::string> m_pszTitle;
    std::optional<std::string> m_pszCreator;
    std::optional<std::string> m_pszCreationDate;
    std::int32_t m_nLanguageLevel = 0;  ///< 0 without the comment
    std::int32_t m_nBoxWidth = 0;       ///< points
    std::int32_t m_nBoxHeight = 0;      ///< points
    std::vector<CDocSuppliedRes> m_SuppliedRes;
};

class CFileBody;

/// How an analysis ended.
enum AnalysisResult : std::int32_t {
    AR_FORMAT = 0,  ///< no EPS file
    AR_IO = 1,      ///< it can't be read, or has a comment line of more than 255 bytes
    AR_DONE = 2
};

/// Reads the header comments of an open file from its start; info holds what was found by then. The file stays open.
[[nodiscard]] AnalysisResult AnalyseEpsFile(CFileBody& file, CEPSFileInfo& info);

/// The longest word of a line, bytes.
inline constexpr std::size_t MAX_WORD = 49;

/// The words of a line, which have to go before it does. Only the space separates words: a TAB is part of
/// one. A word ends at its 49th byte, too; the byte behind that is dropped and the next one starts a new
/// word.
[[nodiscard]] std::vector<std::string_view> SplitWords(std::string_view line);
