// Curves as straight segments.
#pragma once

#include <vector>

#include "complete/geometry/Path.h"

namespace geometry {

/// Most straight segments of one curve: a curve of a metre keeps within a thousandth of a millimetre.
inline constexpr int MAX_CURVE_PIECES = 1024;
/// Most straight segments of all curves of a path but for the one that each has at least. Beyond it every curve
/// gets its share, so that a file can't ask for more memory than a multiple of its own size.
inline constexpr size_t MAX_FLATTENED_PIECES = size_t{1} << 20;

/// The path with its curves as lines that are nowhere further off than the tolerance (in the path's unit), within
/// the bounds above. Ends of curves stay exact. A curve with a coordinate that isn't finite becomes one line; a
/// tolerance that isn't above zero asks for the most pieces.
[[nodiscard]] Path FlattenPath(const Path& path, double tolerance);

/// Subpaths as polygons, flattened and closed by implication, as fill sees them (PLRM, fill). Points that aren't
/// finite are left out, and so is a subpath of nothing but a Move. The first point of a polygon isn't repeated.
using Polygons = std::vector<std::vector<Point>>;
[[nodiscard]] Polygons FlattenToPolygons(const Path& path, double tolerance);

/// The point of a cubic Bézier curve at a parameter from 0 to 1.
[[nodiscard]] Point OnCubic(const Point curve[4], double t) noexcept;

}  // namespace geometry
