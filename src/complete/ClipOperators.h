// The clip: a region of the page that the graphics state carries along. Nothing is cut with it, since entities stay
// whole; programs ask for it, and what it would have cut is told.
#pragma once

#include "complete/geometry/ClipRegion.h"
#include "interp/OperatorTable.h"

class CFileElement;

/// clip, eoclip, rectclip, initclip, clipsave, cliprestore, clippath; initgraphics and nulldevice, which reset it.
extern constinit const OpTable kClipOperators;

/// The page of a file that doesn't tell it: of US Letter, as most printers have it, in units of default user space.
inline constexpr geometry::Box DEFAULT_PAGE{0, 0, 612, 792};

/// The clip of the current graphics state, in host units: the page where a program has not made one.
[[nodiscard]] geometry::ClipRegion CurrentClip(const CFilterEPS& m);
/// Makes the page the clip again, but for what clipsave has put away.
void ResetClip(CFilterEPS& m);
/// Whether nothing is drawn: on a null device, which goes with the graphics state as the clip does.
[[nodiscard]] bool IsNowhere(const CFilterEPS& m);
/// From a null device to the page, with no clip.
void LeaveNowhere(CFilterEPS& m);
/// Makes the part of the clip that lies within the path the clip.
void ClipTo(CFilterEPS& m, const geometry::Path& path, geometry::FillRule rule);
/// Counts the clip, if it cuts the current path, which is about to be painted. A clip counts once.
void CountClip(CFilterEPS& m);

/// The page of a file whose program begins where the file stands: the %%BoundingBox of its header, behind (atend) that
/// of its trailer, in units of default user space; 0 0 612 792 without one. The file stands where it stood.
[[nodiscard]] geometry::Box ReadPage(const CFileElement& file);
