// The scanners of the complete dialect: files, texts, single tokens, and files that are run as programs.
#include <charconv>
#include <cmath>

#include "complete/CompleteDialect.h"
#include "complete/FilterObjects.h"
#include "complete/ProgramLexer.h"

int CCompleteDialect::ScanFile(CFilterEPS& m) {
    // The file goes with the machine's current file: a program may take that away.
    const TypedPtr<CFileElement> file = m.m_pCurrentFile->CloneFile();
    if (m_nFileDepth > 0) {
        CProgramLexer<CompleteFileRules> lexer{CProgramSource(*file)};
        return RunLexer(m, lexer);
    }
    CProgramLexer<CompleteInputRules> lexer{CProgramSource(*file)};
    ++m_nFileDepth;
    const int result = RunLexer(m, lexer);
    --m_nFileDepth;
    return result;
}

int CCompleteDialect::ScanBuffer(CFilterEPS& m, std::string_view text) {
    CTextLexer lexer{CTextSource(text)};
    return RunLexer(m, lexer);
}

int CCompleteDialect::ScanToken(CFilterEPS& m, const CStringElement& source, ElementPtr& object,
                                std::int32_t& consumed) {
    CTextLexer lexer{CTextSource(source.Bytes())};  // nothing runs that could change them
    if (ReadNext(m, lexer, object) != 1) return -1;
    // The white space that ends a name or number belongs to it.
    consumed = static_cast<std::int32_t>(lexer.HoldsSpecial() ? lexer.Consumed() : lexer.Taken());
    return 1;
}

// PLRM, Numbers: one sign, digits, a point, an exponent; or a radix number. All else is a name ("1-2", "16#ZZ"), and an
// integer that 32 bits can't hold is a real.
TokenNumber CCompleteDialect::NumberOf(std::string_view token) const {
    const TokenNumber number = ReadNumber(token);
    if (!number.isValid) return {};
    if (token.find('#') != std::string_view::npos) return number;
    if (token.front() == '+' || token.front() == '-') token.remove_prefix(1);
    double magnitude = 0;
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), magnitude);
    if (error == std::errc::invalid_argument || end != token.data() + token.size() || token.front() == '-') return {};
    if (number.numberClass == NumberClass::real || magnitude == std::fabs(number.value)) return number;
    return {NumberClass::real, true, number.value < 0 ? -magnitude : magnitude};
}

int CCompleteDialect::ExecuteOther(CFilterEPS& m, const CElement& e) {
    if (e.m_nType != ET_FILE) return 0;
    const TypedPtr<CFileElement> file = static_cast<const CFileElement&>(e).CloneFile();
    if (m.ExecuteFile(*file) != 1) return -1;
    CloseFile(*file);
    return 1;
}
