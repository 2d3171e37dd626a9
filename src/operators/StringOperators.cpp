// Searching in strings, and taking tokens out of them. The parts that remain are views of the operand's body,
// so no byte of them is copied.
#include "operators/StringOperators.h"

#include "interp/Operands.h"

namespace {

// string seek  anchorsearch  post match true      STACKUNDERFLOW TYPECHECK
//                            string false
// Departure: the comparison stops at a zero byte on either side.
int OpAnchorsearch(CFilterEPS& m) {
    Operands in(m);
    const auto* seek = in.String(0);
    const auto* string = in.String(1);
    if (!in) return -1;
    const std::int32_t length = string->GetLength();
    const std::int32_t matched = seek->GetLength();
    // No zero byte is left in the text that is looked for, so that one in the string ends the comparison by
    // itself.
    const bool found = matched <= length && string->Bytes().starts_with(seek->KeyText());
    if (found) {
        ElementPtr post = string->GetInterval(matched, length - matched);
        ElementPtr match = string->GetInterval(0, matched);
        m.Drop(2);
        m.Push(std::move(post));
        m.Push(std::move(match));
    } else {
        m.Drop(1);
    }
    m.PushBool(found);
    return 1;
}

// string seek  search  post match pre true        STACKUNDERFLOW TYPECHECK
//                      string false
int OpSearch(CFilterEPS& m) {
    Operands in(m);
    const auto* seek = in.String(0);
    const auto* string = in.String(1);
    if (!in) return -1;
    unsigned index = 0;
    const bool found = string->Search(seek, &index) == 1;
    if (found) {
        const auto before = static_cast<std::int32_t>(index);
        const std::int32_t matched = seek->GetLength();
        ElementPtr post = string->GetInterval(before + matched, string->GetLength() - matched - before);
        ElementPtr match = string->GetInterval(before, matched);
        ElementPtr pre = string->GetInterval(0, before);
        m.Drop(2);
        m.Push(std::move(post));
        m.Push(std::move(match));
        m.Push(std::move(pre));
    } else {
        m.Drop(1);
    }
    m.PushBool(found);
    return 1;
}

// string  token  post any true                    STACKUNDERFLOW TYPECHECK; SYNTAX, with the string gone
//                false
// file  token  -                                  UNSUPPORTED, with the file gone
// Departure: files are refused, and no string is left when there is no token.
int OpToken(CFilterEPS& m) {
    Operands in(m);
    const CElement* source = in.OneOf(0, {ET_STRING, ET_FILE});
    if (!in) return -1;
    if (source->m_nType == ET_FILE) {
        m.Drop(1);
        return m.Fail(PSERR_UNSUPPORTED);
    }
    const auto string = Take<CStringElement>(m);
    ElementPtr any;
    std::int32_t consumed = 0;
    if (m.ScanToken(*string, any, consumed) < 0) return m.Fail(PSERR_SYNTAX);
    const bool found = any != nullptr;
    if (found) {
        m.Push(string->GetInterval(consumed, string->GetLength() - consumed));
        m.Push(std::move(any));
    }
    m.PushBool(found);
    return 1;
}

// Place 14 of the chain.
constexpr OpRow kRows[] = {
    {"anchorsearch", OpAnchorsearch},
    {"search", OpSearch},
    {"token", OpToken},
};

}  // namespace

constinit const OpTable kSearchOperators{kRows};
