// The JSON writer. Texts and the head go through nlohmann-json. The entities are streamed: a drawing of a
// million segments as a tree of JSON values would take gigabytes. They are written section by section as they
// stand in their entities, and not from figures: those come through the export face, which joins and
// simplifies sections, and know neither texts nor coordinates that are no numbers.
#include "writers/JsonWriter.h"

#include <cmath>
#include <span>

#include "drawing/Figure.h"
#include "hostout/HostModel.h"
#include "writers/JsonText.h"
#include "writers/ReportJson.h"

namespace {

class CJsonWriter {
public:
    explicit CJsonWriter(COutputFile& out) : m_Out(out) {}

    void WriteDrawing(const Drawing& drawing) {
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
        m_Out.Write(",\n  \"entities\": ");
        WriteList(drawing.entities, [this](const EntityPtr& entity) { WriteEntity(*entity); });
        m_Out.Write("\n}\n");
    }

private:
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
        m_Out.Write("\", \"color\": [");
        m_Out.WriteInteger(Red(entity.m_nColor));
        m_Out.Write(',');
        m_Out.WriteInteger(Green(entity.m_nColor));
        m_Out.Write(',');
        m_Out.WriteInteger(Blue(entity.m_nColor));
        m_Out.Write(']');
        if (entity.GetKind() == ENT_PLINE)
            WriteSections(static_cast<const CEntPLine&>(entity).m_Sections);
        else if (entity.GetKind() == ENT_TEXT)
            WriteTextFields(static_cast<const CEntText&>(entity));
        else if (const CSectObject* section = entity.GetSection())
            WriteFields(*section);
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
};

}  // namespace

void WriteJson(const Drawing& drawing, COutputFile& out) { CJsonWriter(out).WriteDrawing(drawing); }
