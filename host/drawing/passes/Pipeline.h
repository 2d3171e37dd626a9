// The passes between an import and the writers, in the one order in which they make sense.
#pragma once

#include <cstddef>
#include <vector>

#include "drawing/Figure.h"
#include "drawing/passes/RecogniseArcs.h"

// What becomes of curves: they stay, become arcs and lines, or, in pictures only, lines.
enum class CurveStyle { Spline, Arc, Polyline };

struct PassSettings {
    CurveStyle curves = CurveStyle::Spline;
    ArcSettings arcs;  // its flatness is that of CurveStyle::Polyline, too

    // Whether the drawing is another one after the passes than the plug-in delivered. CurveStyle::Polyline is a way of
    // writing it.
    bool ChangeDrawing() const { return curves == CurveStyle::Arc; }
};

// What the passes did, for people to read.
struct PassReport {
    std::size_t circles = 0;  // figures that are circles since
};

// Runs the passes that are asked for. With none of them the figures stay as they are, bit for bit.
PassReport RunPasses(std::vector<Figure>& figures, const PassSettings& settings);
