// What the lexemes of a program do, for lexers of any source and any rules: the loop that runs a program, and the
// reading of one object. The dialects' scanners are made of these.
#pragma once

#include "interp/FilterEPS.h"
#include "interp/Lexer.h"

/// Runs what a lexer delivers up to its end: 1, or -1.
template <class Lexer>
int RunLexer(CFilterEPS& m, Lexer& lexer) {
    // Names raise their own errors. What the scanner meets by itself is raised here, and the run goes on behind it
    // where the dialect says so.
    for (;;) {
        if (m.IsInterrupted()) return -1;
        switch (lexer.Next()) {
            case Lexeme::end:
            case Lexeme::comment:
            case Lexeme::braceOpen:
                return 1;
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
                if (m.CloseDictionary() != 1 && m.RaiseError(InternName(">>")) != 1) return -1;
                break;
        }
    }
}

/// Reads the object that a lexer delivers next; null at its end. 1, or -1 with PSERR_SYNTAX or what the making of a
/// procedure meets.
template <class Lexer>
int ReadObject(CFilterEPS& m, Lexer& lexer, ElementPtr& object) {
    object = nullptr;
    const auto name = [](std::string_view text) { return MakeElement<CSimpElement>(text); };
    switch (lexer.Next()) {
        case Lexeme::end:
        case Lexeme::comment:
        case Lexeme::braceOpen:
        case Lexeme::endComment:
            return 1;
        case Lexeme::failure:
            return m.Fail(lexer.Error());
        case Lexeme::token: {
            const NumberClass numberClass = ClassifyNumber(lexer.Text());
            if (numberClass != NumberClass::none) {
                if (m.PushNumberToken(lexer.Text(), numberClass) != 1) return -1;
                object = m.Pop();
            } else {
                object = name(lexer.Text());
            }
            return 1;
        }
        case Lexeme::literal:
        case Lexeme::immediate:
            object = name(lexer.Text());
            return 1;
        case Lexeme::string:
        case Lexeme::hexString:
            object = MakeElement<CStringElement>(lexer.Text());
            return 1;
        case Lexeme::procedure:
            return m.ParseProcedure(lexer.Text(), object);
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
    }
    return 1;
}
