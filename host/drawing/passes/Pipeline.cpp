// The order: colours that are left out, doubles, joining, arcs, scale and origin. What is left out can't cover
// anything, what is drawn twice would meet its double at each end, and an arc is best recognised in a whole contour.
#include "drawing/passes/Pipeline.h"

#include <algorithm>

#include "drawing/passes/SkipColors.h"

PassReport RunPasses(std::vector<Figure>& figures, const PassSettings& settings) {
    PassReport report;
    report.skipped = SkipColors(figures, settings.skippedColors);
    if (settings.curves == CurveStyle::Arc) {
        const auto circles = [&figures] {
            return std::count_if(figures.begin(), figures.end(),
                                 [](const Figure& figure) { return figure.IsCircle(); });
        };
        const auto before = circles();
        figures = RecogniseArcs(std::move(figures), settings.arcs);
        report.circles = static_cast<std::size_t>(circles() - before);
    }
    report.placement = PlaceDrawing(figures, settings.scale, settings.origin);
    return report;
}
