// From the last painted figure to the first, each stretch is held against what stays of those after it: so what goes is
// covered by what stays, however many lie near one another. What stays is kept in a spatial index; there stretches of
// one line or circle that meet are united, so that a place where very many overlap costs no more than another.
#include "drawing/passes/RemoveDoubles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "drawing/Section.h"
#include "drawing/passes/BoxIndex.h"
#include "drawing/passes/Stretch.h"

namespace {

// A bound for drawings made to defeat the index, such as fans of very many lines within a thousandth of a millimetre:
// after so many comparisons, on the average of all sections, what is left of the drawing stays as it is.
constexpr std::size_t kComparisons = 256;

constexpr double kLongestSliver = 2 * kSamePlace;  // between two points each of which lies near enough

// The sections of a figure, with the line that closes one whose ends differ.
void SectionsOf(const Figure& figure, std::array<Point, 2>& closing, std::vector<Section>& sections) {
    sections.clear();
    ForEachSection(figure, [&sections](const Section& section) { sections.push_back(section); });
    closing = {figure.points.back(), figure.points.front()};
    if (figure.closed && !sections.empty() && closing[0] != closing[1])
        sections.push_back({SegmentKind::Line, closing.data()});
}

// A point outside the drawing that hardly a line of it points to.
Point PoleOf(std::span<const Figure> figures) {
    CBox box;
    for (const Figure& figure : figures)
        for (const Point& point : figure.points) box.Add(point);
    if (box.IsEmpty()) return {};
    return {box.Min().x - 0.61803 * box.Width() - 1, box.Min().y - 0.41421 * box.Height() - 1};
}

std::size_t CountSections(std::span<const Figure> figures) {
    std::size_t count = 0;
    for (const Figure& figure : figures) count += figure.segments.size() + 1;
    return count;
}

// A figure that is drawn as a dot: nowhere does it leave its start by more than kSamePlace.
bool IsDot(const Figure& figure) {
    const Point& start = figure.points.front();
    return std::all_of(figure.points.begin(), figure.points.end(),
                       [&start](const Point& point) { return Distance(start, point) <= kSamePlace; });
}

// Dots that stay, by their starts. A dot is drawn twice only where another dot is.
class CDots {
public:
    // Whether all of the dot lies within kSamePlace of one that stays. Otherwise it stays from now on.
    bool Covers(const Figure& dot) {
        const Point& at = dot.points.front();
        const IndexBox<2> box{{at.x - kSamePlace, at.y - kSamePlace}, {at.x + kSamePlace, at.y + kSamePlace}};
        m_Index.Find(box, m_Found);
        const auto covers = [&](std::uint32_t number) {
            return std::all_of(dot.points.begin(), dot.points.end(),
                               [&](const Point& point) { return Distance(point, m_Dots[number]) <= kSamePlace; });
        };
        if (std::any_of(m_Found.begin(), m_Found.end(), covers)) return true;
        m_Index.Insert(box, static_cast<std::uint32_t>(m_Dots.size()));
        m_Dots.push_back(at);
        return false;
    }

private:
    CBoxIndex<2> m_Index;
    std::vector<Point> m_Dots;
    std::vector<std::uint32_t> m_Found;  // scratch
};

// Finite coordinates are the reader's to see to; an index can't do without.
bool CanBeDoubled(const Figure& figure) {
    return !figure.points.empty() && std::all_of(figure.points.begin(), figure.points.end(), [](const Point& point) {
        return std::isfinite(point.x) && std::isfinite(point.y);
    });
}

class CStretchDoubles {
public:
    explicit CStretchDoubles(std::span<const Figure> figures)
        : m_Pole(PoleOf(figures)), m_nLeft(kComparisons * CountSections(figures)) {}

    // Looks at the next figure towards the first. Answers whether something of it is drawn twice.
    bool Look(const Figure& figure);

    // Appends what stays of the figure that was looked at last.
    void AppendRest(const Figure& figure, std::vector<Figure>& rest) const;

    const DoublesReport& Report() const { return m_Report; }

private:
    // A stretch of a section that is drawn twice, or that is not.
    struct Piece {
        std::size_t section = 0;
        double from = 0;
        double to = 0;
        bool goes = false;
        Point nearFrom;  // of one that goes: the points beside its ends of what stays
        Point nearTo;
        bool isSection = false;  // all of a section
    };

    void LookAt(std::size_t section);
    void Find(const Stretch& stretch);
    void Keep(const Stretch& stretch);
    void Insert(const Stretch& stretch);
    void DropSlivers(bool closed);
    void AppendPiece(const Piece& piece, Figure& figure) const;

    const Point m_Pole;
    std::size_t m_nLeft;  // comparisons
    DoublesReport m_Report;
    CDots m_Dots;
    std::array<CBoxIndex<5>, 4> m_Index;  // by kind
    std::vector<Stretch> m_Kept;          // by number
    // Of the figure that is looked at.
    std::array<Point, 2> m_Closing;
    std::vector<Section> m_Sections;
    std::vector<Stretch> m_Stretches;  // of the sections
    std::vector<Piece> m_Pieces;       // in order
    // Scratch.
    std::vector<std::uint32_t> m_Found;
    std::vector<Overlap> m_Overlaps;
    std::vector<Stretch> m_United;
};

bool CStretchDoubles::Look(const Figure& figure) {
    m_Pieces.clear();
    if (!CanBeDoubled(figure)) return false;
    if (IsDot(figure)) {
        m_Sections.clear();
        if (!m_Dots.Covers(figure)) return false;
        ++m_Report.figures;
        m_Report.sections += figure.segments.size();
        return true;
    }
    SectionsOf(figure, m_Closing, m_Sections);
    m_Stretches.clear();
    for (const Section& section : m_Sections) m_Stretches.push_back(StretchOf(section));
    for (std::size_t i = m_Sections.size(); i-- > 0;) LookAt(i);
    const auto goes = [](const Piece& piece) { return piece.goes; };
    if (std::none_of(m_Pieces.begin(), m_Pieces.end(), goes)) return false;

    std::reverse(m_Pieces.begin(), m_Pieces.end());
    DropSlivers(figure.closed);
    for (const Piece& piece : m_Pieces) {
        const Stretch& stretch = m_Stretches[piece.section];
        if (piece.goes || piece.isSection || piece.to - piece.from > kLongestSliver) continue;
        m_United.assign(1, stretch.Part(piece.from, piece.to));
        Find(m_United.front());
        Keep(stretch);
    }
    std::size_t counted = m_Sections.size();
    for (const Piece& piece : m_Pieces) {
        if (!piece.goes) continue;
        m_Report.length += piece.to - piece.from;
        if (piece.section != counted) ++m_Report.sections;
        counted = piece.section;
    }
    if (std::all_of(m_Pieces.begin(), m_Pieces.end(), goes)) ++m_Report.figures;
    return true;
}

// Appends the section's pieces from its end to its start.
void CStretchDoubles::LookAt(std::size_t section) {
    const Stretch& stretch = m_Stretches[section];
    const Piece whole{section, 0, stretch.length, false, {}, {}, true};
    if (stretch.kind == StretchKind::Speck || m_nLeft == 0) {
        m_Pieces.push_back(whole);
        return;
    }
    Find(stretch);
    m_Overlaps.clear();
    for (const std::uint32_t number : m_Found) AppendOverlaps(stretch, m_Kept[number], m_Overlaps);
    UniteOverlaps(stretch, m_Overlaps);
    if (m_Overlaps.empty()) {
        m_Pieces.push_back(whole);
        m_United.assign(1, stretch);
        Keep(stretch);
        return;
    }
    m_United.clear();
    double end = stretch.length;
    const auto stays = [&](double from) {
        if (from >= end) return;
        m_Pieces.push_back({section, from, end, false, {}, {}, false});
        // Less may still go as a sliver.
        if (end - from > kLongestSliver) m_United.push_back(stretch.Part(from, end));
    };
    for (std::size_t i = m_Overlaps.size(); i-- > 0;) {
        const Overlap& overlap = m_Overlaps[i];
        stays(overlap.to);
        m_Pieces.push_back({section, overlap.from, overlap.to, true, overlap.nearFrom, overlap.nearTo, false});
        end = overlap.from;
    }
    stays(0);
    Keep(stretch);
}

// Looks for what stays near the stretch.
void CStretchDoubles::Find(const Stretch& stretch) {
    m_Found.clear();
    if (m_nLeft == 0) return;
    m_Index[static_cast<std::size_t>(stretch.kind)].Find(IndexBoxOf(stretch, m_Pole), m_Found);
    m_nLeft -= std::min(m_nLeft, m_Found.size());
}

// Puts what stays of a stretch, in m_United, into the index, united with what it was found to meet there.
void CStretchDoubles::Keep(const Stretch& stretch) {
    if (m_Found.empty() || (m_United.empty() && m_Found.size() < 2)) {
        for (const Stretch& kept : m_United) Insert(kept);
        return;
    }
    CBoxIndex<5>& index = m_Index[static_cast<std::size_t>(stretch.kind)];
    // In the order along the stretch, so that neighbours meet.
    struct Candidate {
        double position;
        std::size_t number;  // in m_Kept; beyond it those that are new
    };
    std::vector<Candidate> order;
    const auto position = [&stretch](const Stretch& other) {
        if (stretch.kind == StretchKind::Line)
            return std::min(Dot(other.start - stretch.start, stretch.direction),
                            Dot(other.At(other.length) - stretch.start, stretch.direction));
        if (stretch.kind == StretchKind::Arc)
            return Angle(other.At(other.arc.sweep > 0 ? 0 : other.length) - stretch.arc.centre);
        return 0.0;
    };
    const std::size_t old = m_Kept.size();
    for (const std::uint32_t number : m_Found) order.push_back({position(m_Kept[number]), number});
    for (std::size_t i = 0; i < m_United.size(); ++i) order.push_back({position(m_United[i]), old + i});
    std::sort(order.begin(), order.end(), [](const Candidate& a, const Candidate& b) {
        return a.position != b.position ? a.position < b.position : a.number < b.number;
    });
    const auto at = [&](std::size_t number) -> const Stretch& {
        return number < old ? m_Kept[number] : m_United[number - old];
    };
    const auto remove = [&](std::size_t number) {
        if (number < old) index.Remove(IndexBoxOf(m_Kept[number], m_Pole), static_cast<std::uint32_t>(number));
    };
    std::vector<Stretch> united;
    for (std::size_t i = 0; i < order.size();) {
        Stretch run = at(order[i].number);
        std::size_t next = i + 1;
        while (next < order.size() && Unite(run, at(order[next].number))) {
            if (next == i + 1) remove(order[i].number);
            remove(order[next].number);
            ++next;
        }
        if (next > i + 1 || order[i].number >= old) united.push_back(run);
        i = next;
    }
    for (const Stretch& kept : united) Insert(kept);
}

void CStretchDoubles::Insert(const Stretch& stretch) {
    m_Index[static_cast<std::size_t>(stretch.kind)].Insert(IndexBoxOf(stretch, m_Pole),
                                                           static_cast<std::uint32_t>(m_Kept.size()));
    m_Kept.push_back(stretch);
}

// What stays between two stretches that go, or beside one at the end of an open figure, goes as well if all of it lies
// within kSamePlace of what stays in their place: a hair between sections, the ends of two that differ by a hair.
void CStretchDoubles::DropSlivers(bool closed) {
    const std::size_t count = m_Pieces.size();
    const auto first = static_cast<std::size_t>(
        std::find_if(m_Pieces.begin(), m_Pieces.end(), [](const Piece& piece) { return piece.goes; }) -
        m_Pieces.begin());
    const auto drop = [&](std::size_t begin, std::size_t end, const Piece* left, const Piece* right) {
        const auto isNear = [&](const Point& point) {
            return (left != nullptr && Distance(point, left->nearTo) <= kSamePlace) ||
                   (right != nullptr && Distance(point, right->nearFrom) <= kSamePlace);
        };
        double length = 0;
        for (std::size_t i = begin; i < end; ++i) {
            const Piece& piece = m_Pieces[i % count];
            const Section& section = m_Sections[piece.section];
            const bool speck = m_Stretches[piece.section].kind == StretchKind::Speck;
            if (!speck && piece.isSection) return;
            length += piece.to - piece.from;
            if (length > kLongestSliver) return;
            const Stretch& stretch = m_Stretches[piece.section];
            constexpr int kSteps = 4;
            for (int step = 0; step <= kSteps; ++step) {
                const double share = static_cast<double>(step) / kSteps;
                if (!isNear(speck ? PointAt(section, share) : stretch.At(piece.from + share * (piece.to - piece.from))))
                    return;
            }
        }
        for (std::size_t i = begin; i < end; ++i) {
            Piece& piece = m_Pieces[i % count];
            piece.goes = true;
            piece.nearFrom = piece.nearTo = left != nullptr ? left->nearTo : right->nearFrom;
        }
    };
    // Around from the first that goes, or from the start of an open figure to its end.
    std::size_t begin = closed ? first + 1 : 0;
    const std::size_t end = closed ? first + count : count;
    const Piece* left = closed ? &m_Pieces[first] : nullptr;
    for (std::size_t i = begin; i < end; ++i) {
        const Piece& piece = m_Pieces[i % count];
        if (!piece.goes) continue;
        if (i > begin) drop(begin, i, left, &piece);
        left = &piece;
        begin = i + 1;
    }
    if (begin < end) drop(begin, end, left, closed ? &m_Pieces[first] : nullptr);
}

void CStretchDoubles::AppendPiece(const Piece& piece, Figure& figure) const {
    const Section& section = m_Sections[piece.section];
    const Stretch& stretch = m_Stretches[piece.section];
    const Point start = piece.from == 0 ? section.Start() : stretch.At(piece.from);
    const Point end = piece.to == stretch.length ? section.End() : stretch.At(piece.to);
    if (figure.points.empty()) figure.points.push_back(start);
    if (piece.from == 0 && piece.to == stretch.length) {
        figure.points.insert(figure.points.end(), section.points + 1, section.points + 1 + PointsOf(section.kind));
        figure.segments.push_back(section.kind);
    } else if (stretch.kind == StretchKind::Arc) {
        figure.AddArc(
            MiddleOfArc(start, end, std::copysign((piece.to - piece.from) / stretch.arc.radius, stretch.arc.sweep)),
            end);
    } else {
        figure.AddLine(end);
    }
}

void CStretchDoubles::AppendRest(const Figure& figure, std::vector<Figure>& rest) const {
    const std::size_t count = m_Pieces.size(), before = rest.size();
    if (count == 0) return;
    std::size_t start = 0;
    if (figure.closed)
        while (!m_Pieces[start].goes) ++start;
    bool open = false;
    for (std::size_t i = start; i < start + count; ++i) {
        const Piece& piece = m_Pieces[i % count];
        if (piece.goes) {
            open = false;
            continue;
        }
        if (!open) {
            rest.emplace_back();
            rest.back().color = figure.color;
        }
        open = true;
        AppendPiece(piece, rest.back());
    }
    // The piece over the start comes first.
    if (start > 0 && open && rest.size() > before)
        std::rotate(rest.begin() + static_cast<std::ptrdiff_t>(before), rest.end() - 1, rest.end());
}

class CContourDoubles {
public:
    explicit CContourDoubles(std::span<const Figure> figures)
        : m_Pole(PoleOf(figures)), m_nLeft(kComparisons * CountSections(figures)) {}

    // Whether the next figure towards the first is covered by one that stays. Otherwise it stays itself.
    bool IsDouble(const Figure& figure);

    const DoublesReport& Report() const { return m_Report; }

private:
    // Beside the five dimensions of the stretch, the corners of its figure: one that covers another reaches as far.
    using Box = IndexBox<9>;
    static Box BoxAmong(const IndexBox<5>& stretch, const std::array<double, 4>& min, const std::array<double, 4>& max);

    bool IsCovered();
    void CoveringFigures(const Stretch& stretch);

    struct Kept {
        Stretch stretch;
        std::size_t figure = 0;
    };

    const Point m_Pole;
    std::size_t m_nLeft;  // comparisons
    DoublesReport m_Report;
    CDots m_Dots;
    std::array<CBoxIndex<9>, 4> m_Index;  // by kind
    std::vector<Kept> m_Kept;             // by number
    std::size_t m_nFigures = 0;           // that were looked at
    // Of the figure that is looked at.
    std::array<Point, 2> m_Closing;
    std::vector<Section> m_Sections;
    std::vector<Stretch> m_Stretches;
    CBox m_Box;
    // Scratch.
    std::vector<std::uint32_t> m_Found;
    std::vector<Overlap> m_Overlaps;
    std::vector<std::size_t> m_Covering;  // figures that cover a stretch, in order
};

CContourDoubles::Box CContourDoubles::BoxAmong(const IndexBox<5>& stretch, const std::array<double, 4>& min,
                                               const std::array<double, 4>& max) {
    Box box;
    std::copy(min.begin(), min.end(), std::copy(stretch.min.begin(), stretch.min.end(), box.min.begin()));
    std::copy(max.begin(), max.end(), std::copy(stretch.max.begin(), stretch.max.end(), box.max.begin()));
    return box;
}

bool CContourDoubles::IsDouble(const Figure& figure) {
    ++m_nFigures;
    if (!CanBeDoubled(figure)) return false;
    if (IsDot(figure)) {
        if (!m_Dots.Covers(figure)) return false;
        ++m_Report.figures;
        return true;
    }
    SectionsOf(figure, m_Closing, m_Sections);
    m_Stretches.clear();
    for (const Section& section : m_Sections) {
        m_Stretches.push_back(StretchOf(section));
        if (m_Stretches.back().kind == StretchKind::Speck) m_Stretches.pop_back();
    }
    m_Box = {};
    m_Box.Add(figure);
    if (IsCovered()) {
        m_Report.sections += figure.segments.size();
        m_Report.length += Length(figure);
        ++m_Report.figures;
        return true;
    }
    const std::array<double, 4> corners{m_Box.Min().x, m_Box.Min().y, m_Box.Max().x, m_Box.Max().y};
    for (const Stretch& stretch : m_Stretches) {
        m_Index[static_cast<std::size_t>(stretch.kind)].Insert(BoxAmong(IndexBoxOf(stretch, m_Pole), corners, corners),
                                                               static_cast<std::uint32_t>(m_Kept.size()));
        m_Kept.push_back({stretch, m_nFigures});
    }
    return false;
}

bool CContourDoubles::IsCovered() {
    std::vector<std::size_t> all;  // the figures that cover all stretches so far
    for (std::size_t i = 0; i < m_Stretches.size(); ++i) {
        CoveringFigures(m_Stretches[i]);
        std::vector<std::size_t> both;
        if (i == 0)
            both = m_Covering;
        else
            std::set_intersection(all.begin(), all.end(), m_Covering.begin(), m_Covering.end(),
                                  std::back_inserter(both));
        all = std::move(both);
        if (all.empty()) return false;
    }
    return !all.empty();
}

void CContourDoubles::CoveringFigures(const Stretch& stretch) {
    constexpr double kFar = std::numeric_limits<double>::max();
    const Point min = m_Box.Min() + Point{kSamePlace, kSamePlace}, max = m_Box.Max() - Point{kSamePlace, kSamePlace};
    m_Covering.clear();
    if (m_nLeft == 0) return;
    m_Index[static_cast<std::size_t>(stretch.kind)].Find(
        BoxAmong(IndexBoxOf(stretch, m_Pole), {-kFar, -kFar, max.x, max.y}, {min.x, min.y, kFar, kFar}), m_Found);
    m_nLeft -= std::min(m_nLeft, m_Found.size());
    std::sort(m_Found.begin(), m_Found.end());  // those of one figure stand together
    for (std::size_t i = 0; i < m_Found.size();) {
        const std::size_t figure = m_Kept[m_Found[i]].figure;
        m_Overlaps.clear();
        for (; i < m_Found.size() && m_Kept[m_Found[i]].figure == figure; ++i)
            AppendOverlaps(stretch, m_Kept[m_Found[i]].stretch, m_Overlaps);
        UniteOverlaps(stretch, m_Overlaps);
        if (m_Overlaps.size() == 1 && m_Overlaps[0].from == 0 && m_Overlaps[0].to == stretch.length)
            m_Covering.push_back(figure);
    }
}

}  // namespace

DoublesReport RemoveDoubles(std::vector<Figure>& figures) {
    CStretchDoubles doubles(figures);
    std::vector<std::pair<std::size_t, std::vector<Figure>>> changed;  // from the last to the first
    for (std::size_t i = figures.size(); i-- > 0;) {
        if (!doubles.Look(figures[i])) continue;
        changed.emplace_back(i, std::vector<Figure>());
        doubles.AppendRest(figures[i], changed.back().second);
    }
    if (changed.empty()) return doubles.Report();
    std::vector<Figure> result;
    result.reserve(figures.size());
    for (std::size_t i = 0; i < figures.size(); ++i) {
        if (!changed.empty() && changed.back().first == i) {
            std::move(changed.back().second.begin(), changed.back().second.end(), std::back_inserter(result));
            changed.pop_back();
        } else {
            result.push_back(std::move(figures[i]));
        }
    }
    figures = std::move(result);
    return doubles.Report();
}

DoublesReport MeasureDoubles(std::span<const Figure> figures) {
    CStretchDoubles doubles(figures);
    for (std::size_t i = figures.size(); i-- > 0;) doubles.Look(figures[i]);
    return doubles.Report();
}

DoublesReport RemoveDoubleContours(std::vector<Figure>& figures) {
    CContourDoubles doubles(figures);
    std::vector<bool> goes(figures.size());
    for (std::size_t i = figures.size(); i-- > 0;) goes[i] = doubles.IsDouble(figures[i]);
    std::size_t next = 0;
    std::erase_if(figures, [&](const Figure&) { return goes[next++]; });
    return doubles.Report();
}
