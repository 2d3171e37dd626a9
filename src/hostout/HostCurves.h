// hostcurves: the sections that polylines and the single entities are made of. Coordinates are host units,
// angles radians unless told otherwise.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "hostout/HostVector.h"

/// Section kinds.
enum SectionKind : std::int32_t {
    SECT_LINE = 1,    ///< a chain of points
    SECT_POINTS = 2,  ///< a chain of points from elsewhere in the host
    SECT_BEZIER = 3,  ///< control points, three a piece behind the first
    SECT_POINT = 4,
    SECT_ARC = 5,
    SECT_CIRCLE = 6,
    SECT_ELLIPSE = 7
};

/// A section: one piece of geometry, chained to the next by a link. Who holds the head of a chain owns
/// the chain.
class HOST_API CSectObject {
public:
    CSectObject(const CSectObject&) = delete;
    CSectObject& operator=(const CSectObject&) = delete;
    virtual ~CSectObject();

    [[nodiscard]] virtual SectionKind GetKind() const noexcept = 0;
    /// A copy without a link, the caller's.
    [[nodiscard]] virtual CSectObject* Clone() const = 0;
    /// What the host wants called before a section is deleted.
    virtual void Release() noexcept;
    /// First flattening: the section as a chain of simpler ones within a tolerance, the caller's; null when
    /// the section is as simple as it gets.
    [[nodiscard]] virtual CSectObject* Simplify(float tolerance) const;
    /// Second flattening: appends points of the section whose chords stay within the tolerance of it, its
    /// ends exact. A tolerance that is no positive number asks for as many points as FLATTEN_MAX_POINTS
    /// allows.
    virtual void Flatten(float tolerance, std::vector<point_2d>& out) const = 0;
    /// The points that define the section: chain points, control points, or the centre.
    [[nodiscard]] virtual std::span<const point_2d> GetPoints() const noexcept = 0;

    [[nodiscard]] CSectObject* GetNext() const noexcept { return m_pNext; }
    /// Appends a chain to the chain that starts here, which it belongs to from then on. Walks to the end.
    void AddListToTail(CSectObject* list) noexcept;

    CSectObject* m_pNext = nullptr;

protected:
    CSectObject() noexcept = default;
};

/// Releases and deletes the sections of a chain, in order.
struct FreeSections {
    HOST_API void operator()(CSectObject* first) const noexcept;
};
/// A chain of sections with its owner.
using CSectChain = std::unique_ptr<CSectObject, FreeSections>;

/// Points of a section; so few as an ordinary line or curve has stand in the section itself.
template <std::size_t Few>
class CSectPoints : public CSectObject {
public:
    ~CSectPoints() override {
        if (m_nCount > Few) delete[] m_pMany;
    }
    /// Takes a copy of n points.
    void Copy(const point_2d* points, int n) {
        const std::size_t count = points && n > 0 ? static_cast<std::size_t>(n) : 0;
        point_2d* const many = count > Few ? new point_2d[count] : nullptr;
        const std::unique_ptr<point_2d[]> before(m_nCount > Few ? m_pMany : nullptr);
        std::copy_n(points, count, many ? many : m_Few);
        if (many) m_pMany = many;
        m_nCount = count;
    }
    [[nodiscard]] std::span<const point_2d> GetPoints() const noexcept override {
        return {m_nCount > Few ? m_pMany : m_Few, m_nCount};
    }

protected:
    CSectPoints() noexcept {}

private:
    std::size_t m_nCount = 0;
    union {
        point_2d m_Few[Few];
        point_2d* m_pMany;  ///< owned; when there are more
    };
};

/// A chain of straight lines. Those of two points are what most of a drawing is made of.
class HOST_API CSectLine2D final : public CSectPoints<2> {
public:
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_LINE; }
    [[nodiscard]] CSectObject* Clone() const override;
    void Flatten(float tolerance, std::vector<point_2d>& out) const override;
};

/// A chain of cubic Bézier curves: 4, 7, 10 ... control points.
class HOST_API CSectBezier final : public CSectPoints<4> {
public:
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_BEZIER; }
    [[nodiscard]] CSectObject* Clone() const override;
    void Flatten(float tolerance, std::vector<point_2d>& out) const override;
    /// Appends the control points of the same curves cut into pieces whose chords stay within the tolerance,
    /// as Flatten takes it: three points a piece behind the first.
    void Subdivide(float tolerance, std::vector<point_2d>& out) const;
};

/// A circular arc. The order of its angles is its direction: from a smaller to a greater one it runs
/// counter-clockwise. Angles are not normalised: from 400 to 360 degrees it runs 40 degrees clockwise. A
/// negative radius mirrors the arc at its centre.
class HOST_API CSectArc final : public CSectObject {
public:
    CSectArc() noexcept = default;
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_ARC; }
    [[nodiscard]] CSectObject* Clone() const override;
    void Flatten(float tolerance, std::vector<point_2d>& out) const override;
    [[nodiscard]] std::span<const point_2d> GetPoints() const noexcept override { return {&m_ptCentre, 1}; }

    /// From centre, start and end point; a flag other than 0 runs counter-clockwise. 0 when start or end lies
    /// on the centre; else 1. The end is taken as a direction: the radius is that of the start, and ends in
    /// one direction make a full turn.
    int CreateCSE(point_2d centre, point_2d start, point_2d end, int flag) noexcept;
    /// From start, end and included angle, whose sign has no meaning; a flag other than 0 runs
    /// counter-clockwise. 0 for coinciding points, an angle that is not between 0 and a full turn, or an arc
    /// too flat for its circle to have coordinates.
    int CreateSEA(point_2d start, point_2d end, float angle, int flag) noexcept;
    /// From start, end and the tangent at the start. Ends that coincide to the resolution of their
    /// coordinates make an arc of radius 0. 0, and an arc that was not made, when there is no tangent, or the
    /// end lies on it or so near that the circle has no coordinates.
    int CreateSEST(point_2d start, point_2d end, point_2d tangent) noexcept;
    /// From centre, radius and angles (x start, y end). Always 1.
    virtual int CreateCRA(point_2d centre, float radius, point_2d angles) noexcept;
    /// The arc as cubic Bézier curves: the start point, then three points a segment, in count, which never
    /// passes the capacity. Segments are of at most 60 degrees, six for a full turn, off by less than 3e-5 of
    /// the radius. Turns that only draw the circle again are left out, so that an arc sweeps less than two
    /// turns; up to 450 degrees of it fit into 19 points within 1e-4 of the radius, and when a longer one
    /// doesn't fit, its last full turn comes. A full turn ends exactly where it starts. count is 1 for an arc
    /// without sweep or radius, and 0 for one that was not made.
    virtual void GetBezierPoints(int capacity, int& count, point_2d* points) const noexcept;

    point_2d m_ptCentre;
    float m_fRadius = 0;
    float m_fStart = 0;
    float m_fEnd = 0;
    bool m_bMade = false;  ///< one of the operations above has made the arc
};

class HOST_API CSectCircle final : public CSectObject {
public:
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_CIRCLE; }
    [[nodiscard]] CSectObject* Clone() const override;
    void Flatten(float tolerance, std::vector<point_2d>& out) const override;
    [[nodiscard]] std::span<const point_2d> GetPoints() const noexcept override { return {&m_ptCentre, 1}; }
    /// 0 for a radius that is not above 0.
    int CreateCR(point_2d centre, float radius) noexcept;

    point_2d m_ptCentre;
    float m_fRadius = 0;
};

class HOST_API CSectEllipse final : public CSectObject {
public:
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_ELLIPSE; }
    [[nodiscard]] CSectObject* Clone() const override;
    /// The ellipse itself: an ellipse entity is exported by its simplified form alone.
    [[nodiscard]] CSectObject* Simplify(float tolerance) const override;
    void Flatten(float tolerance, std::vector<point_2d>& out) const override;
    [[nodiscard]] std::span<const point_2d> GetPoints() const noexcept override { return {&m_ptCentre, 1}; }
    /// Half axes a and b; angle turns a from the x axis. The last argument is the host's and has no meaning
    /// here.
    void Create(point_2d centre, float a, float b, float angle, int reserved) noexcept;

    point_2d m_ptCentre;
    float m_fA = 0;
    float m_fB = 0;
    float m_fAngle = 0;
};

class HOST_API CSectPoint final : public CSectObject {
public:
    [[nodiscard]] SectionKind GetKind() const noexcept override { return SECT_POINT; }
    [[nodiscard]] CSectObject* Clone() const override;
    void Flatten(float tolerance, std::vector<point_2d>& out) const override;
    [[nodiscard]] std::span<const point_2d> GetPoints() const noexcept override { return {&m_pt, 1}; }
    void Copy(point_2d point) noexcept { m_pt = point; }

    point_2d m_pt;
};

/// The sections of a polyline. Owns them.
class HOST_API CSectionList {
public:
    CSectionList() noexcept = default;
    CSectionList(const CSectionList&) = delete;
    CSectionList& operator=(const CSectionList&) = delete;
    ~CSectionList();

    /// Starts an empty list with a section; the other arguments are the host's and have no meaning here.
    void Create(CSectObject* first, CSectObject* reserved, int dimensions, int flags) noexcept;
    /// Appends a section, or a chain of them; in constant time for one.
    void AddSectToTail(CSectObject* section) noexcept;
    void SetCloseFlag(int closed) noexcept { m_bClosed = closed != 0; }
    [[nodiscard]] bool IsClosed() const noexcept { return m_bClosed; }
    [[nodiscard]] bool IsEmpty() const noexcept { return m_pHead == nullptr; }
    [[nodiscard]] CSectObject* GetFirst() const noexcept { return m_pHead; }

private:
    CSectObject* m_pHead = nullptr;
    CSectObject* m_pTail = nullptr;
    bool m_bClosed = false;
};

/// Bytes of the block that the flattening functions below may fill.
inline constexpr int FLATTEN_BLOCK_BYTES = 65504;
/// Points that an arc or one Bézier curve is flattened to at most. A tolerance that asks for more is finer
/// than about a ten-millionth of the curve's size, which is as much as 32-bit coordinates can tell apart.
inline constexpr int FLATTEN_MAX_POINTS = FLATTEN_BLOCK_BYTES / static_cast<int>(sizeof(point_2d));

// Flattening into a block of FLATTEN_BLOCK_BYTES, as CSectObject::Flatten does: first and last point exact,
// chords within the tolerance, none of more than a quarter turn. Turns that only draw the circle again are
// left out. Each gives the count of points: 0 for a radius that is 0 or no finite number.
HOST_API int ArcToLine(point_2d centre, float radius, float start, float end, float tolerance, point_2d* out) noexcept;
HOST_API int CircleToLine(point_2d centre, float radius, float tolerance, point_2d* out) noexcept;
HOST_API int EllipseToLine(point_2d centre, float a, float b, float angle, float tolerance, point_2d* out) noexcept;
