// The scanners: the main loop over the input file, texts executed as programs, single tokens of strings, and the
// bodies of procedures, as the plain dialect reads them. What each lexeme does stands in ScanLoops.h.
#include <deque>
#include <new>
#include <stdexcept>

#include "hostout/HostCore.h"
#include "interp/FilterEPS.h"
#include "interp/Lexer.h"
#include "interp/ScanLoops.h"
#include "platform/LocalResources.h"
#include "platform/Window.h"

// The main loop

int CDialect::FindProgram(CFilterEPS& m) {
    unsigned char bytes[12] = {};
    unsigned count = 0;
    const auto word = [&bytes](int at) {
        return static_cast<std::int64_t>(bytes[at]) | static_cast<std::int64_t>(bytes[at + 1]) << 8 |
               static_cast<std::int64_t>(bytes[at + 2]) << 16 | static_cast<std::int64_t>(bytes[at + 3]) << 24;
    };
    if (!m.m_pCurrentFile || m.m_pCurrentFile->ReadBlock(bytes, 4, &count) != 1) return m.Fail(PSERR_FORMAT);
    if (std::string_view(reinterpret_cast<char*>(bytes), 4) == "%!PS") {
        return m.m_pCurrentFile->SetPosition(0) == 1 ? 1 : m.Fail(PSERR_IO);
    }
    // The binary header: offset and length of the PostScript section, little-endian (EPS File Format 3.0).
    if (word(0) != 0xC6D3D0C5 || m.m_pCurrentFile->ReadBlock(bytes + 4, 8, &count) != 1) return m.Fail(PSERR_FORMAT);
    const std::int64_t offset = word(4);
    const std::int64_t length = word(8);
    if (m.m_pCurrentFile->SetPosition(offset) != 1) return m.Fail(PSERR_IO);
    m.m_nSectionStart = offset;
    m.m_pCurrentFile->SetLimit(offset + length);
    return 1;
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
    const CFileBody* body = m_pCurrentFile ? m_pCurrentFile->GetBody() : nullptr;
    return body ? body->ScanPlace(m_nSectionStart) : tagInputPlace{};
}

int CDialect::ScanFile(CFilterEPS& m) {
    CLexer<CFileSource, FileRules> lexer{CFileSource(*m.m_pCurrentFile)};
    return RunLexer(m, lexer);
}

int CDialect::ScanBuffer(CFilterEPS& m, std::string_view text) {
    CLexer<CTextSource, TextRules> lexer{CTextSource(text)};
    return RunLexer(m, lexer);
}

int CFilterEPS::ExecuteToken(std::string_view text) {
    const NumberClass numberClass = ClassifyNumber(text);
    if (numberClass == NumberClass::none) return ExecuteName(InternName(text));
    return PushNumberToken(text, numberClass);
}

int CFilterEPS::PushNumberToken(std::string_view text, NumberClass numberClass) {
    double value = 0.0;
    if (!NumberFromText(text, numberClass, value)) return Fail(PSERR_SYNTAX);
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
            if (m.m_bPacking) array->m_nType = ET_PACKEDARRAY;
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

namespace {

/// Elements above the topmost mark, or -1 without one.
int CountToMark(const CElementStack& stack) {
    int count = 0;
    for (const CElement* e = stack.Top(); e; e = e->m_pPrev, ++count) {
        if (e->m_nType == ET_MARK) return count;
    }
    return -1;
}

}  // namespace

ElementPtr CFilterEPS::BuildArray() {
    const int count = CountToMark(m_OperandStack);
    if (count < 0) return nullptr;
    std::vector<ElementPtr> elements(static_cast<size_t>(count));
    for (int i = count; i-- > 0;) elements[static_cast<size_t>(i)] = Pop();
    return MakeElement<CArrayElement>(std::move(elements));
}

ElementPtr CFilterEPS::BuildDictionary() {
    const int count = CountToMark(m_OperandStack);
    if (count < 0) return nullptr;
    auto dict = MakeElement<CDictionary>(count / 2);
    for (int pair = 0; pair < count / 2; ++pair) {
        ElementPtr value = Pop();
        const ElementPtr key = Pop();
        const CName* name = nullptr;
        if (key->m_nType == ET_NAME) name = static_cast<const CSimpElement&>(*key).m_pName;
        if (const auto* string = As<CStringElement>(key.get())) name = InternName(string->KeyText());
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
