#include "drawing/Survey.h"

#include <set>

Survey Measure(std::span<const Figure> figures) {
    Survey survey;
    std::set<std::uint32_t> seen;
    for (const Figure& figure : figures) {
        survey.box.Add(figure);
        if (seen.insert(figure.color).second) survey.colors.push_back(figure.color);
        if (figure.IsCircle()) {
            ++survey.circles;
            continue;
        }
        for (const SegmentKind kind : figure.segments)
            ++(kind == SegmentKind::Line ? survey.lines : kind == SegmentKind::Curve ? survey.curves : survey.arcs);
    }
    return survey;
}
