// The subdivision of Bézier curves is the host's own, on its 32-bit coordinates. Not through the host's export face,
// which never goes below a tolerance of its own: the user may ask for less.
#include "drawing/passes/FlattenCurves.h"

#include "drawing/Section.h"
#include "drawing/Work.h"
#include "hostout/HostCurves.h"

namespace {

point_2d ToHost(const Point& point) { return {static_cast<float>(point.x), static_cast<float>(point.y)}; }

// Appends the lines for the curve, without its start.
void AppendLines(Figure& figure, const Section& curve, double flatness, std::vector<point_2d>& scratch) {
    const Point* p = curve.points;
    const point_2d control[] = {ToHost(p[0]), ToHost(p[1]), ToHost(p[2]), ToHost(p[3])};
    CSectBezier section;
    section.Copy(control, 4);
    scratch.clear();
    section.Flatten(static_cast<float>(flatness), scratch);
    CWorkLimit::Count(scratch.size());
    for (std::size_t i = 1; i + 1 < scratch.size(); ++i) figure.points.push_back({scratch[i].x, scratch[i].y});
    figure.points.push_back(curve.End());
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
        ForEachSection(figure, [&](const Section& section) {
            if (section.kind == SegmentKind::Curve) return AppendLines(flat, section, flatness, scratch);
            AppendFlattened(section, flatness, flat.points);
            flat.segments.resize(flat.points.size() - 1, SegmentKind::Line);
        });
        figure = std::move(flat);
    }
    return figures;
}
