#include "drawing/Check.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "drawing/Section.h"
#include "drawing/passes/BoxIndex.h"
#include "drawing/passes/RemoveDoubles.h"

namespace {

constexpr double kNearEnd = 1;          // mm
constexpr double kShortSection = 0.01;  // mm
constexpr std::size_t kMostPlaces = 100;
constexpr std::uint32_t kWhite = 0xFFFFFF;

struct End {
    Point at;
    std::uint32_t color = 0;
    std::size_t number = 0;  // in the order of the drawing
};

bool Before(const Point& a, const Point& b) { return a.x != b.x ? a.x < b.x : a.y < b.y; }

// Ends in one place are looked up once.
void CheckEnds(std::vector<End> ends, CheckReport& report) {
    std::sort(ends.begin(), ends.end(), [](const End& a, const End& b) {
        if (a.at != b.at) return Before(a.at, b.at);
        return a.color != b.color ? a.color < b.color : a.number < b.number;
    });
    std::vector<std::pair<IndexBox<2>, std::uint32_t>> boxes;
    std::vector<std::size_t> places;  // the first end of each
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const bool again = i > 0 && ends[i - 1].at == ends[i].at;
        if (again && ends[i - 1].color == ends[i].color) report.meets = true;
        if (again) continue;
        const Point& at = ends[i].at;
        boxes.push_back({{{at.x, at.y}, {at.x, at.y}}, static_cast<std::uint32_t>(places.size())});
        places.push_back(i);
    }
    const CBoxIndex<2> index(boxes);
    std::vector<End> found;
    for (std::size_t place = 0; place < places.size(); ++place) {
        const Point& at = ends[places[place]].at;
        bool isNear = false;
        index.FindUntil({{at.x - kNearEnd, at.y - kNearEnd}, {at.x + kNearEnd, at.y + kNearEnd}},
                        [&](std::uint32_t other) {
                            isNear = other != place && Distance(at, ends[places[other]].at) <= kNearEnd;
                            return !isNear;
                        });
        if (!isNear) continue;
        const std::size_t behind = place + 1 < places.size() ? places[place + 1] : ends.size();
        for (std::size_t i = places[place]; i < behind; ++i) found.push_back(ends[i]);
    }
    report.ends = found.size();
    std::sort(found.begin(), found.end(), [](const End& a, const End& b) { return a.number < b.number; });
    for (std::size_t i = 0; i < found.size() && i < kMostPlaces; ++i) report.endPlaces.push_back(found[i].at);
}

bool IsFinite(const Point& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

}  // namespace

CheckReport CheckDrawing(std::span<const Figure> figures, const CBox& page) {
    CheckReport report;
    std::vector<End> ends;
    for (const Figure& figure : figures) {
        if (figure.points.empty()) continue;
        CBox box;
        box.Add(figure);
        report.box.Add(box.Min());
        report.box.Add(box.Max());
        if (figure.color == kWhite) ++report.white;
        if (!page.IsEmpty() && (box.Max().x < page.Min().x || box.Min().x > page.Max().x ||
                                box.Max().y < page.Min().y || box.Min().y > page.Max().y))
            ++report.outsidePage;
        ForEachSection(figure, [&](const Section& section) {
            if (Length(section) < kShortSection) ++report.shortSections;
        });
        if (figure.segments.empty()) continue;
        ++(figure.closed ? report.closed : report.open);
        if (figure.closed) continue;
        for (const Point& end : {figure.points.front(), figure.points.back()})
            if (IsFinite(end)) ends.push_back({end, figure.color, ends.size()});
    }
    CheckEnds(std::move(ends), report);
    const DoublesReport doubles = MeasureDoubles(figures);
    report.doubledLength = doubles.length;
    report.doubles = doubles.sections;
    return report;
}
