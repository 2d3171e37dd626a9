// The SVG writer. Coordinates keep their x; y changes its sign, since SVG counts it downwards.
#include "writers/SvgWriter.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "drawing/Survey.h"

namespace {

// Decimals of a millimetre: a tenth of a micrometre is finer than any machine that a drawing is made for.
constexpr int kDecimals = 4;

constexpr double kLeastMargin = 0.5;    // mm
constexpr double kMarginOfSize = 0.02;  // of the longer side
constexpr double kStrokesAcross = 400;  // stroke widths in the longer side

class CSvgWriter {
public:
    explicit CSvgWriter(COutputFile& out) : m_Out(out) {}

    void WriteHead(const CBox& box);
    void WriteFigure(const Figure& figure);
    void WriteEnd() { m_Out.Write("</g>\n</svg>\n"); }

private:
    void WriteNumber(double value);
    void WritePoint(const Point& point);

    COutputFile& m_Out;
};

void CSvgWriter::WriteNumber(double value) {
    char room[512];  // the largest double has 309 digits before its point
    char* end = std::to_chars(room, room + sizeof room, value, std::chars_format::fixed, kDecimals).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    const std::string_view text(room, static_cast<std::size_t>(end - room));
    m_Out.Write(text == "-0" ? "0" : text);
}

void CSvgWriter::WritePoint(const Point& point) {
    WriteNumber(point.x);
    m_Out.Write(',');
    WriteNumber(-point.y);
}

void CSvgWriter::WriteHead(const CBox& box) {
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
    m_Out.Write(
        "\">\n<style>@supports (vector-effect: non-scaling-stroke) { path { stroke-width: 1px } }</style>\n"
        "<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\" stroke-width=\"");
    WriteNumber(std::max(width, height) / kStrokesAcross);
    m_Out.Write("\">\n");
}

void CSvgWriter::WriteFigure(const Figure& figure) {
    char color[8];
    std::snprintf(color, sizeof color, "#%02x%02x%02x", Red(figure.color), Green(figure.color), Blue(figure.color));
    m_Out.Write("<path stroke=\"");
    m_Out.Write(color);
    m_Out.Write("\" vector-effect=\"non-scaling-stroke\" d=\"M");
    WritePoint(figure.points.front());
    if (figure.segments.empty()) m_Out.Write(" h0");  // a dot, by its round ends

    // The closing command draws the last line itself.
    std::size_t count = figure.segments.size();
    if (figure.closed && count > 1 && figure.segments.back() == SegmentKind::Line &&
        figure.points.back() == figure.points.front())
        --count;
    const Point* next = figure.points.data() + 1;
    char command = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const bool curve = figure.segments[i] == SegmentKind::Curve;
        const char wanted = curve ? 'C' : 'L';
        m_Out.Write(' ');
        if (wanted != command) m_Out.Write(wanted);
        command = wanted;
        for (int n = curve ? 3 : 1; n > 0; --n) {
            WritePoint(*next++);
            if (n > 1) m_Out.Write(' ');
        }
    }
    m_Out.Write(figure.closed ? " Z\"/>\n" : "\"/>\n");
}

}  // namespace

void WriteSvg(std::span<const Figure> figures, COutputFile& out) {
    CSvgWriter writer(out);
    writer.WriteHead(Measure(figures).box);
    for (const Figure& figure : figures) writer.WriteFigure(figure);
    writer.WriteEnd();
}
