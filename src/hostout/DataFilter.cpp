// The entity writer: polylines built of drawing calls, single entities, texts, and the walk over existing
// entities.
#include "hostout/DataFilter.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "hostout/HostCore.h"

CDataFilter::CDataFilter() = default;

CDataFilter::~CDataFilter() {
    if (!m_pPLine) return;
    m_pPLine->Release();
    delete m_pPLine;
}

// Sinks

int CDataFilter::OutBegin() { return 1; }
int CDataFilter::OutLines(const point_2d*, int) { return 1; }
int CDataFilter::OutArc(point_2d, float, float, float) { return 1; }
int CDataFilter::OutBezier(const point_2d*, int) { return 1; }
int CDataFilter::OutEnd() { return 1; }
int CDataFilter::OutPoint(point_2d) { return 1; }
int CDataFilter::OutCircle(point_2d, float) { return 1; }
int CDataFilter::OutReserved1() { return 1; }
int CDataFilter::OutReserved2() { return 1; }
int CDataFilter::OutReserved3() { return 1; }

// Build face: polylines

int CDataFilter::BeginPLine() {
    EndPLine();
    m_pPLine = new CEntPLine;
    m_bChainStarted = false;
    m_pPLine->m_nColor = m_nColor;
    return 1;
}

// Cuts the chain where the section doesn't follow it, so that the polyline may be another afterwards.
void CDataFilter::Attach(std::unique_ptr<CSectObject> section, point_2d first, point_2d last) {
    CheckChain(first);
    CSectionList& list = m_pPLine->m_Sections;
    if (list.IsEmpty()) {
        list.Create(section.release(), nullptr, 2, 0);
    } else {
        list.AddSectToTail(section.release());
    }
    if (!m_bChainStarted) {
        m_ptChainStart = first;
        m_bChainStarted = true;
    }
    m_ptChainEnd = last;
}

int CDataFilter::AddLines(const point_2d* points, int count) {
    if (!m_pPLine || !points || count < 2) return 1;
    auto section = std::make_unique<CSectLine2D>();
    section->Copy(points, count);
    Attach(std::move(section), points[0], points[count - 1]);
    return 1;
}

int CDataFilter::AddArcCSE(point_2d centre, point_2d start, point_2d end, int flag) {
    if (!m_pPLine) return 1;
    auto arc = std::make_unique<CSectArc>();
    if (arc->CreateCSE(centre, start, end, flag) != 0) Attach(std::move(arc), start, end);
    return 1;
}

int CDataFilter::AddArcSEA(point_2d start, point_2d end, float angle, int flag) {
    if (!m_pPLine) return 1;
    auto arc = std::make_unique<CSectArc>();
    if (arc->CreateSEA(start, end, angle, flag) != 0) Attach(std::move(arc), start, end);
    return 1;
}

int CDataFilter::AddArcAngles(point_2d centre, float radius, float start, float end) {
    if (!m_pPLine) return 1;
    auto arc = std::make_unique<CSectArc>();
    if (arc->CreateCRA(centre, radius, {start, end}) == 0) return 1;
    const auto at = [&](float angle) {
        return point_2d{centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
    };
    Attach(std::move(arc), at(start), at(end));
    return 1;
}

int CDataFilter::AddBezier(const point_2d* points, int count) {
    if (!m_pPLine || !points || count < 4 || count % 3 != 1) return 1;
    auto section = std::make_unique<CSectBezier>();
    section->Copy(points, count);
    Attach(std::move(section), points[0], points[count - 1]);
    return 1;
}

int CDataFilter::EndPLine() {
    std::unique_ptr<CEntPLine> line(std::exchange(m_pPLine, nullptr));
    if (!line || line->m_Sections.IsEmpty()) return 1;
    if (m_bChainStarted && line->GetKind() == ENT_PLINE && m_fChainTolerance > m_ptChainStart.DistFrom(m_ptChainEnd)) {
        line->m_Sections.SetCloseFlag(1);
    }
    HandOver(std::move(line));
    return 1;
}

int CDataFilter::CheckChain(point_2d point) {
    if (!m_pPLine || m_pPLine->GetKind() != ENT_PLINE || m_pPLine->m_Sections.IsEmpty() || !m_bChainStarted) return 0;
    if (!(m_ptChainEnd.DistFrom(point) > m_fChainTolerance)) return 0;
    EndPLine();
    BeginPLine();
    return 1;
}

// To the group of the mode; without one the entity goes.
void CDataFilter::HandOver(std::unique_ptr<CEntity> entity) const {
    if (CEntGroup* group = m_nTargetMode == 1 ? m_pGroup : m_pOtherGroup) {
        entity.release()->InsertToChildTail(group);
    } else {
        entity->Release();
    }
}

// Build face: single entities

int CDataFilter::AddPoint(point_2d point) {
    if (!m_pGroup) return 1;
    auto entity = std::make_unique<CEntPoint>();
    entity->m_Section.Copy(point);
    entity->m_nColor = m_nColor;
    HandOver(std::move(entity));
    return 1;
}

int CDataFilter::AddCircle(point_2d centre, float radius) {
    if (!m_pGroup) return 1;
    auto section = std::make_unique<CSectCircle>();
    if (section->CreateCR(centre, radius) == 0) return 1;
    auto entity = std::make_unique<CEntCircle>();
    entity->m_nColor = m_nColor;
    entity->m_pSection = section.release();
    HandOver(std::move(entity));
    return 1;
}

int CDataFilter::AddEllipse(point_2d centre, float a, float b, float angle) {
    if (!m_pGroup) return 1;
    auto section = std::make_unique<CSectEllipse>();
    section->Create(centre, a, b, angle, 0);
    auto entity = std::make_unique<CEntEllipse>();
    entity->m_nColor = m_nColor;
    entity->m_pSection = section.release();
    HandOver(std::move(entity));
    return 1;
}

// Build face: texts

namespace {

void CutLineFeed(std::string& text) {
    if (!text.empty() && text.back() == '\n') text.pop_back();
}

}  // namespace

int CDataFilter::PlaceText(const std::string& text, point_2d position, float charWidth, float height, int alignment,
                           float angle) {
    tagFontParam font{};
    glbf_GetDataManager()->GetDefFontParam(&font);
    std::unique_ptr<CEntText> entity(
        CreateMultiText(text.c_str(), position, font.szFont, charWidth, height, 0, 0, alignment, 0));
    if (!entity) return 0;
    entity->UpdateBox(0);
    entity->UpdateBox(1);
    if (std::fabs(angle) > 0.001f) {
        MATRIX_2D matrix;
        InitMatrix2D(matrix);
        MakeRotateMatrix(position.x, position.y, angle, matrix);
        entity->Transform(0, TRANSF_2D(matrix));
    }
    HandOver(std::move(entity));
    return 1;
}

int CDataFilter::AddTextAt(tagTextAt& record) {
    constexpr float WIDTH_FACTOR = 0.65f;
    int alignment = ALIGN_LEFT;
    if (record.nPlace == 2 || record.nPlace == 5 || record.nPlace == 8) alignment = ALIGN_CENTER;
    if (record.nPlace == 3 || record.nPlace == 6 || record.nPlace == 9) alignment = ALIGN_RIGHT;
    if (record.nPlace >= 1 && record.nPlace <= 3) record.ptPos.y -= record.fHeight;
    if (record.nPlace >= 4 && record.nPlace <= 6) record.ptPos.y -= record.fHeight * 0.5f;
    CutLineFeed(record.strText);
    return PlaceText(record.strText, record.ptPos, record.fHeight * WIDTH_FACTOR, record.fHeight, alignment,
                     record.fAngle);
}

int CDataFilter::AddTextInBox(tagTextBox& record) {
    float width = record.fHeight * record.fWidthFactor;
    const auto length = static_cast<float>(record.strText.size());  // counts a last line feed, too
    point_2d position{record.ptCorner1.x, std::min(record.ptCorner1.y, record.ptCorner2.y)};
    int alignment = ALIGN_LEFT;
    switch (record.nHorz) {
        case 1:
            alignment = ALIGN_CENTER;
            position.x = record.ptCorner1.x + length * width * 0.5f;
            break;
        case 2:
            alignment = ALIGN_RIGHT;
            position.x = record.ptCorner2.x;
            break;
        case 5:
            if (length * width != 0) {
                width = std::fabs(record.ptCorner2.x - record.ptCorner1.x) * width / (length * width);
            }
            break;
        default:
            break;
    }
    if (record.nVert == 2) position.y = (record.ptCorner1.y + record.ptCorner2.y) * 0.5f;
    if (record.nVert == 3) position.y = std::max(record.ptCorner1.y, record.ptCorner2.y);
    CutLineFeed(record.strText);
    return PlaceText(record.strText, position, width, record.fHeight, alignment, record.fAngle);
}

// Export face

int CDataFilter::WriteEntity(const CEntity* entity) {
    if (!entity || (entity->m_nFlags & ENTF_EXPORT) == 0) return 1;
    if (entity->IsGroup()) {
        const auto* group = static_cast<const CEntGroup*>(entity);
        for (const CEntity* child = group->GetFirstChild(); child; child = child->m_pNext) WriteEntity(child);
        return 1;
    }
    switch (entity->GetKind()) {
        case ENT_PLINE: {
            const CSectionList& list = static_cast<const CEntPLine*>(entity)->m_Sections;
            if (list.IsEmpty()) break;
            const float tolerance = m_fOutTolerance * 0.5f;
            OutBegin();
            // What SimplifySections gives, without copies of the sections that are simple.
            for (const CSectObject* section = list.GetFirst(); section; section = section->GetNext()) {
                if (const CSectChain simple{section->Simplify(tolerance)}) {
                    WriteSections(simple.get());
                } else {
                    WriteSection(*section);
                }
            }
            OutEnd();
            break;
        }
        case ENT_POINT:
            OutPoint(static_cast<const CEntPoint*>(entity)->m_Section.m_pt);
            break;
        case ENT_CIRCLE:
            WriteSections(entity->GetSection());
            break;
        case ENT_ELLIPSE:
            if (const CSectObject* section = entity->GetSection()) {
                const CSectChain chain(section->Simplify(m_fOutTolerance));
                WriteSections(chain.get());
            }
            break;
        default:
            break;
    }
    return 1;
}

CSectChain CDataFilter::SimplifySections(const CSectionList& list, float tolerance) const {
    CSectChain head;
    CSectObject* tail = nullptr;
    for (const CSectObject* section = list.GetFirst(); section; section = section->GetNext()) {
        CSectObject* simple = section->Simplify(tolerance * 0.5f);
        if (!simple) simple = section->Clone();
        // To the last section instead of the head, so that a long list isn't walked again for each.
        if (tail) {
            tail->AddListToTail(simple);
        } else {
            head.reset(simple);
        }
        for (tail = simple; tail->m_pNext;) tail = tail->m_pNext;
    }
    return head;
}

void CDataFilter::WriteBezier(const CSectBezier& bezier) {
    constexpr float LEAST_TOLERANCE = 0.005f;
    const std::span<const point_2d> points = bezier.GetPoints();
    if (points.empty()) return;
    if ((m_nOutFlags & OUT_BEZIER) != 0) {
        OutBezier(points.data(), static_cast<int>(points.size()));
        return;
    }
    if (!(m_fOutTolerance >= LEAST_TOLERANCE)) m_fOutTolerance = LEAST_TOLERANCE;
    std::vector<point_2d> pieces;
    bezier.Subdivide(m_fOutTolerance, pieces);
    std::vector<point_2d> ends;
    ends.reserve(pieces.size() / 3 + 1);
    for (size_t i = 0; i < pieces.size(); i += 3) ends.push_back(pieces[i]);
    OutLines(ends.data(), static_cast<int>(ends.size()));
}

namespace {

/// A block of the host's pool for flattened points.
class FlattenBlock {
public:
    FlattenBlock() : m_pPoints(static_cast<point_2d*>(STD_AlcPoolMem(FLATTEN_BLOCK_BYTES))) {}
    FlattenBlock(const FlattenBlock&) = delete;
    FlattenBlock& operator=(const FlattenBlock&) = delete;
    ~FlattenBlock() { STD_FrePoolMem(m_pPoints); }
    [[nodiscard]] point_2d* Points() const noexcept { return m_pPoints; }

private:
    point_2d* m_pPoints;
};

/// 1/80 mm in the unit of the host.
float FlattenTolerance() {
    tagVersionInfo version{};
    glbf_GetSysVersion(&version);
    return version.nMajor < FIRST_MM_VERSION ? 0.5f : 0.0125f;
}

}  // namespace

void CDataFilter::WriteSections(const CSectObject* first) {
    for (const CSectObject* section = first; section; section = section->GetNext()) WriteSection(*section);
}

void CDataFilter::WriteSection(const CSectObject& section) {
    const auto outChain = [this](const FlattenBlock& block, int count) {
        if (count == 0) return;
        OutBegin();
        OutLines(block.Points(), count);
        OutEnd();
    };
    switch (section.GetKind()) {
        case SECT_LINE:
        case SECT_POINTS: {
            const std::span<const point_2d> points = section.GetPoints();
            if (!points.empty()) OutLines(points.data(), static_cast<int>(points.size()));
            break;
        }
        case SECT_BEZIER:
            WriteBezier(static_cast<const CSectBezier&>(section));
            break;
        case SECT_ARC: {
            const auto& arc = static_cast<const CSectArc&>(section);
            if ((m_nOutFlags & OUT_ARC) != 0) {
                OutArc(arc.m_ptCentre, arc.m_fRadius, arc.m_fStart, arc.m_fEnd);
                break;
            }
            const FlattenBlock block;
            const int count =
                ArcToLine(arc.m_ptCentre, arc.m_fRadius, arc.m_fStart, arc.m_fEnd, FlattenTolerance(), block.Points());
            if (count > 0) OutLines(block.Points(), count);
            break;
        }
        case SECT_CIRCLE: {
            const auto& circle = static_cast<const CSectCircle&>(section);
            if ((m_nOutFlags & OUT_CIRCLE) != 0) {
                OutCircle(circle.m_ptCentre, circle.m_fRadius);
                break;
            }
            const FlattenBlock block;
            outChain(block, CircleToLine(circle.m_ptCentre, circle.m_fRadius, FlattenTolerance(), block.Points()));
            break;
        }
        case SECT_ELLIPSE: {
            const auto& e = static_cast<const CSectEllipse&>(section);
            const FlattenBlock block;
            outChain(block,
                     EllipseToLine(e.m_ptCentre, e.m_fA, e.m_fB, e.m_fAngle, FlattenTolerance(), block.Points()));
            break;
        }
        default:
            break;
    }
}

int CDataFilter::SetTarget(CEntGroup* group) {
    m_pGroup = group;
    return group ? 1 : 0;
}
