// Bulges and angles of DXF.
#include "writers/DxfShapes.h"

#include <cmath>
#include <numbers>

#include "drawing/Section.h"

namespace {

double Degrees(double angle) {
    const double degrees = std::fmod(angle * 180 / std::numbers::pi, 360);
    return degrees < 0 ? degrees + 360 : degrees;
}

}  // namespace

bool IsOneOpenArc(const Figure& figure) {
    return figure.segments.size() == 1 && figure.segments[0] == SegmentKind::Arc && !figure.closed &&
           BulgeOf({SegmentKind::Arc, figure.points.data()}) != 0;
}

DxfArc DxfArcOf(const Figure& figure) {
    const ArcShape shape = ShapeOf({SegmentKind::Arc, figure.points.data()});
    const double end = shape.start + shape.sweep;
    return {shape.centre, shape.radius, Degrees(std::min(shape.start, end)), Degrees(std::max(shape.start, end))};
}

void DxfVerticesOf(const Figure& figure, std::vector<DxfVertex>& vertices) {
    vertices.clear();
    ForEachSection(figure, [&](const Section& section) {
        vertices.push_back({section.Start(), section.kind == SegmentKind::Arc ? BulgeOf(section) : 0});
    });
    const bool meets = figure.points.back() == figure.points.front();
    if (!figure.closed || figure.segments.size() < 2 || !meets) vertices.push_back({figure.points.back(), 0});
}
