// DXF R2000 in millimetres through dxflib: a layer for each colour, LWPOLYLINE for polylines, SPLINE for
// curves.
#pragma once

#include <dxflib/dl_dxf.h>

#include <map>
#include <memory>
#include <string>

#include "DrawingWriter.h"
#include "Options.h"
#include "OutputFile.h"

class CDxfStream;

class CDxfWriter : public CDrawingWriter {
public:
    // `flatness`, in millimetres, is for CurveStyle::Polyline.
    CDxfWriter(COutputFile& out, CurveStyle curves, double flatness);
    ~CDxfWriter() override;

protected:
    void BeginDrawing(const Survey& survey) override;
    void WriteFigure(const Figure& figure) override;
    void EndDrawing() override;

private:
    void WriteHeader();
    void WriteTables(const Survey& survey);
    void WriteBlocks();
    void WritePolyline(const Figure& figure, const DL_Attributes& attributes);

    // The whole figure as one spline of degree 3, exact: each curve is a Bézier piece, each straight segment
    // the same with its inner control points at its thirds. So an outline of lines and curves stays one
    // entity, and a closed one closed.
    void WriteSpline(const Figure& figure, const DL_Attributes& attributes);

    COutputFile& m_Out;
    CBox m_Box;
    DL_Dxf m_Dxf;
    std::unique_ptr<CDxfStream> m_pStream;
    std::map<std::uint32_t, std::string> m_Layers;  // by colour
    std::vector<Point> m_Points;                    // scratch
};
