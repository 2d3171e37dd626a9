// SVG: one path for each figure, in millimetres, for browsers and drawing programs.
#pragma once

#include "DrawingWriter.h"
#include "OutputFile.h"

class CSvgWriter : public CDrawingWriter {
public:
    explicit CSvgWriter(COutputFile& out) : m_Out(out) {}

protected:
    void BeginDrawing(const Survey& survey) override;
    void WriteFigure(const Figure& figure) override;
    void EndDrawing() override;

private:
    void WriteNumber(double value);
    void WritePoint(const Point& point);

    COutputFile& m_Out;
};
