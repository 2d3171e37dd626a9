// A face is loaded at the size at which FreeType's 26.6 numbers are 1/64 of its unit, so that its arithmetic rounds at
// the hundredth part of what a font says.
#include "complete/text/FreeTypeFace.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_FONT_FORMATS_H
#include FT_MODULE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

#include <algorithm>
#include <array>
#include <exception>
#include <unordered_set>
#include <utility>

#include "complete/text/GlyphNames.h"

namespace text {

namespace {

using geometry::Point;

/// Above this size in pixels FreeType refuses CFF and Type 1 glyphs.
constexpr int MAX_CFF_PIXELS = 2000;
constexpr int USUAL_EM = 1000;
constexpr double PER_PIXEL = 64;  // 26.6
constexpr std::string_view NOTDEF = ".notdef";

/// The library, for as long as the process runs; null when it can't start.
FT_Library Library() {
    struct Closer {
        void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
    };
    static const std::unique_ptr<FT_LibraryRec_, Closer> library([] {
        FT_Library opened = nullptr;
        return FT_Init_FreeType(&opened) == 0 ? opened : nullptr;
    }());
    return library.get();
}

/// Makes a path of an outline. What it throws doesn't pass through FreeType.
class PathMaker {
public:
    explicit PathMaker(double unit) noexcept : m_fUnit(unit) {}

    [[nodiscard]] geometry::Path Make(FT_Outline& outline) {
        FT_Outline_Funcs calls{};
        calls.move_to = [](const FT_Vector* to, void* maker) {
            return Guarded(maker, [to](PathMaker& made) { made.MoveTo(*to); });
        };
        calls.line_to = [](const FT_Vector* to, void* maker) {
            return Guarded(maker, [to](PathMaker& made) {
                made.DrawPendingLine();
                made.m_PendingLine = made.m_Last = made.PointOf(*to);
            });
        };
        calls.conic_to = [](const FT_Vector* control, const FT_Vector* to, void* maker) {
            return Guarded(maker, [=](PathMaker& made) { made.ConicTo(*control, *to); });
        };
        calls.cubic_to = [](const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* maker) {
            return Guarded(maker, [=](PathMaker& made) {
                made.DrawPendingLine();
                made.m_Path.CurveTo(made.PointOf(*control1), made.PointOf(*control2), made.PointOf(*to));
                made.m_Last = made.PointOf(*to);
            });
        };
        static_cast<void>(FT_Outline_Decompose(&outline, &calls, this));
        if (m_Thrown) std::rethrow_exception(m_Thrown);
        Close();
        return std::move(m_Path);
    }

private:
    template <class Step>
    static int Guarded(void* maker, Step step) noexcept {
        PathMaker& made = *static_cast<PathMaker*>(maker);
        try {
            step(made);
        } catch (...) {
            made.m_Thrown = std::current_exception();
            return 1;
        }
        return 0;
    }
    [[nodiscard]] Point PointOf(const FT_Vector& v) const noexcept {
        return {static_cast<double>(v.x) * m_fUnit, static_cast<double>(v.y) * m_fUnit};
    }
    void DrawPendingLine() {
        if (m_PendingLine) m_Path.LineTo(*m_PendingLine);
        m_PendingLine.reset();
    }
    /// FreeType ends a contour with a line to its start, which is the side that closes it.
    void Close() {
        if (m_PendingLine != m_Start) DrawPendingLine();
        m_PendingLine.reset();
        if (m_bOpen) m_Path.Close();
        m_bOpen = false;
    }
    void MoveTo(const FT_Vector& to) {
        Close();
        m_bOpen = true;
        m_Path.MoveTo(m_Start = m_Last = PointOf(to));
    }
    /// A quadratic curve, raised to a cubic one.
    void ConicTo(const FT_Vector& control, const FT_Vector& to) {
        constexpr double twoThirds = 2.0 / 3.0;
        DrawPendingLine();
        const Point middle = PointOf(control);
        const Point end = PointOf(to);
        m_Path.CurveTo(Mix(m_Last, middle, twoThirds), Mix(end, middle, twoThirds), end);
        m_Last = end;
    }

    double m_fUnit;
    geometry::Path m_Path;
    Point m_Start;
    Point m_Last;
    std::optional<Point> m_PendingLine;  ///< the end of a line that isn't in the path yet
    bool m_bOpen = false;
    std::exception_ptr m_Thrown;
};

}  // namespace

std::unique_ptr<FreeTypeFace> FreeTypeFace::OpenBytes(std::string bytes, Driver driver, int index, double emUnits) {
    FT_Library library = Library();
    if (!library || bytes.size() > MAX_BYTES || index < 0) return nullptr;
    std::unique_ptr<FreeTypeFace> face(new FreeTypeFace);
    face->m_Bytes = std::move(bytes);
    FT_Open_Args args{};
    args.flags = FT_OPEN_MEMORY | FT_OPEN_DRIVER;
    args.memory_base = reinterpret_cast<const FT_Byte*>(face->m_Bytes.data());
    args.memory_size = static_cast<FT_Long>(face->m_Bytes.size());
    args.driver = FT_Get_Module(library, driver == Driver::TrueType ? "truetype" : "cff");
    if (!args.driver || FT_Open_Face(library, &args, index, &face->m_pFace) != 0) return nullptr;
    return face->Start(emUnits) ? std::move(face) : nullptr;
}

std::unique_ptr<FreeTypeFace> FreeTypeFace::OpenFile(const std::string& path, int index, double emUnits) {
    FT_Library library = Library();
    if (!library) return nullptr;
    std::unique_ptr<FreeTypeFace> face(new FreeTypeFace);
    if (FT_New_Face(library, path.c_str(), index, &face->m_pFace) != 0) return nullptr;
    face->m_NamesFrom = NamesFrom::Characters;
    return face->Start(emUnits) ? std::move(face) : nullptr;
}

FreeTypeFace::~FreeTypeFace() {
    if (m_pFace) FT_Done_Face(m_pFace);
}

bool FreeTypeFace::Start(double emUnits) {
    if (!FT_IS_SCALABLE(m_pFace) || m_pFace->units_per_EM == 0) return false;
    const char* format = FT_Get_Font_Format(m_pFace);
    m_bTrueType = format && std::string_view(format) == "TrueType";
    const int em = m_pFace->units_per_EM;
    const int pixels = m_bTrueType || em <= MAX_CFF_PIXELS ? em : USUAL_EM;
    if (FT_Set_Pixel_Sizes(m_pFace, 0, static_cast<FT_UInt>(pixels)) != 0) return false;
    m_fUnit = emUnits / (pixels * PER_PIXEL);
    m_fEmUnits = emUnits;
    if (const char* name = FT_Get_Postscript_Name(m_pFace)) m_Name = name;
    return true;
}

std::optional<FaceTraits> FreeTypeFace::Traits() const {
    constexpr double fixedOne = 65536;  // 16.16
    const double unit = m_fEmUnits / m_pFace->units_per_EM;
    const FT_BBox& box = m_pFace->bbox;
    FaceTraits traits;
    traits.boxMin = {static_cast<double>(box.xMin) * unit, static_cast<double>(box.yMin) * unit};
    traits.boxMax = {static_cast<double>(box.xMax) * unit, static_cast<double>(box.yMax) * unit};
    traits.underlinePosition = m_pFace->underline_position * unit;
    traits.underlineThickness = m_pFace->underline_thickness * unit;
    traits.isFixedPitch = FT_IS_FIXED_WIDTH(m_pFace);
    PS_FontInfoRec info{};
    if (const void* post = FT_Get_Sfnt_Table(m_pFace, FT_SFNT_POST))
        traits.italicAngle = static_cast<double>(static_cast<const TT_Postscript*>(post)->italicAngle) / fixedOne;
    else if (FT_Get_PS_Font_Info(m_pFace, &info) == 0)
        traits.italicAngle = static_cast<double>(info.italic_angle);
    return traits;
}

std::int32_t FreeTypeFace::GlyphCount() const noexcept { return static_cast<std::int32_t>(m_pFace->num_glyphs); }

// Names

void FreeTypeFace::ReadNames() const {
    if (m_bNamesRead) return;
    m_bNamesRead = true;
    const auto count = static_cast<std::size_t>(GlyphCount());
    if (FT_HAS_GLYPH_NAMES(m_pFace)) {
        m_Names.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            std::array<char, 128> name{};
            if (FT_Get_Glyph_Name(m_pFace, static_cast<FT_UInt>(i), name.data(), name.size()) == 0)
                m_Names[i] = name.data();
        }
    }
    if (m_NamesFrom == NamesFrom::Characters) ReadNamesOfCharacters();
    for (std::size_t i = 0; i < m_Names.size(); ++i) {
        if (!m_Names[i].empty()) m_Indices.try_emplace(m_Names[i], static_cast<std::int32_t>(i));
    }
}

void FreeTypeFace::ReadNamesOfCharacters() const {
    if (FT_Select_Charmap(m_pFace, FT_ENCODING_UNICODE) != 0) return;
    m_Names.resize(static_cast<std::size_t>(GlyphCount()));
    const std::unordered_set<std::string> own(m_Names.begin(), m_Names.end());
    for (const NamedCharacter& character : StandardCharacters()) {
        if (own.contains(std::string(character.name))) continue;
        const FT_UInt glyph = FT_Get_Char_Index(m_pFace, character.unicode);
        if (glyph != 0 && glyph < m_Names.size() && !IsStandardName(m_Names[glyph])) m_Names[glyph] = character.name;
    }
}

std::int32_t FreeTypeFace::GlyphOfName(std::string_view name) const {
    ReadNames();
    const auto found = m_Indices.find(name);
    return found != m_Indices.end() ? found->second : NO_GLYPH;
}

std::string_view FreeTypeFace::NameOfGlyph(std::int32_t glyph) const {
    ReadNames();
    const auto index = static_cast<std::size_t>(glyph);
    return glyph >= 0 && index < m_Names.size() ? std::string_view(m_Names[index]) : std::string_view();
}

const EncodingVector* FreeTypeFace::BuiltInEncoding() const {
    if (m_pEncoding) return m_pEncoding.get();
    // FreeType makes one of these of the encoding that a CFF or Type 1 font has.
    constexpr FT_Encoding encodings[] = {FT_ENCODING_ADOBE_CUSTOM, FT_ENCODING_ADOBE_STANDARD,
                                         FT_ENCODING_ADOBE_EXPERT};
    if (std::none_of(std::begin(encodings), std::end(encodings),
                     [this](FT_Encoding encoding) { return FT_Select_Charmap(m_pFace, encoding) == 0; }))
        return nullptr;
    auto encoding = std::make_unique<EncodingVector>();
    bool hasGlyphs = false;
    for (std::size_t code = 0; code < encoding->size(); ++code) {
        const auto glyph = static_cast<std::int32_t>(FT_Get_Char_Index(m_pFace, code));
        const std::string_view name = glyph != 0 ? NameOfGlyph(glyph) : std::string_view();
        (*encoding)[code] = name.empty() ? NOTDEF : name;
        hasGlyphs = hasGlyphs || !name.empty();
    }
    // FreeType finds nothing in one that a Type 1 font makes by procedures.
    if (hasGlyphs) m_pEncoding = std::move(encoding);
    return m_pEncoding.get();
}

// In CFF data with CIDs FreeType takes these for indices (and counts the glyphs up to the highest).
bool FreeTypeFace::IsCidKeyed() const noexcept { return FT_IS_CID_KEYED(m_pFace); }

// Glyphs

std::optional<GlyphMetrics> FreeTypeFace::Metrics(std::int32_t glyph) {
    const Glyph* loaded = Load(glyph);
    return loaded ? std::optional(loaded->metrics) : std::nullopt;
}

const geometry::Path* FreeTypeFace::Outline(std::int32_t glyph) {
    const Glyph* loaded = Load(glyph);
    return loaded ? &loaded->outline : nullptr;
}

FreeTypeFace::Glyph* FreeTypeFace::Load(std::int32_t glyph) {
    const auto known = m_Glyphs.find(glyph);
    if (known != m_Glyphs.end()) return known->second.get();
    if (glyph < 0 || glyph >= GlyphCount()) return nullptr;
    return m_Glyphs.emplace(glyph, Make(glyph)).first->second.get();
}

std::vector<std::int32_t> FreeTypeFace::PartsOf(std::int32_t glyph) const {
    std::vector<std::int32_t> parts;
    if (FT_Load_Glyph(m_pFace, static_cast<FT_UInt>(glyph), FT_LOAD_NO_RECURSE | FT_LOAD_NO_BITMAP) != 0) return parts;
    const FT_GlyphSlot slot = m_pFace->glyph;
    if (slot->format != FT_GLYPH_FORMAT_COMPOSITE) return parts;
    for (FT_UInt i = 0; i < slot->num_subglyphs; ++i) {
        FT_Int index = 0;
        FT_UInt flags = 0;
        FT_Int first = 0;
        FT_Int second = 0;
        FT_Matrix matrix;
        if (FT_Get_SubGlyph_Info(slot, i, &index, &flags, &first, &second, &matrix) == 0) parts.push_back(index);
    }
    return parts;
}

bool FreeTypeFace::HasFewParts(std::int32_t glyph) {
    struct Step {
        std::int32_t glyph;
        std::vector<std::int32_t> parts;
        std::size_t next = 0;
        std::uint32_t count = 1;
    };
    constexpr std::uint32_t tooMany = MAX_PARTS + 1;
    if (const auto known = m_PartCounts.find(glyph); known != m_PartCounts.end()) return known->second <= MAX_PARTS;
    // Until it is counted, a glyph has too many parts: one that meets itself is made of itself.
    std::vector<Step> steps;
    const auto begin = [&](std::int32_t index) {
        m_PartCounts[index] = tooMany;
        steps.push_back({index, PartsOf(index)});
    };
    begin(glyph);
    while (!steps.empty()) {
        Step& step = steps.back();
        if (step.next == step.parts.size()) {
            m_PartCounts[step.glyph] = step.count;
            steps.pop_back();
            continue;
        }
        const std::int32_t part = step.parts[step.next];
        const auto known = m_PartCounts.find(part);
        if (known == m_PartCounts.end()) {
            begin(part);
            continue;
        }
        step.count = std::min(step.count + known->second, tooMany);
        ++step.next;
    }
    return m_PartCounts[glyph] <= MAX_PARTS;
}

std::unique_ptr<FreeTypeFace::Glyph> FreeTypeFace::Make(std::int32_t glyph) {
    if (m_bTrueType && !HasFewParts(glyph)) return nullptr;
    constexpr auto flags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;
    if (FT_Load_Glyph(m_pFace, static_cast<FT_UInt>(glyph), flags) != 0) return nullptr;
    const FT_GlyphSlot slot = m_pFace->glyph;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE) return nullptr;
    auto made = std::make_unique<Glyph>();
    made->metrics.width.x = static_cast<double>(slot->metrics.horiAdvance) * m_fUnit;
    made->metrics.bearing.x = static_cast<double>(slot->metrics.horiBearingX) * m_fUnit;
    made->outline = PathMaker(m_fUnit).Make(slot->outline);
    return made;
}

}  // namespace text
