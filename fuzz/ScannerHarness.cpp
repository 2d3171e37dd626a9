// The lexer against a slow reference of the plain dialect's scanner: byte after byte over the whole text, with the
// state in plain variables, and nothing shared with the lexer.
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/Harness.h"
#include "interp/FilterEPS.h"
#include "interp/Lexer.h"
#include "objects/Sources.h"

namespace {

constexpr std::size_t LONGEST_TOKEN = 127;
constexpr int DEEPEST_BRACES = 10000;

struct Item {
    Lexeme kind;
    std::string text;  ///< of tokens, strings and procedures; of a failure the code
    bool operator==(const Item&) const = default;
};

class ReferenceScanner {
public:
    /// Of the input file, or of a text that is executed.
    ReferenceScanner(std::string_view text, bool isFile) : m_Text(text), m_bFile(isFile) {}

    std::vector<Item> Run() {
        while (!m_bDone) {
            if (m_nAt == m_Text.size()) {
                EndOfText();
            } else if (const char c = m_Text[m_nAt++]; m_bHex) {
                InHex(c);
            } else if (std::string_view(" \r\n\f\t\\/{([}])%<>").find(c) == std::string_view::npos) {
                m_Token += c;
                if (m_Token.size() > LONGEST_TOKEN) Fail(PSERR_SYNTAX);
            } else {
                Delimiter(c);
            }
        }
        return std::move(m_Items);
    }

private:
    void Emit(Lexeme kind, std::string text = {}) { m_Items.push_back({kind, std::move(text)}); }
    void Fail(ErrorCode code) {
        Emit(Lexeme::failure, std::to_string(code));
        m_bDone = true;
    }
    bool AtEnd() const { return m_nAt == m_Text.size(); }
    /// The end inside something: a file ends in order, a text doesn't.
    void EndInside() { m_bFile ? static_cast<void>(m_bDone = true) : Fail(PSERR_SYNTAX); }

    void EndOfText() {
        if (m_bHex) return EndInside();
        if (!m_bFile) CompleteToken();
        m_bDone = true;
    }

    void CompleteToken() {
        if (m_Token.empty()) return;
        const std::string text = m_Token.substr(0, m_Token.find('\0'));
        m_Token.clear();
        if (m_bLiteral) {
            m_bLiteral = false;
            Emit(Lexeme::literal, text);
        } else if (m_bImmediate) {
            m_bImmediate = false;
            Emit(Lexeme::immediate, text);
        } else {
            Emit(Lexeme::token, text);
        }
    }

    void Delimiter(char c) {
        if (m_bFile && c == '\r') {
            if (AtEnd()) {
                m_bDone = true;
                return;
            }
            if (m_Text[m_nAt] == '\n') {
                c = '\n';
                ++m_nAt;
            }
        }
        CompleteToken();
        if (c == '/' || c == '<' || c == '>') {
            if (AtEnd()) return Fail(PSERR_SYNTAX);
            const bool isDouble = m_Text[m_nAt] == c;
            if (isDouble) ++m_nAt;
            if (c == '/') (isDouble ? m_bImmediate : m_bLiteral) = true;
            if (c == '<' && isDouble) Emit(Lexeme::dictBegin);
            if (c == '<' && !isDouble) m_bHex = true;
            if (c == '>' && isDouble) Emit(Lexeme::dictEnd);
            if (c == '>' && !isDouble) Fail(PSERR_SYNTAX);
            return;
        }
        if (c == '(') String();
        if (c == '{') Procedure();
        if (c == '[') Emit(Lexeme::arrayBegin);
        if (c == ']') Emit(Lexeme::arrayEnd);
        if (c == '%') Comment();
    }

    void InHex(char c) {
        if (c == '>') {
            m_bHex = false;
            std::string bytes;
            for (std::size_t i = 0; i + 1 < m_Digits.size(); i += 2) {
                bytes += static_cast<char>(std::strtol(m_Digits.substr(i, 2).c_str(), nullptr, 16));
            }
            m_Digits.clear();
            Emit(Lexeme::hexString, bytes);
        } else if (c == '{' && m_bFile) {
            Procedure();
        } else if (c == '%') {
            Comment();
        } else if (std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos) {
            m_Digits += c;
        }
    }

    void Procedure() {
        std::string body;
        for (int depth = 1; !AtEnd();) {
            const char c = m_Text[m_nAt++];
            if (c == '{' && ++depth > DEEPEST_BRACES) return Fail(PSERR_RANGE);
            if (c == '}' && --depth == 0) return Emit(Lexeme::procedure, body);
            body += c;
        }
        EndInside();
    }

    void String() {
        std::string bytes;
        for (int depth = 1; !AtEnd();) {
            const char c = m_Text[m_nAt++];
            if (c == '\\') {
                if (!Escape(bytes)) return Fail(PSERR_SYNTAX);
                continue;
            }
            depth += c == '(' ? 1 : c == ')' ? -1 : 0;
            if (depth == 0) return Emit(Lexeme::string, bytes);
            bytes += c;
        }
        EndInside();
    }

    static bool IsDigit(char c) { return c >= '0' && c <= '9'; }

    /// False at the end of the text.
    bool Escape(std::string& bytes) {
        if (AtEnd()) return false;
        const char c = m_Text[m_nAt++];
        if (const std::size_t letter = std::string_view("nrtbf").find(c); letter != std::string_view::npos) {
            bytes += "\n\r\t\b\f"[letter];
        } else if (c == '\r') {
            if (AtEnd()) return false;
            if (m_Text[m_nAt] == '\n') ++m_nAt;
        } else if (IsDigit(c)) {
            std::string digits(1, c);
            for (; digits.size() < 3; digits += m_Text[m_nAt++]) {
                if (AtEnd()) return false;
                if (!IsDigit(m_Text[m_nAt])) break;
            }
            if (digits.size() < 3) {
                bytes += digits;
            } else {
                bytes += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + digits[2] - '0');
            }
        } else if (c != '\n') {
            bytes += c;
        }
        return true;
    }

    void Comment() {
        std::string text = "%";
        while (!AtEnd()) {
            const char c = m_Text[m_nAt++];
            if (c == '\r' && m_bFile && !AtEnd() && m_Text[m_nAt] == '\n') ++m_nAt;
            if (c == '\r' || c == '\n') break;
            text += c;
        }
        if (m_bFile && text == "%%EOF") m_bDone = true;
    }

    std::string_view m_Text;
    bool m_bFile;
    std::size_t m_nAt = 0;
    std::string m_Token;
    std::string m_Digits;
    bool m_bLiteral = false;
    bool m_bImmediate = false;
    bool m_bHex = false;
    bool m_bDone = false;
    std::vector<Item> m_Items;
};

template <class Lexer>
std::vector<Item> LexemesOf(Lexer lexer) {
    std::vector<Item> items;
    for (;;) {
        const Lexeme lexeme = lexer.Next();
        switch (lexeme) {
            case Lexeme::end:
                return items;
            case Lexeme::failure:
                items.push_back({lexeme, std::to_string(lexer.Error())});
                return items;
            case Lexeme::arrayBegin:
            case Lexeme::arrayEnd:
            case Lexeme::dictBegin:
            case Lexeme::dictEnd:
                items.push_back({lexeme, {}});
                break;
            default:
                items.push_back({lexeme, std::string(lexer.Text())});
                break;
        }
    }
}

std::vector<Item> LexemesOfFile(const std::string& text, std::int32_t blockSize) {
    const CFileElement file(std::make_unique<CMemorySource>(text), blockSize);
    return LexemesOf(CLexer<CFileSource, FileRules>(CFileSource(file)));
}

}  // namespace

void FuzzScanner(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const CFilterEPS machine(5);  // what the elements of a file stand on; there is one at a time
    const std::vector<Item> ofFile = ReferenceScanner(text, true).Run();
    for (const std::int32_t blockSize : {1, 2, 3, 7, 64, CFileBody::BLOCK_SIZE}) {
        if (LexemesOfFile(text, blockSize) != ofFile) std::abort();
    }
    if (LexemesOf(CLexer<CTextSource, TextRules>(CTextSource(text))) != ReferenceScanner(text, false).Run())
        std::abort();
}
