// What a stroke runs along: chains of lines and curves in user space, whole or cut into dashes.
#pragma once

#include <span>
#include <vector>

#include "complete/geometry/Path.h"

namespace geometry {

/// A line from p[0] to p[3] or a cubic Bézier curve; its ends or control points differ, so that it has a direction.
struct StrokePiece {
    Point p[4];
    bool isCurve;

    [[nodiscard]] Point Start() const noexcept { return p[0]; }
    [[nodiscard]] Point End() const noexcept { return p[3]; }
    /// Unit vectors along the piece.
    [[nodiscard]] Point StartDirection() const noexcept;
    [[nodiscard]] Point EndDirection() const noexcept;
    [[nodiscard]] StrokePiece Reversed() const noexcept { return {{p[3], p[2], p[1], p[0]}, isCurve}; }
};

/// A subpath or a dash of one. Without pieces it is a point.
struct StrokeLine {
    std::vector<StrokePiece> pieces;
    bool isClosed = false;  ///< the last piece ends where the first starts, and they are joined
    Point at;               ///< the start
    Point direction;        ///< of a dash without length: a unit vector; else null
};

/// Coordinates beyond this size aren't stroked: their fourth powers would not be finite.
inline constexpr double STROKE_MAX_COORDINATE = 1e75;

/// The subpaths of a path, closing sides added, pieces without length left out. Subpaths with a coordinate beyond
/// STROKE_MAX_COORDINATE or none are left out, and so is a Move by itself.
[[nodiscard]] std::vector<StrokeLine> SplitSubpaths(const Path& path);

/// Most dashes of a stroke; beyond it lines stay whole.
inline constexpr double MAX_DASHES = 100'000;

/// The lines cut into dashes by arc length, each line from the start of the pattern on (PLRM, setdash). Lengths and
/// offset in the lines' unit; an odd number of lengths is gone through twice. The last dash of a closed line goes
/// on in the first when neither ends there. Lines come back as they are without a pattern, for lengths that are
/// negative, not finite or all zero, and for more than MAX_DASHES dashes.
[[nodiscard]] std::vector<StrokeLine> CutDashes(std::vector<StrokeLine> lines, std::span<const double> lengths,
                                                double offset);

}  // namespace geometry
