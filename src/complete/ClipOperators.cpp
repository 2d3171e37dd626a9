// The clip operators. A region is made anew by each of them and shared by the graphics states that have it, so that
// gsave, save and gstate copy a pointer.
#include "complete/ClipOperators.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <string>
#include <string_view>

#include "complete/CompleteDialect.h"
#include "complete/PathBridge.h"
#include "complete/PathOperators.h"
#include "complete/RectangleOperands.h"
#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "interp/Operands.h"
#include "interp/OperatorChain.h"

/// What clipsave has put away, the newest first.
struct SavedClip {
    geometry::ClipRegion region;
    int depth;  ///< of the graphics state stack at the time
    int count;  ///< of these, this one included
    std::shared_ptr<const SavedClip> older;
};

struct tagClip {
    geometry::ClipRegion region;
    std::shared_ptr<const SavedClip> saved;
    bool isPage;             ///< the region is the page, which nobody has cut
    bool isNowhere;          ///< nothing is drawn, as on a null device
    mutable bool isCounted;  ///< in the report
};

namespace {

using geometry::Box;
using geometry::ClipRegion;
using geometry::FillRule;

/// Most clips that clipsave puts away: they go one within the other.
constexpr int MAX_SAVED_CLIPS = 1000;

/// How far a path may leave the clip without counting, millimetres.
constexpr double CUT_TOLERANCE = 0.01;

ClipRegion PageRegion(const CFilterEPS& m) { return ClipRegion(ToHostUnits(m, CCompleteDialect::Of(m).Page(m))); }

std::shared_ptr<const SavedClip> SavedClips(const CFilterEPS& m) {
    const auto& clip = m.GetCurrentGState()->m_pClip;
    return clip ? clip->saved : nullptr;
}

void SetClip(CFilterEPS& m, ClipRegion region, std::shared_ptr<const SavedClip> saved) {
    m.GetCurrentGState()->m_pClip =
        std::make_shared<const tagClip>(tagClip{std::move(region), std::move(saved), false, IsNowhere(m), false});
}

// -  clip  -
// -  eoclip  -
template <FillRule Rule>
int OpClip(CFilterEPS& m) {
    ClipTo(m, ToGeometry(m.GetCurrentGState()->m_Path), Rule);
    return 1;
}

// x y width height | numarray | numstring  rectclip  -    stackunderflow typecheck rangecheck
int OpRectclip(CFilterEPS& m) {
    RectangleOperands operands;
    if (operands.Read(m, 0) != 1) return -1;
    m.Drop(operands.Count());
    m.NewPath();
    operands.AddToPath(m);
    ClipTo(m, ToGeometry(m.GetCurrentGState()->m_Path), FillRule::NonZero);
    m.NewPath();
    return 1;
}

// -  initclip  -
int OpInitclip(CFilterEPS& m) {
    ResetClip(m);
    return 1;
}

// -  clipsave  -                             limitcheck
int OpClipsave(CFilterEPS& m) {
    auto saved = SavedClips(m);
    const int count = saved ? saved->count + 1 : 1;
    if (count > MAX_SAVED_CLIPS) return m.Fail(PSERR_RANGE, "limitcheck");
    const ClipRegion region = CurrentClip(m);
    const auto& clip = m.GetCurrentGState()->m_pClip;
    const bool isPage = !clip || clip->isPage;
    saved = std::make_shared<const SavedClip>(SavedClip{region, m.m_GStateStack.GetCount(), count, std::move(saved)});
    m.GetCurrentGState()->m_pClip = std::make_shared<const tagClip>(
        tagClip{region, std::move(saved), isPage, IsNowhere(m), clip && clip->isCounted});
    return 1;
}

// -  cliprestore  -
// What was put away before the last gsave stays there (PLRM, cliprestore).
int OpCliprestore(CFilterEPS& m) {
    const auto saved = SavedClips(m);
    if (!saved) {
        ResetClip(m);
        return 1;
    }
    const bool isOwn = saved->depth >= m.m_GStateStack.GetCount();
    SetClip(m, saved->region, isOwn ? saved->older : saved);
    return 1;
}

// -  nulldevice  -
// Departure: its matrix is that of the page.
int OpNulldevice(CFilterEPS& m) {
    m.GetCurrentGState()->ResetCTM();
    m.GetCurrentGState()->m_pClip =
        std::make_shared<const tagClip>(tagClip{ClipRegion(Box{0, 0, 0, 0}), SavedClips(m), false, true, false});
    return 1;
}

// -  clippath  -
int OpClippath(CFilterEPS& m) {
    const ClipRegion clip = CurrentClip(m);
    geometry::Path outline = clip.Outline();
    if (outline.IsEmpty()) outline.MoveTo({clip.Bounds().left, clip.Bounds().bottom});  // for those who ask for its box
    ReplacePath(m, outline);
    return 1;
}

// -  initgraphics  -
int OpInitgraphics(CFilterEPS& m) {
    static const OperatorFn run = ChainOperator("initgraphics");
    if (run(m) != 1) return -1;
    InitLineParameters(*m.GetCurrentGState());
    ResetClip(m);
    return 1;
}

constexpr OpRow kRows[] = {
    {"clip", OpClip<FillRule::NonZero>},
    {"eoclip", OpClip<FillRule::EvenOdd>},
    {"rectclip", OpRectclip},
    {"initclip", OpInitclip},
    {"clipsave", OpClipsave},
    {"cliprestore", OpCliprestore},
    {"clippath", OpClippath},
    {"nulldevice", OpNulldevice},
    {"initgraphics", OpInitgraphics},
};

// The page in the comments of the file

constexpr unsigned HEADER_BYTES = 8192;
constexpr unsigned TRAILER_BYTES = 16384;
constexpr std::string_view BOUNDING_BOX = "%%BoundingBox:";

/// Four numbers behind the comment's colon that are a box.
bool ParseBox(std::string_view text, Box& box) {
    double* const sides[] = {&box.left, &box.bottom, &box.right, &box.top};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (double* side : sides) {
        while (at < end && (*at == ' ' || *at == '\t')) ++at;
        const auto [behind, error] = std::from_chars(at, end, *side);
        if (error != std::errc()) return false;
        at = behind;
    }
    return box.left < box.right && box.bottom < box.top;
}

/// Calls visit(line) for each line of a text, until it answers false.
template <class Visit>
void VisitLines(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        if (!visit(text.substr(0, end))) return;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string ReadAt(const CFileElement& file, std::int64_t position, unsigned size) {
    std::string bytes(size, '\0');
    unsigned count = 0;
    if (file.SetPosition(position) != 1 || file.ReadBlock(bytes.data(), size, &count) < 0) count = 0;
    bytes.resize(count);
    return bytes;
}

/// The box of the trailer: the last one, since those of embedded documents stand before it.
bool ReadTrailer(const CFileElement& file, std::int64_t start, Box& page) {
    std::int64_t end = 0;
    if (file.GetLimit(end) != 1) return false;
    const std::int64_t from = std::max(start, end - TRAILER_BYTES);
    bool found = false;
    VisitLines(ReadAt(file, from, TRAILER_BYTES), [&](std::string_view line) {
        Box box;
        if (line.starts_with(BOUNDING_BOX) && ParseBox(line.substr(BOUNDING_BOX.size()), box)) {
            page = box;
            found = true;
        }
        return true;
    });
    return found;
}

}  // namespace

constinit const OpTable kClipOperators{kRows};

void ResetClip(CFilterEPS& m) {
    auto saved = SavedClips(m);
    auto& clip = m.GetCurrentGState()->m_pClip;
    if (IsNowhere(m)) {
        clip =
            std::make_shared<const tagClip>(tagClip{ClipRegion(Box{0, 0, 0, 0}), std::move(saved), false, true, false});
    } else if (saved) {
        clip = std::make_shared<const tagClip>(tagClip{PageRegion(m), std::move(saved), true, false, false});
    } else {
        clip = nullptr;
    }
}

void LeaveNowhere(CFilterEPS& m) { m.GetCurrentGState()->m_pClip = nullptr; }

bool IsNowhere(const CFilterEPS& m) {
    const auto& clip = m.GetCurrentGState()->m_pClip;
    return clip && clip->isNowhere;
}

ClipRegion CurrentClip(const CFilterEPS& m) {
    const auto& clip = m.GetCurrentGState()->m_pClip;
    return clip ? clip->region : PageRegion(m);
}

void ClipTo(CFilterEPS& m, const geometry::Path& path, FillRule rule) {
    SetClip(m, CurrentClip(m).Intersect(path, rule, Flatness(m)), SavedClips(m));
}

void CountClip(CFilterEPS& m) {
    const CGraphState& state = *m.GetCurrentGState();
    const tagClip* clip = state.m_pClip.get();
    point_2d box[2];
    if (!clip || clip->isCounted || clip->isPage || state.GetPathBounds(box) == 0) return;
    if (clip->region.IsRectangle() && clip->region.Bounds().Contains(Box{box[0].x, box[0].y, box[1].x, box[1].y}))
        return;
    if (!clip->region.Cuts(ToGeometry(state.m_Path), CUT_TOLERANCE * UnitsPerMillimetre(m))) return;
    clip->isCounted = true;
    ++m.m_Report.leftOut.nClips;
}

Box ReadPage(const CFileElement& file) {
    Box page = DEFAULT_PAGE;
    std::int64_t start = 0;
    if (file.GetPosition(start) != 1) return page;
    bool atEnd = false;
    VisitLines(ReadAt(file, start, HEADER_BYTES), [&](std::string_view line) {
        if (line.starts_with("%%EndComments") || line.starts_with("%%BeginDocument")) return false;
        if (!line.starts_with(BOUNDING_BOX)) return true;
        const std::string_view value = line.substr(BOUNDING_BOX.size());
        Box box;
        if (ParseBox(value, box)) page = box;
        atEnd = value.find("(atend)") != std::string_view::npos;
        return false;
    });
    if (atEnd) static_cast<void>(ReadTrailer(file, start, page));
    static_cast<void>(file.SetPosition(start));
    return page;
}
