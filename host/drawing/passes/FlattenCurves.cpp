// The subdivision is the host's own, on its 32-bit coordinates. Not through the host's export face, which never
// goes below a tolerance of its own: the user may ask for less.
#include "drawing/passes/FlattenCurves.h"

#include <span>

#include "hostout/HostCurves.h"

namespace {

point_2d ToHost(const Point& point) { return {static_cast<float>(point.x), static_cast<float>(point.y)}; }

// Appends the lines for the curve with these four control points, without its start.
void AppendLines(Figure& figure, std::span<const Point, 4> curve, float flatness, std::vector<point_2d>& scratch) {
    const point_2d control[] = {ToHost(curve[0]), ToHost(curve[1]), ToHost(curve[2]), ToHost(curve[3])};
    CSectBezier section;
    section.Copy(control, 4);
    scratch.clear();
    section.Flatten(flatness, scratch);
    for (std::size_t i = 1; i + 1 < scratch.size(); ++i) figure.points.push_back({scratch[i].x, scratch[i].y});
    figure.points.push_back(curve[3]);
    figure.segments.insert(figure.segments.end(), scratch.size() - 1, SegmentKind::Line);
}

}  // namespace

std::vector<Figure> FlattenCurves(std::vector<Figure> figures, double flatness) {
    std::vector<point_2d> scratch;
    for (Figure& figure : figures) {
        if (figure.segments.empty() || figure.IsPolyline()) continue;
        Figure flat;
        flat.color = figure.color;
        flat.closed = figure.closed;
        flat.points.assign(1, figure.points.front());
        const Point* next = figure.points.data() + 1;
        for (const SegmentKind kind : figure.segments) {
            if (kind == SegmentKind::Line) {
                flat.points.push_back(*next++);
                flat.segments.push_back(SegmentKind::Line);
            } else {
                AppendLines(flat, std::span<const Point, 4>(next - 1, 4), static_cast<float>(flatness), scratch);
                next += 3;
            }
        }
        figure = std::move(flat);
    }
    return figures;
}
