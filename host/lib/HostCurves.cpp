// hostcurves: sections and their chains, the ways to make an arc, and curves as Bézier curves or straight
// lines. Computed in double and rounded to the 32-bit coordinates at the end.
#include "hostout/HostCurves.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lib/Cells.h"

namespace {

constexpr double TURN = 2 * std::numbers::pi;

struct Vec {
    double x;
    double y;
};

constexpr Vec operator+(Vec a, Vec b) { return {a.x + b.x, a.y + b.y}; }
constexpr Vec operator-(Vec a, Vec b) { return {a.x - b.x, a.y - b.y}; }
constexpr Vec operator*(double k, Vec v) { return {k * v.x, k * v.y}; }
constexpr double Dot(Vec a, Vec b) { return a.x * b.x + a.y * b.y; }
constexpr double Cross(Vec a, Vec b) { return a.x * b.y - a.y * b.x; }
double Length(Vec v) { return std::hypot(v.x, v.y); }
double Angle(Vec v) { return std::atan2(v.y, v.x); }
constexpr Vec LeftOf(Vec v) { return {-v.y, v.x}; }
Vec FromPoint(point_2d p) { return {p.x, p.y}; }
point_2d ToPoint(Vec v) { return {static_cast<float>(v.x), static_cast<float>(v.y)}; }

/// An elliptical arc, its angles those of the circle that the ellipse is an image of.
struct EllipticArc {
    point_2d centre;
    double a;
    double b;
    double rotation;
    double start;
    double sweep;

    [[nodiscard]] point_2d At(double angle) const {
        const Vec on = {a * std::cos(angle), b * std::sin(angle)};
        const double c = std::cos(rotation);
        const double s = std::sin(rotation);
        return ToPoint(FromPoint(centre) + Vec{on.x * c - on.y * s, on.x * s + on.y * c});
    }
    [[nodiscard]] bool IsFullTurn() const { return std::fabs(sweep) == TURN; }
};

/// The sweep from one angle to another without the turns that only repeat the circle: below two turns. Angles
/// are 32-bit floats, and often degrees times a rounded constant: what is that near to whole turns is meant
/// so.
double SweepOf(double start, double end) {
    const double sweep = end - start;
    const double tolerance = 1e-6 * TURN + 1e-7 * (std::fabs(start) + std::fabs(end));
    if (!(std::fabs(sweep) >= TURN - tolerance)) return sweep;
    double rest = std::fmod(std::fabs(sweep), TURN);
    if (rest <= tolerance || rest >= TURN - tolerance) rest = 0;
    return std::copysign(TURN + rest, sweep);
}

/// How many equal pieces, of at least so many; 0 < pieces <= limit also for an amount that is no number.
int Pieces(double wanted, int least, int limit) {
    if (!(wanted < limit)) return limit;
    return std::max(least, static_cast<int>(std::ceil(wanted)));
}

/// Gives points of the arc to put, ends included, and answers their count.
template <class Put>
int FlattenArc(const EllipticArc& arc, double tolerance, Put put) {
    const double radius = std::max(std::fabs(arc.a), std::fabs(arc.b));
    if (!(radius > 0) || !std::isfinite(arc.a) || !std::isfinite(arc.b) || !std::isfinite(arc.sweep)) return 0;
    // A chord over the angle h lies off its arc by r (1 - cos(h / 2)) = 2 r sin^2(h / 4), in an ellipse by no
    // more.
    const double off = tolerance > 0 ? std::min(tolerance / (2 * radius), 1.0) : 0.0;
    const double step = std::min(4 * std::asin(std::sqrt(off)), TURN / 4);
    const int chords = Pieces(std::fabs(arc.sweep) / step - 1e-9, 1, FLATTEN_MAX_POINTS - 1);
    const point_2d first = arc.At(arc.start);
    put(first);
    for (int i = 1; i < chords; ++i) put(arc.At(arc.start + arc.sweep * i / chords));
    put(arc.IsFullTurn() ? first : arc.At(arc.start + arc.sweep));
    return chords + 1;
}

auto AppendTo(std::vector<point_2d>& out) {
    return [&out](point_2d point) { out.push_back(point); };
}

auto WriteTo(point_2d* out) {
    return [out](point_2d point) mutable { *out++ = point; };
}

EllipticArc Circle(point_2d centre, double radius, double start, double sweep) {
    return {centre, radius, radius, 0, start, sweep};
}

EllipticArc Ellipse(point_2d centre, double a, double b, double rotation) { return {centre, a, b, rotation, 0, TURN}; }

}  // namespace

CSectObject::~CSectObject() = default;

void CSectObject::Release() noexcept {}

CSectObject* CSectObject::Simplify(float) const { return nullptr; }

void CSectObject::AddListToTail(CSectObject* list) noexcept {
    CSectObject* last = this;
    while (last->m_pNext) last = last->m_pNext;
    last->m_pNext = list;
}

void FreeSections::operator()(CSectObject* first) const noexcept {
    while (first) {
        CSectObject* next = first->m_pNext;
        first->Release();
        delete first;
        first = next;
    }
}

// Chains of points

void* CSectLine2D::operator new(std::size_t size) { return CCells<CSectLine2D>::Take(size); }

void CSectLine2D::operator delete(void* p, std::size_t size) noexcept { CCells<CSectLine2D>::Give(p, size); }

void* CSectBezier::operator new(std::size_t size) { return CCells<CSectBezier>::Take(size); }

void CSectBezier::operator delete(void* p, std::size_t size) noexcept { CCells<CSectBezier>::Give(p, size); }

CSectObject* CSectLine2D::Clone() const {
    auto copy = std::make_unique<CSectLine2D>();
    copy->Copy(GetPoints().data(), static_cast<int>(GetPoints().size()));
    return copy.release();
}

void CSectLine2D::Flatten(float, std::vector<point_2d>& out) const {
    out.insert(out.end(), GetPoints().begin(), GetPoints().end());
}

CSectObject* CSectBezier::Clone() const {
    auto copy = std::make_unique<CSectBezier>();
    copy->Copy(GetPoints().data(), static_cast<int>(GetPoints().size()));
    return copy.release();
}

namespace {

class Cubic {
public:
    explicit Cubic(const point_2d* points) {
        for (int i = 0; i < 4; ++i) m_Points[i] = FromPoint(points[i]);
    }

    /// The polar form: at (t, t, t) the point of the curve, and at (s, s, s), (s, s, t), (s, t, t), (t, t, t)
    /// the control points of its part from s to t.
    [[nodiscard]] point_2d Blossom(double t1, double t2, double t3) const {
        const auto mix = [](Vec a, Vec b, double t) { return a + t * (b - a); };
        const Vec p01 = mix(m_Points[0], m_Points[1], t1);
        const Vec p12 = mix(m_Points[1], m_Points[2], t1);
        const Vec p23 = mix(m_Points[2], m_Points[3], t1);
        return ToPoint(mix(mix(p01, p12, t2), mix(p12, p23, t2), t3));
    }

    /// Equal pieces whose chords stay within the tolerance. Over a step h of the parameter a chord lies off
    /// the curve by at most h^2 / 8 of the greatest second derivative, which is at most six times the
    /// greatest second difference of the control points.
    [[nodiscard]] int PiecesWithin(double tolerance) const {
        double difference = 0;
        for (int i = 0; i < 2; ++i) {
            difference = std::max(difference, Length(m_Points[i] - 2 * m_Points[i + 1] + m_Points[i + 2]));
        }
        if (!(difference > 0) || !std::isfinite(difference)) return 1;
        return Pieces(tolerance > 0 ? std::sqrt(6 * difference / (8 * tolerance)) : HUGE_VAL, 1,
                      FLATTEN_MAX_POINTS - 1);
    }

private:
    Vec m_Points[4];
};

}  // namespace

void CSectBezier::Flatten(float tolerance, std::vector<point_2d>& out) const {
    const std::span<const point_2d> points = GetPoints();
    if (points.empty()) return;
    out.push_back(points.front());
    for (size_t i = 0; i + 3 < points.size(); i += 3) {
        const Cubic cubic(&points[i]);
        const int pieces = cubic.PiecesWithin(tolerance);
        for (int k = 1; k < pieces; ++k) {
            const double t = static_cast<double>(k) / pieces;
            out.push_back(cubic.Blossom(t, t, t));
        }
        out.push_back(points[i + 3]);
    }
}

void CSectBezier::Subdivide(float tolerance, std::vector<point_2d>& out) const {
    const std::span<const point_2d> points = GetPoints();
    if (points.empty()) return;
    out.push_back(points.front());
    for (size_t i = 0; i + 3 < points.size(); i += 3) {
        const Cubic cubic(&points[i]);
        const int pieces = cubic.PiecesWithin(tolerance);
        for (int k = 0; k < pieces; ++k) {
            const double s = static_cast<double>(k) / pieces;
            const double t = static_cast<double>(k + 1) / pieces;
            out.push_back(cubic.Blossom(s, s, t));
            out.push_back(cubic.Blossom(s, t, t));
            out.push_back(cubic.Blossom(t, t, t));
        }
        out.back() = points[i + 3];
    }
}

// Arcs

CSectObject* CSectArc::Clone() const {
    auto copy = std::make_unique<CSectArc>();
    copy->m_ptCentre = m_ptCentre;
    copy->m_fRadius = m_fRadius;
    copy->m_fStart = m_fStart;
    copy->m_fEnd = m_fEnd;
    copy->m_bMade = m_bMade;
    return copy.release();
}

void CSectArc::Flatten(float tolerance, std::vector<point_2d>& out) const {
    if (!m_bMade) return;
    FlattenArc(Circle(m_ptCentre, m_fRadius, m_fStart, SweepOf(m_fStart, m_fEnd)), tolerance, AppendTo(out));
}

int CSectArc::CreateCRA(point_2d centre, float radius, point_2d angles) noexcept {
    m_ptCentre = centre;
    m_fRadius = radius;
    m_fStart = angles.x;
    m_fEnd = angles.y;
    m_bMade = true;
    return 1;
}

namespace {

/// A chord that turns less from its arc's tangent than this, in radians, belongs to a circle so wide that its
/// 32-bit radius and angles put the ends off by a part of the chord.
constexpr double FLATTEST_ARC = 1e-5;

bool IsLength(double length) { return length > 0 && std::isfinite(length); }

enum class Direction { clockwise, counterClockwise };

/// The sweep from one direction to another that atan2 gave: more than nothing, and at most a full turn.
double SweepBetween(double from, double to, Direction direction) {
    double sweep = to - from;
    while (direction == Direction::counterClockwise && sweep <= 0) sweep += TURN;
    while (direction == Direction::clockwise && sweep >= 0) sweep -= TURN;
    return sweep;
}

}  // namespace

int CSectArc::CreateCSE(point_2d centre, point_2d start, point_2d end, int flag) noexcept {
    m_bMade = false;
    const Vec toStart = FromPoint(start) - FromPoint(centre);
    const Vec toEnd = FromPoint(end) - FromPoint(centre);
    const double radius = Length(toStart);
    if (!IsLength(radius) || !IsLength(Length(toEnd))) return 0;
    const double from = Angle(toStart);
    const double sweep =
        SweepBetween(from, Angle(toEnd), flag != 0 ? Direction::counterClockwise : Direction::clockwise);
    return CreateCRA(centre, static_cast<float>(radius), ToPoint({from, from + sweep}));
}

int CSectArc::CreateSEA(point_2d start, point_2d end, float angle, int flag) noexcept {
    m_bMade = false;
    const Vec chord = FromPoint(end) - FromPoint(start);
    const double sweep = std::fabs(static_cast<double>(angle));
    if (!IsLength(Length(chord)) || !(sweep > 2 * FLATTEST_ARC) || !(sweep < TURN)) return 0;
    // The centre lies beside the middle of the chord: to its left for a counter-clockwise arc of less than
    // half a turn.
    const double side = (flag != 0 ? 0.5 : -0.5) / std::tan(sweep / 2);
    const Vec centre = FromPoint(start) + 0.5 * chord + side * LeftOf(chord);
    const point_2d rounded = ToPoint(centre);
    if (!std::isfinite(rounded.x) || !std::isfinite(rounded.y)) return 0;
    const Vec toStart = FromPoint(start) - centre;
    const double from = Angle(toStart);
    return CreateCRA(rounded, static_cast<float>(Length(toStart)),
                     ToPoint({from, from + (flag != 0 ? sweep : -sweep)}));
}

int CSectArc::CreateSEST(point_2d start, point_2d end, point_2d tangent) noexcept {
    m_bMade = false;
    const Vec chord = FromPoint(end) - FromPoint(start);
    const double length = Length(chord);
    const double magnitude = std::max({std::fabs(start.x), std::fabs(start.y), std::fabs(end.x), std::fabs(end.y)});
    if (length <= 4e-7 * magnitude) return CreateCRA(start, 0, {0, 0});
    const Vec unit = (1 / Length(FromPoint(tangent))) * FromPoint(tangent);
    const double across = Cross(unit, chord);
    if (!(std::fabs(across) > FLATTEST_ARC * length)) return 0;  // also for a tangent of no length
    // The centre is start + r n, n being the tangent's left normal, with |end - centre| = |r|; a negative r
    // has it to the right, and the arc clockwise.
    const double radius = Dot(chord, chord) / (2 * across);
    const Vec centre = FromPoint(start) + radius * LeftOf(unit);
    const double from = Angle(FromPoint(start) - centre);
    const double sweep = SweepBetween(from, Angle(FromPoint(end) - centre),
                                      radius > 0 ? Direction::counterClockwise : Direction::clockwise);
    return CreateCRA(ToPoint(centre), static_cast<float>(std::fabs(radius)), ToPoint({from, from + sweep}));
}

void CSectArc::GetBezierPoints(int capacity, int& count, point_2d* points) const noexcept {
    constexpr double LONGEST_SEGMENT = TURN / 6;                      // 60 degrees: off by 2.4e-5 of the radius
    constexpr double LONGEST_TO_FIT = 1.25 * LONGEST_SEGMENT + 1e-6;  // 75 degrees: 9.1e-5
    count = 0;
    if (!m_bMade || capacity < 1 || !std::isfinite(m_fStart) || !std::isfinite(m_fEnd)) return;
    EllipticArc arc = Circle(m_ptCentre, m_fRadius, m_fStart, SweepOf(m_fStart, m_fEnd));
    const int room = (capacity - 1) / 3;
    if (std::fabs(arc.sweep) > std::max(TURN, room * LONGEST_TO_FIT)) {
        const double turn = std::copysign(TURN, arc.sweep);
        arc.start += arc.sweep - turn;
        arc.sweep = turn;
    }
    points[count++] = arc.At(arc.start);
    if (arc.sweep == 0 || m_fRadius == 0 || room == 0) return;
    const int segments = Pieces(std::fabs(arc.sweep) / LONGEST_SEGMENT - 1e-6, 1, room);
    const double step = arc.sweep / segments;
    const double handle = 4.0 / 3.0 * std::tan(step / 4);  // its length in radii for which the curve's middle is exact
    const auto at = [this](Vec unit) { return ToPoint(FromPoint(m_ptCentre) + m_fRadius * unit); };
    for (int i = 0; i < segments; ++i) {
        const double s = arc.start + step * i;
        const double t = arc.start + step * (i + 1);
        const Vec from = {std::cos(s), std::sin(s)};
        const Vec to = {std::cos(t), std::sin(t)};
        points[count++] = at(from + handle * LeftOf(from));
        points[count++] = at(to - handle * LeftOf(to));
        points[count++] = at(to);
    }
    if (arc.IsFullTurn()) points[count - 1] = points[0];
}

// Circles, ellipses, points

CSectObject* CSectCircle::Clone() const {
    auto copy = std::make_unique<CSectCircle>();
    copy->m_ptCentre = m_ptCentre;
    copy->m_fRadius = m_fRadius;
    return copy.release();
}

int CSectCircle::CreateCR(point_2d centre, float radius) noexcept {
    if (!(radius > 0)) return 0;
    m_ptCentre = centre;
    m_fRadius = radius;
    return 1;
}

void CSectCircle::Flatten(float tolerance, std::vector<point_2d>& out) const {
    FlattenArc(Circle(m_ptCentre, m_fRadius, 0, TURN), tolerance, AppendTo(out));
}

CSectObject* CSectEllipse::Clone() const {
    auto copy = std::make_unique<CSectEllipse>();
    copy->Create(m_ptCentre, m_fA, m_fB, m_fAngle, 0);
    return copy.release();
}

CSectObject* CSectEllipse::Simplify(float) const { return Clone(); }

void CSectEllipse::Create(point_2d centre, float a, float b, float angle, int) noexcept {
    m_ptCentre = centre;
    m_fA = a;
    m_fB = b;
    m_fAngle = angle;
}

void CSectEllipse::Flatten(float tolerance, std::vector<point_2d>& out) const {
    FlattenArc(Ellipse(m_ptCentre, m_fA, m_fB, m_fAngle), tolerance, AppendTo(out));
}

CSectObject* CSectPoint::Clone() const {
    auto copy = std::make_unique<CSectPoint>();
    copy->m_pt = m_pt;
    return copy.release();
}

void CSectPoint::Flatten(float, std::vector<point_2d>& out) const { out.push_back(m_pt); }

// Lists

CSectionList::~CSectionList() { FreeSections()(m_pHead); }

void CSectionList::Create(CSectObject* first, CSectObject*, int, int) noexcept { AddSectToTail(first); }

void CSectionList::AddSectToTail(CSectObject* section) noexcept {
    if (!section) return;
    (m_pTail ? m_pTail->m_pNext : m_pHead) = section;
    m_pTail = section;
    while (m_pTail->m_pNext) m_pTail = m_pTail->m_pNext;
}

// Flattening into blocks

int ArcToLine(point_2d centre, float radius, float start, float end, float tolerance, point_2d* out) noexcept {
    return FlattenArc(Circle(centre, radius, start, SweepOf(start, end)), tolerance, WriteTo(out));
}

int CircleToLine(point_2d centre, float radius, float tolerance, point_2d* out) noexcept {
    return FlattenArc(Circle(centre, radius, 0, TURN), tolerance, WriteTo(out));
}

int EllipseToLine(point_2d centre, float a, float b, float angle, float tolerance, point_2d* out) noexcept {
    return FlattenArc(Ellipse(centre, a, b, angle), tolerance, WriteTo(out));
}
