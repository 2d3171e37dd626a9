// First every end gets at most one partner, then figures are walked along partners from end to end.
#include "drawing/passes/JoinContours.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <numbers>
#include <optional>
#include <tuple>
#include <utility>

#include "drawing/Section.h"
#include "drawing/passes/ArcFitting.h"
#include "drawing/passes/BoxIndex.h"

namespace {

constexpr double kMostTurn = std::numbers::pi / 180;
constexpr double kHair = 0.001;  // mm: a section up to this length tells no direction

// How many ends near one another are looked at for those that go on straight.
constexpr std::size_t kMostNeighbours = 64;

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

// Ends go by number: twice that of their figure for its start, one more for its end.
std::uint32_t OtherEnd(std::uint32_t end) { return end ^ 1; }

struct End {
    Point at;
    Point outward;  // unit vector in which the figure would go on; 0, 0 if nothing tells it
    std::uint32_t partner = kNone;
    bool isOpen = false;  // of a figure that can be joined
};

bool IsFinite(const Figure& figure) {
    return std::all_of(figure.points.begin(), figure.points.end(),
                       [](const Point& point) { return std::isfinite(point.x) && std::isfinite(point.y); });
}

Figure Reversed(const Figure& figure) {
    Figure result = figure;
    std::reverse(result.points.begin(), result.points.end());
    std::reverse(result.segments.begin(), result.segments.end());
    return result;
}

// Puts the last point elsewhere: a curve keeps its direction there, an arc what it turns.
void MoveEnd(Figure& figure, const Point& to) {
    Point* end = &figure.points.back();
    if (*end == to) return;
    if (figure.segments.back() == SegmentKind::Curve) end[-1] = end[-1] + (to - *end);
    if (figure.segments.back() == SegmentKind::Arc) {
        const double sweep = ShapeOfArc(end[-2], end[-1], *end).sweep;
        end[-1] = MiddleOfArc(end[-2], to, sweep);
    }
    *end = to;
}

void MoveStart(Figure& figure, const Point& to) {
    if (figure.points.front() == to) return;
    figure = Reversed(figure);
    MoveEnd(figure, to);
    figure = Reversed(figure);
}

// Appends what begins where the figure ends.
void Append(Figure& figure, const Figure& next) {
    figure.points.insert(figure.points.end(), next.points.begin() + 1, next.points.end());
    figure.segments.insert(figure.segments.end(), next.segments.begin(), next.segments.end());
}

class CJoiner {
public:
    CJoiner(std::vector<Figure>& figures, double reach) : m_Figures(figures), m_dReach(reach) {}

    JoinReport Join();

private:
    void FindEnds();
    void FindPartners();
    bool MayMeet(std::uint32_t a, std::uint32_t b) const;
    template <class Visit>
    void ForEachNear(std::uint32_t end, double reach, Visit visit);
    std::optional<std::uint32_t> OnlyNear(std::uint32_t end, double reach);
    void JoinLonePairs(double reach);
    void JoinStraightPairs();
    void Link(std::uint32_t a, std::uint32_t b);
    void Walk(std::uint32_t first);

    std::vector<Figure>& m_Figures;
    const double m_dReach;
    std::vector<End> m_Ends;
    std::map<std::uint32_t, CBoxIndex<2>> m_Index;  // by colour
    std::vector<bool> m_Gone;                       // figures that went into another
    std::vector<std::uint32_t> m_Found;             // scratch
    JoinReport m_Report;
};

JoinReport CJoiner::Join() {
    FindEnds();
    FindPartners();
    m_Gone.assign(m_Figures.size(), false);
    for (std::uint32_t end = 0; end < m_Ends.size(); end += 2)
        if (!m_Gone[end / 2] && (m_Ends[end].partner != kNone || m_Ends[end + 1].partner != kNone)) Walk(end);
    std::size_t next = 0;
    std::erase_if(m_Figures, [&](const Figure&) { return m_Gone[next++]; });
    return m_Report;
}

void CJoiner::FindEnds() {
    m_Ends.resize(2 * m_Figures.size());
    for (std::uint32_t i = 0; i < m_Figures.size(); ++i) {
        const Figure& figure = m_Figures[i];
        if (figure.closed || figure.segments.empty() || !IsFinite(figure)) continue;
        End &start = m_Ends[2 * i], &end = m_Ends[2 * i + 1];
        start.at = figure.points.front();
        end.at = figure.points.back();
        start.isOpen = end.isOpen = true;
        bool first = true;
        ForEachSection(figure, [&](const Section& section) {
            const bool hair = section.kind == SegmentKind::Line && Distance(section.Start(), section.End()) <= kHair;
            if (hair) return;
            if (first) start.outward = -1 * StartTangent(section);
            first = false;
            end.outward = EndTangent(section);
        });
    }
}

void CJoiner::FindPartners() {
    std::map<std::uint32_t, std::vector<std::pair<IndexBox<2>, std::uint32_t>>> places;
    for (std::uint32_t i = 0; i < m_Ends.size(); ++i) {
        const Point& at = m_Ends[i].at;
        if (m_Ends[i].isOpen) places[m_Figures[i / 2].color].push_back({{{at.x, at.y}, {at.x, at.y}}, i});
    }
    for (const auto& [color, boxes] : places) m_Index.emplace(color, CBoxIndex<2>(boxes));
    JoinLonePairs(m_dReach);
    JoinStraightPairs();
    if (m_dReach > 0) JoinLonePairs(0);
}

// Whether two ends may become one. Those of one figure may if it is long enough.
bool CJoiner::MayMeet(std::uint32_t a, std::uint32_t b) const {
    if (a == b) return false;
    return b != OtherEnd(a) || Length(m_Figures[a / 2]) > m_dReach;
}

// Visits the ends without partner that may meet this one, until `visit` answers false.
template <class Visit>
void CJoiner::ForEachNear(std::uint32_t end, double reach, Visit visit) {
    const Point& at = m_Ends[end].at;
    m_Index[m_Figures[end / 2].color].FindUntil(
        {{at.x - reach, at.y - reach}, {at.x + reach, at.y + reach}}, [&](std::uint32_t other) {
            if (m_Ends[other].partner != kNone || Distance(at, m_Ends[other].at) > reach || !MayMeet(end, other))
                return true;
            return visit(other);
        });
}

// The one end that meets this one; nothing if none does, or several do.
std::optional<std::uint32_t> CJoiner::OnlyNear(std::uint32_t end, double reach) {
    std::optional<std::uint32_t> only;
    bool several = false;
    ForEachNear(end, reach, [&](std::uint32_t other) {
        several = only.has_value();
        only = other;
        return !several;
    });
    return several ? std::nullopt : only;
}

void CJoiner::JoinLonePairs(double reach) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs;
    for (std::uint32_t i = 0; i < m_Ends.size(); ++i) {
        if (!m_Ends[i].isOpen || m_Ends[i].partner != kNone) continue;
        const std::optional<std::uint32_t> other = OnlyNear(i, reach);
        if (other && i < *other && OnlyNear(*other, reach) == i) pairs.emplace_back(i, *other);
    }
    for (const auto& [a, b] : pairs) Link(a, b);
}

void CJoiner::JoinStraightPairs() {
    struct Pair {
        bool apart;
        double turn;
        double gap;
        std::uint32_t a, b;
        auto Order() const { return std::tie(apart, turn, gap, a, b); }
    };
    std::vector<Pair> pairs;
    for (std::uint32_t i = 0; i < m_Ends.size(); ++i) {
        if (!m_Ends[i].isOpen || m_Ends[i].partner != kNone || m_Ends[i].outward == Point()) continue;
        std::size_t seen = 0;
        ForEachNear(i, m_dReach, [&](std::uint32_t other) {
            const double turn = std::fabs(AngleBetween(m_Ends[i].outward, -1 * m_Ends[other].outward));
            const double gap = Distance(m_Ends[i].at, m_Ends[other].at);
            if (i < other && m_Ends[other].outward != Point() && turn < kMostTurn)
                pairs.push_back({gap > 0, turn, gap, i, other});
            return ++seen < kMostNeighbours;
        });
    }
    std::sort(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) { return a.Order() < b.Order(); });
    for (const Pair& pair : pairs)
        if (m_Ends[pair.a].partner == kNone && m_Ends[pair.b].partner == kNone) Link(pair.a, pair.b);
}

void CJoiner::Link(std::uint32_t a, std::uint32_t b) {
    m_Ends[a].partner = b;
    m_Ends[b].partner = a;
}

// Makes one figure of all that hangs together with this one, which is the first painted of them.
void CJoiner::Walk(std::uint32_t first) {
    std::vector<std::uint32_t> starts;  // the end at which each piece is entered, in order
    std::uint32_t start = first;
    while (m_Ends[start].partner != kNone && OtherEnd(m_Ends[start].partner) != first)
        start = OtherEnd(m_Ends[start].partner);
    const bool round = m_Ends[start].partner != kNone;
    if (round) start = first;
    for (std::uint32_t at = start;;) {
        starts.push_back(at);
        const std::uint32_t next = m_Ends[OtherEnd(at)].partner;
        if (next == kNone || next == start) break;
        at = next;
    }
    Figure result;
    for (const std::uint32_t entered : starts) {
        Figure piece = entered % 2 == 0 ? m_Figures[entered / 2] : Reversed(m_Figures[entered / 2]);
        if (result.segments.empty()) {
            result = std::move(piece);
        } else {
            const Point joint = result.points.back() == piece.points.front()
                                    ? piece.points.front()
                                    : 0.5 * (result.points.back() + piece.points.front());
            MoveEnd(result, joint);
            MoveStart(piece, joint);
            Append(result, piece);
        }
        m_Gone[entered / 2] = true;
    }
    if (round) {
        const Point joint = result.points.back() == result.points.front()
                                ? result.points.front()
                                : 0.5 * (result.points.back() + result.points.front());
        MoveEnd(result, joint);
        MoveStart(result, joint);
        result.closed = true;
    }
    if (starts.size() > 1) {
        ++m_Report.contours;
        m_Report.pieces += starts.size();
    } else {
        ++m_Report.closed;
    }
    m_Gone[first / 2] = false;
    m_Figures[first / 2] = std::move(result);
}

}  // namespace

JoinReport JoinContours(std::vector<Figure>& figures, double reach) { return CJoiner(figures, reach).Join(); }
