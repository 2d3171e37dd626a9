// The dictionaries that stand before the first byte is read: what is in them, in which VM, in which order.
#include <initializer_list>
#include <iterator>

#include "interp/FilterEPS.h"
#include "interp/OperatorChain.h"
#include "interp/OperatorNames.h"

namespace {

/// The entries of systemdict that are made by hand, beside those of the operator names.
constexpr std::int32_t HAND_MADE_ENTRIES = 17;
constexpr std::int32_t ENCODING_LENGTH = 256;

ElementPtr Name(const char* text) { return MakeElement<CSimpElement>(text); }
ElementPtr Text(const char* text) { return MakeElement<CStringElement>(std::string_view(text)); }
ElementPtr Flag(bool value) { return MakeElement<CBoolElement>(value); }

template <class... Elements>
TypedPtr<CArrayElement> ArrayOf(Elements... elements) {
    std::vector<ElementPtr> list;
    (list.push_back(std::move(elements)), ...);
    return MakeElement<CArrayElement>(std::move(list));
}

/// An executable packed array.
template <class... Elements>
ElementPtr PackedProcedure(Elements... elements) {
    TypedPtr<CArrayElement> procedure = ArrayOf(std::move(elements)...);
    procedure->m_nType = ET_PACKEDARRAY;
    procedure->m_bExec = true;
    return procedure;
}

/// Departure: encoding vectors hold no glyph names; every place is .notdef for the whole run.
ElementPtr EmptyEncoding() {
    std::vector<ElementPtr> list;
    list.reserve(ENCODING_LENGTH);
    for (std::int32_t i = 0; i < ENCODING_LENGTH; ++i) list.push_back(Name(".notdef"));
    return MakeElement<CArrayElement>(std::move(list));
}

}  // namespace

void CFilterEPS::BuildDefaultFont() {
    const CBodyPlaceScope global(PLACE_GLOBAL);
    m_pDefaultFont = MakeElement<CDictionary>(12);
    CDictionary& font = *m_pDefaultFont;
    font.Put("FontType", NewInt(1));
    font.Put("FontName", Name("Helvetica"));
    font.Put("PaintType", NewInt(0));
    font.Put("FontMatrix", ArrayOf<ElementPtr>(NewReal(0.001), NewReal(0.0), NewReal(0.0), NewReal(0.001), NewReal(0.0),
                                               NewReal(0.0)));
    font.Put("UniqueID", NewInt(5020902));
    font.Put("FontBBox", ArrayOf<ElementPtr>(NewInt(-174), NewInt(-285), NewInt(1001), NewInt(953)));
    font.Put("WMode", NewInt(0));

    auto info = MakeElement<CDictionary>(10);
    info->Put("versiont", Text("1.05"));  // with this t
    info->Put("Notice", Text(""));
    info->Put("FullName", Text(""));
    info->Put("FamilyName", Text(""));
    info->Put("Weight", Text("Regular"));
    info->Put("ItalicAngle", NewReal(0.0));
    info->Put("isFixedPitch", Flag(false));
    info->Put("UnderlinePosition", NewInt(-151));
    info->Put("UnderlineThickness", NewInt(50));
    font.Put("FontInfo", std::move(info));
    font.Put("Encoding", EmptyEncoding());
}

void CFilterEPS::BuildSystemDict() {
    const CBodyPlaceScope global(PLACE_GLOBAL);
    constexpr auto operatorCount = static_cast<std::int32_t>(std::size(g_OperatorNames));
    auto systemDict = MakeElement<CDictionary>(operatorCount + HAND_MADE_ENTRIES, DICT_SYSTEM);
    auto globalDict = MakeElement<CDictionary>(5, DICT_GLOBAL);
    m_pSharedFontDirectory = MakeElement<CDictionary>(50);

    systemDict->Put("version", Text("3010"));
    systemDict->Put("languagelevel", NewInt(3));
    systemDict->Put("revision", NewInt(704));
    systemDict->Put("product", Text("Orvelle 5.0"));
    systemDict->Put("StandardEncoding", EmptyEncoding());
    systemDict->Put("ISOLatin1Encoding", EmptyEncoding());
    const auto op = [](const char* name) -> ElementPtr {
        return MakeElement<COperatorElement>(std::string_view(name));
    };
    systemDict->Put("findencoding", PackedProcedure(Name("Encoding"), op("findresource")));
    systemDict->Put("findfont", PackedProcedure(op(".findfontop")));
    ResolveOperators(*m_pDialect);
    for (const char* name : g_OperatorNames) systemDict->Put(name, op(name));
    for (const OpTable* table : m_pDialect->OperatorTables()) {
        for (const OpRow& row : *table) systemDict->Put(row.name, op(row.name));
    }
    systemDict->Put("GlobalFontDirectory", m_pSharedFontDirectory->Clone());
    systemDict->Put("SharedFontDirectory", m_pSharedFontDirectory->Clone());

    const CBodyPlaceScope local(PlaceOfLevel(0));
    auto userDict = MakeElement<CDictionary>(200, DICT_USER);
    auto statusDict = MakeElement<CDictionary>(5, DICT_STATUS);
    auto errorDict = MakeElement<CDictionary>(31, DICT_ERROR);
    BuildErrorDict(*errorDict);
    auto errorInfoDict = MakeElement<CDictionary>(5, DICT_ERRORINFO);
    BuildErrorInfoDict(*errorInfoDict);

    statusDict->Put("product", systemDict->GetValue("product")->Clone());
    systemDict->Put("systemdict", systemDict->Clone());
    systemDict->Put("userdict", userDict->Clone());
    systemDict->Put("globaldict", globalDict->Clone());
    systemDict->Put("statusdict", std::move(statusDict));
    systemDict->Put("errordict", std::move(errorDict));
    systemDict->Put("$error", std::move(errorInfoDict));
    m_pFontDirectory = MakeElement<CDictionary>(50);
    systemDict->Put("FontDirectory", m_pFontDirectory->Clone());

    m_DictStack.Push(std::move(systemDict));
    m_DictStack.Push(std::move(globalDict));
    m_DictStack.Push(std::move(userDict));
    m_pCMapDirectory = MakeElement<CDictionary>(5);
}

// Departure: errors never look here. The entries stand for programs that read, wrap or replace them.
void CFilterEPS::BuildErrorDict(CDictionary& dict) {
    constexpr const char* names[] = {
        "configurationerror", "dictfull",       "dictstackoverflow", "dictstackunderflow", "execstackoverflow",
        "handleerror",        "interrupt",      "invalidaccess",     "invalidexit",        "invalidfileaccess",
        "invalidfont",        "invalidrestore", "ioerror",           "limitcheck",         "nocurrentpoint",
        "rangecheck",         "stackoverflow",  "stackunderflow",    "syntaxerror",        "timeout",
        "typecheck",          "undefined",      "undefinedfilename", "undefinedresource",  "undefinedresult",
        "unmatchedmark",      "unregistered",   "VMerror",
    };
    for (const char* name : names) dict.Put(name, PackedProcedure());
}

void CFilterEPS::BuildErrorInfoDict(CDictionary& dict) {
    dict.Put("globalmode", Flag(false));
    dict.Put("recordstacks", Flag(false));
    dict.Put("newerror", Flag(false));
    dict.Put("errorname", MakeElement<CNullElement>());
    dict.Put("errorinfo", MakeElement<CNullElement>());
    dict.Put("SubstituteFont", PackedProcedure());
}

void CFilterEPS::BuildInternalDict() {
    m_pInternalDict = MakeElement<CDictionary>(10);
    m_pInternalDict->Put("superexec", MakeElement<COperatorElement>(std::string_view("superexec")));
}
