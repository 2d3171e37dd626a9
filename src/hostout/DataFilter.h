// CDataFilter, the base of a file filter of the host. Its build face makes entities of a stream of drawing
// calls; its export face walks an entity and gives the geometry to sinks that a derived class fills.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "hostout/HostModel.h"

/// The record of AddTextAt. The text must not be empty.
struct tagTextAt {
    point_2d ptPos;            ///< position; its y is changed by the call
    std::string strText;       ///< a last line feed is removed by the call
    std::uint32_t nPlace = 0;  ///< 0 to 9: a grid of three by three, row by row from the top, 0 for none
    float fHeight = 0;         ///< host units
    float fAngle = 0;          ///< radians
};

/// The record of AddTextInBox. The text must not be empty.
struct tagTextBox {
    point_2d ptCorner1;  ///< two opposite corners of the box; the text begins at the x of this one
    point_2d ptCorner2;
    std::string strText;     ///< a last line feed is removed by the call
    std::int32_t nHorz = 0;  ///< 0 left, 1 centre, 2 right, 5 fills the width
    std::int32_t nVert = 0;  ///< 2 middle, 3 upper edge, any other the lower edge
    float fHeight = 0;       ///< host units
    float fAngle = 0;        ///< radians
    float fWidthFactor = 0;  ///< character width as a part of the height
};

/// Bits of m_nOutFlags: which curves a derived class takes as such. Without its bit, a curve reaches OutLines
/// as points on the curve.
enum OutFlags : std::uint32_t { OUT_ARC = 2, OUT_BEZIER = 4, OUT_CIRCLE = 8 };

/// Operations answer 1 unless told otherwise. Entities go to the group of the mode, which owns them from then
/// on; without that group they vanish. Nothing here reports an error: what can't be made is left out.
class CDataFilter {
public:
    CDataFilter();
    CDataFilter(const CDataFilter&) = delete;
    CDataFilter& operator=(const CDataFilter&) = delete;
    /// An open polyline reaches no group.
    virtual ~CDataFilter();

    // Sinks of the export face, for derived classes to fill; here they do nothing. Points and radii are host
    // units, angles radians. OutBegin and OutEnd stand around what belongs to one chain; circles, points and
    // ellipses that come as lines are chains of their own. Nothing calls the reserved ones.
    virtual int OutBegin();
    virtual int OutLines(const point_2d* points, int count);
    virtual int OutArc(point_2d centre, float radius, float start, float end);
    virtual int OutBezier(const point_2d* points, int count);
    virtual int OutEnd();
    virtual int OutPoint(point_2d point);
    virtual int OutCircle(point_2d centre, float radius);
    virtual int OutReserved1();
    virtual int OutReserved2();
    virtual int OutReserved3();

    // Build face. Adding while no polyline is open has no effect.
    /// Opens a polyline in the colour m_nColor. One that is still open is ended first.
    virtual int BeginPLine();
    /// One section of straight lines through all points; fewer than 2 are ignored.
    virtual int AddLines(const point_2d* points, int count);
    /// One arc section, its arguments those of CreateCSE or CreateSEA; ignored when that can't make it.
    virtual int AddArcCSE(point_2d centre, point_2d start, point_2d end, int flag);
    virtual int AddArcSEA(point_2d start, point_2d end, float angle, int flag);
    /// Angles in radians, their order being the direction.
    virtual int AddArcAngles(point_2d centre, float radius, float start, float end);
    /// One section of cubic curves; a count other than 4, 7, 10 ... is ignored.
    virtual int AddBezier(const point_2d* points, int count);
    /// Hands the polyline to the group of the mode. It is closed when its ends meet within m_fChainTolerance,
    /// whoever asked for it; an empty one vanishes.
    virtual int EndPLine();
    /// 1 after starting a new polyline because the point lies farther than m_fChainTolerance from the chain's
    /// end, else 0.
    virtual int CheckChain(point_2d point);
    virtual int AddPoint(point_2d point);
    virtual int AddCircle(point_2d centre, float radius);
    /// Half axes a and b, a turned by angle in radians.
    virtual int AddEllipse(point_2d centre, float a, float b, float angle);
    /// Text at a point or in a box, in the host's default font. 0 when the host makes no text.
    virtual int AddTextAt(tagTextAt& record);
    virtual int AddTextInBox(tagTextBox& record);

    /// Export face: gives the geometry of an entity, or of a group's children, to the sinks. Nothing comes of
    /// an entity that may not be exported, nor of a text.
    virtual int WriteEntity(const CEntity* entity);
    /// Stores the group that receives entities, which stays the caller's: 0 for null.
    virtual int SetTarget(CEntGroup* group);

    /// The sections of a list as one chain, each simplified within half the tolerance or copied; null for an
    /// empty list.
    [[nodiscard]] CSectChain SimplifySections(const CSectionList& list, float tolerance) const;
    /// Gives a chain of sections to the sinks, curves as m_nOutFlags tells. Arcs become lines within a fixed
    /// tolerance, Bézier curves within m_fOutTolerance, which is raised to the least one that is allowed.
    void WriteSections(const CSectObject* first);

    std::uint32_t m_nColor = 255;        ///< colour of new entities, 0x00BBGGRR
    std::uint32_t m_nOutFlags = 1;       ///< OutFlags
    float m_fOutTolerance = 0.05f;       ///< tolerance of the export face
    float m_fChainTolerance = 0.001f;    ///< host units: the gap that cuts a chain, or closes it
    CEntPLine* m_pPLine = nullptr;       ///< the polyline being built; owned until it is handed over
    CEntGroup* m_pGroup = nullptr;       ///< receives entities in mode 1; not owned
    CEntGroup* m_pOtherGroup = nullptr;  ///< receives entities in mode 0; not owned
    std::uint16_t m_nTargetMode = 1;
    point_2d m_ptChainStart;       ///< first point of the open chain
    point_2d m_ptChainEnd;         ///< its last point
    bool m_bChainStarted = false;  ///< m_ptChainStart is valid

private:
    void Attach(std::unique_ptr<CSectObject> section, point_2d first, point_2d last);
    void HandOver(std::unique_ptr<CEntity> entity) const;
    int PlaceText(const std::string& text, point_2d position, float charWidth, float height, int alignment,
                  float angle);
    void WriteSection(const CSectObject& section);
    void WriteBezier(const CSectBezier& bezier);
};
