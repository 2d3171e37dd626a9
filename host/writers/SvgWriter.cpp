// The SVG writer. Coordinates keep their x; y changes its sign, since SVG counts it downwards.
#include "writers/SvgWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "drawing/Section.h"
#include "drawing/Survey.h"

namespace {

// An arc that turns by more is written in parts: of half a circle, a last decimal of its ends or its radius would move
// the middle by the root of that.
constexpr double kMostSweep = std::numbers::pi * 2 / 3;

constexpr double kLeastMargin = 0.5;    // mm
constexpr double kMarginOfSize = 0.02;  // of the longer side
constexpr double kStrokesAcross = 400;  // stroke widths in the longer side

class CSvgWriter {
public:
    explicit CSvgWriter(COutputFile& out) : m_Out(out) {}

    void WriteHead(const Survey& survey);
    void WriteFigure(const Figure& figure);
    void WriteEnd() { m_Out.Write("</g>\n</svg>\n"); }

private:
    // A tenth of a micrometre is finer than any machine that a drawing is made for.
    void WriteNumber(double value) { m_Out.WriteFixed(value); }
    void WritePoint(const Point& point);
    void WriteStroke(const Figure& figure);
    void WriteCircle(const Figure& circle);
    void WriteArc(const Section& arc);

    COutputFile& m_Out;
};

void CSvgWriter::WritePoint(const Point& point) {
    WriteNumber(point.x);
    m_Out.Write(',');
    WriteNumber(-point.y);
}

void CSvgWriter::WriteHead(const Survey& survey) {
    const CBox& box = survey.box;
    const double margin = std::max(kLeastMargin, kMarginOfSize * std::max(box.Width(), box.Height()));
    const double width = box.Width() + 2 * margin;
    const double height = box.Height() + 2 * margin;
    m_Out.Write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"");
    WriteNumber(width);
    m_Out.Write("mm\" height=\"");
    WriteNumber(height);
    m_Out.Write("mm\" viewBox=\"");
    WriteNumber(box.IsEmpty() ? 0 : box.Min().x - margin);
    m_Out.Write(' ');
    WriteNumber(box.IsEmpty() ? 0 : -box.Max().y - margin);
    m_Out.Write(' ');
    WriteNumber(width);
    m_Out.Write(' ');
    WriteNumber(height);
    // A stroke that doesn't grow with zoom counts its width in pixels, where a program knows such strokes;
    // elsewhere the number means millimetres. So the attribute suits a page that shows the whole drawing, and
    // browsers get a pixel.
    m_Out.Write("\">\n<style>@supports (vector-effect: non-scaling-stroke) { path");
    m_Out.Write(survey.circles > 0 ? ", circle" : "");
    m_Out.Write(
        " { stroke-width: 1px } }</style>\n"
        "<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\" stroke-width=\"");
    WriteNumber(std::max(width, height) / kStrokesAcross);
    m_Out.Write("\">\n");
}

void CSvgWriter::WriteStroke(const Figure& figure) {
    char color[8];
    std::snprintf(color, sizeof color, "#%02x%02x%02x", Red(figure.color), Green(figure.color), Blue(figure.color));
    m_Out.Write(" stroke=\"");
    m_Out.Write(color);
    m_Out.Write("\" vector-effect=\"non-scaling-stroke\"");
}

void CSvgWriter::WriteCircle(const Figure& circle) {
    const ArcShape shape = CircleOf(circle);
    m_Out.Write("<circle");
    WriteStroke(circle);
    m_Out.Write(" cx=\"");
    WriteNumber(shape.centre.x);
    m_Out.Write("\" cy=\"");
    WriteNumber(-shape.centre.y);
    m_Out.Write("\" r=\"");
    WriteNumber(shape.radius);
    m_Out.Write("\"/>\n");
}

// Counterclockwise is the direction of falling angles where y points down.
void CSvgWriter::WriteArc(const Section& arc) {
    const ArcShape shape = ShapeOf(arc);
    const auto parts = static_cast<int>(std::max(1.0, std::ceil(std::fabs(shape.sweep) / kMostSweep - 1e-6)));
    for (int i = 1; i <= parts; ++i) {
        if (i > 1) m_Out.Write(' ');
        WriteNumber(shape.radius);
        m_Out.Write(' ');
        WriteNumber(shape.radius);
        m_Out.Write(shape.sweep > 0 ? " 0 0 0 " : " 0 0 1 ");
        WritePoint(PointAt(arc, static_cast<double>(i) / parts));
    }
}

void CSvgWriter::WriteFigure(const Figure& figure) {
    if (figure.IsCircle()) return WriteCircle(figure);
    m_Out.Write("<path");
    WriteStroke(figure);
    m_Out.Write(" d=\"M");
    WritePoint(figure.points.front());
    if (figure.segments.empty()) m_Out.Write(" h0");  // a dot, by its round ends

    // The closing command draws the last line itself.
    std::size_t count = figure.segments.size();
    if (figure.closed && count > 1 && figure.segments.back() == SegmentKind::Line &&
        figure.points.back() == figure.points.front())
        --count;
    char command = 0;
    ForEachSection(figure, [&](const Section& section) {
        if (count-- == 0) return;
        const char wanted = section.kind == SegmentKind::Line ? 'L' : section.kind == SegmentKind::Curve ? 'C' : 'A';
        m_Out.Write(' ');
        if (wanted != command) m_Out.Write(wanted);
        command = wanted;
        if (wanted == 'A') return WriteArc(section);
        for (std::size_t i = 1; i <= PointsOf(section.kind); ++i) {
            if (i > 1) m_Out.Write(' ');
            WritePoint(section.points[i]);
        }
    });
    m_Out.Write(figure.closed ? " Z\"/>\n" : "\"/>\n");
}

}  // namespace

void WriteSvg(std::span<const Figure> figures, COutputFile& out) {
    CSvgWriter writer(out);
    writer.WriteHead(Measure(figures));
    for (const Figure& figure : figures) writer.WriteFigure(figure);
    writer.WriteEnd();
}
