// Spellings are compared without what separates their parts, so that a row serves all of them: the front of a name is
// the family, and what follows has to be words for weight and slant that the family knows.
#include "complete/text/StandardFonts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace text {

namespace {

using Family = FaceClass::Family;

/// Of a family's four fonts, in this order.
enum Style : std::size_t { Regular = 0, Bold = 1, Italic = 2, BoldItalic = Bold | Italic };

struct FamilyRow {
    std::string_view spellings;  ///< with a blank between them
    std::string_view regular;    ///< words for its weights, beside Regular, Roman and Bold
    std::string_view bold;
    std::optional<Family> family;  ///< nothing for symbols, which have one style only
    /// Faces of equal metrics: the URW fonts in their present names, TeX Gyre, the URW fonts in their older names,
    /// Liberation and what else there is.
    std::array<std::string_view, 4> faces;
    std::array<std::optional<StandardFace>, 4> widths;
    const EncodingVector* encoding = &kStandardEncoding;
};

constexpr std::array<std::optional<StandardFace>, 4> kUnknownWidths{};

// The longer of two spellings that begin alike stands first.
constexpr FamilyRow kFamilies[] = {
    {"HelveticaNarrow HelveticaCondensed ArialNarrow",
     "",
     "",
     Family::Sans,
     {"NimbusSansNarrow-Regular TeXGyreHerosCn-Regular NimbusSanL-ReguCond LiberationSansNarrow",
      "NimbusSansNarrow-Bold TeXGyreHerosCn-Bold NimbusSanL-BoldCond LiberationSansNarrow-Bold",
      "NimbusSansNarrow-Oblique TeXGyreHerosCn-Italic NimbusSanL-ReguCondItal LiberationSansNarrow-Italic",
      "NimbusSansNarrow-BoldOblique TeXGyreHerosCn-BoldItalic NimbusSanL-BoldCondItal LiberationSansNarrow-BoldItalic"},
     kUnknownWidths},
    {"Helvetica Arial",
     "",
     "",
     Family::Sans,
     {"Helvetica NimbusSans-Regular TeXGyreHeros-Regular NimbusSanL-Regu LiberationSans ArialMT Arimo-Regular",
      "Helvetica-Bold NimbusSans-Bold TeXGyreHeros-Bold NimbusSanL-Bold LiberationSans-Bold Arial-BoldMT Arimo-Bold",
      "Helvetica-Oblique NimbusSans-Italic NimbusSans-Oblique TeXGyreHeros-Italic NimbusSanL-ReguItal "
      "LiberationSans-Italic Arial-ItalicMT Arimo-Italic",
      "Helvetica-BoldOblique NimbusSans-BoldItalic NimbusSans-BoldOblique TeXGyreHeros-BoldItalic NimbusSanL-BoldItal "
      "LiberationSans-BoldItalic Arial-BoldItalicMT Arimo-BoldItalic"},
     {StandardFace::Helvetica, StandardFace::HelveticaBold, StandardFace::Helvetica, StandardFace::HelveticaBold}},
    {"TimesNewRoman Times",
     "",
     "",
     Family::Serif,
     {"Times-Roman NimbusRoman-Regular TeXGyreTermes-Regular NimbusRomNo9L-Regu LiberationSerif TimesNewRomanPSMT "
      "Tinos-Regular",
      "Times-Bold NimbusRoman-Bold TeXGyreTermes-Bold NimbusRomNo9L-Medi LiberationSerif-Bold TimesNewRomanPS-BoldMT "
      "Tinos-Bold",
      "Times-Italic NimbusRoman-Italic TeXGyreTermes-Italic NimbusRomNo9L-ReguItal LiberationSerif-Italic "
      "TimesNewRomanPS-ItalicMT Tinos-Italic",
      "Times-BoldItalic NimbusRoman-BoldItalic TeXGyreTermes-BoldItalic NimbusRomNo9L-MediItal "
      "LiberationSerif-BoldItalic TimesNewRomanPS-BoldItalicMT Tinos-BoldItalic"},
     {StandardFace::TimesRoman, StandardFace::TimesBold, StandardFace::TimesItalic, StandardFace::TimesBoldItalic}},
    {"CourierNew Courier",
     "",
     "",
     Family::Mono,
     {"Courier NimbusMonoPS-Regular TeXGyreCursor-Regular NimbusMonL-Regu LiberationMono CourierNewPSMT "
      "Cousine-Regular",
      "Courier-Bold NimbusMonoPS-Bold TeXGyreCursor-Bold NimbusMonL-Bold LiberationMono-Bold CourierNewPS-BoldMT "
      "Cousine-Bold",
      "Courier-Oblique NimbusMonoPS-Italic TeXGyreCursor-Italic NimbusMonL-ReguObli LiberationMono-Italic "
      "CourierNewPS-ItalicMT Cousine-Italic",
      "Courier-BoldOblique NimbusMonoPS-BoldItalic TeXGyreCursor-BoldItalic NimbusMonL-BoldObli "
      "LiberationMono-BoldItalic CourierNewPS-BoldItalicMT Cousine-BoldItalic"},
     {StandardFace::Courier, StandardFace::Courier, StandardFace::Courier, StandardFace::Courier}},
    {"AvantGarde ITCAvantGarde",
     "Book",
     "Demi",
     Family::Sans,
     {"AvantGarde-Book URWGothic-Book TeXGyreAdventor-Regular URWGothicL-Book",
      "AvantGarde-Demi URWGothic-Demi TeXGyreAdventor-Bold URWGothicL-Demi",
      "AvantGarde-BookOblique URWGothic-BookOblique TeXGyreAdventor-Italic URWGothicL-BookObli",
      "AvantGarde-DemiOblique URWGothic-DemiOblique TeXGyreAdventor-BoldItalic URWGothicL-DemiObli"},
     kUnknownWidths},
    {"Bookman ITCBookman",
     "Light",
     "Demi",
     Family::Serif,
     {"Bookman-Light URWBookman-Light TeXGyreBonum-Regular URWBookmanL-Ligh",
      "Bookman-Demi URWBookman-Demi TeXGyreBonum-Bold URWBookmanL-DemiBold",
      "Bookman-LightItalic URWBookman-LightItalic TeXGyreBonum-Italic URWBookmanL-LighItal",
      "Bookman-DemiItalic URWBookman-DemiItalic TeXGyreBonum-BoldItalic URWBookmanL-DemiBoldItal"},
     kUnknownWidths},
    {"NewCenturySchlbk NewCenturySchoolbook CenturySchoolbook",
     "",
     "",
     Family::Serif,
     {"NewCenturySchlbk-Roman C059-Roman TeXGyreSchola-Regular CenturySchL-Roma",
      "NewCenturySchlbk-Bold C059-Bold TeXGyreSchola-Bold CenturySchL-Bold",
      "NewCenturySchlbk-Italic C059-Italic TeXGyreSchola-Italic CenturySchL-Ital",
      "NewCenturySchlbk-BoldItalic C059-BdIta C059-BoldItalic TeXGyreSchola-BoldItalic CenturySchL-BoldItal"},
     kUnknownWidths},
    {"Palatino",
     "",
     "",
     Family::Serif,
     {"Palatino-Roman P052-Roman TeXGyrePagella-Regular URWPalladioL-Roma",
      "Palatino-Bold P052-Bold TeXGyrePagella-Bold URWPalladioL-Bold",
      "Palatino-Italic P052-Italic TeXGyrePagella-Italic URWPalladioL-Ital",
      "Palatino-BoldItalic P052-BoldItalic TeXGyrePagella-BoldItalic URWPalladioL-BoldItal"},
     kUnknownWidths},
    {"ZapfChancery ITCZapfChancery",
     "Medium",
     "",
     Family::Serif,
     {"", "", "ZapfChancery-MediumItalic Z003-MediumItalic TeXGyreChorus-MediumItalic URWChanceryL-MediItal", ""},
     kUnknownWidths},
    {"Symbol", "", "", std::nullopt, {"Symbol StandardSymbolsPS StandardSymL"}, kUnknownWidths, &kSymbolEncoding},
    {"ZapfDingbats ITCZapfDingbats",
     "",
     "",
     std::nullopt,
     {"ZapfDingbats D050000L Dingbats"},
     kUnknownWidths,
     &kZapfDingbatsEncoding},
};

std::vector<std::string_view> Split(std::string_view words) {
    std::vector<std::string_view> split;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        split.push_back(word);
        words.remove_prefix(std::min(words.size(), word.size() + 1));
    }
    return split;
}

bool IsLetter(char c) noexcept { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool IsUpper(char c) noexcept { return std::isupper(static_cast<unsigned char>(c)) != 0; }

/// Takes a word from the front of a text. An empty one isn't there.
bool TakeWord(std::string_view& text, std::string_view word) noexcept {
    if (word.empty() || !text.starts_with(word)) return false;
    text.remove_prefix(word.size());
    return true;
}

/// The style that words behind a family tell; nothing when there are others among them.
std::optional<Style> ParseStyle(std::string_view words, const FamilyRow& row) {
    std::size_t style = Regular;
    while (!words.empty()) {
        if (TakeWord(words, "Bold") || TakeWord(words, row.bold)) {
            style |= Bold;
        } else if (TakeWord(words, "Italic") || TakeWord(words, "Oblique")) {
            style |= Italic;
        } else if (!TakeWord(words, "Regular") && !TakeWord(words, "Roman") && !TakeWord(words, "Normal") &&
                   !TakeWord(words, "PS") && !TakeWord(words, "MT") && !TakeWord(words, row.regular)) {
            return std::nullopt;
        }
    }
    return static_cast<Style>(style);
}

std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

/// The words that capitals begin, in small letters: LucidaSans-Typewriter has three.
std::vector<std::string> WordsOf(std::string_view name) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < name.size();) {
        std::size_t end = i + 1;
        while (end < name.size() && IsLetter(name[end]) && !(IsUpper(name[end]) && !IsUpper(name[end - 1]))) ++end;
        words.push_back(ToLower(name.substr(i, end - i)));
        i = end;
    }
    return words;
}

StandardFont FontOf(const FamilyRow& row, std::size_t style) {
    StandardFont font;
    font.faces = Split(row.faces[style]);
    if (row.family) font.faceClass = {*row.family, (style & Bold) != 0, (style & Italic) != 0};
    font.widths = row.widths[style];
    font.encoding = row.encoding;
    return font;
}

}  // namespace

std::optional<StandardFont> FindStandardFont(std::string_view name) {
    std::string joined;
    std::ranges::copy_if(name, std::back_inserter(joined),
                         [](char c) { return c != '-' && c != ',' && c != ' ' && c != '_'; });
    for (const FamilyRow& row : kFamilies) {
        for (const std::string_view spelling : Split(row.spellings)) {
            if (!joined.starts_with(spelling)) continue;
            const auto style = ParseStyle(std::string_view(joined).substr(spelling.size()), row);
            if (!style || row.faces[*style].empty()) continue;
            return FontOf(row, *style);
        }
    }
    // A face that stands for one of them in files of other systems.
    for (const FamilyRow& row : kFamilies) {
        for (std::size_t style = Regular; style <= BoldItalic; ++style) {
            const std::vector<std::string_view> faces = Split(row.faces[style]);
            if (std::ranges::find(faces, name) != faces.end()) return FontOf(row, style);
        }
    }
    return std::nullopt;
}

std::optional<FaceClass> ClassOfName(std::string_view name) {
    constexpr std::string_view noText =
        "symbol symbols dingbats music math mathematical ornaments expert barcode icons braille";
    constexpr std::string_view mono = "courier mono monospace typewriter console consolas menlo monaco fixed";
    constexpr std::string_view sans =
        "sans helvetica arial verdana tahoma univers frutiger futura optima calibri myriad gill trebuchet grotesk "
        "gothic "
        "swiss geneva lucida segoe roboto";
    constexpr std::string_view serif =
        "serif times roman garamond palatino bookman century schoolbook georgia minion cambria caslon baskerville "
        "bodoni "
        "goudy charter utopia constantia didot";
    const std::vector<std::string> words = WordsOf(name);
    const auto hasOne = [&words](std::string_view list) {
        return std::ranges::any_of(
            Split(list), [&words](std::string_view word) { return std::ranges::find(words, word) != words.end(); });
    };
    if (hasOne(noText)) return std::nullopt;
    // The name of a composite font ends with that of a CMap: its codes are not those of a text face.
    if (!words.empty() && (words.back() == "h" || words.back() == "v")) return std::nullopt;
    FaceClass faceClass;
    if (hasOne(mono)) {
        faceClass.family = Family::Mono;
    } else if (hasOne(sans)) {
        faceClass.family = Family::Sans;
    } else if (hasOne(serif)) {
        faceClass.family = Family::Serif;
    } else {
        return std::nullopt;
    }
    faceClass.isBold = hasOne("bold demi heavy black semibold");
    faceClass.isItalic = hasOne("italic oblique slanted");
    return faceClass;
}

}  // namespace text
