// What the lexemes of a program do, for lexers of any source and any rules: the loop that runs a program, and the
// reading of one object. The dialects' scanners are made of these.
#pragma once

#include "interp/FilterEPS.h"
#include "interp/Lexer.h"

/// Makes the object of a lexeme that a lexer of the full syntax has delivered, which reads on where it takes more of
/// them: 1, or -1 with the code. Who has such lexers defines it.
template <class Lexer>
int ReadLexeme(CFilterEPS& m, Lexer& lexer, Lexeme lexeme, ElementPtr& object);

/// Runs what a lexer delivers up to its end: 1, or -1.
template <class Lexer>
int RunLexer(CFilterEPS& m, Lexer& lexer) {
    // Names raise their own errors. What the scanner meets by itself is raised here, and the run goes on behind it
    // where the dialect says so.
    for (;;) {
        if (m.IsInterrupted()) return -1;
        switch (const Lexeme lexeme = lexer.Next(); lexeme) {
            case Lexeme::end:
            case Lexeme::comment:
                return 1;
            case Lexeme::braceOpen:
            case Lexeme::binary:
                if constexpr (Lexer::FULL_SYNTAX) {
                    ElementPtr object;
                    int result = ReadLexeme(m, lexer, lexeme, object);
                    // What a binary token says runs at once, procedures as well.
                    const bool runs = result == 1 && lexeme == Lexeme::binary && object->m_bExec;
                    if (runs) result = m.ExecuteObject(*object) == 1 ? 1 : -1;
                    if (result != 1 && m.RaiseError(nullptr) != 1) return -1;
                    if (result == 1 && !runs) m.Push(std::move(object));
                    break;
                }
                return 1;
            case Lexeme::braceClose:
                break;
            case Lexeme::endComment:
                m.Dialect().MeetEndComment(m);
                break;
            case Lexeme::failure:
                m.Fail(lexer.Error());
                if (m.RaiseError(nullptr) != 1) return -1;
                break;
            case Lexeme::token:
                if (m.ExecuteToken(lexer.Text()) != 1 && m.RaiseError(nullptr) != 1) return -1;
                break;
            case Lexeme::literal:
                m.Push(MakeElement<CSimpElement>(lexer.Text()));
                break;
            case Lexeme::immediate:
                if (m.PushImmediate(lexer.Text()) != 1 && m.RaiseError(InternName(lexer.Text())) != 1) return -1;
                break;
            case Lexeme::string:
            case Lexeme::hexString:
                m.Push(MakeElement<CStringElement>(lexer.Text()));
                break;
            case Lexeme::procedure: {
                ElementPtr procedure;
                if (m.ParseProcedure(lexer.Text(), procedure) != 1 && m.RaiseError(nullptr) != 1) return -1;
                m.Push(std::move(procedure));
                break;
            }
            case Lexeme::arrayBegin:
            case Lexeme::dictBegin:
                m.Push(NewMark());
                break;
            case Lexeme::arrayEnd:
                if (m.CloseArray() != 1 && m.RaiseError(InternName("]")) != 1) return -1;
                break;
            case Lexeme::dictEnd:
                if constexpr (Lexer::FULL_SYNTAX) {
                    if (m.ExecuteName(">>") != 1) return -1;
                    break;
                }
                if (m.CloseDictionary() != 1 && m.RaiseError(InternName(">>")) != 1) return -1;
                break;
        }
    }
}

/// Makes the object of a lexeme that is one by itself: a number, a name (executable or not, as the caller's procedures
/// have them), a string, a bracket. 1; 0 for any other lexeme; -1 with PSERR_SYNTAX.
template <class Lexer>
int ReadSimpleLexeme(CFilterEPS& m, const Lexer& lexer, Lexeme lexeme, bool executable, ElementPtr& object) {
    const auto name = [&](std::string_view text) {
        auto element = MakeElement<CSimpElement>(text);
        element->m_bExec = executable;
        return element;
    };
    switch (lexeme) {
        case Lexeme::token: {
            const int result = m.PushNumberToken(lexer.Text());
            if (result == -1) return -1;
            object = result == 1 ? m.Pop() : name(lexer.Text());
            return 1;
        }
        case Lexeme::literal:
            object = MakeElement<CSimpElement>(lexer.Text());
            return 1;
        case Lexeme::string:
        case Lexeme::hexString:
            object = MakeElement<CStringElement>(lexer.Text());
            return 1;
        case Lexeme::arrayBegin:
            object = name("[");
            return 1;
        case Lexeme::arrayEnd:
            object = name("]");
            return 1;
        case Lexeme::dictBegin:
            object = name("<<");
            return 1;
        case Lexeme::dictEnd:
            object = name(">>");
            return 1;
        default:
            return 0;
    }
}

/// Reads the object that a lexer of the plain syntax delivers next; null at its end. 1, or -1 with PSERR_SYNTAX or what
/// the making of a procedure meets.
template <class Lexer>
int ReadObject(CFilterEPS& m, Lexer& lexer, ElementPtr& object) {
    object = nullptr;
    switch (const Lexeme lexeme = lexer.Next(); lexeme) {
        case Lexeme::failure:
            return m.Fail(lexer.Error());
        case Lexeme::immediate:
            object = MakeElement<CSimpElement>(lexer.Text());
            return 1;
        case Lexeme::procedure:
            return m.ParseProcedure(lexer.Text(), object);
        default:
            return ReadSimpleLexeme(m, lexer, lexeme, false, object) < 0 ? -1 : 1;
    }
}
