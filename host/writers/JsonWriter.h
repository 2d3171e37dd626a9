// JSON: everything that one import gave, section by section as the plug-in delivered it.
#pragma once

#include <optional>
#include <span>

#include "drawing/Check.h"
#include "drawing/Figure.h"
#include "import/Drawing.h"
#include "writers/OutputFile.h"

/// Writes the drawing as one object, with the check if there was one. Coordinates are in host units, each as the
/// shortest decimal that reads back to the same 32-bit float; one that is no finite number is null.
void WriteJson(const Drawing& drawing, const std::optional<CheckReport>& check, COutputFile& out);

/// The same with these figures in place of the drawing's entities. Coordinates that are no 32-bit floats, as centres of
/// arcs are, have the shortest decimal that reads back to the same double. Angles are degrees.
void WriteJson(const Drawing& drawing, std::span<const Figure> figures, const std::optional<CheckReport>& check,
               COutputFile& out);
