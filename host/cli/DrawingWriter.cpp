// From sinks to figures. Only curves are asked for as such; the export face turns arcs, circles and ellipses
// into lines, and the plug-in makes none of them.
#include "DrawingWriter.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <span>

CDrawingWriter::CDrawingWriter(std::optional<double> flatness) : m_Flatness(flatness) { m_nOutFlags = OUT_BEZIER; }

Survey CDrawingWriter::Measure(const Drawing& drawing) {
    Survey survey;
    std::set<std::uint32_t> seen;
    m_dUnit = drawing.UnitInMillimetres();
    for (const CEntity* entity : drawing.entities) {
        if (!TakeFigures(*entity)) {
            ++survey.leftOut;
            continue;
        }
        for (const Figure& figure : std::span(m_Figures).first(m_nFigures)) {
            survey.box.Add(figure);
            ++survey.figures;
            if (seen.insert(figure.color).second) survey.colors.push_back(figure.color);
            const auto curves = std::count(figure.segments.begin(), figure.segments.end(), SegmentKind::Curve);
            survey.curves += static_cast<std::size_t>(curves);
            survey.lines += figure.segments.size() - static_cast<std::size_t>(curves);
        }
    }
    return survey;
}

Survey CDrawingWriter::WriteDrawing(const Drawing& drawing) {
    const Survey survey = Measure(drawing);
    BeginDrawing(survey);
    for (const CEntity* entity : drawing.entities) {
        if (!TakeFigures(*entity)) continue;
        for (const Figure& figure : std::span(m_Figures).first(m_nFigures)) WriteFigure(figure);
    }
    EndDrawing();
    return survey;
}

bool CDrawingWriter::TakeFigures(const CEntity& entity) {
    m_nFigures = 0;
    m_bChain = false;
    m_bFinite = true;
    WriteEntity(&entity);
    const bool closed = entity.GetKind() == ENT_PLINE && static_cast<const CEntPLine&>(entity).m_Sections.IsClosed();
    for (Figure& figure : std::span(m_Figures).first(m_nFigures)) {
        figure.color = entity.m_nColor & 0xFFFFFF;
        figure.closed = closed;
    }
    return m_bFinite;
}

Point CDrawingWriter::ToPoint(point_2d point) {
    m_bFinite = m_bFinite && std::isfinite(point.x) && std::isfinite(point.y);
    return {point.x * m_dUnit, point.y * m_dUnit};
}

Figure& CDrawingWriter::NewFigure(point_2d start) {
    if (m_nFigures == m_Figures.size()) m_Figures.emplace_back();
    Figure& figure = m_Figures[m_nFigures++];
    figure.points.assign(1, ToPoint(start));
    figure.segments.clear();
    return figure;
}

Figure& CDrawingWriter::FigureAt(point_2d start) {
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

int CDrawingWriter::OutBegin() {
    m_bChain = false;
    return 1;
}

int CDrawingWriter::OutEnd() {
    m_bChain = false;
    return 1;
}

int CDrawingWriter::OutPoint(point_2d point) {
    NewFigure(point);
    return 1;
}

int CDrawingWriter::OutLines(const point_2d* points, int count) {
    if (count < 2) return 1;
    Figure& figure = FigureAt(points[0]);
    for (const point_2d& point : std::span(points, static_cast<std::size_t>(count)).subspan(1)) {
        figure.points.push_back(ToPoint(point));
        figure.segments.push_back(SegmentKind::Line);
    }
    return 1;
}

int CDrawingWriter::OutBezier(const point_2d* points, int count) {
    if (count < 4) return 1;
    if (m_Flatness) {
        // Not by the export face, which never goes below a tolerance of its own: the user may ask for less.
        CSectBezier curve;
        curve.Copy(points, count);
        m_Flat.clear();
        curve.Flatten(static_cast<float>(*m_Flatness / m_dUnit), m_Flat);
        return OutLines(m_Flat.data(), static_cast<int>(m_Flat.size()));
    }
    Figure& figure = FigureAt(points[0]);
    for (const point_2d& point : std::span(points, static_cast<std::size_t>(count)).subspan(1))
        figure.points.push_back(ToPoint(point));
    figure.segments.insert(figure.segments.end(), static_cast<std::size_t>(count - 1) / 3, SegmentKind::Curve);
    return 1;
}
