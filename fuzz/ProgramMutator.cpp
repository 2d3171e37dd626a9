// Tokens are put in, taken out, exchanged, repeated and wrapped. What is put in is any operator of the dialect behind
// operands of any types, or one of a few phrases that reach far.
#include "fuzz/ProgramMutator.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <string_view>

#include "interp/FilterEPS.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

// clang-format off
constexpr const char* kOperands[] = {
    "0", "1", "-1", "2", "72.5", "1e30", "-2147483648", "2147483647", "16#FF", "(text)", "()", "<00ff80>", "/name",
    "/a", "[1 2 3]", "[1 0 0 1 0 0]", "[]", "{}", "{pop}", "{dup mul}", "{exit}", "true", "false", "null", "mark",
    "<< /a 1 /b (x) >>", "5 dict", "10 array", "100 string", "matrix", "currentfile", "currentdict", "save", "gstate",
    "/Helvetica findfont", "currentfont", "/DeviceRGB", "(abc) /ASCIIHexDecode filter",
};
// clang-format on

constexpr const char* kPhrases[] = {
    "0 0 moveto 10 20 lineto 30 5 lineto closepath stroke",
    "0 0 moveto 10 0 20 10 20 20 curveto fill",
    "50 50 20 0 360 arc clip newpath",
    "gsave 30 rotate 2 1 scale 0 0 10 10 rectfill grestore",
    "/F {x y add} bind def /x 1 def /y 2 def F pop",
    "{1 0 div} stopped pop clear",
    "/Helvetica 12 selectfont 10 10 moveto (Ab) show",
    "/Helvetica findfont [12 0 3 12 0 0] makefont setfont 0 0 moveto (Ab) false charpath flattenpath pathbbox",
    "<< /PatternType 1 /PaintType 2 /TilingType 1 /BBox [0 0 9 9] /XStep 9 /YStep 9 /PaintProc {pop 0 0 5 5 rectfill} "
    ">> matrix makepattern setpattern",
    "save 3 {/q 7 def} repeat restore",
    "8 8 1 [8 0 0 -8 0 8] {<00ff00ff00ff00ff>} image",
    "currentfile /ASCIIHexDecode filter 16 string readstring 0011223344> pop pop",
    "4 dict begin /FontType 3 def /FontMatrix [.1 0 0 .1 0 0] def /Encoding 256 array def 0 1 255 {Encoding exch /a "
    "put} "
    "for /BuildGlyph {pop pop 5 0 setcharwidth 0 0 4 4 rectfill} def currentdict end /T exch definefont setfont 1 1 "
    "moveto (ab) show",
    "0 1 9 {dup 3 mod 0 eq {pop exit} if} for",
    "[0 0 9 9] 0 setgray rectstroke strokepath clippath pathbbox",
    "/d 3 dict def d begin /k {k2} bind def /k2 {exch} def 1 2 k end d {pop pop} forall",
    "<789c4b2c28c84905000a0a02bd> /FlateDecode filter 9 string readstring pop pop",
    "{0 0 9 9 setbbox 1 1 moveto 5 5 lineto 2 2 4 4 rlineto} dup ufill uappend {} {} {} {} pathforall",
    "[/Indexed /DeviceRGB 1 <ff000000ff00>] setcolorspace 1 setcolor",
    "errordict /typecheck {pop pop /seen true def} put 1 (a) add $error /newerror get pop",
    "/f {dup 0 gt {1 sub f} if} def 40 f"};

/// Texts between blanks; strings and what stands in brackets may fall into several.
std::vector<std::string> Split(std::string_view text) {
    std::vector<std::string> tokens;
    constexpr std::string_view blanks(" \t\r\n\f\0", 6);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = text.find_first_not_of(blanks, at);
        if (begin == std::string_view::npos) break;
        at = std::min(text.find_first_of(blanks, begin), text.size());
        tokens.emplace_back(text.substr(begin, at - begin));
    }
    return tokens;
}

class Mutation {
public:
    Mutation(std::vector<std::string> tokens, unsigned seed, const std::vector<std::string>& operators)
        : m_Tokens(std::move(tokens)), m_Random(seed), m_Operators(operators) {}

    std::string Run() {
        switch (Below(7)) {
            case 0:
            case 1:
                Insert(Call());
                break;
            case 2:
                Insert(kPhrases[Below(std::size(kPhrases))]);
                break;
            case 3:
                Erase();
                break;
            case 4:
                Wrap();
                break;
            case 5:
                Repeat();
                break;
            case 6:
                Replace();
                break;
        }
        std::string text;
        for (const std::string& token : m_Tokens) text += token + (Below(20) == 0 ? '\n' : ' ');
        return text;
    }

private:
    std::size_t Below(std::size_t count) { return count == 0 ? 0 : m_Random() % count; }
    std::ptrdiff_t Place() { return static_cast<std::ptrdiff_t>(Below(m_Tokens.size() + 1)); }
    /// A range of a few tokens.
    std::pair<std::ptrdiff_t, std::ptrdiff_t> Range() {
        const std::ptrdiff_t begin = Place();
        const auto left = static_cast<std::ptrdiff_t>(m_Tokens.size()) - begin;
        return {begin, begin + std::min(static_cast<std::ptrdiff_t>(1 + Below(8)), left)};
    }
    std::string Operand() { return kOperands[Below(std::size(kOperands))]; }
    std::string Call() {
        std::string text;
        for (std::size_t n = Below(5); n > 0; --n) text += Operand() + ' ';
        return text + m_Operators[Below(m_Operators.size())];
    }
    void Insert(const std::string& text) { m_Tokens.insert(m_Tokens.begin() + Place(), text); }
    void Erase() {
        const auto [begin, end] = Range();
        m_Tokens.erase(m_Tokens.begin() + begin, m_Tokens.begin() + end);
    }
    void Wrap() {
        constexpr std::pair<const char*, const char*> wraps[] = {
            {"{", "} exec"},
            {"3 {", "} repeat"},
            {"{", "} stopped pop"},
            {"gsave", "grestore"},
            {"save", "restore"},
            {"5 dict begin", "end"},
            {"[", "]"},
            {"<<", ">>"},
            {"/P {", "} bind def P P P"},
            {"2 dict dup begin", "end pop"},
            {"{{", "} loop} stopped clear"},
        };
        const auto& [before, behind] = wraps[Below(std::size(wraps))];
        const auto [begin, end] = Range();
        m_Tokens.insert(m_Tokens.begin() + end, behind);
        m_Tokens.insert(m_Tokens.begin() + begin, before);
    }
    void Repeat() {
        const auto [begin, end] = Range();
        const std::vector<std::string> copy(m_Tokens.begin() + begin, m_Tokens.begin() + end);
        m_Tokens.insert(m_Tokens.begin() + Place(), copy.begin(), copy.end());
    }
    void Replace() {
        if (m_Tokens.empty()) return;
        std::string& token = m_Tokens[Below(m_Tokens.size())];
        token = Below(2) == 0 ? Operand() : m_Operators[Below(m_Operators.size())];
    }

    std::vector<std::string> m_Tokens;
    std::minstd_rand m_Random;
    const std::vector<std::string>& m_Operators;
};

}  // namespace

std::vector<std::string> OperatorNames(DialectMaker dialect) {
    std::vector<std::string> names;
    const CFilterEPS machine(5, dialect());
    const auto& systemDict = static_cast<const CDictionary&>(*machine.m_DictStack.Bottom());
    for (std::int32_t i = 0; const CDictNode* node = systemDict.GetNameNodeAt(i); ++i)
        names.emplace_back(node->m_pKey->Text());
    return names;
}

std::size_t MutateProgram(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed,
                          const std::vector<std::string>& operators) {
    if (seed % 2 == 0) return LLVMFuzzerMutate(data, size, maxSize);
    // The first line, which says what the file is, stays.
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t head = text.starts_with('%') ? std::min(text.find('\n'), size - 1) + 1 : 0;
    const std::string changed =
        std::string(text.substr(0, head)) + Mutation(Split(text.substr(head)), seed / 2, operators).Run();
    const std::size_t newSize = std::min(changed.size(), maxSize);
    std::memcpy(data, changed.data(), newSize);
    return newSize;
}
