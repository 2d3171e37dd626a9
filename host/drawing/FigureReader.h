// From the entities of the host's list to figures.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "drawing/Figure.h"
#include "hostout/HostModel.h"

struct FigureReading {
    std::vector<Figure> figures;  ///< in the order of the entities
    std::size_t leftOut = 0;      ///< entities with a coordinate that is no finite number, which have no figure
};

/// Reads the entities through the export face of the host. `unit` is one host unit in millimetres. Each entity
/// is released as soon as its figures are made, so that a drawing never stands in memory twice.
FigureReading ReadFigures(std::vector<EntityPtr> entities, double unit);

/// The same of entities that stay.
FigureReading ReadFigures(std::span<const EntityPtr> entities, double unit);
