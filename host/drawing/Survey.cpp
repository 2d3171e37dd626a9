#include "drawing/Survey.h"

#include <algorithm>
#include <set>

Survey Measure(std::span<const Figure> figures) {
    Survey survey;
    std::set<std::uint32_t> seen;
    for (const Figure& figure : figures) {
        survey.box.Add(figure);
        if (seen.insert(figure.color).second) survey.colors.push_back(figure.color);
        const auto curves = std::count(figure.segments.begin(), figure.segments.end(), SegmentKind::Curve);
        survey.curves += static_cast<std::size_t>(curves);
        survey.lines += figure.segments.size() - static_cast<std::size_t>(curves);
    }
    return survey;
}
