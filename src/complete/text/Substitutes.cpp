// fontconfig is asked for exact PostScript names: its matching never says that there is no such face. It is asked to
// match only for a class of faces.
#include "complete/text/Substitutes.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <unordered_map>
#include <utility>

#include "complete/text/FreeTypeFace.h"
#include "complete/text/StandardFonts.h"

namespace text {

namespace {

namespace fs = std::filesystem;

struct Destroy {
    void operator()(FcConfig* config) const noexcept { FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const noexcept { FcPatternDestroy(pattern); }
    void operator()(FcObjectSet* objects) const noexcept { FcObjectSetDestroy(objects); }
    void operator()(FcFontSet* fonts) const noexcept { FcFontSetDestroy(fonts); }
};
template <class Type>
using Owned = std::unique_ptr<Type, Destroy>;

/// A place that a face can be read from.
struct FontFile {
    /// Type 1 first: OpenType versions of the fonts of symbols have no encoding.
    int rank = 0;
    std::string path;
    int index = 0;

    friend auto operator<=>(const FontFile&, const FontFile&) = default;
};

std::string_view EndingOf(std::string_view path) { return path.substr(std::min(path.size(), path.rfind('.'))); }

int RankOf(std::string_view path) {
    const std::string_view ending = EndingOf(path);
    if (ending == ".t1") return 0;
    return ending == ".pfb" || ending == ".pfa" ? 1 : 2;
}

std::string TextOf(const FcPattern* pattern, const char* object) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, object, 0, &text) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(text);
}

FontFile FileOf(const FcPattern* pattern) {
    FontFile file;
    file.path = TextOf(pattern, FC_FILE);
    file.rank = RankOf(file.path);
    static_cast<void>(FcPatternGetInteger(pattern, FC_INDEX, 0, &file.index));
    return file;
}

/// A configuration of the fonts below a folder. They are added one by one: of whole folders fontconfig wants to keep a
/// cache, and complains where it has no place for one.
Owned<FcConfig> ConfigOf(const std::string& folder) {
    constexpr std::string_view endings[] = {".t1", ".pfa", ".pfb", ".otf", ".ttf", ".otc", ".ttc"};
    Owned<FcConfig> config(FcConfigCreate());
    if (!config) return nullptr;
    std::error_code fault;
    constexpr auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator file(folder, options, fault), end; !fault && file != end;
         file.increment(fault)) {
        const std::string path = file->path().string();
        if (std::ranges::find(endings, EndingOf(path)) == std::end(endings)) continue;
        static_cast<void>(FcConfigAppFontAddFile(config.get(), reinterpret_cast<const FcChar8*>(path.c_str())));
    }
    return config;
}

/// The name of the font that a subset is of, without its six capitals and plus sign (PDF Reference, Font Subsets).
std::string_view WithoutSubsetTag(std::string_view name) noexcept {
    constexpr std::size_t length = 6;
    const bool isSubset = name.size() > length + 1 && name[length] == '+' &&
                          std::all_of(name.begin(), name.begin() + length, [](char c) { return c >= 'A' && c <= 'Z'; });
    return isSubset ? name.substr(length + 1) : name;
}

/// The files that have a face of just that name, best first.
std::vector<FontFile> FilesOf(FcConfig* config, const std::string& postScriptName) {
    const Owned<FcPattern> pattern(
        FcPatternBuild(nullptr, FC_POSTSCRIPT_NAME, FcTypeString, postScriptName.c_str(), nullptr));
    const Owned<FcObjectSet> objects(FcObjectSetBuild(FC_FILE, FC_INDEX, FC_POSTSCRIPT_NAME, nullptr));
    if (!pattern || !objects) return {};
    const Owned<FcFontSet> fonts(FcFontList(config, pattern.get(), objects.get()));
    std::vector<FontFile> files;
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        // Upper and lower case are one to fontconfig.
        if (TextOf(fonts->fonts[i], FC_POSTSCRIPT_NAME) == postScriptName) files.push_back(FileOf(fonts->fonts[i]));
    }
    std::ranges::sort(files);
    return files;
}

/// What fontconfig takes for the best of a class. Behind the class stand families for a system without rules for it.
Owned<FcPattern> MatchClass(FcConfig* config, const FaceClass& faceClass) {
    constexpr std::array<const char*, 5> families[] = {
        {"sans-serif", "Liberation Sans", "DejaVu Sans", "FreeSans", "Noto Sans"},
        {"serif", "Liberation Serif", "DejaVu Serif", "FreeSerif", "Noto Serif"},
        {"monospace", "Liberation Mono", "DejaVu Sans Mono", "FreeMono", "Noto Sans Mono"},
    };  // in the order of FaceClass::Family
    const Owned<FcPattern> pattern(FcPatternBuild(
        nullptr, FC_WEIGHT, FcTypeInteger, faceClass.isBold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR, FC_SLANT,
        FcTypeInteger, faceClass.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN, FC_OUTLINE, FcTypeBool, FcTrue, nullptr));
    if (!pattern) return nullptr;
    for (const char* family : families[static_cast<std::size_t>(faceClass.family)])
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    if (!FcConfigSubstitute(config, pattern.get(), FcMatchPattern)) return nullptr;
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    return Owned<FcPattern>(FcFontMatch(config, pattern.get(), &result));
}

/// A face whose glyphs are stretched in x to the widths of a standard one, where that has them.
class FittedFace final : public FontFace {
public:
    FittedFace(std::shared_ptr<FontFace> face, StandardFace widths) : m_pFace(std::move(face)), m_Widths(widths) {}

    [[nodiscard]] std::string_view Name() const noexcept override { return m_pFace->Name(); }
    [[nodiscard]] std::int32_t GlyphCount() const noexcept override { return m_pFace->GlyphCount(); }
    [[nodiscard]] std::int32_t GlyphOfName(std::string_view name) const override { return m_pFace->GlyphOfName(name); }
    [[nodiscard]] std::string_view NameOfGlyph(std::int32_t glyph) const override {
        return m_pFace->NameOfGlyph(glyph);
    }
    [[nodiscard]] std::optional<GlyphMetrics> Metrics(std::int32_t glyph) override {
        auto metrics = m_pFace->Metrics(glyph);
        if (!metrics) return std::nullopt;
        if (const auto width = WidthOf(glyph)) {
            metrics->bearing.x *= StretchOf(*metrics, *width);
            metrics->width.x = *width;
        }
        return metrics;
    }
    [[nodiscard]] const geometry::Path* Outline(std::int32_t glyph) override {
        const auto known = m_Outlines.find(glyph);
        if (known != m_Outlines.end()) return &known->second;
        const geometry::Path* outline = m_pFace->Outline(glyph);
        const auto metrics = m_pFace->Metrics(glyph);
        const auto width = WidthOf(glyph);
        if (!outline || !metrics || !width) return outline;
        geometry::Path& fitted = m_Outlines[glyph] = *outline;
        const double stretch[9] = {StretchOf(*metrics, *width), 0, 0, 0, 1, 0, 0, 0, 1};
        fitted.Transform(stretch);
        return &fitted;
    }
    [[nodiscard]] std::optional<FaceTraits> Traits() const override { return m_pFace->Traits(); }
    [[nodiscard]] const EncodingVector* BuiltInEncoding() const override { return m_pFace->BuiltInEncoding(); }

private:
    [[nodiscard]] std::optional<int> WidthOf(std::int32_t glyph) const {
        return StandardWidth(m_Widths, NameOfGlyph(glyph));
    }
    static double StretchOf(const GlyphMetrics& metrics, int width) noexcept {
        return metrics.width.x > 0 ? width / metrics.width.x : 1;
    }

    std::shared_ptr<FontFace> m_pFace;
    StandardFace m_Widths;
    std::unordered_map<std::int32_t, geometry::Path> m_Outlines;
};

}  // namespace

struct FontCatalogue::Contents {
    std::vector<std::string> folders;
    bool isStarted = false;
    std::vector<Owned<FcConfig>> configs;                 ///< one for each folder, then that of the system
    std::map<FontFile, std::shared_ptr<FontFace>> faces;  ///< null for a file that can't be read
    std::map<std::string, std::optional<SubstituteFace>, std::less<>> known;

    void Start() {
        if (std::exchange(isStarted, true)) return;
        for (const std::string& folder : folders) {
            if (Owned<FcConfig> config = ConfigOf(folder)) configs.push_back(std::move(config));
        }
        if (Owned<FcConfig> system{FcInitLoadConfigAndFonts()}) configs.push_back(std::move(system));
    }

    std::shared_ptr<FontFace> Open(const FontFile& file) {
        constexpr double thousandths = 1000;
        const auto [entry, isNew] = faces.try_emplace(file);
        if (isNew) entry->second = FreeTypeFace::OpenFile(file.path, file.index, thousandths);
        return entry->second;
    }

    /// The first of some names that is there, in the first place that has one of them.
    std::optional<SubstituteFace> FindExactly(const std::vector<std::string>& names) {
        for (const Owned<FcConfig>& config : configs) {
            for (const std::string& name : names) {
                // Of several files the first one whose encoding is known, if there is one.
                std::shared_ptr<FontFace> face;
                for (const FontFile& file : FilesOf(config.get(), name)) {
                    auto opened = Open(file);
                    if (!opened) continue;
                    const bool hasEncoding = opened->BuiltInEncoding() != nullptr;
                    if (hasEncoding || !face) face = std::move(opened);
                    if (hasEncoding) break;
                }
                if (face) return SubstituteFace{std::move(face), name, true, std::nullopt};
            }
        }
        return std::nullopt;
    }

    /// The system's fonts are asked first: the rules that tell the classes of faces are its own.
    std::optional<SubstituteFace> FindOfClass(const FaceClass& faceClass, std::optional<StandardFace> widths) {
        for (auto config = configs.rbegin(); config != configs.rend(); ++config) {
            const Owned<FcPattern> match = MatchClass(config->get(), faceClass);
            if (!match) continue;
            std::shared_ptr<FontFace> face = Open(FileOf(match.get()));
            if (!face || face->GlyphOfName("a") == FontFace::NO_GLYPH) continue;
            std::string name = TextOf(match.get(), FC_POSTSCRIPT_NAME);
            if (name.empty()) name = face->Name();
            if (widths) face = std::make_shared<FittedFace>(std::move(face), *widths);
            return SubstituteFace{std::move(face), std::move(name), false, widths};
        }
        return std::nullopt;
    }

    std::optional<SubstituteFace> Find(const std::string& name) {
        Start();
        std::vector<std::string> names{name};
        const std::string whole(WithoutSubsetTag(name));
        if (whole != name) names.push_back(whole);
        const std::optional<StandardFont> standard = FindStandardFont(whole);
        if (standard) names.insert(names.end(), standard->faces.begin(), standard->faces.end());
        std::optional<SubstituteFace> found = FindExactly(names);
        if (!found) {
            const std::optional<FaceClass> faceClass = standard ? standard->faceClass : ClassOfName(whole);
            if (faceClass) found = FindOfClass(*faceClass, standard ? standard->widths : std::nullopt);
        }
        if (found && standard) {
            found->builtInEncoding = standard->encoding;
        } else if (found) {
            if (const EncodingVector* own = found->face->BuiltInEncoding()) found->builtInEncoding = own;
        }
        return found;
    }
};

FontCatalogue::FontCatalogue(std::vector<std::string> folders) : m_pContents(std::make_unique<Contents>()) {
    m_pContents->folders = std::move(folders);
}

FontCatalogue::~FontCatalogue() = default;

std::optional<SubstituteFace> FontCatalogue::Find(std::string_view postScriptName) {
    const auto known = m_pContents->known.find(postScriptName);
    if (known != m_pContents->known.end()) return known->second;
    std::string name(postScriptName);
    std::optional<SubstituteFace> found = m_pContents->Find(name);
    return m_pContents->known.emplace(std::move(name), std::move(found)).first->second;
}

}  // namespace text
