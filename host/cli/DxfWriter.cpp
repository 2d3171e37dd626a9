// The DXF writer: the sections of the file in the order that CAD programs ask for, then one entity for each
// figure.
#include "DxfWriter.h"

#include <algorithm>
#include <span>

#include "ColorNames.h"
#include "DxfStream.h"

namespace {

constexpr int kMillimetres = 4;  // value of $INSUNITS
constexpr int kMetric = 1;       // value of $MEASUREMENT
constexpr int kByLayer = 256;    // colour index
constexpr int kDefaultWeight = -3;
constexpr int kByLayerWeight = -1;
constexpr int kNoTrueColor = -1;

constexpr int kPolylineClosed = 1;
constexpr int kSplineClosed = 1;
constexpr int kSplinePlanar = 8;
constexpr int kDegree = 3;

// dxflib hands out handles from 0x30 on, one for each layer and entity and a few for the rest.
constexpr int kHandlesBesides = 0x200;

}  // namespace

CDxfWriter::CDxfWriter(COutputFile& out, CurveStyle curves, double flatness)
    : CDrawingWriter(curves == CurveStyle::Polyline ? std::optional(flatness) : std::nullopt), m_Out(out) {}

CDxfWriter::~CDxfWriter() = default;

void CDxfWriter::BeginDrawing(const Survey& survey) {
    m_Box = survey.box;
    const auto handles = static_cast<int>(survey.figures + survey.colors.size());
    m_pStream = std::make_unique<CDxfStream>(m_Out, m_Box, kHandlesBesides + handles);
    WriteHeader();
    WriteTables(survey);
    WriteBlocks();
    m_pStream->sectionEntities();
}

void CDxfWriter::WriteHeader() {
    CDxfStream& stream = *m_pStream;
    const Point min = m_Box.IsEmpty() ? Point() : m_Box.Min();
    const Point max = m_Box.IsEmpty() ? Point() : m_Box.Max();
    m_Dxf.writeHeader(stream);
    stream.dxfString(9, "$INSUNITS");
    stream.dxfInt(70, kMillimetres);
    stream.dxfString(9, "$MEASUREMENT");
    stream.dxfInt(70, kMetric);
    stream.dxfString(9, "$EXTMIN");
    stream.coord(10, min.x, min.y);
    stream.dxfString(9, "$EXTMAX");
    stream.coord(10, max.x, max.y);
    stream.sectionEnd();
}

void CDxfWriter::WriteTables(const Survey& survey) {
    CDxfStream& stream = *m_pStream;
    stream.sectionTables();
    m_Dxf.writeVPort(stream);

    const char* const kLineTypes[] = {"BYBLOCK", "BYLAYER", "CONTINUOUS"};
    stream.tableLinetypes(static_cast<int>(std::size(kLineTypes)));
    for (const char* name : kLineTypes) m_Dxf.writeLinetype(stream, DL_LinetypeData(name, name, 0, 0, 0.0));
    stream.tableEnd();

    stream.tableLayers(static_cast<int>(survey.colors.size()) + 1);
    m_Dxf.writeLayer(stream, DL_LayerData("0", 0), DL_Attributes("", 7, kNoTrueColor, kDefaultWeight, "CONTINUOUS"));
    for (const std::uint32_t color : survey.colors) {
        const std::string& name = m_Layers[color] = ColorName(color);
        const auto trueColor = static_cast<int>(Red(color) << 16 | Green(color) << 8 | Blue(color));
        m_Dxf.writeLayer(stream, DL_LayerData(name, 0),
                         DL_Attributes("", NearestColorIndex(color), trueColor, kDefaultWeight, "CONTINUOUS"));
    }
    stream.tableEnd();

    stream.tableStyle(1);
    m_Dxf.writeStyle(stream, DL_StyleData("Standard", 0, 0.0, 1.0, 0.0, 0, 2.5, "txt", ""));
    stream.tableEnd();
    m_Dxf.writeView(stream);
    m_Dxf.writeUcs(stream);
    stream.tableAppid(1);
    m_Dxf.writeAppid(stream, "ACAD");
    stream.tableEnd();
    m_Dxf.writeDimStyle(stream, 2.5, 1.25, 0.625, 0.625, 2.5);  // the metric defaults; a style must be there
    m_Dxf.writeBlockRecord(stream);
    stream.tableEnd();
    stream.sectionEnd();
}

void CDxfWriter::WriteBlocks() {
    CDxfStream& stream = *m_pStream;
    stream.sectionBlocks();
    for (const char* name : {"*Model_Space", "*Paper_Space", "*Paper_Space0"}) {
        m_Dxf.writeBlock(stream, DL_BlockData(name, 0, 0.0, 0.0, 0.0));
        m_Dxf.writeEndBlock(stream, name);
    }
    stream.sectionEnd();
}

void CDxfWriter::WriteFigure(const Figure& figure) {
    const DL_Attributes attributes(m_Layers[figure.color], kByLayer, kNoTrueColor, kByLayerWeight, "BYLAYER");
    if (figure.segments.empty())
        m_Dxf.writePoint(*m_pStream, DL_PointData(figure.points.front().x, figure.points.front().y, 0.0), attributes);
    else if (figure.IsPolyline())
        WritePolyline(figure, attributes);
    else
        WriteSpline(figure, attributes);
}

void CDxfWriter::WritePolyline(const Figure& figure, const DL_Attributes& attributes) {
    // The closed flag draws the last line itself.
    std::span<const Point> points(figure.points);
    if (figure.closed && points.size() > 2 && points.back() == points.front()) points = points.first(points.size() - 1);

    const int flags = figure.closed ? kPolylineClosed : 0;
    m_Dxf.writePolyline(*m_pStream, DL_PolylineData(static_cast<int>(points.size()), 0, 0, flags), attributes);
    for (const Point& point : points) m_Dxf.writeVertex(*m_pStream, DL_VertexData(point.x, point.y, 0.0));
    m_Dxf.writePolylineEnd(*m_pStream);
}

void CDxfWriter::WriteSpline(const Figure& figure, const DL_Attributes& attributes) {
    m_Points.assign(1, figure.points.front());
    const auto addLine = [this](const Point& to) {
        const Point from = m_Points.back();
        m_Points.push_back({from.x + (to.x - from.x) / 3, from.y + (to.y - from.y) / 3});
        m_Points.push_back({to.x - (to.x - from.x) / 3, to.y - (to.y - from.y) / 3});
        m_Points.push_back(to);
    };
    const Point* next = figure.points.data() + 1;
    for (const SegmentKind kind : figure.segments) {
        if (kind == SegmentKind::Line) {
            addLine(*next++);
            continue;
        }
        m_Points.insert(m_Points.end(), next, next + 3);
        next += 3;
    }
    // A closed outline may leave a gap below the writer's tolerance; a closed spline must meet its start.
    if (figure.closed && m_Points.back() != m_Points.front()) addLine(figure.points.front());

    // Clamped knots with every inner one three times: the control points are those of the Bézier pieces.
    const auto controls = static_cast<int>(m_Points.size());
    const int pieces = (controls - 1) / kDegree;
    const int flags = kSplinePlanar | (figure.closed ? kSplineClosed : 0);
    m_Dxf.writeSpline(*m_pStream, DL_SplineData(kDegree, controls + kDegree + 1, controls, 0, flags), attributes);
    const auto writeKnot = [this](int knot, int times) {
        while (times-- > 0) m_Dxf.writeKnot(*m_pStream, DL_KnotData(knot));
    };
    writeKnot(0, kDegree + 1);
    for (int knot = 1; knot < pieces; ++knot) writeKnot(knot, kDegree);
    writeKnot(pieces, kDegree + 1);
    for (const Point& point : m_Points)
        m_Dxf.writeControlPoint(*m_pStream, DL_ControlPointData(point.x, point.y, 0.0, 1.0));
}

void CDxfWriter::EndDrawing() {
    m_pStream->sectionEnd();
    m_pStream->BeginObjects();
    m_Dxf.writeObjects(*m_pStream);
    m_Dxf.writeObjectsEnd(*m_pStream);
    m_pStream->dxfEOF();
}
