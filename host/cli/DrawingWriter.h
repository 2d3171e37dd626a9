// The base of the drawing writers: a file filter of the host, which takes entities through the export face of
// CDataFilter and makes figures in millimetres of what arrives in its sinks.
#pragma once

#include <optional>
#include <vector>

#include "Drawing.h"
#include "Figure.h"
#include "hostout/DataFilter.h"

// What must be known of a drawing before its first figure is written.
struct Survey {
    CBox box;
    std::vector<std::uint32_t> colors;  // each once, in the order of appearance
    std::size_t figures = 0;
    std::size_t lines = 0;    // straight segments
    std::size_t curves = 0;   // cubic ones
    std::size_t leftOut = 0;  // entities with a coordinate that is no finite number
};

class CDrawingWriter : public CDataFilter {
public:
    // With a flatness, in millimetres, curves become lines that stay within it; without one they stay curves.
    explicit CDrawingWriter(std::optional<double> flatness = std::nullopt);

    // Measures the drawing and writes nothing.
    Survey Measure(const Drawing& drawing);

    // Measures the drawing, then calls BeginDrawing, WriteFigure for each figure in the order of the
    // entities, and EndDrawing. Entities with a coordinate that is no finite number are left out. Answers the
    // measures.
    Survey WriteDrawing(const Drawing& drawing);

    int OutBegin() override;
    int OutLines(const point_2d* points, int count) override;
    int OutBezier(const point_2d* points, int count) override;
    int OutEnd() override;
    int OutPoint(point_2d point) override;

protected:
    virtual void BeginDrawing(const Survey&) {}
    virtual void WriteFigure(const Figure&) {}
    virtual void EndDrawing() {}

private:
    // Fills m_Figures with the figures of an entity. False when a coordinate of it is no finite number.
    bool TakeFigures(const CEntity& entity);
    Figure& NewFigure(point_2d start);
    Figure& FigureAt(point_2d start);  // the current figure, which goes on or begins at this point
    Point ToPoint(point_2d point);

    const std::optional<double> m_Flatness;
    double m_dUnit = 1;  // mm in a host unit
    bool m_bFinite = true;
    bool m_bChain = false;  // the current figure takes further sections
    std::vector<Figure> m_Figures;
    std::size_t m_nFigures = 0;    // how many of m_Figures are in use; the rest keeps its memory for later entities
    std::vector<point_2d> m_Flat;  // scratch
};
