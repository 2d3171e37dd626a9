// The writer of DXF R2000: the sections of the file in the order that CAD programs ask for, then one entity for each
// figure.
#include "writers/DxfWriter.h"

#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "drawing/Section.h"
#include "drawing/Survey.h"
#include "writers/ColorNames.h"
#include "writers/DxfShapes.h"
#include "writers/DxfStream.h"

namespace {

constexpr int kMillimetres = 4;  // value of $INSUNITS
constexpr int kMetric = 1;       // value of $MEASUREMENT
constexpr int kByLayer = 256;    // colour index
constexpr int kDefaultWeight = -3;
constexpr int kByLayerWeight = -1;
constexpr int kNoTrueColor = -1;

constexpr int kPolylineClosed = 1;
constexpr int kSplinePlanar = 8;
constexpr int kDegree = 3;

// dxflib hands out handles from 0x30 on, one for each layer and entity and a few for the rest.
constexpr int kHandlesBesides = 0x200;

class CDxfWriter {
public:
    CDxfWriter(std::span<const Figure> figures, COutputFile& out)
        : m_Figures(figures),
          m_Survey(Measure(figures)),
          m_Stream(out, m_Survey.box, kHandlesBesides + static_cast<int>(figures.size() + m_Survey.colors.size())) {}

    void Write();

private:
    void WriteHeader();
    void WriteTables();
    void WriteBlocks();
    void WriteFigure(const Figure& figure);
    void WriteCircle(const Figure& figure, const DL_Attributes& attributes);
    void WriteArc(const Figure& figure, const DL_Attributes& attributes);
    void WritePolyline(const Figure& figure, const DL_Attributes& attributes);
    void WriteSpline(const Figure& figure, const DL_Attributes& attributes);
    void WriteObjects();

    const std::span<const Figure> m_Figures;
    const Survey m_Survey;
    CDxfStream m_Stream;
    DL_Dxf m_Dxf;
    std::map<std::uint32_t, DL_Attributes> m_Attributes;  // of the figures of a colour
    std::vector<Point> m_Points;                          // scratch
    std::vector<DxfVertex> m_Vertices;                    // scratch
};

void CDxfWriter::Write() {
    WriteHeader();
    WriteTables();
    WriteBlocks();
    m_Stream.sectionEntities();
    for (const Figure& figure : m_Figures) WriteFigure(figure);
    m_Stream.sectionEnd();
    WriteObjects();
    m_Stream.dxfEOF();
}

void CDxfWriter::WriteHeader() {
    const Point min = m_Survey.box.IsEmpty() ? Point() : m_Survey.box.Min();
    const Point max = m_Survey.box.IsEmpty() ? Point() : m_Survey.box.Max();
    m_Dxf.writeHeader(m_Stream);
    m_Stream.dxfString(9, "$INSUNITS");
    m_Stream.dxfInt(70, kMillimetres);
    m_Stream.dxfString(9, "$MEASUREMENT");
    m_Stream.dxfInt(70, kMetric);
    m_Stream.dxfString(9, "$EXTMIN");
    m_Stream.coord(10, min.x, min.y);
    m_Stream.dxfString(9, "$EXTMAX");
    m_Stream.coord(10, max.x, max.y);
    m_Stream.sectionEnd();
}

void CDxfWriter::WriteTables() {
    m_Stream.sectionTables();
    m_Dxf.writeVPort(m_Stream);

    const char* const kLineTypes[] = {"BYBLOCK", "BYLAYER", "CONTINUOUS"};
    m_Stream.tableLinetypes(static_cast<int>(std::size(kLineTypes)));
    for (const char* name : kLineTypes) m_Dxf.writeLinetype(m_Stream, DL_LinetypeData(name, name, 0, 0, 0.0));
    m_Stream.tableEnd();

    m_Stream.tableLayers(static_cast<int>(m_Survey.colors.size()) + 1);
    m_Dxf.writeLayer(m_Stream, DL_LayerData("0", 0), DL_Attributes("", 7, kNoTrueColor, kDefaultWeight, "CONTINUOUS"));
    for (const std::uint32_t color : m_Survey.colors) {
        const std::string name = ColorName(color);
        m_Attributes.emplace(color, DL_Attributes(name, kByLayer, kNoTrueColor, kByLayerWeight, "BYLAYER"));
        const auto trueColor = static_cast<int>(Red(color) << 16 | Green(color) << 8 | Blue(color));
        m_Dxf.writeLayer(m_Stream, DL_LayerData(name, 0),
                         DL_Attributes("", NearestColorIndex(color), trueColor, kDefaultWeight, "CONTINUOUS"));
    }
    m_Stream.tableEnd();

    m_Stream.tableStyle(1);
    m_Dxf.writeStyle(m_Stream, DL_StyleData("Standard", 0, 0.0, 1.0, 0.0, 0, 2.5, "txt", ""));
    m_Stream.tableEnd();
    m_Dxf.writeView(m_Stream);
    m_Dxf.writeUcs(m_Stream);
    m_Stream.tableAppid(1);
    m_Dxf.writeAppid(m_Stream, "ACAD");
    m_Stream.tableEnd();
    m_Dxf.writeDimStyle(m_Stream, 2.5, 1.25, 0.625, 0.625, 2.5);  // the metric defaults; a style must be there
    m_Dxf.writeBlockRecord(m_Stream);
    m_Stream.tableEnd();
    m_Stream.sectionEnd();
}

void CDxfWriter::WriteBlocks() {
    m_Stream.sectionBlocks();
    for (const char* name : {"*Model_Space", "*Paper_Space", "*Paper_Space0"}) {
        m_Dxf.writeBlock(m_Stream, DL_BlockData(name, 0, 0.0, 0.0, 0.0));
        m_Dxf.writeEndBlock(m_Stream, name);
    }
    m_Stream.sectionEnd();
}

void CDxfWriter::WriteFigure(const Figure& figure) {
    const DL_Attributes& attributes = m_Attributes.at(figure.color);
    if (figure.segments.empty())
        m_Dxf.writePoint(m_Stream, DL_PointData(figure.points.front().x, figure.points.front().y, 0.0), attributes);
    else if (figure.IsCircle())
        WriteCircle(figure, attributes);
    else if (figure.Has(SegmentKind::Curve))
        WriteSpline(figure, attributes);
    else if (IsOneOpenArc(figure))
        WriteArc(figure, attributes);
    else
        WritePolyline(figure, attributes);
}

void CDxfWriter::WriteCircle(const Figure& figure, const DL_Attributes& attributes) {
    const ArcShape shape = CircleOf(figure);
    m_Dxf.writeCircle(m_Stream, DL_CircleData(shape.centre.x, shape.centre.y, 0.0, shape.radius), attributes);
}

void CDxfWriter::WriteArc(const Figure& figure, const DL_Attributes& attributes) {
    const DxfArc arc = DxfArcOf(figure);
    m_Dxf.writeArc(m_Stream, DL_ArcData(arc.centre.x, arc.centre.y, 0.0, arc.radius, arc.startDegrees, arc.endDegrees),
                   attributes);
}

void CDxfWriter::WritePolyline(const Figure& figure, const DL_Attributes& attributes) {
    DxfVerticesOf(figure, m_Vertices);
    const int flags = figure.closed ? kPolylineClosed : 0;
    m_Dxf.writePolyline(m_Stream, DL_PolylineData(static_cast<int>(m_Vertices.size()), 0, 0, flags), attributes);
    for (const DxfVertex& vertex : m_Vertices)
        m_Dxf.writeVertex(m_Stream, DL_VertexData(vertex.point.x, vertex.point.y, 0.0, vertex.bulge));
    m_Dxf.writePolylineEnd(m_Stream);
}

void CDxfWriter::WriteSpline(const Figure& figure, const DL_Attributes& attributes) {
    m_Points.assign(1, figure.points.front());
    const auto addLine = [this](const Point& to) {
        const Point from = m_Points.back();
        m_Points.push_back({from.x + (to.x - from.x) / 3, from.y + (to.y - from.y) / 3});
        m_Points.push_back({to.x - (to.x - from.x) / 3, to.y - (to.y - from.y) / 3});
        m_Points.push_back(to);
    };
    ForEachSection(figure, [&](const Section& section) {
        if (section.kind == SegmentKind::Line) return addLine(section.End());
        if (section.kind == SegmentKind::Arc) return AppendArcAsCurves(section, m_Points);
        m_Points.insert(m_Points.end(), section.points + 1, section.points + 4);
    });
    // A closed outline may leave a gap below the writer's tolerance; a closed spline must meet its start.
    if (figure.closed && m_Points.back() != m_Points.front()) addLine(figure.points.front());

    // Clamped knots with every inner one three times: the control points are those of the Bézier pieces.
    const auto controls = static_cast<int>(m_Points.size());
    const int pieces = (controls - 1) / kDegree;
    // Not the closed bit: a widespread reader takes it for a periodic curve and bends the outline by millimetres.
    m_Dxf.writeSpline(m_Stream, DL_SplineData(kDegree, controls + kDegree + 1, controls, 0, kSplinePlanar), attributes);
    const auto writeKnot = [this](int knot, int times) {
        while (times-- > 0) m_Dxf.writeKnot(m_Stream, DL_KnotData(knot));
    };
    writeKnot(0, kDegree + 1);
    for (int knot = 1; knot < pieces; ++knot) writeKnot(knot, kDegree);
    writeKnot(pieces, kDegree + 1);
    for (const Point& point : m_Points)
        m_Dxf.writeControlPoint(m_Stream, DL_ControlPointData(point.x, point.y, 0.0, 1.0));
}

void CDxfWriter::WriteObjects() {
    m_Stream.BeginObjects();
    m_Dxf.writeObjects(m_Stream);
    m_Dxf.writeObjectsEnd(m_Stream);
}

}  // namespace

void WriteDxf(std::span<const Figure> figures, COutputFile& out) { CDxfWriter(figures, out).Write(); }
