// The lexers of the complete dialect: the rules of the language as it is, over texts and files, and the objects that
// they make.
#pragma once

#include <vector>

#include "complete/BinaryTokens.h"
#include "interp/ScanLoops.h"

struct CompleteTextRules : TextRules {
    static constexpr bool braceIsLexeme = true;
    static constexpr bool fullSyntax = true;
};
/// In files CR LF is one line end, so that the data behind it begins where programs mean it to.
struct CompleteFileRules : CompleteTextRules {
    static constexpr bool pairsCr = true;
};
/// In the input of the import its end comment is told of.
struct CompleteInputRules : CompleteFileRules {
    static constexpr bool eofIsLexeme = true;
};

/// The bytes of a file that a program may close while it is scanned: that is an end like any other.
class CProgramSource final : public CFileSource {
public:
    explicit CProgramSource(const CFileElement& file) noexcept : CFileSource(file), m_File(file) {}

    int Get(unsigned char& c) { return EndIfClosed(CFileSource::Get(c)); }
    [[nodiscard]] std::string_view Peek(int& result) {
        const std::string_view bytes = CFileSource::Peek(result);
        result = EndIfClosed(result);
        return bytes;
    }

private:
    [[nodiscard]] int EndIfClosed(int result) const noexcept {
        if (result >= 0) return result;
        const CFileBody* body = m_File.GetBody();
        return body && body->IsOpen() ? result : 0;
    }

    const CFileElement& m_File;
};

using CTextLexer = CLexer<CTextSource, CompleteTextRules>;
template <class Rules>
using CProgramLexer = CLexer<CProgramSource, Rules>;

/// Reads a procedure behind its opening brace. What goes wrong inside it is told when its end has been found.
template <class Lexer>
int ReadProcedure(CFilterEPS& m, Lexer& lexer, ElementPtr& procedure) {
    std::vector<std::vector<ElementPtr>> open(1);
    int error = PSERR_NONE;
    for (;;) {
        const Lexeme lexeme = lexer.Next();
        ElementPtr object;
        switch (lexeme) {
            case Lexeme::end:
                return m.Fail(PSERR_SYNTAX);
            case Lexeme::failure:
                return m.Fail(lexer.Error());
            case Lexeme::endComment:
                continue;
            case Lexeme::braceOpen:
                if (open.size() >= static_cast<std::size_t>(MAX_BRACE_DEPTH)) return m.Fail(PSERR_RANGE, "limitcheck");
                open.emplace_back();
                continue;
            case Lexeme::braceClose: {
                auto array = MakeElement<CArrayElement>(std::move(open.back()));
                if (m.m_bPacking) m.Dialect().Pack(*array);
                array->m_bExec = true;
                open.pop_back();
                object = std::move(array);
                if (!open.empty()) break;
                procedure = std::move(object);
                return error == PSERR_NONE ? 1 : m.Fail(static_cast<ErrorCode>(error));
            }
            default:
                if (ReadLexeme(m, lexer, lexeme, object) != 1) {
                    error = m.m_nError;
                    continue;
                }
                break;
        }
        open.back().push_back(std::move(object));
    }
}

template <class Lexer>
int ReadLexeme(CFilterEPS& m, Lexer& lexer, Lexeme lexeme, ElementPtr& object) {
    switch (lexeme) {
        case Lexeme::immediate: {
            const CElement* value = m.LookUp(InternName(lexer.Text()));
            if (!value) return m.Fail(PSERR_UNDEFINED);
            object = value->Clone();
            return 1;
        }
        case Lexeme::braceOpen:
            return ReadProcedure(m, lexer, object);
        case Lexeme::binary:
            return ReadBinaryToken(
                m, static_cast<unsigned char>(lexer.Text().front()),
                [&lexer](std::string& bytes, std::size_t n) { return lexer.TakeBytes(bytes, n); }, object);
        default: {
            const int result = ReadSimpleLexeme(m, lexer, lexeme, true, object);
            return result == 0 ? m.Fail(PSERR_SYNTAX) : result;
        }
    }
}

/// Reads the next object of a lexer; null at its end. 1, or -1 with the code.
template <class Lexer>
int ReadNext(CFilterEPS& m, Lexer& lexer, ElementPtr& object) {
    object = nullptr;
    for (;;) {
        const Lexeme lexeme = lexer.Next();
        if (lexeme == Lexeme::end) return 1;
        if (lexeme == Lexeme::failure) return m.Fail(lexer.Error());
        if (lexeme == Lexeme::endComment || lexeme == Lexeme::braceClose) continue;
        return ReadLexeme(m, lexer, lexeme, object);
    }
}
