// The outline of a stroke: strokepath, ustrokepath and instroke.
#pragma once

#include <optional>
#include <vector>

#include "complete/geometry/Path.h"

namespace geometry {

/// The values of setlinecap and setlinejoin.
enum class LineCap { Butt = 0, Round = 1, Square = 2 };
enum class LineJoin { Miter = 0, Round = 1, Bevel = 2 };

/// The line parameters of the graphics state, lengths in user space.
struct StrokeStyle {
    double width = 1;
    LineCap cap = LineCap::Butt;
    LineJoin join = LineJoin::Miter;
    double miterLimit = 10;
    std::vector<double> dashes;  ///< as of setdash; empty for a solid line
    double dashOffset = 0;
};

/// Most points of an outline: 32 MB.
inline constexpr size_t MAX_OUTLINE_POINTS = size_t{1} << 21;

/// The outline that fill by the nonzero rule paints as stroke would the path (PLRM, strokepath): a closed contour
/// for each open subpath or dash, two for each closed subpath. The stroke is made in user space: userToPath maps
/// user space to the path's, as graphics/Matrix.h has matrices. Lines have exact outlines; curves and round parts
/// become curves within the tolerance, in the path's unit, and joins so flat that their kind is within it are
/// mitered. A subpath of a single point gives a circle with round caps, else nothing. A width of zero gives an
/// outline without an area, a negative one counts as positive.
///
/// Nothing when there would be more than MAX_OUTLINE_POINTS. Empty where nothing can be stroked: a width that
/// isn't finite, a singular matrix, subpaths with coordinates that aren't finite or beyond STROKE_MAX_COORDINATE.
[[nodiscard]] std::optional<Path> OutlineStroke(const Path& path, const StrokeStyle& style, const double userToPath[9],
                                                double tolerance);

}  // namespace geometry
