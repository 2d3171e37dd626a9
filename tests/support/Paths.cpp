#include "support/Paths.h"

#include <cstdlib>
#include <sstream>

#include "complete/geometry/Flatten.h"

using geometry::Path;
using geometry::PathOp;
using geometry::Point;
using geometry::Segment;

Path PathOf(std::string_view text) {
    Path path;
    std::istringstream in{std::string(text)};
    const auto next = [&] {
        std::string word;
        in >> word;
        return std::strtod(word.c_str(), nullptr);
    };
    const auto point = [&] {
        const double x = next();
        return Point{x, next()};
    };
    char letter = 0;
    while (in >> letter) {
        if (letter == 'm') path.MoveTo(point());
        if (letter == 'l') path.LineTo(point());
        if (letter == 'z') path.Close();
        if (letter == 'c') {
            const Point p1 = point();
            const Point p2 = point();
            path.CurveTo(p1, p2, point());
        }
    }
    return path;
}

std::string TextOf(const Path& path) {
    std::ostringstream out;
    const char* blank = "";
    path.Walk([&](const Segment& s) {
        out << blank << "mlcz"[static_cast<size_t>(s.op)];
        for (size_t i = 0; i < geometry::CountPoints(s.op); ++i) {
            // No minus before a zero.
            out << ' ' << s.p[i].x + 0.0 << ' ' << s.p[i].y + 0.0;
        }
        blank = " ";
    });
    return out.str();
}

double AreaOf(const Path& path) {
    double twice = 0;
    path.Walk([&](const Segment& s) {
        if (s.op == PathOp::Curve) {
            // Twice the integral of x dy - y dx over the Bernstein polynomials, halved.
            const Point &a = s.from, &b = s.p[0], &c = s.p[1], &d = s.p[2];
            twice += 0.6 * Cross(a, b) + 0.3 * Cross(a, c) + 0.1 * Cross(a, d) + 0.3 * Cross(b, c) + 0.3 * Cross(b, d) +
                     0.6 * Cross(c, d);
        } else {
            twice += Cross(s.from, s.End());
        }
    });
    return twice / 2;
}

double LengthOf(const Path& path) {
    double length = 0;
    geometry::FlattenPath(path, 0.001).Walk([&](const Segment& s) { length += Length(s.End() - s.from); });
    return length;
}
