// The writer of DXF R12, group by group: dxflib leaves what later forms brought in the tables of its own R12.
#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <vector>

#include "drawing/Section.h"
#include "drawing/Survey.h"
#include "writers/ColorNames.h"
#include "writers/DxfShapes.h"
#include "writers/DxfStream.h"
#include "writers/DxfWriter.h"

namespace {

constexpr int kClosed = 1;
constexpr int kVerticesFollow = 1;

class CDxfR12Writer {
public:
    CDxfR12Writer(std::span<const Figure> figures, COutputFile& out)
        : m_Figures(figures), m_Survey(Measure(figures)), m_Stream(out, m_Survey.box, 0) {}

    void Write();

private:
    void BeginSection(const char* name);
    void EndSection() { m_Stream.dxfString(0, "ENDSEC"); }
    void WriteHeader();
    void WriteTables();
    void WriteFigure(const Figure& figure);
    void WritePolyline(const Figure& figure, const std::string& layer);
    void BeginEntity(const char* type, const std::string& layer);
    void WritePoint(int code, const Point& point);  // with a z of 0

    const std::span<const Figure> m_Figures;
    const Survey m_Survey;
    CDxfStream m_Stream;
    std::map<std::uint32_t, std::string> m_Layers;  // by colour
    std::vector<DxfVertex> m_Vertices;              // scratch
};

void CDxfR12Writer::Write() {
    WriteHeader();
    WriteTables();
    BeginSection("ENTITIES");
    for (const Figure& figure : m_Figures) WriteFigure(figure);
    EndSection();
    m_Stream.dxfString(0, "EOF");
}

void CDxfR12Writer::BeginSection(const char* name) {
    m_Stream.dxfString(0, "SECTION");
    m_Stream.dxfString(2, name);
}

void CDxfR12Writer::BeginEntity(const char* type, const std::string& layer) {
    m_Stream.dxfString(0, type);
    m_Stream.dxfString(8, layer);
}

void CDxfR12Writer::WritePoint(int code, const Point& point) {
    m_Stream.dxfReal(code, point.x);
    m_Stream.dxfReal(code + 10, point.y);
    m_Stream.dxfReal(code + 20, 0);
}

void CDxfR12Writer::WriteHeader() {
    const bool empty = m_Survey.box.IsEmpty();
    BeginSection("HEADER");
    m_Stream.dxfString(9, "$ACADVER");
    m_Stream.dxfString(1, "AC1009");
    m_Stream.dxfString(9, "$EXTMIN");
    WritePoint(10, empty ? Point() : m_Survey.box.Min());
    m_Stream.dxfString(9, "$EXTMAX");
    WritePoint(10, empty ? Point() : m_Survey.box.Max());
    EndSection();
}

void CDxfR12Writer::WriteTables() {
    BeginSection("TABLES");
    m_Stream.dxfString(0, "TABLE");
    m_Stream.dxfString(2, "LTYPE");
    m_Stream.dxfInt(70, 1);
    m_Stream.dxfString(0, "LTYPE");
    m_Stream.dxfString(2, "CONTINUOUS");
    m_Stream.dxfInt(70, 0);
    m_Stream.dxfString(3, "Solid line");
    m_Stream.dxfInt(72, 'A');
    m_Stream.dxfInt(73, 0);
    m_Stream.dxfReal(40, 0);
    m_Stream.dxfString(0, "ENDTAB");

    const auto writeLayer = [this](const std::string& name, int color) {
        m_Stream.dxfString(0, "LAYER");
        m_Stream.dxfString(2, name);
        m_Stream.dxfInt(70, 0);
        m_Stream.dxfInt(62, color);
        m_Stream.dxfString(6, "CONTINUOUS");
    };
    m_Stream.dxfString(0, "TABLE");
    m_Stream.dxfString(2, "LAYER");
    m_Stream.dxfInt(70, static_cast<int>(m_Survey.colors.size()) + 1);
    writeLayer("0", NearestColorIndex(0));
    for (const std::uint32_t color : m_Survey.colors) {
        // R12 knows capitals, digits, $, - and _ in names, and at most 31 of them.
        std::string name = ColorName(color);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        writeLayer(m_Layers[color] = name, NearestColorIndex(color));
    }
    m_Stream.dxfString(0, "ENDTAB");
    EndSection();
}

void CDxfR12Writer::WriteFigure(const Figure& figure) {
    const std::string& layer = m_Layers[figure.color];
    if (figure.segments.empty()) {
        BeginEntity("POINT", layer);
        WritePoint(10, figure.points.front());
    } else if (figure.IsCircle()) {
        const ArcShape shape = CircleOf(figure);
        BeginEntity("CIRCLE", layer);
        WritePoint(10, shape.centre);
        m_Stream.dxfReal(40, shape.radius);
    } else if (IsOneOpenArc(figure)) {
        const DxfArc arc = DxfArcOf(figure);
        BeginEntity("ARC", layer);
        WritePoint(10, arc.centre);
        m_Stream.dxfReal(40, arc.radius);
        m_Stream.dxfReal(50, arc.startDegrees);
        m_Stream.dxfReal(51, arc.endDegrees);
    } else if (figure.segments.size() == 1 && figure.IsPolyline()) {
        BeginEntity("LINE", layer);
        WritePoint(10, figure.points[0]);
        WritePoint(11, figure.points[1]);
    } else {
        WritePolyline(figure, layer);
    }
}

void CDxfR12Writer::WritePolyline(const Figure& figure, const std::string& layer) {
    BeginEntity("POLYLINE", layer);
    m_Stream.dxfInt(66, kVerticesFollow);
    WritePoint(10, {});
    m_Stream.dxfInt(70, figure.closed ? kClosed : 0);
    DxfVerticesOf(figure, m_Vertices);
    for (const DxfVertex& vertex : m_Vertices) {
        BeginEntity("VERTEX", layer);
        WritePoint(10, vertex.point);
        if (vertex.bulge != 0) m_Stream.dxfReal(42, vertex.bulge);
    }
    BeginEntity("SEQEND", layer);
}

}  // namespace

void WriteDxfR12(std::span<const Figure> figures, COutputFile& out) { CDxfR12Writer(figures, out).Write(); }
