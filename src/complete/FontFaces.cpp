// Faces by what makes them: a name, charstrings, sfnts, glyph data. A face of a dictionary is known by the storage that
// its program stands in. Programs go on changing that: what has been made is looked at anew when something that it was
// made of may have changed.
#include "complete/FontFaces.h"

#include <algorithm>
#include <array>
#include <deque>
#include <map>
#include <utility>

#include "complete/CompleteDialect.h"
#include "complete/FontOperators.h"
#include "complete/text/CffFace.h"
#include "complete/text/CharStrings.h"
#include "complete/text/CidType0.h"
#include "complete/text/SfntFace.h"
#include "complete/text/Substitutes.h"
#include "graphics/Matrix.h"
#include "graphics/MatrixOperators.h"
#include "hostout/HostCore.h"
#include "interp/Keys.h"
#include "platform/Window.h"
#include "text/FontDirectory.h"

namespace {

/// Identity of the storage of a composite object, for as long as it is there.
struct StorageKey {
    const CBody* body = nullptr;
    RegistryId registry = 0;

    friend bool operator==(const StorageKey&, const StorageKey&) noexcept = default;
    [[nodiscard]] bool IsLive() const noexcept { return g_RegistryStack.IsLive(registry); }
};

struct StorageHash {
    std::size_t operator()(const StorageKey& key) const noexcept {
        return std::hash<const void*>()(key.body) ^ static_cast<std::size_t>(key.registry);
    }
};

template <class Element>
StorageKey KeyOf(const Element& element) {
    const auto* body = element.GetBody();
    return body ? StorageKey{body, body->m_nRegistry} : StorageKey{};
}

/// What has been made of storage. What is no longer there is dropped as the table grows.
template <class Made>
class CStorageTable {
public:
    [[nodiscard]] Made& At(const StorageKey& key) {
        const auto found = m_Made.find(key);
        if (found != m_Made.end()) return *found->second;
        if (m_Made.size() >= m_nNextSweep) {
            std::erase_if(m_Made, [](const auto& entry) { return !entry.first.IsLive(); });
            m_nNextSweep = 2 * m_Made.size() + FIRST_SWEEP;
        }
        return *m_Made.emplace(key, std::make_unique<Made>()).first->second;
    }

private:
    static constexpr std::size_t FIRST_SWEEP = 16;

    std::unordered_map<StorageKey, std::unique_ptr<Made>, StorageHash> m_Made;
    std::size_t m_nNextSweep = FIRST_SWEEP;
};

/// The strings of an array that holds nothing else; empty for another one. Their changes count from now on.
std::vector<std::string_view> StringsIn(const CArrayElement& array) {
    std::vector<std::string_view> strings;
    if (CArrayBody* body = array.GetBody()) body->MarkCopied();
    for (std::int32_t i = 0; i < array.GetLength(); ++i) {
        const auto* string = As<CStringElement>(array.GetAt(i));
        if (string && string->GetBody()) string->GetBody()->MarkCopied();
        strings.push_back(string ? string->Bytes() : std::string_view());
    }
    return strings;
}

/// The strings of a glyph directory, an array or a dictionary, by their index. Their changes count from now on.
std::map<std::int32_t, std::string_view> DirectoryOf(const CElement& directory) {
    std::map<std::int32_t, std::string_view> strings;
    const auto add = [&strings](std::int32_t index, const CElement* value) {
        const auto* string = As<CStringElement>(value);
        if (!string || !string->GetBody()) return;
        string->GetBody()->MarkCopied();
        strings.emplace(index, string->Bytes());
    };
    if (const auto* array = As<CArrayElement>(&directory)) {
        if (CArrayBody* body = array->GetBody()) body->MarkCopied();
        for (std::int32_t i = 0; i < array->GetLength(); ++i) add(i, array->GetAt(i));
    } else if (const auto* dict = As<CDictionary>(&directory)) {
        if (CDictionaryBody* body = dict->GetBody()) body->MarkCopied();
        for (std::int32_t i = 0; i < dict->GetOtherCount(); ++i) {
            const CDictNode2* node = dict->GetOtherNodeAt(i);
            if (const auto* index = As<CNumberElement>(node->m_pKey.get())) add(index->GetInt(), node->GetValue());
        }
    }
    return strings;
}

/// Of a value that is no directory, or null, nothing.
StorageKey KeyOfDirectory(const CElement* directory) {
    if (const auto* array = As<CArrayElement>(directory)) return KeyOf(*array);
    const auto* dict = As<CDictionary>(directory);
    return dict ? KeyOf(*dict) : StorageKey{};
}

// Charstrings

struct CharStringGlyph {
    std::string charString;  ///< that it was made of
    std::optional<text::Type1Glyph> glyph;
};

/// The glyphs of one CharStrings dictionary, and what else they are made of.
struct CharStringFace {
    std::uint64_t epoch = 0;
    StorageKey priv;  ///< the dictionary that the following stood in
    bool isStarted = false;
    bool isStroked = false;  ///< its contours stay as open as they are
    int lenIV = 4;
    std::vector<std::string> subrs;
    std::unordered_map<const CName*, CharStringGlyph> glyphs;
};

int LenIvOf(const CDictionary& priv) {
    const auto* number = As<CNumberElement>(priv.GetValue("lenIV"));
    return number ? number->GetInt() : 4;
}

/// Reads what the charstrings of a font share, and forgets the glyphs that may be others now.
void Renew(CharStringFace& face, const CDictionary& font, const CDictionary& charStrings, const FontNames& names,
           bool isStroked) {
    charStrings.GetBody()->MarkCopied();
    int lenIV = 4;
    std::vector<std::string> subrs;
    const auto* priv = As<CDictionary>(font.GetValue(names.priv));
    face.priv = priv ? KeyOf(*priv) : StorageKey{};
    if (priv && priv->GetBody()) {
        priv->GetBody()->MarkCopied();
        lenIV = LenIvOf(*priv);
        if (const auto* array = As<CArrayElement>(priv->GetValue("Subrs"))) {
            for (const std::string_view subr : StringsIn(*array)) subrs.emplace_back(subr);
        }
    }
    if (lenIV != face.lenIV || subrs != face.subrs) face.glyphs.clear();
    if (isStroked != face.isStroked) face.glyphs.clear();
    face.isStroked = isStroked;
    face.lenIV = lenIV;
    face.subrs = std::move(subrs);
    std::erase_if(face.glyphs, [](const auto& entry) {
        const auto& glyph = entry.second.glyph;
        return !glyph || glyph->isComposite;  // its parts may have changed
    });
    face.isStarted = true;
    face.epoch = g_nSnapshotEpoch;
}

// sfnt

struct SfntFace {
    std::uint64_t epoch = 0;
    bool isStarted = false;
    std::string bytes;
    std::unique_ptr<text::FontFace> face;
};

// CIDFonts

/// The glyphs of one string of glyph data, and the layout that they were read by.
struct CidFace {
    std::uint64_t epoch = 0;
    bool isStarted = false;
    text::CidType0Layout layout;
    std::vector<std::array<double, 9>> matrices;    ///< of the font dictionaries
    std::vector<std::vector<std::string>> subrs;    ///< of each, where it has them in an array
    std::map<std::int32_t, std::string> directory;  ///< where there is one, it goes before the glyph data
    std::unordered_map<std::int32_t, std::optional<text::Type1Glyph>> glyphs;
};

std::int64_t IntegerIn(const CDictionary& dict, std::string_view key, std::int64_t otherwise = 0) {
    const auto* number = As<CNumberElement>(dict.GetValue(key));
    return number ? number->GetInt64() : otherwise;
}

/// Reads what a CIDFont says of its glyph data.
void Renew(CidFace& face, const CDictionary& font) {
    face.glyphs.clear();
    face.layout = {};
    face.matrices.clear();
    face.subrs.clear();
    face.directory.clear();
    if (const CElement* directory = font.GetValue("GlyphDirectory")) {
        for (const auto& [cid, bytes] : DirectoryOf(*directory)) face.directory.emplace(cid, bytes);
    }
    face.layout.cidMapOffset = IntegerIn(font, "CIDMapOffset");
    face.layout.fdBytes = IntegerIn(font, "FDBytes");
    face.layout.gdBytes = IntegerIn(font, "GDBytes");
    face.layout.cidCount = IntegerIn(font, "CIDCount");
    const auto* array = As<CArrayElement>(font.GetValue("FDArray"));
    for (std::int32_t i = 0; array && i < array->GetLength(); ++i) {
        text::CidType0Layout::FontDict fontDict;
        std::array<double, 9> matrix{1, 0, 0, 0, 1, 0, 0, 0, 1};
        std::vector<std::string> subrs;
        if (const auto* dict = As<CDictionary>(array->GetAt(i))) {
            if (const auto* priv = As<CDictionary>(dict->GetValue("Private"))) {
                fontDict.subrMapOffset = IntegerIn(*priv, "SubrMapOffset");
                fontDict.sdBytes = IntegerIn(*priv, "SDBytes");
                fontDict.subrCount = IntegerIn(*priv, "SubrCount");
                fontDict.lenIV = LenIvOf(*priv);
                if (const auto* strings = As<CArrayElement>(priv->GetValue("Subrs"))) {
                    for (const std::string_view subr : StringsIn(*strings)) subrs.emplace_back(subr);
                }
            }
            double six[6];
            const auto* its = As<CArrayElement>(dict->GetValue("FontMatrix"));
            if (its && ReadMatrix(*its, six) == PSERR_NONE) MatFromArray6(six, matrix.data());
        }
        face.layout.fontDicts.push_back(fontDict);
        face.matrices.push_back(matrix);
        face.subrs.push_back(std::move(subrs));
    }
    face.isStarted = true;
    face.epoch = g_nSnapshotEpoch;
}

/// The charstring of a CID in a glyph directory: the index of its font dictionary stands in front (PLRM, CIDFontType 0
/// CIDFonts).
std::optional<text::CidCharString> FindInDirectory(const CidFace& face, std::int32_t cid) {
    const auto found = face.directory.find(cid);
    const auto indexBytes = static_cast<std::size_t>(std::clamp<std::int64_t>(face.layout.fdBytes, 0, 4));
    if (found == face.directory.end() || found->second.size() <= indexBytes) return std::nullopt;
    const std::string_view bytes = found->second;
    return text::CidCharString{text::CodeMap::NumberOf(bytes.substr(0, indexBytes)), bytes.substr(indexBytes)};
}

std::optional<text::Type1Glyph> MakeCidGlyph(const CidFace& face, std::string_view bytes, std::int32_t cid) {
    const text::CidType0Data data(bytes, face.layout);
    const auto charString = face.directory.empty() ? data.Find(cid) : FindInDirectory(face, cid);
    if (!charString || charString->fontDict >= face.matrices.size()) return std::nullopt;
    text::Type1Program program;
    program.lenIV = face.layout.fontDicts[charString->fontDict].lenIV;
    program.subr = [&](std::size_t number) {
        const std::vector<std::string>& subrs = face.subrs[charString->fontDict];
        return number < subrs.size() ? std::optional<std::string_view>(subrs[number])
                                     : data.Subr(charString->fontDict, number);
    };
    auto glyph = text::MakeType1Glyph(program, charString->bytes);
    if (!glyph) return glyph;
    const double* matrix = face.matrices[charString->fontDict].data();
    glyph->outline.Transform(matrix);
    for (geometry::Point* vector : {&glyph->metrics.width, &glyph->metrics.bearing}) {
        double xy[2] = {vector->x, vector->y};
        MatDTransform(1, xy, matrix);
        *vector = {xy[0], xy[1]};
    }
    return glyph;
}

/// The glyph index that a CIDFont of type 2 has for a CID: its CIDMap is a number to add, a dictionary, or strings of
/// GDBytes for each CID (PLRM, CIDFontType 2 CIDFonts).
std::int32_t IndexOfCid(const CDictionary& font, std::int32_t cid) {
    const CElement* map = font.GetValue("CIDMap");
    if (const auto* offset = As<CNumberElement>(map)) return cid + offset->GetInt();
    if (const auto* dict = As<CDictionary>(map)) {
        const auto key = NewInt(cid);
        const CDictNode2* node = dict->FindOther(key.get());
        const auto* index = node ? As<CNumberElement>(node->GetValue()) : nullptr;
        return index ? index->GetInt() : 0;
    }
    const std::int64_t bytes = std::clamp<std::int64_t>(IntegerIn(font, "GDBytes", 2), 1, 4);
    std::int64_t at = cid * bytes;
    const auto* strings = As<CArrayElement>(map);
    const auto* string = As<CStringElement>(map);
    for (std::int32_t i = 0; strings && i < strings->GetLength(); ++i) {
        string = As<CStringElement>(strings->GetAt(i));
        if (!string || at < string->GetLength()) break;
        at -= string->GetLength();
        string = nullptr;
    }
    const std::string_view data = string ? string->Bytes() : std::string_view();
    if (at < 0 || at + bytes > std::ssize(data)) return 0;
    const auto place = static_cast<std::size_t>(at);
    return static_cast<std::int32_t>(text::CodeMap::NumberOf(data.substr(place, static_cast<std::size_t>(bytes))));
}

}  // namespace

struct CFontFaces::Contents {
    std::unique_ptr<text::FontCatalogue> catalogue;
    std::deque<NamedFont> named;
    CStorageTable<CharStringFace> charStrings;
    CStorageTable<SfntFace> sfnts;
    CStorageTable<CidFace> cidFonts;
    CStorageTable<std::shared_ptr<const text::CodeMap>> codeMaps;

    text::FontCatalogue& Catalogue() {
        const CFrameWnd* frame = glbf_GetMainFrame();
        if (!catalogue) {
            catalogue =
                std::make_unique<text::FontCatalogue>(frame ? frame->FontFolders() : std::vector<std::string>());
        }
        return *catalogue;
    }
};

CFontFaces::CFontFaces() : m_p(std::make_unique<Contents>()) {}

CFontFaces::~CFontFaces() = default;

// Named fonts

namespace {

ElementPtr Name(std::string_view text) { return MakeElement<CSimpElement>(text); }

ElementPtr Text(std::string_view text) { return MakeElement<CStringElement>(text); }

ElementPtr Numbers(std::initializer_list<double> values) {
    std::vector<ElementPtr> elements;
    for (const double value : values) elements.push_back(NewReal(value));
    return MakeElement<CArrayElement>(std::move(elements));
}

/// An encoding as an array: that of systemdict for StandardEncoding, so that programs can compare it.
ElementPtr EncodingOf(const CFilterEPS& m, const EncodingVector& vector) {
    const auto* systemDict = static_cast<const CDictionary*>(m.m_DictStack.Bottom());
    const CElement* standard = systemDict->GetValue("StandardEncoding");
    if (&vector == &kStandardEncoding && standard) return standard->Clone();
    std::vector<ElementPtr> names;
    for (const std::string_view glyph : vector) names.push_back(Name(glyph));
    auto encoding = MakeElement<CArrayElement>(std::move(names));
    encoding->m_nAccess = ACC_READONLY;
    return encoding;
}

/// The names of a face's glyphs, each with its index. Of a face that isn't there those of its encoding.
ElementPtr CharStringsOf(const text::FontFace* face) {
    const std::int32_t count = face ? face->GlyphCount() : static_cast<std::int32_t>(kStandardEncoding.size());
    auto charStrings = MakeElement<CDictionary>(count);
    charStrings->Put(".notdef", NewInt(0));
    for (std::int32_t i = 0; i < count; ++i) {
        const std::string_view name = face ? face->NameOfGlyph(i) : kStandardEncoding[static_cast<std::size_t>(i)];
        if (!name.empty()) charStrings->Put(name, NewInt(face ? i : 0));
    }
    return charStrings;
}

/// What a font tells of itself: a standard one what is published of it, whatever face stands for it. One that isn't
/// there has the entries of the plain dialect's only font.
text::FaceTraits TraitsOf(const CName* name, const text::FontFace* face) {
    if (const auto published = StandardTraits(name->Text())) return *published;
    const auto traits = face ? face->Traits() : std::nullopt;
    return traits.value_or(text::FaceTraits{{-174, -285}, {1001, 953}, 0, -100, 50, false});
}

/// A font dictionary with what all faces of this system have.
TypedPtr<CDictionary> NewFont(std::int32_t type, const CName* name, const text::FaceTraits& traits) {
    auto font = MakeElement<CDictionary>(16);
    font->Put("FontType", NewInt(type));
    font->Put("FontName", MakeElement<CSimpElement>(name));
    font->Put("PaintType", NewInt(0));
    font->Put("FontMatrix", Numbers({0.001, 0, 0, 0.001, 0, 0}));
    font->Put("FontBBox", Numbers({traits.boxMin.x, traits.boxMin.y, traits.boxMax.x, traits.boxMax.y}));
    font->Put("Private", MakeElement<CDictionary>(1));
    return font;
}

}  // namespace

int CFontFaces::MakeCidFont(CFilterEPS& m, const CName* name) {
    constexpr std::int32_t cidTypeZero = 9;
    NamedFont named;
    named.name = name->Text();
    if (const auto found = m_p->Catalogue().Find(name->Text());
        found && found->sameWidths && found->face->IsCidKeyed()) {
        named.face = found->face;
        named.used = found->usedName;
    }
    TypedPtr<CDictionary> font = NewFont(cidTypeZero, name, TraitsOf(name, named.face.get()));
    font->Put("CIDFontName", MakeElement<CSimpElement>(name));
    font->Put("CIDFontType", NewInt(0));
    auto system = MakeElement<CDictionary>(3);
    system->Put("Registry", Text("Adobe"));
    system->Put("Ordering", Text("Identity"));
    system->Put("Supplement", NewInt(0));
    font->Put("CIDSystemInfo", std::move(system));
    font->Put("FontInfo", MakeElement<CDictionary>(1));
    font->Put(m_Names.face, NewInt(Keep(std::move(named))));
    m.Push(MakeElement<CSimpElement>(name));
    m.Push(std::move(font));
    m.Push(Name("CIDFont"));
    if (InternName("defineresource")->m_pfnOperator(m) == 1) return 1;
    if (m.m_nError != PSERR_NONE) m.Drop(3);
    return -1;
}

ElementPtr CFontFaces::MakeFont(CFilterEPS& m, const CName* name) {
    constexpr std::int32_t typeOne = 1;
    const CBodyPlaceScope global(PLACE_GLOBAL);
    const auto found = m_p->Catalogue().Find(name->Text());
    NamedFont named;
    named.name = name->Text();
    const EncodingVector* encoding = &kStandardEncoding;
    if (found) {
        named.face = found->face;
        named.used = found->usedName;
        named.hasSameWidths = found->sameWidths;
        encoding = found->builtInEncoding;
    }
    const text::FaceTraits traits = TraitsOf(name, named.face.get());
    TypedPtr<CDictionary> font = NewFont(typeOne, name, traits);
    font->Put("Encoding", EncodingOf(m, *encoding));
    font->Put("CharStrings", CharStringsOf(named.face.get()));
    auto info = MakeElement<CDictionary>(10);
    info->Put("version", Text("1.05"));
    info->Put("Notice", Text(""));
    info->Put("FullName", Text(named.name));
    info->Put("FamilyName", Text(named.name.substr(0, named.name.find('-'))));
    info->Put("Weight", Text(named.name.find("Bold") != std::string::npos ? "Bold" : "Regular"));
    info->Put("ItalicAngle", NewReal(traits.italicAngle));
    info->Put("isFixedPitch", MakeElement<CBoolElement>(traits.isFixedPitch));
    info->Put("UnderlinePosition", NewReal(traits.underlinePosition));
    info->Put("UnderlineThickness", NewReal(traits.underlineThickness));
    font->Put("FontInfo", std::move(info));
    font->Put(m_Names.fid, MakeElement<CSimpElement>(name, ET_FONTID));
    font->Put(m_Names.face, NewInt(Keep(std::move(named))));
    font->m_nAccess = ACC_READONLY;
    EnterFontEverywhere(m, name, *font);
    return font;
}

bool CFontFaces::Has(const CName* name) {
    const auto found = m_p->Catalogue().Find(name->Text());
    return found && found->sameWidths;
}

const NamedFont* CFontFaces::NamedOf(const CDictionary& font) const {
    const auto* number = As<CNumberElement>(font.GetValue(m_Names.face));
    if (!number) return nullptr;
    const std::int32_t place = number->GetInt();
    return place >= 0 && place < std::ssize(m_p->named) ? &m_p->named[static_cast<std::size_t>(place)] : nullptr;
}

std::int32_t CFontFaces::Keep(NamedFont font) {
    m_p->named.push_back(std::move(font));
    return static_cast<std::int32_t>(m_p->named.size()) - 1;
}

int CFontFaces::DefineFontSet(CFilterEPS& m, const CElement& key, std::string data) {
    constexpr std::int32_t cff = 2;
    constexpr int mostFonts = 256;
    auto fonts = MakeElement<CDictionary>(1);
    for (int index = 0; index < mostFonts; ++index) {
        std::shared_ptr<text::FontFace> face = text::MakeCffFace(data, index);
        if (!face) break;
        const CName* name = face->Name().empty() ? KeyNameOf(key) : InternName(face->Name());
        TypedPtr<CDictionary> font = NewFont(cff, name, TraitsOf(name, face.get()));
        const bool isCid = face->IsCidKeyed();
        if (isCid) {
            font->Put("CIDFontName", MakeElement<CSimpElement>(name));
            font->Put("CIDFontType", NewInt(0));
        } else {
            const EncodingVector* own = face->BuiltInEncoding();
            font->Put(m_Names.encoding, EncodingOf(m, own ? *own : kStandardEncoding));
            font->Put(m_Names.charStrings, CharStringsOf(face.get()));
        }
        NamedFont named;
        named.name = named.used = name->Text();
        named.face = std::move(face);
        named.isEmbedded = true;
        font->Put(m_Names.face, NewInt(Keep(std::move(named))));
        fonts->Put(name, font->Clone());
        m.Push(MakeElement<CSimpElement>(name));
        m.Push(std::move(font));
        m.Push(Name(isCid ? "CIDFont" : "Font"));
        if (InternName("defineresource")->m_pfnOperator(m) != 1) {
            if (m.m_nError != PSERR_NONE) m.Drop(3);
            return -1;
        }
        m.Drop(1);
    }
    if (fonts->GetNameCount() == 0) return m.Fail(PSERR_UNDEFINED, "invalidfont");
    m.Push(key.Clone());
    m.Push(std::move(fonts));
    m.Push(Name("FontSet"));
    if (InternName("defineresource")->m_pfnOperator(m) != 1) {
        if (m.m_nError != PSERR_NONE) m.Drop(3);
        return -1;
    }
    m.Drop(1);
    return 1;
}

// Glyphs

bool CFontFaces::IsStroked(const CDictionary& font) const {
    constexpr std::int32_t strokes = 2;
    const auto* type = As<CNumberElement>(font.GetValue(m_Names.paintType));
    return type && type->GetInt() == strokes;
}

bool CFontFaces::FindInFace(text::FontFace& face, std::int32_t index, FontGlyph& glyph) {
    const auto metrics = face.Metrics(index);
    if (!metrics) return false;
    glyph = {metrics->width, metrics->bearing, face.Outline(index)};
    return true;
}

bool CFontFaces::FindCharString(const CDictionary& font, const CName* name, const CStringElement& charString,
                                FontGlyph& glyph) {
    const auto* charStrings = As<CDictionary>(font.GetValue(m_Names.charStrings));
    if (!charStrings || !charStrings->GetBody()) return false;
    CharStringFace& face = m_p->charStrings.At(KeyOf(*charStrings));
    const auto* priv = As<CDictionary>(font.GetValue(m_Names.priv));
    const bool isSameFont = face.priv == (priv ? KeyOf(*priv) : StorageKey{});  // others may share the charstrings
    const bool isStroked = IsStroked(font);
    if (!face.isStarted || !isSameFont || face.epoch != g_nSnapshotEpoch || face.isStroked != isStroked) {
        Renew(face, font, *charStrings, m_Names, isStroked);
    }
    const auto known = face.glyphs.find(name);
    CharStringGlyph* entry = known != face.glyphs.end() ? &known->second : nullptr;
    if (!entry || entry->charString != charString.Bytes()) {
        entry = &face.glyphs[name];
        entry->charString = charString.Bytes();
        text::Type1Program program;
        program.lenIV = face.lenIV;
        program.closesContours = !face.isStroked;
        program.subr = [&face](std::size_t number) {
            return number < face.subrs.size() ? std::optional<std::string_view>(face.subrs[number]) : std::nullopt;
        };
        program.charString = [charStrings](std::string_view part) {
            const auto* string = As<CStringElement>(charStrings->GetValue(part));
            return string ? std::optional(string->Bytes()) : std::nullopt;
        };
        entry->glyph = text::MakeType1Glyph(program, entry->charString);
    }
    if (!entry->glyph) return false;
    glyph = {entry->glyph->metrics.width, entry->glyph->metrics.bearing, &entry->glyph->outline};
    return true;
}

bool CFontFaces::FindInSfnts(const CDictionary& font, std::int32_t index, FontGlyph& glyph) {
    const auto* sfnts = As<CArrayElement>(font.GetValue(m_Names.sfnts));
    if (!sfnts || !sfnts->GetBody()) return false;
    const CElement* directory = font.GetValue(m_Names.glyphDirectory);
    const StorageKey directoryKey = KeyOfDirectory(directory);
    SfntFace& entry = m_p->sfnts.At(directoryKey.body ? directoryKey : KeyOf(*sfnts));
    if (!entry.isStarted || entry.epoch != g_nSnapshotEpoch) {
        std::string bytes = text::JoinSfntStrings(StringsIn(*sfnts));
        if (directoryKey.body)
            bytes = text::WithGlyphs(bytes, {DirectoryOf(*directory), IntegerIn(font, "MetricsCount")});
        if (!entry.isStarted || bytes != entry.bytes) {
            entry.bytes = bytes;
            entry.face = text::MakeSfntFace(std::move(bytes));
        }
        entry.isStarted = true;
        entry.epoch = g_nSnapshotEpoch;
    }
    return entry.face && FindInFace(*entry.face, index, glyph);
}

bool CFontFaces::FindCid(const CDictionary& font, std::int32_t cid, FontGlyph& glyph) {
    constexpr std::int64_t sfntType = 2;
    if (const NamedFont* named = NamedOf(font)) {
        return named->face && FindInFace(*named->face, named->face->GlyphOfCid(cid), glyph);
    }
    if (IntegerIn(font, "CIDFontType") == sfntType) {
        const std::int32_t index = IndexOfCid(font, cid);
        return (index != 0 || cid == 0) && FindInSfnts(font, index, glyph);
    }
    const auto* data = As<CStringElement>(font.GetValue("GlyphData"));
    if (data && !data->GetBody()) return false;
    StorageKey key = KeyOfDirectory(font.GetValue(m_Names.glyphDirectory));
    if (!key.body && data) key = KeyOf(*data);
    if (!key.body) return false;
    CidFace& face = m_p->cidFonts.At(key);
    if (!face.isStarted || face.epoch != g_nSnapshotEpoch) {
        if (data) data->GetBody()->MarkCopied();
        Renew(face, font);
    }
    const auto [entry, isNew] = face.glyphs.try_emplace(cid);
    if (isNew) entry->second = MakeCidGlyph(face, data ? data->Bytes() : std::string_view(), cid);
    if (!entry->second) return false;
    glyph = {entry->second->metrics.width, entry->second->metrics.bearing, &entry->second->outline};
    return true;
}

std::shared_ptr<const text::CodeMap> CFontFaces::CodeMapOf(const CDictionary& cmap) {
    const auto* contents = As<CStringElement>(cmap.GetValue(m_Names.codeMap));
    if (!contents || !contents->GetBody()) return std::make_shared<const text::CodeMap>();
    auto& known = m_p->codeMaps.At(KeyOf(*contents));
    if (!known) known = std::make_shared<const text::CodeMap>(text::CodeMap::Decode(contents->Bytes()));
    return known;
}
