// Between the path of the graphics state, records of floats in host units, and the paths of doubles that geometry
// computes with, in the same unit.
#pragma once

#include <vector>

#include "complete/geometry/Path.h"
#include "interp/ErrorCodes.h"

class CElement;
class CFilterEPS;
class CGraphState;
class CPath;

/// The path as the records have it.
[[nodiscard]] geometry::Path ToGeometry(const CPath& path);
/// Makes it the current path.
void ReplacePath(CFilterEPS& m, const geometry::Path& path);
/// Adds it to the path of a state.
void AppendPath(CGraphState& state, const geometry::Path& path);
/// The current path as a program sees it: what `flattenpath` was asked for is done, in the graphics state, too. What
/// only paints has no need to: its curves stay curves.
[[nodiscard]] geometry::Path SeePath(CFilterEPS& m);

/// How far a curve and its lines may be apart, in host units: the flatness of the graphics state, counted in pixels of
/// a printer of 1200 to the inch. In units of default user space it would show.
[[nodiscard]] double Flatness(const CFilterEPS& m);
/// Maps user space to host units, as graphics/Matrix.h has matrices.
void UserToHost(const CFilterEPS& m, double matrix[9]);
/// A box of default user space in host units, rounded as points of paths are.
[[nodiscard]] geometry::Box ToHostUnits(const CFilterEPS& m, const geometry::Box& points);

/// Reads an array of numbers, executable or not, or an encoded number string (PLRM, Encoded Number Strings).
/// PSERR_NONE, PSERR_TYPECHECK, PSERR_RANGE.
[[nodiscard]] ErrorCode ReadNumbers(const CElement& e, std::vector<double>& numbers);
