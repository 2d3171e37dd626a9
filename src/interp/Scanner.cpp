// The scanners: the main loop over the input file, texts executed as programs, single tokens of strings, and the
// bodies of procedures, as the plain dialect reads them. What each lexeme does stands in ScanLoops.h.
#include <algorithm>
#include <deque>
#include <iterator>
#include <new>
#include <stdexcept>
#include <utility>

#include "hostout/HostCore.h"
#include "interp/FilterEPS.h"
#include "interp/Keys.h"
#include "interp/Lexer.h"
#include "interp/ScanLoops.h"
#include "objects/EpsHeader.h"
#include "platform/LocalResources.h"
#include "platform/Window.h"

// The main loop

int CDialect::FindProgram(CFilterEPS& m) {
    tagEpsSection section{};
    switch (m.m_pCurrentFile ? EnterEpsSection(*m.m_pCurrentFile, section) : EpsEntry::unreadable) {
        case EpsEntry::program:
        case EpsEntry::section:
            m.m_nSectionStart = section.nOffset;
            return 1;
        case EpsEntry::unreachable:
            return m.Fail(PSERR_IO);
        default:
            return m.Fail(PSERR_FORMAT);
    }
}

int CFilterEPS::RunFile(CEntGroup* group) {
    m_pGroup = group;
    int result = -1;
    try {
        if (m_pDialect->FindProgram(*this) == 1) {
            result = m_pDialect->ScanFile(*this);
        } else {
            RecordFailure(nullptr);
        }
        if (result == -1) result = m_pDialect->EndFailedRun(*this);
    } catch (const std::bad_alloc&) {
        HandleExhaustedMemory();
    } catch (const std::length_error&) {
        HandleExhaustedMemory();
    }
    m_OperandStack.Clear();
    if (m_Report.failure) {
        const tagInputPlace place = InputPlace();
        m_Report.failure->nLine = place.nLine;
        m_Report.failure->nOffset = place.nOffset;
    }
    if (result == -1) ReportError();
    glbf_GetMainFrame()->OnRunEnded(m_Report);
    return result;
}

void CFilterEPS::HandleExhaustedMemory() {
    m_OperandStack.Clear();
    Fail(glbf_GetMainFrame()->OnMemoryExhausted() ? PSERR_NONE : PSERR_VMOVERFLOW);
    if (m_nError == PSERR_NONE)
        m_Report.failure.reset();
    else
        RecordFailure(nullptr);
}

tagInputPlace CFilterEPS::InputPlace() const {
    CFileBody* body = m_Input.Get();
    return body ? body->ScanPlace(m_nSectionStart) : tagInputPlace{};
}

int CDialect::ScanFile(CFilterEPS& m) {
    CLexer<CFileSource, FileRules> lexer{CFileSource(*m.m_pCurrentFile)};
    const int result = RunLexer(m, lexer);
    if (result == 1) m.ReportTail(lexer.Open(), lexer.Text(), lexer.LastComment());
    return result;
}

namespace {

/// Whether a token at the end of a file does nothing that could be missed: the end marks of old transmissions and
/// systems (^D, ^Z, zero bytes), and names that only tidy up.
bool IsIdle(std::string_view token) {
    constexpr std::string_view endMarks("\0\x04\x1A", 3);
    constexpr std::string_view names[] = {"showpage",    "end",         "restore", "grestore",
                                          "grestoreall", "cleartomark", "pop",     "quit"};
    return token.find_first_not_of(endMarks) == std::string_view::npos ||
           std::find(std::begin(names), std::end(names), token) != std::end(names);
}

}  // namespace

void CFilterEPS::ReportTail(Lexeme open, std::string_view text, std::int64_t lastComment) {
    CFileBody* body = m_Input.Get();
    if (open == Lexeme::end || !body || !m_pCurrentFile->m_Body.SameBody(m_Input)) return;
    std::string token;
    RunTail tail = RT_TOKEN;
    switch (open) {
        case Lexeme::token:
            token = text;
            if (IsIdle(token)) return;
            break;
        case Lexeme::literal:
            token.assign(1, '/').append(text);
            break;
        case Lexeme::immediate:
            token.assign(2, '/').append(text);
            break;
        case Lexeme::string:
        case Lexeme::hexString:
            tail = RT_STRING;
            break;
        case Lexeme::procedure:
            tail = RT_PROCEDURE;
            break;
        case Lexeme::comment:
            if (!IsProgramNext()) return;
            tail = RT_ENDCOMMENT;
            break;
        default:
            return;
    }
    // Looking for a place reads the file anew: only when there is something to tell.
    const tagInputPlace place =
        tail == RT_ENDCOMMENT ? body->PlaceOf(m_nSectionStart, lastComment) : body->ScanPlace(m_nSectionStart);
    m_Report.nTail = tail;
    m_Report.strTail = std::move(token);
    m_Report.nTailLine = place.nLine;
    m_Report.nTailOffset = place.nOffset;
}

// Behind the end of a program stand previews, signatures of mails, paddings: the first name that would run tells.
bool CFilterEPS::IsProgramNext() {
    CLexer<CFileSource, FileRules> rest{CFileSource(*m_pCurrentFile)};
    for (;;) {
        switch (rest.Next()) {
            case Lexeme::failure:
                return false;
            case Lexeme::end:
                if (rest.Open() != Lexeme::comment) return false;
                break;  // one more end comment
            case Lexeme::token:
                if (ClassifyNumber(rest.Text()) != NumberClass::none || rest.Text().empty()) break;
                if (!IsIdle(rest.Text())) return LookUp(InternName(rest.Text())) != nullptr;
                break;
            default:
                break;
        }
    }
}

int CDialect::ScanBuffer(CFilterEPS& m, std::string_view text) {
    CLexer<CTextSource, TextRules> lexer{CTextSource(text)};
    return RunLexer(m, lexer);
}

int CFilterEPS::ExecuteToken(std::string_view text) {
    const int result = PushNumberToken(text);
    return result == 0 ? ExecuteName(InternName(text)) : result;
}

int CFilterEPS::PushNumberToken(std::string_view text) {
    double value = 0.0;
    NumberClass numberClass = PlainNumber(text, value);
    if (numberClass == NumberClass::none) {
        if (ClassifyNumber(text) == NumberClass::none) return 0;
        const TokenNumber number = m_pDialect->NumberOf(text);
        numberClass = number.numberClass;
        if (numberClass == NumberClass::none) return 0;
        if (!number.isValid) return Fail(PSERR_SYNTAX);
        value = number.value;
    }
    if (numberClass == NumberClass::real) {
        PushReal(value);
    } else {
        PushInt(static_cast<std::int32_t>(value));
    }
    return 1;
}

int CFilterEPS::PushImmediate(std::string_view text) {
    const CElement* value = LookUp(InternName(text));
    if (!value) return Fail(PSERR_UNDEFINED);
    Push(value->Clone());
    return 1;
}

// Single tokens

int CDialect::ScanToken(CFilterEPS& m, const CStringElement& source, ElementPtr& object, std::int32_t& consumed) {
    object = nullptr;
    consumed = 0;
    const std::string_view text = source.Bytes();  // nothing runs that could change them
    if (text.empty()) return 0;
    CLexer<CTextSource, TokenRules> lexer{CTextSource(text)};
    if (ReadObject(m, lexer, object) != 1) return -1;
    if (object) consumed = static_cast<std::int32_t>(lexer.Consumed());
    return 1;
}

// Procedures

namespace {

/// Where the braces of a text match, by counting alone, in ascending order of the opening ones. As captures count
/// braces wherever they stand, the match of a brace is the same at every level, and one pass finds all.
class CBraceMatches {
public:
    /// False when braces nest too deep.
    bool Find(std::string_view text) {
        if (text.find('{') == std::string_view::npos) return true;
        std::vector<size_t> open;
        for (size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '{') {
                if (open.size() >= static_cast<size_t>(MAX_BRACE_DEPTH)) return false;
                open.push_back(m_Pairs.size());
                m_Pairs.push_back({at, text.size()});
            } else if (text[at] == '}' && !open.empty()) {
                m_Pairs[open.back()].close = at;
                open.pop_back();
            }
        }
        return true;
    }
    /// The match of an opening brace; asked in ascending order.
    size_t CloseOf(size_t open) {
        while (m_Pairs[m_nNext].open < open) ++m_nNext;
        return m_Pairs[m_nNext].close;
    }

private:
    struct Pair {
        size_t open;
        size_t close;
    };
    std::vector<Pair> m_Pairs;
    size_t m_nNext = 0;
};

/// A procedure under construction.
struct BodyFrame {
    BodyFrame(std::string_view text, size_t position)
        : lexer(CTextSource(text)), start(position), length(text.size()) {}

    CLexer<CTextSource, BodyRules> lexer;
    size_t start;  ///< of its text in the outermost text
    size_t length;
    std::vector<ElementPtr> elements;
};

// Departure: of a procedure's body only immediate names are resolved when it is made. Names and numbers stay raw
// tokens, and [ ] and >> act when the procedure runs; << alone is the finished mark.
ElementPtr MakeBodyElement(const CFilterEPS& m, Lexeme lexeme, std::string_view text) {
    const auto raw = [](std::string_view token) { return MakeElement<CSimpElement>(token, ET_RAWTOKEN); };
    switch (lexeme) {
        case Lexeme::token:
            return raw(text);
        case Lexeme::literal:
            return MakeElement<CSimpElement>(text);
        case Lexeme::immediate: {
            const CElement* value = m.LookUp(InternName(text));
            return value ? value->Clone() : nullptr;
        }
        case Lexeme::string:
        case Lexeme::hexString:
            return MakeElement<CStringElement>(text);
        case Lexeme::arrayBegin:
            return raw("[");
        case Lexeme::arrayEnd:
            return raw("]");
        case Lexeme::dictEnd:
            return raw(">>");
        default:
            return NewMark();
    }
}

}  // namespace

int CDialect::ParseProcedure(CFilterEPS& m, std::string_view text, ElementPtr& procedure) {
    CBraceMatches braces;
    if (!braces.Find(text)) return m.Fail(PSERR_RANGE);
    std::deque<BodyFrame> frames;
    frames.emplace_back(text, 0);
    for (;;) {
        BodyFrame& frame = frames.back();
        const Lexeme lexeme = frame.lexer.Next();
        if (lexeme == Lexeme::braceOpen) {
            const size_t inner = frame.start + frame.lexer.Consumed();
            const size_t close = braces.CloseOf(inner - 1);
            if (close >= text.size()) return m.Fail(PSERR_SYNTAX);
            frames.emplace_back(text.substr(inner, close - inner), inner);
        } else if (lexeme == Lexeme::end) {
            auto array = MakeElement<CArrayElement>(std::move(frame.elements));
            if (m.m_bPacking) m.Dialect().Pack(*array);
            array->m_bExec = true;
            const size_t length = frame.length;
            frames.pop_back();
            if (frames.empty()) {
                procedure = std::move(array);
                return 1;
            }
            frames.back().elements.push_back(std::move(array));
            frames.back().lexer.SkipBytes(length + 1);
        } else if (lexeme == Lexeme::failure) {
            return m.Fail(frame.lexer.Error());
        } else {
            ElementPtr element = MakeBodyElement(m, lexeme, frame.lexer.Text());
            if (!element) return m.Fail(PSERR_UNDEFINED);
            frame.elements.push_back(std::move(element));
        }
    }
}

// Arrays and dictionaries

ElementPtr CFilterEPS::BuildArray() {
    const int count = m_OperandStack.CountToMark();
    if (count < 0) return nullptr;
    std::vector<ElementPtr> elements(static_cast<size_t>(count));
    for (int i = count; i-- > 0;) elements[static_cast<size_t>(i)] = Pop();
    return MakeElement<CArrayElement>(std::move(elements));
}

ElementPtr CFilterEPS::BuildDictionary() {
    const int count = m_OperandStack.CountToMark();
    if (count < 0) return nullptr;
    auto dict = MakeElement<CDictionary>(count / 2);
    for (int pair = 0; pair < count / 2; ++pair) {
        ElementPtr value = Pop();
        const ElementPtr key = Pop();
        const CName* name = KeyNameOf(*key);
        if (!name || !name->IsKey()) return nullptr;
        dict->Put(name, std::move(value));
    }
    return dict;
}

int CFilterEPS::CloseArray() {
    ElementPtr array = BuildArray();
    if (!array) return Fail(PSERR_UNMATCHEDMARK);
    Drop(1);
    Push(std::move(array));
    return 1;
}

int CFilterEPS::CloseDictionary() {
    ElementPtr dict = BuildDictionary();
    if (!dict) return Fail(PSERR_UNMATCHEDMARK);
    Drop(1);
    Push(std::move(dict));
    return 1;
}
