// Each figure is taken apart into pieces: lines, arcs and other curves. Arcs are merged, then the figure is written
// anew. An arc that was recognised by its distance leaves its ends in other directions than the curve did: it yields
// to a chain of arcs where that would bend a joint that is smooth in the drawing.
#include "drawing/passes/RecogniseArcs.h"

#include <algorithm>
#include <numbers>
#include <optional>

#include "drawing/Section.h"
#include "drawing/Work.h"
#include "drawing/passes/ArcFitting.h"
#include "drawing/passes/BiarcChain.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180;
constexpr double kSmooth = 0.1 * kDegree;  // a joint that turns by less is smooth
constexpr double kAdapt = 1 * kDegree;     // how far a chain's end turns to meet its neighbour smoothly
constexpr double kHair = 0.001;            // mm: the gaps that the plug-in leaves between sections, and their lines

constexpr double kBent = 3 * kDegree;          // the least turn that makes an arc of a curve as flat as a line
constexpr double kRoundTurn = 0.1;             // by how much the arcs of a circle may miss a whole turn
constexpr double kMostSweep = 2 * kPi - 0.01;  // of an arc whose ends can still be told apart

// A section; or, when they are one arc, several from the first to the last.
struct Piece {
    SegmentKind kind = SegmentKind::Line;  // what comes out: a curve stands for a chain of arcs
    bool exact = false;                    // an arc by its form; others are by their distance
    double sweep = 0;                      // of an arc
    Section first;
    Section last;
    std::size_t count = 1;

    const Point& Start() const { return first.Start(); }
    const Point& End() const { return last.End(); }
    bool IsHair() const { return kind == SegmentKind::Line && Distance(Start(), End()) <= kHair; }
    bool IsArc() const { return kind == SegmentKind::Arc; }
};

Point Unit(const Point& a) { return (1 / Norm(a)) * a; }

// The directions in which a line or arc of the result leaves its start and comes to its end.
Point LeavingTangent(const Piece& piece) { return Unit(Turned(piece.End() - piece.Start(), -piece.sweep / 2)); }
Point ArrivingTangent(const Piece& piece) { return Unit(Turned(piece.End() - piece.Start(), piece.sweep / 2)); }

bool IsFinite(const Figure& figure) {
    return std::all_of(figure.points.begin(), figure.points.end(),
                       [](const Point& point) { return std::isfinite(point.x) && std::isfinite(point.y); });
}

class CArcRecogniser {
public:
    explicit CArcRecogniser(const ArcSettings& settings) : m_Settings(settings) {}

    void Convert(Figure& figure);

private:
    void TakeApart(const Figure& figure);
    Piece Classify(const Section& section) const;
    std::optional<Figure> MakeCircle(const Figure& figure) const;
    void StartBetweenArcs();
    void Merge();
    std::optional<double> SweepOfRun(std::size_t first, std::size_t count) const;
    bool RunFollows(std::size_t first, std::size_t count, double sweep) const;
    bool BendsSmoothJoint(std::size_t first, std::size_t count, double sweep) const;
    Figure Rebuild(const Figure& figure) const;

    // The piece before or after, around the end of a closed figure; null at the ends of an open one.
    const Piece* Before(const std::vector<Piece>& pieces, std::size_t i) const {
        return i > 0 ? &pieces[i - 1] : m_bRound ? &pieces.back() : nullptr;
    }
    const Piece* After(const std::vector<Piece>& pieces, std::size_t i) const {
        return i + 1 < pieces.size() ? &pieces[i + 1] : m_bRound ? &pieces.front() : nullptr;
    }

    const ArcSettings m_Settings;
    bool m_bRound = false;        // the figure is closed, and its last section ends where its first begins
    std::vector<Piece> m_Pieces;  // one for each section
    std::vector<Piece> m_Merged;  // as they come out
};

void CArcRecogniser::Convert(Figure& figure) {
    if (figure.segments.empty() || figure.IsPolyline() || figure.IsCircle()) return;
    TakeApart(figure);
    if (std::optional<Figure> circle = MakeCircle(figure)) {
        figure = *std::move(circle);
        return;
    }
    StartBetweenArcs();
    Merge();
    figure = Rebuild(figure);
}

void CArcRecogniser::TakeApart(const Figure& figure) {
    m_bRound = figure.closed && figure.points.back() == figure.points.front();
    m_Pieces.clear();
    const bool finite = IsFinite(figure);
    ForEachSection(figure, [&](const Section& section) {
        const Piece piece = finite ? Classify(section) : Piece{.first = section, .last = section};
        // A curve that goes nowhere is no section of the result; a line that does was drawn as a dot.
        if (section.kind == SegmentKind::Curve && piece.kind == SegmentKind::Line && piece.Start() == piece.End())
            return;
        m_Pieces.push_back(piece);
    });
}

Piece CArcRecogniser::Classify(const Section& section) const {
    Piece piece{.kind = section.kind, .first = section, .last = section};
    if (section.kind == SegmentKind::Line) return piece;
    if (section.kind == SegmentKind::Arc) {
        piece.sweep = ShapeOf(section).sweep;
        piece.exact = true;
        if (piece.sweep == 0) piece.kind = SegmentKind::Line;
        return piece;
    }
    const auto setArc = [&piece](std::optional<double> sweep) {
        if (!sweep) return false;
        piece.kind = SegmentKind::Arc;
        piece.sweep = *sweep;
        return true;
    };
    const std::optional<double> byForm = SweepOfArcForm(section.points);
    if (IsStraight(section.points) && !(byForm && std::fabs(*byForm) > kBent))
        piece.kind = SegmentKind::Line;
    else if (setArc(byForm))
        piece.exact = true;
    else
        setArc(SweepOfArcWithin(section.points, m_Settings.arcTolerance));
    return piece;
}

// The circle that all pieces go once around, by least squares: the one whose squared distances from the centre differ
// least from its squared radius (Kåsa's).
std::optional<Figure> CArcRecogniser::MakeCircle(const Figure& figure) const {
    if (m_Pieces.empty() || Distance(figure.points.back(), figure.points.front()) > kHair) return std::nullopt;
    if (!figure.closed && figure.points.back() != figure.points.front()) return std::nullopt;
    double sweep = 0, magnitude = 0;
    for (const Piece& piece : m_Pieces) {
        if (!piece.IsArc() && !piece.IsHair()) return std::nullopt;
        sweep += piece.sweep;
        magnitude += std::fabs(piece.sweep);
    }
    if (std::fabs(sweep) != magnitude || std::fabs(magnitude - 2 * kPi) > kRoundTurn) return std::nullopt;

    std::vector<Point> samples;
    for (const Piece& piece : m_Pieces) {
        if (!piece.IsArc()) continue;
        const Point arc[] = {piece.Start(), MiddleOfArc(piece.Start(), piece.End(), piece.sweep), piece.End()};
        const auto steps = static_cast<int>(std::ceil(std::fabs(piece.sweep) / (kPi / 8)));
        for (int i = 0; i < steps; ++i)
            samples.push_back(PointAt({SegmentKind::Arc, arc}, static_cast<double>(i) / steps));
    }
    const double share = 1 / static_cast<double>(samples.size());
    Point middle;
    for (const Point& sample : samples) middle = middle + share * sample;
    double xx = 0, xy = 0, yy = 0;
    Point moment;
    for (const Point& sample : samples) {
        const Point d = sample - middle;
        xx += d.x * d.x;
        xy += d.x * d.y;
        yy += d.y * d.y;
        moment = moment + (Dot(d, d) / 2) * d;
    }
    const double determinant = xx * yy - xy * xy;
    if (!(determinant > 0)) return std::nullopt;
    const Point centre =
        middle + Point{(moment.x * yy - moment.y * xy) / determinant, (moment.y * xx - moment.x * xy) / determinant};
    double radius = 0;
    for (const Point& sample : samples) radius += share * Distance(sample, centre);

    const auto lies = [&](const Point& point) {
        return std::fabs(Distance(point, centre) - radius) <= m_Settings.arcTolerance;
    };
    if (!std::all_of(samples.begin(), samples.end(), lies)) return std::nullopt;
    for (const Piece& piece : m_Pieces) {
        constexpr int kSteps = 8;
        if (!piece.IsArc() || piece.exact) continue;
        for (int i = 1; i < kSteps; ++i)
            if (!lies(PointAt(piece.first, static_cast<double>(i) / kSteps))) return std::nullopt;
    }
    Figure circle;
    circle.color = figure.color;
    circle.closed = true;
    circle.points = {{centre.x + radius, centre.y}};
    circle.AddArc({centre.x - radius, centre.y}, circle.points.front());
    return circle;
}

// If the last arc of a closed figure goes on in its first, its pieces begin at another joint, if there is one that
// parts two arcs or is no joint of arcs.
void CArcRecogniser::StartBetweenArcs() {
    if (!m_bRound || m_Pieces.size() < 3 || !SweepOfRun(m_Pieces.size() - 1, 2)) return;
    for (std::size_t i = 0; i + 1 < m_Pieces.size(); ++i) {
        if (SweepOfRun(i, 2)) continue;
        std::rotate(m_Pieces.begin(), m_Pieces.begin() + static_cast<std::ptrdiff_t>(i) + 1, m_Pieces.end());
        return;
    }
}

// Runs of pieces that are one arc are looked for by doubling and halving, so that long ones cost n log n.
void CArcRecogniser::Merge() {
    m_Merged.clear();
    for (std::size_t i = 0; i < m_Pieces.size();) {
        std::size_t good = 1;
        std::optional<double> sweep;
        const auto reach = [&](std::size_t count) {
            const std::optional<double> found = SweepOfRun(i, count);
            if (found) {
                good = count;
                sweep = found;
            }
            return found.has_value();
        };
        const std::size_t left = m_Pieces.size() - i;
        std::size_t bad = left + 1;
        if (m_Pieces[i].IsArc() && left > 1) {
            // A hair between two arcs goes with them.
            const std::size_t next = left > 2 && m_Pieces[i + 1].IsHair() ? 3 : 2;
            if (reach(next)) {
                while (2 * good <= left && reach(2 * good)) continue;
                bad = std::min(bad, 2 * good);
                while (bad - good > 1) {
                    const std::size_t count = (good + bad) / 2;
                    if (!reach(count)) bad = count;
                }
            }
        }
        if (good > 1 && BendsSmoothJoint(i, good, *sweep)) good = 1;

        Piece piece = m_Pieces[i];
        if (good > 1) {
            piece.last = m_Pieces[i + good - 1].last;
            piece.sweep = *sweep;
            piece.count = good;
        } else if (piece.IsArc() && !piece.exact && BendsSmoothJoint(i, 1, piece.sweep)) {
            piece.kind = SegmentKind::Curve;
        }
        m_Merged.push_back(piece);
        i += good;
    }
}

// What the arc turns that all these pieces, counted around the end, lie on; nothing if there is none.
std::optional<double> CArcRecogniser::SweepOfRun(std::size_t first, std::size_t count) const {
    const auto at = [this](std::size_t i) -> const Piece& { return m_Pieces[i % m_Pieces.size()]; };
    if (!at(first).IsArc() || !at(first + count - 1).IsArc() || at(first).Start() == at(first + count - 1).End())
        return std::nullopt;
    CWorkLimit::Count(count);
    double sweep = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        const bool goesOn = at(i).IsArc() ? at(i).sweep * at(first).sweep > 0 : at(i).IsHair();
        if (!goesOn) return std::nullopt;
        sweep += at(i).sweep;
        if (std::fabs(sweep) > kMostSweep) return std::nullopt;
    }
    if (RunFollows(first, count, sweep)) return sweep;

    // The arc through the joint nearest to the middle, where the ends of the run are too noisy to tell.
    double passed = 0;
    std::size_t middle = first;
    for (; middle + 2 < first + count && std::fabs(passed + at(middle).sweep) < std::fabs(sweep) / 2; ++middle)
        passed += at(middle).sweep;
    const Point& joint = at(middle).End();
    const double through = 2 * AngleBetween(joint - at(first).Start(), at(first + count - 1).End() - joint);
    if (through * sweep > 0 && std::fabs(through) < kMostSweep && RunFollows(first, count, through)) return through;
    return std::nullopt;
}

bool CArcRecogniser::RunFollows(std::size_t first, std::size_t count, double sweep) const {
    const auto at = [this](std::size_t i) -> const Piece& { return m_Pieces[i % m_Pieces.size()]; };
    const CArcGauge arc(at(first).Start(), at(first + count - 1).End(), sweep);
    const auto lies = [&](const Point& point) { return std::fabs(arc.Outside(point)) <= m_Settings.arcTolerance; };
    for (std::size_t i = first; i < first + count; ++i) {
        const Piece& piece = at(i);
        if (!lies(piece.End())) return false;
        if (piece.exact && !lies(MiddleOfArc(piece.Start(), piece.End(), piece.sweep))) return false;
        if (!piece.IsArc() || piece.exact) continue;
        constexpr int kSteps = 8;
        for (int step = 1; step < kSteps; ++step)
            if (!lies(PointAt(piece.first, static_cast<double>(step) / kSteps))) return false;
    }
    return true;
}

// Whether two sections meet smoothly in the drawing.
bool IsSmooth(const Piece& before, const Piece& after) {
    const Point arriving = EndTangent(before.last), leaving = StartTangent(after.first);
    return Dot(arriving, leaving) > 0 && std::fabs(Cross(arriving, leaving)) <= std::sin(kSmooth);
}

// The direction of the drawing at a smooth joint.
Point JointTangent(const Piece& before, const Piece& after) {
    return Unit(EndTangent(before.last) + StartTangent(after.first));
}

// Whether an arc in place of these pieces would put a bend where the drawing has none. Both arcs at a joint may turn by
// half of what is still smooth.
bool CArcRecogniser::BendsSmoothJoint(std::size_t first, std::size_t count, double sweep) const {
    const std::size_t last = first + count - 1;
    const Piece arc{
        .kind = SegmentKind::Arc, .sweep = sweep, .first = m_Pieces[first].first, .last = m_Pieces[last].last};
    const auto bends = [](const Point& own, const Point& joint, double limit) {
        return std::fabs(AngleBetween(own, joint)) > limit;
    };
    const Piece* before = Before(m_Pieces, first);
    if (before != nullptr && IsSmooth(*before, m_Pieces[first])) {
        const bool line = before->kind == SegmentKind::Line;
        const Point joint = line ? ArrivingTangent(*before) : JointTangent(*before, m_Pieces[first]);
        if (bends(LeavingTangent(arc), joint, line ? kSmooth : kSmooth / 2)) return true;
    }
    const Piece* after = After(m_Pieces, last);
    if (after != nullptr && IsSmooth(m_Pieces[last], *after)) {
        const bool line = after->kind == SegmentKind::Line;
        const Point joint = line ? LeavingTangent(*after) : JointTangent(m_Pieces[last], *after);
        if (bends(ArrivingTangent(arc), joint, line ? kSmooth : kSmooth / 2)) return true;
    }
    return false;
}

Figure CArcRecogniser::Rebuild(const Figure& figure) const {
    Figure result;
    result.color = figure.color;
    result.closed = figure.closed;
    result.points.assign(1, m_Merged.empty() ? figure.points.front() : m_Merged.front().Start());
    if (m_Merged.empty()) result.AddLine(figure.points.front());
    for (std::size_t i = 0; i < m_Merged.size(); ++i) {
        const Piece& piece = m_Merged[i];
        if (piece.kind == SegmentKind::Line) {
            result.AddLine(piece.End());
        } else if (piece.IsArc()) {
            if (piece.count == 1 && piece.first.kind == SegmentKind::Arc)
                result.AddArc(piece.first.points[1], piece.End());
            else
                AppendArcOrLine(result, piece.End(), piece.sweep);
        } else {
            // Where the drawing is smooth the chain meets what has come of its neighbour.
            const auto adapted = [](const Point& own, const Point& other) {
                return std::fabs(AngleBetween(own, other)) < kAdapt ? other : own;
            };
            Point leaving = StartTangent(piece.first), arriving = EndTangent(piece.last);
            const Piece* before = Before(m_Merged, i);
            const Piece* after = After(m_Merged, i);
            if (before != nullptr && IsSmooth(*before, piece))
                leaving = adapted(leaving, before->kind == SegmentKind::Curve ? JointTangent(*before, piece)
                                                                              : ArrivingTangent(*before));
            if (after != nullptr && IsSmooth(piece, *after))
                arriving = adapted(
                    arriving, after->kind == SegmentKind::Curve ? JointTangent(piece, *after) : LeavingTangent(*after));
            AppendBiarcs(result, piece.first.points, leaving, arriving, m_Settings.flatness);
        }
    }
    return result;
}

}  // namespace

std::vector<Figure> RecogniseArcs(std::vector<Figure> figures, const ArcSettings& settings) {
    CArcRecogniser recogniser(settings);
    for (Figure& figure : figures) recogniser.Convert(figure);
    return figures;
}
