// The JSON writer. Texts and the head go through nlohmann-json. The entities are streamed: a drawing of a
// million segments as a tree of JSON values would take gigabytes. Unless passes have made another drawing of them, they
// are written section by section as they stand in their entities, and not from figures: those come through the export
// face, which joins and simplifies sections, and know neither texts nor coordinates that are no numbers.
#include "writers/JsonWriter.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <span>

#include "drawing/Section.h"
#include "hostout/HostModel.h"
#include "writers/JsonText.h"
#include "writers/ReportJson.h"

namespace {

class CJsonWriter {
public:
    explicit CJsonWriter(COutputFile& out) : m_Out(out) {}

    void WriteDrawing(const Drawing& drawing, const std::optional<CheckReport>& check) {
        WriteHead(drawing, check);
        WriteList(drawing.entities, [this](const EntityPtr& entity) { WriteEntity(*entity); });
        m_Out.Write("\n}\n");
    }

    void WriteDrawing(const Drawing& drawing, std::span<const Figure> figures,
                      const std::optional<CheckReport>& check) {
        WriteHead(drawing, check);
        m_dUnit = drawing.UnitInMillimetres();
        WriteList(figures, [this](const Figure& figure) { WriteFigure(figure); });
        m_Out.Write("\n}\n");
    }

private:
    // All up to the list of entities.
    void WriteHead(const Drawing& drawing, const std::optional<CheckReport>& check) {
        m_Out.Write("{\n  \"source\": " + JsonText(drawing.source));
        m_Out.Write(drawing.complete ? ",\n  \"dialect\": \"complete\"" : ",\n  \"dialect\": \"plain\"");
        m_Out.Write(",\n  \"hostVersion\": " + std::to_string(drawing.hostVersion));
        m_Out.Write(drawing.hostVersion >= 5 ? ",\n  \"unit\": \"mm\"" : ",\n  \"unit\": \"mm/40\"");
        m_Out.Write(",\n  \"settings\": ");
        if (drawing.settings) {
            m_Out.Write("{ \"tolerance\": ");
            WriteNumber(drawing.settings->tolerance);
            m_Out.Write(drawing.settings->fillOutline ? ", \"fillOutline\": true }" : ", \"fillOutline\": false }");
        } else {
            m_Out.Write("null");
        }
        if (drawing.information) m_Out.Write(",\n  \"information\": " + JsonText(*drawing.information));
        m_Out.Write(",\n  \"messages\": ");
        WriteList(drawing.messages, [this](const MessageBox& box) {
            m_Out.Write("{ \"caption\": " + JsonText(box.caption) + ", \"text\": " + JsonText(box.text) +
                        ", \"style\": " + std::to_string(box.style) + " }");
        });
        if (drawing.report.failure) m_Out.Write(",\n  \"failure\": " + FailureJson(*drawing.report.failure));
        if (!drawing.report.leftOut.IsEmpty()) m_Out.Write(",\n  \"leftOut\": " + LeftOutJson(drawing.report.leftOut));
        if (!drawing.report.fonts.empty()) m_Out.Write(",\n  \"fonts\": " + FontsJson(drawing.report.fonts));
        if (check) m_Out.Write(",\n  \"check\": " + CheckJson(*check, drawing));
        m_Out.Write(",\n  \"entities\": ");
    }

    template <class List, class WriteItem>
    void WriteList(const List& list, WriteItem writeItem) {
        m_Out.Write('[');
        const char* separator = "\n    ";
        for (const auto& item : list) {
            m_Out.Write(separator);
            writeItem(item);
            separator = ",\n    ";
        }
        m_Out.Write(list.empty() ? "]" : "\n  ]");
    }

    void WriteNumber(float value) {
        if (std::isfinite(value))
            m_Out.WriteShortest(value);
        else
            m_Out.Write("null");
    }

    void WritePoint(const point_2d& point) {
        m_Out.Write('[');
        WriteNumber(point.x);
        m_Out.Write(',');
        WriteNumber(point.y);
        m_Out.Write(']');
    }

    void WriteMember(const char* name, float value) {
        m_Out.Write(", \"");
        m_Out.Write(name);
        m_Out.Write("\": ");
        WriteNumber(value);
    }

    void WriteMember(const char* name, const point_2d& point) {
        m_Out.Write(", \"");
        m_Out.Write(name);
        m_Out.Write("\": ");
        WritePoint(point);
    }

    void WriteEntity(const CEntity& entity) {
        m_Out.Write("{ \"type\": \"");
        m_Out.Write(TypeOf(entity.GetKind()));
        m_Out.Write('"');
        WriteColor(entity.m_nColor);
        if (entity.GetKind() == ENT_PLINE)
            WriteSections(static_cast<const CEntPLine&>(entity).m_Sections);
        else if (entity.GetKind() == ENT_TEXT)
            WriteTextFields(static_cast<const CEntText&>(entity));
        else if (const CSectObject* section = entity.GetSection())
            WriteFields(*section);
        m_Out.Write(" }");
    }

    void WriteColor(std::uint32_t color) {
        m_Out.Write(", \"color\": [");
        m_Out.WriteInteger(Red(color));
        m_Out.Write(',');
        m_Out.WriteInteger(Green(color));
        m_Out.Write(',');
        m_Out.WriteInteger(Blue(color));
        m_Out.Write(']');
    }

    // Of a figure, whose doubles are the products of floats and the unit where no pass has moved them.
    void WriteNumber(double value) {
        constexpr double kRounding = 1e-15;
        const auto single = static_cast<float>(value);
        if (std::fabs(single - value) <= kRounding * std::fabs(value))
            WriteNumber(single);
        else
            m_Out.WriteShortest(value);
    }

    void WriteNumberMember(const char* name, double value) {
        m_Out.Write(std::string(", \"") + name + "\": ");
        WriteNumber(value);
    }

    void WritePoint(const Point& point) {
        m_Out.Write('[');
        WriteNumber(point.x / m_dUnit);
        m_Out.Write(',');
        WriteNumber(point.y / m_dUnit);
        m_Out.Write(']');
    }

    void WriteFigure(const Figure& figure) {
        const bool circle = figure.IsCircle(), point = figure.segments.empty();
        m_Out.Write(circle ? "{ \"type\": \"circle\"" : point ? "{ \"type\": \"point\"" : "{ \"type\": \"polyline\"");
        WriteColor(figure.color);
        if (circle) {
            WriteCentre(CircleOf(figure));
        } else if (point) {
            m_Out.Write(", \"position\": ");
            WritePoint(figure.points.front());
        } else {
            m_Out.Write(figure.closed ? ", \"closed\": true, \"sections\": [" : ", \"closed\": false, \"sections\": [");
            WriteSections(figure);
            m_Out.Write(']');
        }
        m_Out.Write(" }");
    }

    void WriteCentre(const ArcShape& shape) {
        m_Out.Write(", \"center\": ");
        WritePoint(shape.centre);
        WriteNumberMember("radius", shape.radius / m_dUnit);
    }

    // Neighbouring lines are one section, and neighbouring curves.
    void WriteSections(const Figure& figure) {
        const char* separator = "";
        std::optional<SegmentKind> open;
        ForEachSection(figure, [&](const Section& section) {
            if (open != section.kind || section.kind == SegmentKind::Arc) {
                if (open && *open != SegmentKind::Arc) m_Out.Write("] }");
                m_Out.Write(separator);
                separator = ", ";
                open = section.kind;
                if (section.kind == SegmentKind::Arc) return WriteArc(section);
                m_Out.Write(section.kind == SegmentKind::Line ? "{ \"type\": \"line\", \"points\": ["
                                                              : "{ \"type\": \"bezier\", \"points\": [");
                WritePoint(section.Start());
            }
            for (std::size_t i = 1; i <= PointsOf(section.kind); ++i) {
                m_Out.Write(", ");
                WritePoint(section.points[i]);
            }
        });
        if (open && *open != SegmentKind::Arc) m_Out.Write("] }");
    }

    void WriteArc(const Section& arc) {
        constexpr double kDegrees = 180 / std::numbers::pi;
        const ArcShape shape = ShapeOf(arc);
        m_Out.Write("{ \"type\": \"arc\"");
        WriteCentre(shape);
        WriteNumberMember("start", shape.start * kDegrees);
        WriteNumberMember("sweep", shape.sweep * kDegrees);
        m_Out.Write(" }");
    }

    static const char* TypeOf(EntityKind kind) {
        switch (kind) {
            case ENT_PLINE:
                return "polyline";
            case ENT_POINT:
                return "point";
            case ENT_CIRCLE:
                return "circle";
            case ENT_ELLIPSE:
                return "ellipse";
            case ENT_TEXT:
                return "text";
            case ENT_GROUP:
                return "group";
        }
        return "unknown";
    }

    static const char* TypeOf(SectionKind kind) {
        switch (kind) {
            case SECT_LINE:
            case SECT_POINTS:
                return "line";
            case SECT_BEZIER:
                return "bezier";
            case SECT_POINT:
                return "point";
            case SECT_ARC:
                return "arc";
            case SECT_CIRCLE:
                return "circle";
            case SECT_ELLIPSE:
                return "ellipse";
        }
        return "unknown";
    }

    void WriteSections(const CSectionList& sections) {
        m_Out.Write(sections.IsClosed() ? ", \"closed\": true, \"sections\": ["
                                        : ", \"closed\": false, \"sections\": [");
        for (const CSectObject* section = sections.GetFirst(); section != nullptr; section = section->GetNext()) {
            m_Out.Write("{ \"type\": \"");
            m_Out.Write(TypeOf(section->GetKind()));
            m_Out.Write('"');
            WriteFields(*section);
            m_Out.Write(section->GetNext() != nullptr ? " }, " : " }");
        }
        m_Out.Write(']');
    }

    // What defines a section beside its kind. Angles are radians, as the host has them.
    void WriteFields(const CSectObject& section) {
        switch (section.GetKind()) {
            case SECT_LINE:
            case SECT_POINTS:
            case SECT_BEZIER: {
                m_Out.Write(", \"points\": [");
                const std::span<const point_2d> points = section.GetPoints();
                for (std::size_t i = 0; i < points.size(); ++i) {
                    if (i > 0) m_Out.Write(", ");
                    WritePoint(points[i]);
                }
                m_Out.Write(']');
                break;
            }
            case SECT_POINT:
                WriteMember("position", static_cast<const CSectPoint&>(section).m_pt);
                break;
            case SECT_ARC: {
                const auto& arc = static_cast<const CSectArc&>(section);
                WriteMember("center", arc.m_ptCentre);
                WriteMember("radius", arc.m_fRadius);
                WriteMember("startAngle", arc.m_fStart);
                WriteMember("endAngle", arc.m_fEnd);
                break;
            }
            case SECT_CIRCLE: {
                const auto& circle = static_cast<const CSectCircle&>(section);
                WriteMember("center", circle.m_ptCentre);
                WriteMember("radius", circle.m_fRadius);
                break;
            }
            case SECT_ELLIPSE: {
                const auto& ellipse = static_cast<const CSectEllipse&>(section);
                WriteMember("center", ellipse.m_ptCentre);
                WriteMember("a", ellipse.m_fA);
                WriteMember("b", ellipse.m_fB);
                WriteMember("angle", ellipse.m_fAngle);
                break;
            }
        }
    }

    void WriteTextFields(const CEntText& text) {
        m_Out.Write(", \"text\": " + JsonText(text.m_strText) + ", \"font\": " + JsonText(text.m_strFont));
        WriteMember("position", text.m_ptPos);
        WriteMember("charWidth", text.m_fCharWidth);
        WriteMember("height", text.m_fHeight);
        WriteMember("angle", text.m_fAngle);
        m_Out.Write(", \"alignment\": ");
        m_Out.WriteInteger(text.m_nAlignment);
    }

    COutputFile& m_Out;
    double m_dUnit = 1;  // mm
};

}  // namespace

void WriteJson(const Drawing& drawing, const std::optional<CheckReport>& check, COutputFile& out) {
    CJsonWriter(out).WriteDrawing(drawing, check);
}

void WriteJson(const Drawing& drawing, std::span<const Figure> figures, const std::optional<CheckReport>& check,
               COutputFile& out) {
    CJsonWriter(out).WriteDrawing(drawing, figures, check);
}
