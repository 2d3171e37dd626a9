// A file filter of the host, whose sinks make figures of what the export face gives. Only Bézier curves are
// asked for as such: arcs, circles and ellipses arrive as lines, and the plug-in makes none of them.
#include "drawing/FigureReader.h"

#include <cmath>
#include <span>

#include "hostout/DataFilter.h"

namespace {

class CFigureReader final : public CDataFilter {
public:
    explicit CFigureReader(double unit) : m_dUnit(unit) { m_nOutFlags = OUT_BEZIER; }

    // Appends the figures of an entity. False, with nothing appended, when a coordinate of it is no finite number.
    bool Read(const CEntity& entity, std::vector<Figure>& figures);

    int OutBegin() override;
    int OutLines(const point_2d* points, int count) override;
    int OutBezier(const point_2d* points, int count) override;
    int OutEnd() override;
    int OutPoint(point_2d point) override;

private:
    Figure& NewFigure(point_2d start);
    Figure& FigureAt(point_2d start);  // the current figure, which goes on or begins at this point
    Point ToPoint(point_2d point);

    const double m_dUnit;  // mm in a host unit
    bool m_bFinite = true;
    bool m_bChain = false;  // the current figure takes further sections
    std::vector<Figure> m_Figures;
    std::size_t m_nFigures = 0;  // how many of m_Figures are in use; the rest keeps its memory for later entities
};

bool CFigureReader::Read(const CEntity& entity, std::vector<Figure>& figures) {
    m_nFigures = 0;
    m_bChain = false;
    m_bFinite = true;
    WriteEntity(&entity);
    if (!m_bFinite) return false;
    const bool closed = entity.GetKind() == ENT_PLINE && static_cast<const CEntPLine&>(entity).m_Sections.IsClosed();
    for (Figure& figure : std::span(m_Figures).first(m_nFigures)) {
        figure.color = entity.m_nColor & 0xFFFFFF;
        figure.closed = closed;
        figures.push_back(figure);  // a copy takes no more room than it needs
    }
    return true;
}

Point CFigureReader::ToPoint(point_2d point) {
    m_bFinite = m_bFinite && std::isfinite(point.x) && std::isfinite(point.y);
    return {point.x * m_dUnit, point.y * m_dUnit};
}

Figure& CFigureReader::NewFigure(point_2d start) {
    if (m_nFigures == m_Figures.size()) m_Figures.emplace_back();
    Figure& figure = m_Figures[m_nFigures++];
    figure.points.assign(1, ToPoint(start));
    figure.segments.clear();
    return figure;
}

Figure& CFigureReader::FigureAt(point_2d start) {
    if (!m_bChain) {
        m_bChain = true;
        return NewFigure(start);
    }
    Figure& figure = m_Figures[m_nFigures - 1];
    // Sections of a chain may lie a hair apart, within the builder's tolerance: a line keeps both ends where
    // they are.
    const Point point = ToPoint(start);
    if (point != figure.points.back()) {
        figure.points.push_back(point);
        figure.segments.push_back(SegmentKind::Line);
    }
    return figure;
}

int CFigureReader::OutBegin() {
    m_bChain = false;
    return 1;
}

int CFigureReader::OutEnd() {
    m_bChain = false;
    return 1;
}

int CFigureReader::OutPoint(point_2d point) {
    NewFigure(point);
    return 1;
}

int CFigureReader::OutLines(const point_2d* points, int count) {
    if (count < 2) return 1;
    Figure& figure = FigureAt(points[0]);
    for (const point_2d& point : std::span(points, static_cast<std::size_t>(count)).subspan(1)) {
        figure.points.push_back(ToPoint(point));
        figure.segments.push_back(SegmentKind::Line);
    }
    return 1;
}

int CFigureReader::OutBezier(const point_2d* points, int count) {
    if (count < 4) return 1;
    Figure& figure = FigureAt(points[0]);
    for (const point_2d& point : std::span(points, static_cast<std::size_t>(count)).subspan(1))
        figure.points.push_back(ToPoint(point));
    figure.segments.insert(figure.segments.end(), static_cast<std::size_t>(count - 1) / 3, SegmentKind::Curve);
    return 1;
}

}  // namespace

FigureReading ReadFigures(std::span<const EntityPtr> entities, double unit) {
    FigureReading reading;
    reading.figures.reserve(entities.size());
    CFigureReader reader(unit);
    for (const EntityPtr& entity : entities)
        if (!reader.Read(*entity, reading.figures)) ++reading.leftOut;
    return reading;
}

FigureReading ReadFigures(std::vector<EntityPtr> entities, double unit) {
    FigureReading reading;
    reading.figures.reserve(entities.size());
    CFigureReader reader(unit);
    for (EntityPtr& entity : entities) {
        if (!reader.Read(*entity, reading.figures)) ++reading.leftOut;
        entity.reset();
    }
    return reading;
}
