// The standard Latin characters as runs of glyph names for consecutive characters.
#include "complete/text/GlyphNames.h"

#include <algorithm>

namespace text {

namespace {

struct CharacterRun {
    char32_t first;
    std::string_view names;  ///< with a blank between them
};

// clang-format off
constexpr CharacterRun kRuns[] = {
    {0x0020, "space exclam quotedbl numbersign dollar percent ampersand quotesingle parenleft "
             "parenright asterisk plus comma hyphen period slash zero one two three four five six "
             "seven eight nine colon semicolon less equal greater question at A B C D E F G H I J K L "
             "M N O P Q R S T U V W X Y Z bracketleft backslash bracketright asciicircum underscore "
             "grave a b c d e f g h i j k l m n o p q r s t u v w x y z braceleft bar braceright "
             "asciitilde"},
    {0x00A1, "exclamdown cent sterling currency yen brokenbar section dieresis copyright ordfeminine "
             "guillemotleft logicalnot"},
    {0x00AE, "registered macron degree plusminus twosuperior threesuperior acute mu paragraph "
             "periodcentered cedilla onesuperior ordmasculine guillemotright onequarter onehalf "
             "threequarters questiondown Agrave Aacute Acircumflex Atilde Adieresis Aring AE Ccedilla "
             "Egrave Eacute Ecircumflex Edieresis Igrave Iacute Icircumflex Idieresis Eth Ntilde "
             "Ograve Oacute Ocircumflex Otilde Odieresis multiply Oslash Ugrave Uacute Ucircumflex "
             "Udieresis Yacute Thorn germandbls agrave aacute acircumflex atilde adieresis aring ae "
             "ccedilla egrave eacute ecircumflex edieresis igrave iacute icircumflex idieresis eth "
             "ntilde ograve oacute ocircumflex otilde odieresis divide oslash ugrave uacute "
             "ucircumflex udieresis yacute thorn ydieresis"},
    {0x0131, "dotlessi"},
    {0x0141, "Lslash lslash"},
    {0x0152, "OE oe"},
    {0x0160, "Scaron scaron"},
    {0x0178, "Ydieresis"},
    {0x017D, "Zcaron zcaron"},
    {0x0192, "florin"},
    {0x02C6, "circumflex caron"},
    {0x02D8, "breve dotaccent ring ogonek tilde hungarumlaut"},
    {0x2013, "endash emdash"},
    {0x2018, "quoteleft quoteright quotesinglbase"},
    {0x201C, "quotedblleft quotedblright quotedblbase"},
    {0x2020, "dagger daggerdbl bullet"},
    {0x2026, "ellipsis"},
    {0x2030, "perthousand"},
    {0x2039, "guilsinglleft guilsinglright"},
    {0x2044, "fraction"},
    {0x20AC, "Euro"},
    {0x2122, "trademark"},
    {0x2212, "minus"},
    {0xFB01, "fi fl"},
};
// clang-format on

std::vector<NamedCharacter> Unroll() {
    std::vector<NamedCharacter> characters;
    for (const CharacterRun& run : kRuns) {
        char32_t unicode = run.first;
        for (std::string_view rest = run.names; !rest.empty();) {
            const std::string_view name = rest.substr(0, rest.find(' '));
            characters.push_back({name, unicode++});
            rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        }
    }
    std::ranges::sort(characters, {}, &NamedCharacter::name);
    return characters;
}

}  // namespace

const std::vector<NamedCharacter>& StandardCharacters() {
    static const std::vector<NamedCharacter> characters = Unroll();
    return characters;
}

bool IsStandardName(std::string_view name) {
    return std::ranges::binary_search(StandardCharacters(), name, {}, &NamedCharacter::name);
}

}  // namespace text
