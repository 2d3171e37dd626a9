// The clip operators. A region is made anew by each of them and shared by the graphics states that have it, so that
// gsave, save and gstate copy a pointer.
#include "complete/ClipOperators.h"

#include <algorithm>
#include <memory>
#include <string>

#include "complete/CompleteDialect.h"
#include "complete/PathBridge.h"
#include "complete/PathOperators.h"
#include "complete/RectangleOperands.h"
#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "interp/Operands.h"
#include "interp/OperatorChain.h"
#include "objects/EpsHeader.h"

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

std::string ReadAt(const CFileElement& file, std::int64_t position, unsigned size) {
    std::string bytes(size, '\0');
    unsigned count = 0;
    if (file.SetPosition(position) != 1 || file.ReadBlock(bytes.data(), size, &count) < 0) count = 0;
    bytes.resize(count);
    return bytes;
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
    std::int64_t start = 0, end = 0;
    if (file.GetPosition(start) != 1) return DEFAULT_PAGE;
    tagEpsBox box{};
    bool found = false;
    switch (EpsHeaderBox(ReadAt(file, start, EPS_HEADER_BYTES), box)) {
        case EpsBoxPlace::none:
            break;
        case EpsBoxPlace::header:
            found = true;
            break;
        case EpsBoxPlace::trailer:
            if (file.GetLimit(end) == 1) {
                const std::int64_t from = std::max<std::int64_t>(start, end - EPS_TRAILER_BYTES);
                found = EpsTrailerBox(ReadAt(file, from, EPS_TRAILER_BYTES), box);
            }
            break;
    }
    static_cast<void>(file.SetPosition(start));
    return found ? Box{box.left, box.bottom, box.right, box.top} : DEFAULT_PAGE;
}
