// The passes between an import and the writers, in the one order in which they make sense.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "drawing/Figure.h"
#include "drawing/passes/JoinContours.h"
#include "drawing/passes/PlaceDrawing.h"
#include "drawing/passes/RecogniseArcs.h"
#include "drawing/passes/RemoveDoubles.h"

/// What becomes of curves: they stay, become arcs and lines, or, in pictures only, lines.
enum class CurveStyle { Spline, Arc, Polyline };

/// What becomes of what is drawn twice.
enum class DoublesStyle { Keep, RemoveStretches, RemoveContours };

struct PassSettings {
    std::vector<std::uint32_t> skippedColors;  ///< 0x00BBGGRR
    DoublesStyle doubles = DoublesStyle::Keep;
    std::optional<double> join;  ///< mm that ends may lie apart
    CurveStyle curves = CurveStyle::Spline;
    ArcSettings arcs;  ///< its flatness is that of CurveStyle::Polyline, too
    double scale = 1;  ///< greater than 0
    Origin origin = Origin::Keep;

    /// Whether the drawing may be another one after the passes than the plug-in delivered. CurveStyle::Polyline is a
    /// way of writing it.
    bool ChangeDrawing() const {
        return !skippedColors.empty() || doubles != DoublesStyle::Keep || join || curves == CurveStyle::Arc ||
               scale != 1 || origin != Origin::Keep;
    }
};

/// What the passes did.
struct PassReport {
    std::size_t skipped = 0;  ///< figures that were left out for their colour
    DoublesReport doubles;
    JoinReport join;
    std::size_t circles = 0;  ///< figures that are circles since
    Placement placement;
    bool changed = false;  ///< something is another than before
};

/// Runs the passes that are asked for. With none of them the figures stay as they are, bit for bit.
PassReport RunPasses(std::vector<Figure>& figures, const PassSettings& settings);
