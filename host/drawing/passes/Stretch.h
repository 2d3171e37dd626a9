// Sections as the search for doubles sees them: stretches of a straight line or of a circle, whatever draws them, or
// curves of another form. Positions on a stretch are millimetres along it, from 0 to its length.
#pragma once

#include <array>
#include <vector>

#include "drawing/Section.h"
#include "drawing/passes/BoxIndex.h"

/// What lies as near as this, in millimetres, is drawn in the same place.
inline constexpr double kSamePlace = 0.001;

enum class StretchKind {
    Speck,  ///< a section no longer than kSamePlace, which has no direction
    Line,
    Arc,
    Curve  // a Bézier curve that is neither: equal to another or not, never in part
};

struct Stretch {
    StretchKind kind = StretchKind::Speck;
    double length = 0;           ///< mm; of a curve its own, roughly
    double deviation = 0;        ///< mm by which what is drawn may lie beside the line or circle
    Point start;                 ///< of a line
    Point direction;             ///< of a line: unit vector
    ArcShape arc;                ///< of an arc
    std::array<Point, 4> curve;  ///< of a curve

    Point At(double position) const;  ///< of lines and arcs
    Stretch Part(double from, double to) const;
};

Stretch StretchOf(const Section& section);

/// What of a stretch lies on another, and the points of the other that its ends lie on.
struct Overlap {
    double from = 0;
    double to = 0;
    Point nearFrom;
    Point nearTo;
};

/// Appends what of the stretch lies within kSamePlace of the other, in either direction. They must stay so near for as
/// long as they run beside one another, and that must be longer than kSamePlace: what crosses, touches or goes on is
/// drawn once.
void AppendOverlaps(const Stretch& stretch, const Stretch& other, std::vector<Overlap>& overlaps);

/// Unites overlaps that meet, in order, and what is left between or beside them if all of it lies within kSamePlace of
/// where the others end.
void UniteOverlaps(const Stretch& stretch, std::vector<Overlap>& overlaps);

/// Makes one stretch of two that lie on one line or circle, meet or overlap, and deviate from it by no more than a
/// tenth of kSamePlace. Answers whether it did.
bool Unite(Stretch& stretch, const Stretch& other);

/// The box of a stretch in five dimensions: where it lies, and which line or circle it lies on as far as it tells.
/// Boxes of stretches that overlap meet. Lines are told by their point nearest to `pole`, which should lie outside the
/// drawing.
IndexBox<5> IndexBoxOf(const Stretch& stretch, const Point& pole);
