// The categories of the language (PLRM, Resource Categories), one row each.
#include "complete/ResourceCategories.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "complete/CMapOperators.h"
#include "complete/CompleteDialect.h"
#include "complete/FilterOperators.h"
#include "complete/FontFaces.h"
#include "complete/FontOperators.h"
#include "complete/ResourceOperators.h"
#include "complete/text/Encodings.h"
#include "interp/FilterEPS.h"
#include "interp/Keys.h"

namespace {

ElementPtr Name(std::string_view text) { return MakeElement<CSimpElement>(text); }

// Encodings

struct NamedEncoding {
    std::string_view name;
    const EncodingVector& vector;
};

constexpr NamedEncoding kEncodings[] = {
    {"StandardEncoding", kStandardEncoding},
    {"ISOLatin1Encoding", kIsoLatin1Encoding},
    {"SymbolEncoding", kSymbolEncoding},
    {"DingbatsEncoding", kZapfDingbatsEncoding},
};

constexpr std::string_view kEncodingNames[] = {kEncodings[0].name, kEncodings[1].name, kEncodings[2].name,
                                               kEncodings[3].name};

ElementPtr MakeEncoding(CFilterEPS&, const CName* key) {
    const auto* known = std::find_if(std::begin(kEncodings), std::end(kEncodings),
                                     [&](const NamedEncoding& row) { return row.name == key->Text(); });
    std::vector<ElementPtr> names;
    for (const std::string_view glyph : known->vector) names.push_back(Name(glyph));
    auto encoding = MakeElement<CArrayElement>(std::move(names));
    encoding->m_nAccess = ACC_READONLY;
    return encoding;
}

// Colour spaces that stand for the device's own, and the one colour rendering

struct DefaultSpace {
    std::string_view name;
    std::string_view family;
};

constexpr DefaultSpace kDefaultSpaces[] = {
    {"DefaultGray", "DeviceGray"}, {"DefaultRGB", "DeviceRGB"}, {"DefaultCMYK", "DeviceCMYK"}};

constexpr std::string_view kColorSpaceNames[] = {kDefaultSpaces[0].name, kDefaultSpaces[1].name,
                                                 kDefaultSpaces[2].name};

ElementPtr MakeColorSpace(CFilterEPS&, const CName* key) {
    const auto* known = std::find_if(std::begin(kDefaultSpaces), std::end(kDefaultSpaces),
                                     [&](const DefaultSpace& row) { return row.name == key->Text(); });
    std::vector<ElementPtr> family;
    family.push_back(Name(known->family));
    return MakeElement<CArrayElement>(std::move(family));
}

constexpr std::string_view kColorRenderings[] = {"DefaultColorRendering"};

ElementPtr MakeColorRendering(CFilterEPS&, const CName*) {
    auto rendering = MakeElement<CDictionary>(2);
    rendering->Put("ColorRenderingType", NewInt(1));
    return rendering;
}

// Implicit categories: what the language has, and this system knows

constexpr std::string_view kColorSpaceFamilies[] = {
    "DeviceGray", "DeviceRGB", "DeviceCMYK", "CIEBasedA",  "CIEBasedABC", "CIEBasedDEF", "CIEBasedDEFG",
    "ICCBased",   "Lab",       "Indexed",    "Separation", "DeviceN",     "Pattern"};
constexpr std::string_view kOne[] = {"1"};
constexpr std::string_view kFontTypes[] = {"0", "1", "2", "3", "9", "10", "11", "42"};
constexpr std::string_view kFMapTypes[] = {"2", "3", "4", "5", "6", "7", "8", "9"};
constexpr std::string_view kHalftoneTypes[] = {"1", "2", "3", "4", "5", "6", "10", "16", "100"};
constexpr std::string_view kImageTypes[] = {"1", "3", "4"};
constexpr std::string_view kFunctionTypes[] = {"0", "2", "3"};
constexpr std::string_view kShadingTypes[] = {"1", "2", "3", "4", "5", "6", "7"};
constexpr std::string_view kPatternTypes[] = {"1", "2"};
constexpr std::string_view kTrappingTypes[] = {"1001"};

// Fonts and CMaps stand in directories that the font operators and programs see

template <auto Local, auto Global>
CDictionary* DirectoryOf(CFilterEPS& m, bool global) {
    return global ? (m.*Global).get() : (m.*Local).get();
}

ElementPtr FindFontElsewhere(CFilterEPS& m, const CElement& key) {
    const CName* name = KeyNameOf(key);
    return name ? m.Dialect().FindUndefinedFont(m, name) : nullptr;
}

/// Files ask for the CIDFonts of East Asian faces, which printers have. One that isn't there has no glyphs.
ElementPtr FindCidFontElsewhere(CFilterEPS& m, const CElement& key) {
    const CName* name = KeyNameOf(key);
    if (!name || m.m_pFontDirectory->Find(name) || m.m_pSharedFontDirectory->Find(name)) return nullptr;
    CFontFaces& fonts = CCompleteDialect::Of(m).Fonts();
    if (fonts.Has(name)) return nullptr;
    return fonts.MakeCidFont(m, name) == 1 ? m.Pop() : nullptr;
}

bool IsFontElsewhere(CFilterEPS& m, const CElement& key) {
    const CName* name = KeyNameOf(key);
    return name && CCompleteDialect::Of(m).Fonts().Has(name);
}

// The rows. Whoever has more to say of a category says it here.

constexpr std::string_view kDict = "dicttype";
constexpr std::string_view kName = "nametype";
constexpr std::string_view kInteger = "integertype";

constexpr CategoryRow kRows[] = {
    {.name = "Font",
     .instanceType = kDict,
     .define = DefineFont,
     .directory = DirectoryOf<&CFilterEPS::m_pFontDirectory, &CFilterEPS::m_pSharedFontDirectory>,
     .find = FindFontElsewhere,
     .exists = IsFontElsewhere},
    {.name = "CIDFont", .instanceType = kDict, .define = DefineCidFont, .find = FindCidFontElsewhere},
    {.name = "CMap",
     .instanceType = kDict,
     .names = kCMapNames,
     .make = MakeCMap,
     .directory = DirectoryOf<&CFilterEPS::m_pCMapDirectory, &CFilterEPS::m_pCMapDirectory>},
    {.name = "FontSet", .instanceType = kDict},
    {.name = "Encoding", .instanceType = "arraytype", .names = kEncodingNames, .make = MakeEncoding},
    {.name = "Form", .instanceType = kDict},
    {.name = "Pattern", .instanceType = kDict},
    {.name = "ProcSet", .instanceType = kDict, .names = kFontProcSets, .make = MakeFontProcSet},
    {.name = "ColorSpace", .instanceType = "arraytype", .names = kColorSpaceNames, .make = MakeColorSpace},
    {.name = "Halftone", .instanceType = kDict},
    {.name = "ColorRendering", .instanceType = kDict, .names = kColorRenderings, .make = MakeColorRendering},
    {.name = "IdiomSet", .instanceType = kDict},
    {.name = "InkParams", .instanceType = kDict},
    {.name = "TrapParams", .instanceType = kDict},
    {.name = "OutputDevice", .instanceType = kDict},
    {.name = "ControlLanguage", .instanceType = kDict},
    {.name = "Localization", .instanceType = kDict},
    {.name = "PDL", .instanceType = kDict},
    {.name = "HWOptions", .instanceType = kDict},
    {.name = "Filter", .instanceType = kName, .names = kFilterNames, .isImplicit = true},
    {.name = "ColorSpaceFamily", .instanceType = kName, .names = kColorSpaceFamilies, .isImplicit = true},
    {.name = "Emulator", .instanceType = kName, .isImplicit = true},
    {.name = "IODevice", .instanceType = "stringtype", .isImplicit = true},
    {.name = "ColorRenderingType", .instanceType = kInteger, .names = kOne, .isImplicit = true},
    {.name = "FMapType", .instanceType = kInteger, .names = kFMapTypes, .isImplicit = true},
    {.name = "FontType", .instanceType = kInteger, .names = kFontTypes, .isImplicit = true},
    {.name = "FormType", .instanceType = kInteger, .names = kOne, .isImplicit = true},
    {.name = "HalftoneType", .instanceType = kInteger, .names = kHalftoneTypes, .isImplicit = true},
    {.name = "ImageType", .instanceType = kInteger, .names = kImageTypes, .isImplicit = true},
    {.name = "PatternType", .instanceType = kInteger, .names = kPatternTypes, .isImplicit = true},
    {.name = "FunctionType", .instanceType = kInteger, .names = kFunctionTypes, .isImplicit = true},
    {.name = "ShadingType", .instanceType = kInteger, .names = kShadingTypes, .isImplicit = true},
    {.name = "TrappingType", .instanceType = kInteger, .names = kTrappingTypes, .isImplicit = true},
    {.name = "Generic"},
};

constexpr auto kCategoryNames = [] {
    std::array<std::string_view, std::size(kRows) + 1> names{};
    for (std::size_t i = 0; i < std::size(kRows); ++i) names[i] = kRows[i].name;
    names.back() = CATEGORY;
    return names;
}();

constexpr CategoryRow CATEGORY_ROW{
    .name = CATEGORY, .instanceType = kDict, .names = kCategoryNames, .make = MakeCategory, .define = DefineCategory};

}  // namespace

const CategoryRow* FindCategoryRow(const CName* name) noexcept {
    if (name->Text() == CATEGORY) return &CATEGORY_ROW;
    const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                   [&](const CategoryRow& known) { return known.name == name->Text(); });
    return row != std::end(kRows) ? row : nullptr;
}
