// Paths as the language has them, where the plain system departs from it.
#pragma once

#include "complete/geometry/Stroke.h"
#include "interp/OperatorTable.h"

class CFilterEPS;
class CGraphState;

/// closepath, flattenpath, reversepath, strokepath, pathbbox, pathforall, charpath, setbbox.
extern constinit const OpTable kCompletePathOperators;

/// The box around a path of host units in user space: left, bottom, right, top. False for a path without points.
[[nodiscard]] bool FindUserBox(const CFilterEPS& m, const geometry::Path& path, float box[4]);
/// Gives the first graphics state the line parameters that a program may count on (PLRM, initgraphics).
void InitLineParameters(CGraphState& state) noexcept;
/// The line parameters of a graphics state; values that no line has become the nearest ones.
[[nodiscard]] geometry::StrokeStyle StrokeStyleOf(CGraphState& state);
/// The current path becomes the outline of its stroke under a map of user space to host units. limitcheck when it would
/// be too large.
[[nodiscard]] int StrokePath(CFilterEPS& m, const double userToHost[9]);
