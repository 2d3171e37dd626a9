// The body of the fuzz target of font programs: sfnt data, a CFF table, charstrings, or the data of a CIDFont.
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "complete/text/CffFace.h"
#include "complete/text/CharStrings.h"
#include "complete/text/CidType0.h"
#include "complete/text/SfntFace.h"
#include "fuzz/Harness.h"
#include "support/CharStrings.h"

namespace {

using geometry::Path;
using geometry::PathOp;
using geometry::Point;

bool IsFinite(Point p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// Traps unless each contour begins with a move, ends closed, and has coordinates.
void Check(const Path& outline, const text::GlyphMetrics& metrics) {
    bool isOpen = false;
    for (const PathOp op : outline.Ops()) {
        if (isOpen == (op == PathOp::Move)) std::abort();
        isOpen = op != PathOp::Close;
    }
    if (isOpen || !IsFinite(metrics.width) || !IsFinite(metrics.bearing)) std::abort();
    for (const Point& point : outline.Points())
        if (!IsFinite(point)) std::abort();
}

bool IsSame(const text::GlyphMetrics& a, const text::GlyphMetrics& b) {
    return a.width == b.width && a.bearing == b.bearing;
}

void FuzzFace(text::FontFace* face, text::FontFace* other) {
    if (!face != !other) std::abort();
    if (!face) return;
    if (face->GlyphCount() < 0 || face->GlyphCount() != other->GlyphCount()) std::abort();
    constexpr std::int32_t most = 50;
    // The other one has its glyphs made from the last to the first.
    const std::int32_t count = std::min(face->GlyphCount(), most);
    for (std::int32_t glyph = count; glyph >= -1; --glyph) static_cast<void>(other->Outline(glyph));
    for (std::int32_t glyph = -1; glyph <= count; ++glyph) {
        const auto metrics = face->Metrics(glyph);
        const Path* outline = face->Outline(glyph);
        if (metrics.has_value() != (outline != nullptr)) std::abort();
        if (outline) {
            Check(*outline, *metrics);
            if (outline != face->Outline(glyph)) std::abort();
            const Path* again = other->Outline(glyph);
            if (!again || *again != *outline || !IsSame(*other->Metrics(glyph), *metrics)) std::abort();
        }
        const std::string_view name = face->NameOfGlyph(glyph);
        if (!name.empty() && face->NameOfGlyph(face->GlyphOfName(name)) != name) std::abort();
        static_cast<void>(face->GlyphOfCid(glyph));
    }
    static_cast<void>(face->BuiltInEncoding());
}

/// Takes a piece whose length the first byte of the rest tells.
std::string_view TakePiece(std::string_view& rest) {
    if (rest.empty()) return {};
    const auto size = std::min<std::size_t>(static_cast<unsigned char>(rest[0]), rest.size() - 1);
    const std::string_view piece = rest.substr(1, size);
    rest.remove_prefix(1 + size);
    return piece;
}

/// Pieces: a glyph, two parts for composite glyphs, subroutines.
void FuzzCharStrings(std::string_view rest) {
    std::vector<std::string> plain;
    while (!rest.empty()) plain.emplace_back(TakePiece(rest));
    plain.resize(std::max<std::size_t>(plain.size(), 3));
    std::vector<std::string> encrypted;
    for (const std::string& piece : plain) encrypted.push_back(EncryptCharString(piece));
    const auto make = [](const std::vector<std::string>& pieces, int lenIV) {
        text::Type1Program program;
        program.lenIV = lenIV;
        program.subr = [&pieces](std::size_t number) -> std::optional<std::string_view> {
            return number + 3 < pieces.size() ? std::optional<std::string_view>(pieces[number + 3]) : std::nullopt;
        };
        program.charString = [&pieces](std::string_view name) -> std::optional<std::string_view> {
            return name == ".notdef" ? std::nullopt : std::optional<std::string_view>(pieces[1 + name.size() % 2]);
        };
        return text::MakeType1Glyph(program, pieces[0]);
    };
    const auto glyph = make(plain, -1);
    const auto same = make(encrypted, 4);
    if (glyph) {
        Check(glyph->outline, glyph->metrics);
        // Bounds count encrypted bytes, of which there are more.
        if (same && (same->outline != glyph->outline || !IsSame(same->metrics, glyph->metrics))) std::abort();
    } else if (same) {
        std::abort();
    }
}

void FuzzCidData(std::string_view data) {
    const auto number = [&data](std::size_t at) -> std::int64_t {
        return at < data.size() ? static_cast<signed char>(data[at]) : 0;
    };
    text::CidType0Layout layout;
    layout.cidMapOffset = number(0);
    layout.fdBytes = number(1);
    layout.gdBytes = number(2);
    layout.cidCount = number(3) << (number(4) & 63);
    for (std::size_t i = 5; i < 14; i += 3) layout.fontDicts.push_back({number(i), number(i + 1), number(i + 2), 4});
    const text::CidType0Data read(data, layout);
    std::size_t sum = 0;
    const auto use = [&sum](std::string_view bytes) {
        for (const char byte : bytes) sum += static_cast<unsigned char>(byte);
    };
    for (std::int64_t cid = -1; cid < 300; ++cid) {
        const auto found = read.Find(cid);
        if (!found) continue;
        if (found->fontDict >= layout.fontDicts.size()) std::abort();
        use(found->bytes);
    }
    for (std::size_t dict = 0; dict < 4; ++dict) {
        for (std::size_t subr = 0; subr < 150; ++subr) use(read.Subr(dict, subr).value_or(""));
    }
    if (sum > data.size() * 255 * 900) std::abort();
}

}  // namespace

void FuzzFont(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 64u << 10) return;
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0]) {
        case 's':
            return FuzzFace(text::MakeSfntFace(std::string(rest)).get(), text::MakeSfntFace(std::string(rest)).get());
        case 'c':
            return FuzzFace(text::MakeCffFace(std::string(rest)).get(), text::MakeCffFace(std::string(rest)).get());
        case 't':
            return FuzzCharStrings(rest);
        case 'i':
            return FuzzCidData(rest);
        default:
            return;
    }
}
