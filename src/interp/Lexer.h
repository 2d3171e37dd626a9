// The lexer behind the three scanners: one state machine over a source of bytes, with the differences between the
// scanners as rules. It cuts the text into lexemes; what a lexeme does is the scanners' business.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "interp/ErrorCodes.h"
#include "objects/File.h"
#include "objects/HexDigit.h"
#include "objects/Name.h"

/// How deep braces may nest. Behind this the run ends with PSERR_RANGE.
inline constexpr int MAX_BRACE_DEPTH = 10000;

/// The 16 bytes that end a token. Departure: a zero byte is none, and the backslash is one.
[[nodiscard]] constexpr bool IsDelimiter(unsigned char c) noexcept {
    switch (c) {
        case ' ':
        case '\r':
        case '\n':
        case '\f':
        case '\t':
        case '\\':
        case '/':
        case '{':
        case '(':
        case '[':
        case '}':
        case ')':
        case ']':
        case '%':
        case '<':
        case '>':
            return true;
        default:
            return false;
    }
}

/// The bytes that binary tokens begin with, and that end another token (PLRM, Binary Tokens).
[[nodiscard]] constexpr bool IsBinaryToken(unsigned char c) noexcept { return c >= 128 && c < 160; }

/// Lookup tables of the bytes that end a token, for the loop over its bytes; of these and the zero byte; and of those
/// that do nothing else.
struct CDelimiterTable {
    bool is[256] = {};
    bool isOrZero[256] = {};
    bool isBlank[256] = {};
    constexpr explicit CDelimiterTable(bool fullSyntax) {
        for (int c = 0; c < 256; ++c) is[c] = IsDelimiter(static_cast<unsigned char>(c));
        for (const unsigned char c : {' ', '\r', '\n', '\f', '\t'}) isBlank[c] = true;
        if (fullSyntax) {
            is[0] = isBlank[0] = true;
            is[static_cast<unsigned char>('\\')] = false;
            for (int c = 0; c < 256; ++c) is[c] = is[c] || IsBinaryToken(static_cast<unsigned char>(c));
        }
        for (int c = 0; c < 256; ++c) isOrZero[c] = c == 0 || is[c];
    }
};
inline constexpr CDelimiterTable g_Delimiters{false};
inline constexpr CDelimiterTable g_LanguageDelimiters{true};

enum class Lexeme {
    end,         ///< the input is used up, or stops here in order
    failure,     ///< m_Error says why
    token,       ///< a name or number that stands for itself
    literal,     ///< /name
    immediate,   ///< //name
    string,      ///< its bytes, escapes resolved
    hexString,   ///< its bytes
    procedure,   ///< the text between the braces
    braceOpen,   ///< only where a rule asks for it: the opening brace alone
    braceClose,  ///< the same of the closing one
    binary,      ///< only where a rule asks for it: a binary token, of which the first byte has been taken
    arrayBegin,
    arrayEnd,
    dictBegin,
    dictEnd,
    comment,    ///< only where a rule asks for it
    endComment  ///< only where a rule asks for it: a comment that begins with %%EOF
};

/// Bytes of a text in memory.
class CTextSource {
public:
    explicit CTextSource(std::string_view text) noexcept
        : m_pBegin(text.data()), m_pAt(m_pBegin), m_pEnd(m_pBegin + text.size()) {}

    /// 1 with a byte, 0 at the end.
    int Get(unsigned char& c) noexcept {
        if (m_pAt == m_pEnd) return 0;
        c = static_cast<unsigned char>(*m_pAt++);
        return 1;
    }
    void Unget() noexcept { --m_pAt; }
    /// The bytes at hand; empty at the end, with result 0.
    [[nodiscard]] std::string_view Peek(int& result) const noexcept {
        result = m_pAt == m_pEnd ? 0 : 1;
        return {m_pAt, static_cast<size_t>(m_pEnd - m_pAt)};
    }
    void Skip(size_t n) noexcept { m_pAt += n; }
    /// The bytes that can be looked at without reading.
    [[nodiscard]] std::string_view AtHand() const noexcept { return {m_pAt, static_cast<size_t>(m_pEnd - m_pAt)}; }
    void Enter(size_t) noexcept {}
    void Leave() noexcept {}
    [[nodiscard]] size_t Position() const noexcept { return static_cast<size_t>(m_pAt - m_pBegin); }

private:
    const char* m_pBegin;
    const char* m_pAt;
    const char* m_pEnd;
};

/// Bytes of the input file, walked in its block. Between Leave and Enter operators may read from the same file: the
/// scan goes on behind what they took.
class CFileSource {
public:
    explicit CFileSource(const CFileElement& file) noexcept : m_File(file) {}

    int Get(unsigned char& c) {
        if (m_nAt == m_Block.size()) {
            if (const int result = Load(); result != 1) return result;
        }
        c = m_Block[m_nAt++];
        return 1;
    }
    void Unget() noexcept { --m_nAt; }
    [[nodiscard]] std::string_view Peek(int& result) {
        result = m_nAt == m_Block.size() ? Load() : 1;
        return AtHand();
    }
    void Skip(size_t n) noexcept { m_nAt += n; }
    [[nodiscard]] std::string_view AtHand() const noexcept {
        return {reinterpret_cast<const char*>(m_Block.data()) + m_nAt, m_Block.size() - m_nAt};
    }
    [[nodiscard]] size_t Position() const noexcept {
        const CFileBody* body = m_File.GetBody();
        return m_nAt + (body ? static_cast<size_t>(body->m_nPos) : 0);
    }
    /// waiting: bytes in front of the position that the lexeme begins with.
    void Enter(size_t waiting) noexcept {
        m_pBody = m_File.GetBody();
        if (!m_pBody) return;
        // Unless an operator has read from the file in between.
        const bool waits = m_pBody->m_nPos == m_nLeft;
        m_pBody->m_nScanStart = m_pBody->m_nPos - (waits ? static_cast<std::int64_t>(waiting) : 0);
        m_Block = m_pBody->AtHand();
    }
    void Leave() noexcept {
        if (m_pBody) {
            m_pBody->Skip(m_nAt);
            m_nLeft = m_pBody->m_nPos;
        }
        m_Block = {};
        m_nAt = 0;
    }

private:
    int Load() {
        Leave();
        if (!m_pBody) return -1;
        int result = 1;
        m_Block = m_pBody->Peek(result);
        m_pBody = m_File.GetBody();  // a source may run a procedure, which takes the file away
        return result;
    }

    const CFileElement& m_File;
    CFileBody* m_pBody = nullptr;  ///< between Enter and Leave
    std::span<const unsigned char> m_Block;
    size_t m_nAt = 0;
    std::int64_t m_nLeft = 0;  ///< position at the last Leave
};

/// The rules of the scanners.
struct FileRules {
    static constexpr bool pairsCr = true;          ///< CR LF outside of everything is one delimiter
    static constexpr bool endDropsOpen = true;     ///< what is open at the end is dropped without a word
    static constexpr bool eofComment = true;       ///< a comment of exactly %%EOF ends the run
    static constexpr bool eofIsLexeme = false;     ///< a comment that begins with %%EOF is told
    static constexpr bool braceLeavesHex = true;   ///< a brace in a hex string starts a procedure
    static constexpr bool slashLooksAhead = true;  ///< // is told from /
    static constexpr bool commentIsLexeme = false;
    static constexpr bool braceIsLexeme = false;
    static constexpr bool fullSyntax = false;  ///< no departures: see the places that ask. Closing braces are lexemes
};
struct TextRules {
    static constexpr bool pairsCr = false;
    static constexpr bool endDropsOpen = false;
    static constexpr bool eofComment = false;
    static constexpr bool eofIsLexeme = false;
    static constexpr bool braceLeavesHex = false;
    static constexpr bool slashLooksAhead = true;
    static constexpr bool commentIsLexeme = false;
    static constexpr bool braceIsLexeme = false;
    static constexpr bool fullSyntax = false;
};
struct TokenRules : TextRules {
    static constexpr bool slashLooksAhead = false;
    static constexpr bool commentIsLexeme = true;
};
struct BodyRules : TextRules {
    static constexpr bool braceIsLexeme = true;
};

template <class Source, class Rules>
class CLexer {
public:
    /// Whether it reads the language as it is.
    static constexpr bool FULL_SYNTAX = Rules::fullSyntax;

    explicit CLexer(Source source) noexcept : m_Source(source) {}

    /// The next lexeme. The source stands behind it and the delimiter that ended it, if one did.
    Lexeme Next() {
        m_Source.Enter(m_bWaiting ? 1 : 0);
        m_bPlain = TakePlainToken();
        const Lexeme lexeme = m_bPlain ? Lexeme::token : Scan();
        m_Source.Leave();
        return lexeme;
    }

    /// Text of the last token, string or procedure, as long as nothing is read from the source. That of a token ends at
    /// its first zero byte.
    [[nodiscard]] std::string_view Text() const noexcept { return m_bPlain ? m_Plain : std::string_view(m_Text); }
    [[nodiscard]] ErrorCode Error() const noexcept { return m_Error; }
    /// Behind Lexeme::end: what stands open there and is dropped (a token, literal or immediate name with its Text, a
    /// string, hexString or procedure), comment behind an end comment, else end.
    [[nodiscard]] Lexeme Open() const noexcept { return m_Open; }
    /// Position in the source of the last comment.
    [[nodiscard]] std::int64_t LastComment() const noexcept { return m_nLastComment; }
    /// Bytes consumed by what was delivered: a delimiter that waits for its turn does not count.
    [[nodiscard]] size_t Consumed() const noexcept { return m_Source.Position() - (m_bWaiting ? 1 : 0); }

    /// Bytes taken of the source, such a delimiter with them.
    [[nodiscard]] size_t Taken() const noexcept { return m_Source.Position(); }
    /// Whether the delimiter that ended the last token has been taken and belongs to what follows: it is no white
    /// space.
    [[nodiscard]] bool HoldsSpecial() const noexcept {
        return m_bWaiting && std::string_view(" \t\r\n\f\0", 6).find(static_cast<char>(m_Waiting)) == std::string::npos;
    }
    /// Takes bytes behind a lexeme, which follow in the source at once: false when they end before.
    bool TakeBytes(std::string& bytes, size_t n) {
        m_Source.Enter(0);
        bytes.clear();
        for (unsigned char c = 0; bytes.size() < n && m_Source.Get(c) == 1;) bytes.push_back(static_cast<char>(c));
        m_Source.Leave();
        return bytes.size() == n;
    }

    /// Steps over n bytes that somebody else has read.
    void SkipBytes(size_t n) noexcept { m_Source.Skip(n); }

private:
    static constexpr const CDelimiterTable& DELIMITERS = Rules::fullSyntax ? g_LanguageDelimiters : g_Delimiters;

    /// The way of most lexemes: a token with its delimiter that lies whole in the bytes at hand, behind nothing but
    /// blanks, is cut out in place. False, with nothing taken, for anything else, which is Scan's.
    bool TakePlainToken() noexcept {
        if (m_bHex || m_bLiteral || m_bImmediate || (m_bWaiting && !DELIMITERS.isBlank[m_Waiting])) return false;
        const std::string_view bytes = m_Source.AtHand();
        const auto at = [bytes](size_t i) { return static_cast<unsigned char>(bytes[i]); };
        size_t first = 0;
        while (first < bytes.size() && DELIMITERS.isBlank[at(first)]) ++first;
        size_t end = first;
        while (end < bytes.size() && !DELIMITERS.isOrZero[at(end)]) ++end;
        if (end == first || end == bytes.size() || end - first > MAX_KEY_LENGTH) return false;
        if (!Rules::fullSyntax && bytes[end] == '\0') return false;
        unsigned char delimiter = at(end);
        size_t taken = end + 1;
        if (Rules::pairsCr && delimiter == '\r') {
            if (taken == bytes.size()) return false;
            if (bytes[taken] == '\n') delimiter = at(taken++);
        }
        m_Plain = bytes.substr(first, end - first);
        m_Waiting = delimiter;
        m_bWaiting = true;
        m_Source.Skip(taken);
        return true;
    }

    Lexeme Fail(ErrorCode code) noexcept {
        m_Error = code;
        return Lexeme::failure;
    }

    Lexeme End(Lexeme open) noexcept {
        m_Open = open;
        return Lexeme::end;
    }
    /// The end of the input, or a read failure, inside something that must go on. Departure: in a file an open
    /// string, hex string or procedure ends the run in order.
    Lexeme EndOpen(int result, Lexeme open) noexcept {
        if (result < 0) return Fail(PSERR_IO);
        return Rules::endDropsOpen ? End(open) : Fail(PSERR_SYNTAX);
    }
    /// The kind of the open token.
    [[nodiscard]] Lexeme TokenKind() const noexcept {
        if (m_nToken == 0) return Lexeme::end;
        if (m_bLiteral) return Lexeme::literal;
        return m_bImmediate ? Lexeme::immediate : Lexeme::token;
    }
    /// The end behind a byte that needs another one.
    Lexeme EndShort(int result) noexcept { return Fail(result < 0 ? PSERR_IO : PSERR_SYNTAX); }

    Lexeme Scan() {
        for (;;) {
            unsigned char c = 0;
            if (m_bWaiting) {
                m_bWaiting = false;
                c = m_Waiting;
            } else if (m_bHex) {
                Lexeme lexeme = Lexeme::end;
                if (ScanHex(lexeme)) return lexeme;
                continue;
            } else {
                if (const int result = TakeTokenBytes(c); result != 1) {
                    if (IsTokenTooLong()) return Fail(PSERR_SYNTAX);
                    if (result < 0) return Fail(PSERR_IO);
                    if (Rules::endDropsOpen || m_nToken == 0) return End(TokenKind());
                    return CompleteToken();
                }
                if (Rules::pairsCr && c == '\r') {
                    unsigned char next = 0;
                    const int result = m_Source.Get(next);
                    if (result == 0 && Rules::endDropsOpen) return End(TokenKind());
                    if (result < 0) return Fail(PSERR_IO);
                    if (next == '\n') {
                        c = '\n';
                    } else if (result == 1) {
                        m_Source.Unget();
                    }
                }
                if (m_nToken > 0) {
                    m_Waiting = c;
                    m_bWaiting = true;
                    return CompleteToken();
                }
            }
            Lexeme lexeme = Lexeme::end;
            if (ActOn(c, lexeme)) return lexeme;
        }
    }

    /// Departure: a token longer than MAX_KEY_LENGTH is refused.
    [[nodiscard]] bool IsTokenTooLong() const noexcept { return !Rules::fullSyntax && m_nToken > MAX_KEY_LENGTH; }

    /// Appends token bytes up to a delimiter, which it takes: 1; or the result of the source.
    int TakeTokenBytes(unsigned char& delimiter) {
        for (;;) {
            int result = 1;
            const std::string_view bytes = m_Source.Peek(result);
            if (bytes.empty()) return result;
            size_t n = 0;
            while (n < bytes.size() && !DELIMITERS.is[static_cast<unsigned char>(bytes[n])]) ++n;
            if (n > 0) {
                if (m_nToken == 0) m_Text.clear();
                m_nToken += n;
                if (IsTokenTooLong()) return 0;
                m_Text.append(bytes.data(), n);
            }
            if (n < bytes.size()) {
                delimiter = static_cast<unsigned char>(bytes[n]);
                m_Source.Skip(n + 1);
                return 1;
            }
            m_Source.Skip(n);
        }
    }

    Lexeme CompleteToken() noexcept {
        const Lexeme kind = TokenKind();
        m_nToken = 0;
        (kind == Lexeme::literal ? m_bLiteral : m_bImmediate) = false;
        if (const size_t zero = m_Text.find('\0'); zero != std::string::npos) m_Text.resize(zero);
        return kind;
    }

    /// Acts on a delimiter outside of strings and procedures. True when a lexeme came out.
    bool ActOn(unsigned char c, Lexeme& lexeme) {
        unsigned char next = 0;
        switch (c) {
            case '/':
                if (!Rules::slashLooksAhead) {
                    m_bLiteral = true;
                    return false;
                }
                if (const int result = m_Source.Get(next); result != 1) {
                    return Out(lexeme, Rules::fullSyntax && result == 0 ? EmptyName() : EndShort(result));
                }
                if (next == '/') {
                    m_bImmediate = true;
                    return false;
                }
                m_Source.Unget();
                // Departure: blanks may stand between a slash and its name.
                if (Rules::fullSyntax && g_LanguageDelimiters.is[next]) return Out(lexeme, EmptyName());
                m_bLiteral = true;
                return false;
            case '<':
                if (const int result = m_Source.Get(next); result != 1) return Out(lexeme, EndShort(result));
                if (next == '<') return Out(lexeme, Lexeme::dictBegin);
                if (Rules::fullSyntax && next == '~') return Out(lexeme, ScanBase85());
                m_Source.Unget();
                m_bHex = true;
                m_Hex.clear();
                return false;
            case '>':
                if (const int result = m_Source.Get(next); result != 1) return Out(lexeme, EndShort(result));
                return Out(lexeme, next == '>' ? Lexeme::dictEnd : Fail(PSERR_SYNTAX));
            case '(':
                return Out(lexeme, ScanString());
            case '[':
                return Out(lexeme, Lexeme::arrayBegin);
            case ']':
                return Out(lexeme, Lexeme::arrayEnd);
            case '{':
                return Out(lexeme, Rules::braceIsLexeme ? Lexeme::braceOpen : ScanProcedure());
            case '%':
                return ScanComment(lexeme);
            case '}':
                return Rules::fullSyntax && Out(lexeme, Lexeme::braceClose);
            default:
                if (Rules::fullSyntax && IsBinaryToken(c)) {
                    m_Text.assign(1, static_cast<char>(c));
                    return Out(lexeme, Lexeme::binary);
                }
                return false;  // white space, and a stray ), } or backslash
        }
    }

    Lexeme EmptyName() noexcept {
        m_Text.clear();
        return Lexeme::literal;
    }

    static bool Out(Lexeme& lexeme, Lexeme value) noexcept {
        lexeme = value;
        return true;
    }

    /// Goes on in a hex string. True when a lexeme came out; the state may outlast it, since a procedure can stand
    /// in the middle.
    bool ScanHex(Lexeme& lexeme) {
        unsigned char c = 0;
        for (;;) {
            if (const int result = m_Source.Get(c); result != 1) return Out(lexeme, EndOpen(result, Lexeme::hexString));
            switch (c) {
                case '>':
                    m_bHex = false;
                    HexTextToBytes();
                    return Out(lexeme, Lexeme::hexString);
                case '{':
                    if (Rules::braceLeavesHex) return Out(lexeme, ScanProcedure());
                    break;
                case '%':
                    if (ScanComment(lexeme)) return true;
                    break;
                default:
                    if (HexDigitValue(c) >= 0) m_Hex.push_back(static_cast<char>(c));
                    break;
            }
        }
    }

    /// Two digits make a byte; a last lone digit is dropped. Departure: it is not padded with 0.
    void HexTextToBytes() {
        m_Text.clear();
        if (Rules::fullSyntax && m_Hex.size() % 2 != 0) m_Hex.push_back('0');
        for (size_t i = 0; i + 1 < m_Hex.size(); i += 2) {
            const int high = HexDigitValue(static_cast<unsigned char>(m_Hex[i]));
            const int low = HexDigitValue(static_cast<unsigned char>(m_Hex[i + 1]));
            m_Text.push_back(static_cast<char>(high * 16 + low));
        }
    }

    /// A string in base 85 (PLRM, ASCII Base-85 Strings), up to "~>".
    Lexeme ScanBase85() {
        m_Text.clear();
        std::uint64_t group = 0;
        int digits = 0;
        const auto put = [&](int count) {
            for (int i = 0; i < count; ++i) m_Text.push_back(static_cast<char>(group >> (24 - 8 * i)));
            group = 0;
            digits = 0;
        };
        for (unsigned char c = 0;;) {
            if (const int result = m_Source.Get(c); result != 1) return EndOpen(result, Lexeme::string);
            if (c == '~') break;
            if (c == 'z' && digits == 0) {
                put(4);
            } else if (c >= '!' && c <= 'u') {
                group = group * 85 + (c - '!');
                if (++digits < 5) continue;
                if (group > UINT32_MAX) return Fail(PSERR_SYNTAX);
                put(4);
            } else if (!g_LanguageDelimiters.is[c] || c > ' ') {
                return Fail(PSERR_SYNTAX);
            }
        }
        if (unsigned char c = 0; m_Source.Get(c) != 1 || c != '>' || digits == 1) return Fail(PSERR_SYNTAX);
        if (digits > 0) {
            const int count = digits - 1;
            for (; digits < 5; ++digits) group = group * 85 + 84;
            if (group > UINT32_MAX) return Fail(PSERR_SYNTAX);
            put(count);
        }
        return Lexeme::string;
    }

    /// Takes the LF of a CR LF whose CR has been taken. False on a failure.
    bool PassLineFeed() {
        unsigned char c = 0;
        const int result = m_Source.Get(c);
        if (result == 1 && c != '\n') m_Source.Unget();
        return result >= 0;
    }

    Lexeme ScanString() {
        m_Text.clear();
        for (size_t depth = 1;;) {
            unsigned char c = 0;
            if (const int result = m_Source.Get(c); result != 1) return EndOpen(result, Lexeme::string);
            if (c == '\\') {
                if (const int result = ScanEscape(); result != 1) return EndShort(result);
                continue;
            }
            if (c == '(') ++depth;
            if (c == ')' && --depth == 0) return Lexeme::string;
            // Departure: line ends stay as they are.
            if (Rules::fullSyntax && c == '\r') {
                if (!PassLineFeed()) return Fail(PSERR_IO);
                c = '\n';
            }
            m_Text.push_back(static_cast<char>(c));
        }
    }

    /// The bytes behind a backslash: 1, or the result of a source that ran out.
    int ScanEscape() {
        unsigned char c = 0;
        if (const int result = m_Source.Get(c); result != 1) return result;
        switch (c) {
            case 'n':
                m_Text.push_back('\n');
                return 1;
            case 'r':
                m_Text.push_back('\r');
                return 1;
            case 't':
                m_Text.push_back('\t');
                return 1;
            case 'b':
                m_Text.push_back('\b');
                return 1;
            case 'f':
                m_Text.push_back('\f');
                return 1;
            case '\n':
                return 1;
            case '\r':
                if (const int result = m_Source.Get(c); result != 1) return result;
                if (c != '\n') m_Source.Unget();
                return 1;
            default:
                if (Rules::fullSyntax && c >= '0' && c <= '7') return ScanOctalEscape(c);
                if (!Rules::fullSyntax && c >= '0' && c <= '9') return ScanNumericEscape(c);
                m_Text.push_back(static_cast<char>(c));
                return 1;
        }
    }

    /// One to three octal digits; what is beyond a byte is dropped.
    int ScanOctalEscape(unsigned char c) {
        int value = c - '0';
        for (int n = 1; n < 3; ++n) {
            const int result = m_Source.Get(c);
            if (result < 0) return result;
            if (result == 0) break;
            if (c < '0' || c > '7') {
                m_Source.Unget();
                break;
            }
            value = value * 8 + (c - '0');
        }
        m_Text.push_back(static_cast<char>(value));
        return 1;
    }

    /// Departure: only three digits make a byte, and 8 and 9 count with their face value.
    int ScanNumericEscape(unsigned char first) {
        unsigned char digits[3] = {first, 0, 0};
        for (int n = 1; n < 3; ++n) {
            if (const int result = m_Source.Get(digits[n]); result != 1) return result;
            if (digits[n] >= '0' && digits[n] <= '9') continue;
            m_Source.Unget();
            for (int i = 0; i < n; ++i) m_Text.push_back(static_cast<char>(digits[i]));
            return 1;
        }
        m_Text.push_back(static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0')));
        return 1;
    }

    /// Captures the text up to the matching brace. Departure: braces count wherever they stand, also in strings and
    /// comments of the procedure.
    Lexeme ScanProcedure() {
        m_Text.clear();
        for (int depth = 1;;) {
            int result = 1;
            const std::string_view bytes = m_Source.Peek(result);
            if (bytes.empty()) return EndOpen(result, Lexeme::procedure);
            size_t n = 0;
            for (; n < bytes.size(); ++n) {
                if (bytes[n] == '{') {
                    if (++depth > MAX_BRACE_DEPTH) return Fail(PSERR_RANGE);
                } else if (bytes[n] == '}' && --depth == 0) {
                    break;
                }
            }
            m_Text.append(bytes.data(), n);
            m_Source.Skip(n < bytes.size() ? n + 1 : n);
            if (depth == 0) return Lexeme::procedure;
        }
    }

    /// Reads over a comment. True when that is a lexeme, or ends the input.
    bool ScanComment(Lexeme& lexeme) {
        if (Rules::commentIsLexeme) return Out(lexeme, Lexeme::comment);
        constexpr std::string_view eof = "%%EOF";
        m_nLastComment = static_cast<std::int64_t>(m_Source.Position()) - 1;
        size_t length = 1;
        bool matches = true;
        for (;;) {
            unsigned char c = 0;
            const int result = m_Source.Get(c);
            if (result < 0) return Out(lexeme, Fail(PSERR_IO));
            if (result == 0 || c == '\n') break;
            if (c == '\r') {
                if (!Rules::pairsCr) break;
                if (const int after = m_Source.Get(c); after == 1 && c != '\n') m_Source.Unget();
                break;
            }
            if (length < eof.size()) matches = matches && static_cast<char>(c) == eof[length];
            ++length;
        }
        if (Rules::eofIsLexeme) return matches && length >= eof.size() && Out(lexeme, Lexeme::endComment);
        return Rules::eofComment && matches && length == eof.size() && Out(lexeme, End(Lexeme::comment));
    }

    Source m_Source;
    std::string m_Text;
    std::string_view m_Plain;  ///< the last token in the bytes of the source, when it was taken there
    bool m_bPlain = false;
    std::string m_Hex;    ///< digits of the hex string so far
    size_t m_nToken = 0;  ///< bytes of the open token
    bool m_bLiteral = false;
    bool m_bImmediate = false;
    bool m_bHex = false;
    bool m_bWaiting = false;  ///< the delimiter that ended the last token has not acted yet
    unsigned char m_Waiting = 0;
    Lexeme m_Open = Lexeme::end;
    std::int64_t m_nLastComment = 0;
    ErrorCode m_Error = PSERR_NONE;
};
