// The order: colours that are left out, doubles, joining, arcs, scale and origin. What is left out can't cover
// anything, what is drawn twice would meet its double at each end, and an arc is best recognised in a whole contour.
#include "drawing/passes/Pipeline.h"

#include <algorithm>

#include "drawing/passes/SkipColors.h"

PassReport RunPasses(std::vector<Figure>& figures, const PassSettings& settings) {
    PassReport report;
    report.skipped = SkipColors(figures, settings.skippedColors);
    if (settings.doubles == DoublesStyle::RemoveStretches) report.doubles = RemoveDoubles(figures);
    if (settings.doubles == DoublesStyle::RemoveContours) report.doubles = RemoveDoubleContours(figures);
    if (settings.join) report.join = JoinContours(figures, *settings.join);
    report.changed = report.skipped > 0 || report.doubles.figures > 0 || report.doubles.sections > 0 ||
                     report.join.contours > 0 || report.join.closed > 0;
    if (settings.curves == CurveStyle::Arc) {
        const auto circles = [&figures] {
            return std::count_if(figures.begin(), figures.end(),
                                 [](const Figure& figure) { return figure.IsCircle(); });
        };
        const auto before = circles();
        const auto curved = [](const Figure& figure) { return figure.Has(SegmentKind::Curve); };
        report.changed = report.changed || std::any_of(figures.begin(), figures.end(), curved);
        figures = RecogniseArcs(std::move(figures), settings.arcs);
        report.circles = static_cast<std::size_t>(circles() - before);
    }
    report.placement = PlaceDrawing(figures, settings.scale, settings.origin);
    report.changed = report.changed || report.placement.scale != 1 || report.placement.offset != Point();
    return report;
}
