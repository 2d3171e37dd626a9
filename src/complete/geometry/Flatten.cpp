// Flattening by uniform steps of the parameter, their number from the second differences of the control points.
#include "complete/geometry/Flatten.h"

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

/// Pieces that keep within the tolerance: the distance of a cubic from its chord over a step of 1/n is at most
/// 1/8 of the step's square times the greatest second derivative, which is 6 times the greatest second difference
/// of the control points (Wang, 1984).
int CountPieces(const Point c[4], double tolerance) noexcept {
    const Point a = c[0] - c[1] - (c[1] - c[2]);
    const Point b = c[1] - c[2] - (c[2] - c[3]);
    const double difference = std::max(Length(a), Length(b));
    if (!std::isfinite(difference) || !std::isfinite(c[0].x + c[0].y + c[3].x + c[3].y)) return 1;
    if (difference == 0) return 1;
    const double pieces = tolerance > 0 ? std::ceil(std::sqrt(0.75 * difference / tolerance)) : MAX_CURVE_PIECES;
    return static_cast<int>(std::clamp(pieces, 1.0, static_cast<double>(MAX_CURVE_PIECES)));
}

/// Gives each curve of a path its pieces, with all of them bounded.
class PieceBudget {
public:
    PieceBudget(const Path& path, double tolerance) : m_dTolerance(tolerance) {
        path.Walk([&](const Segment& s) {
            if (s.op == PathOp::Curve) m_nWanted += static_cast<size_t>(Wanted(s));
        });
    }
    [[nodiscard]] int Of(const Segment& s) const noexcept {
        const int wanted = Wanted(s);
        if (m_nWanted <= MAX_FLATTENED_PIECES) return wanted;
        return std::max(1, static_cast<int>(static_cast<size_t>(wanted) * MAX_FLATTENED_PIECES / m_nWanted));
    }

private:
    [[nodiscard]] int Wanted(const Segment& s) const noexcept {
        const Point curve[4] = {s.from, s.p[0], s.p[1], s.p[2]};
        return CountPieces(curve, m_dTolerance);
    }

    double m_dTolerance;
    size_t m_nWanted = 0;
};

/// Calls add(Point) for the end of each piece of a curve.
template <class Add>
void FlattenCurve(const Segment& s, int pieces, Add add) {
    const Point curve[4] = {s.from, s.p[0], s.p[1], s.p[2]};
    for (int i = 1; i < pieces; ++i) add(OnCubic(curve, static_cast<double>(i) / pieces));
    add(s.End());
}

}  // namespace

Point OnCubic(const Point c[4], double t) noexcept {
    const double s = 1 - t;
    const double w[4] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    return {w[0] * c[0].x + w[1] * c[1].x + w[2] * c[2].x + w[3] * c[3].x,
            w[0] * c[0].y + w[1] * c[1].y + w[2] * c[2].y + w[3] * c[3].y};
}

Path FlattenPath(const Path& path, double tolerance) {
    const PieceBudget budget(path, tolerance);
    Path flat;
    path.Walk([&](const Segment& s) {
        switch (s.op) {
            case PathOp::Move:
                flat.MoveTo(s.p[0]);
                break;
            case PathOp::Line:
                flat.LineTo(s.p[0]);
                break;
            case PathOp::Curve:
                if (flat.IsEmpty()) flat.MoveTo(s.from);
                FlattenCurve(s, budget.Of(s), [&](Point p) { flat.LineTo(p); });
                break;
            case PathOp::Close:
                flat.Close();
                break;
        }
    });
    return flat;
}

Polygons FlattenToPolygons(const Path& path, double tolerance) {
    const PieceBudget budget(path, tolerance);
    Polygons polygons;
    std::vector<Point> polygon;
    bool drawn = false;
    const auto add = [&](Point p) {
        if (std::isfinite(p.x) && std::isfinite(p.y) && (polygon.empty() || !(polygon.back() == p))) {
            polygon.push_back(p);
        }
    };
    const auto end = [&] {
        while (polygon.size() > 1 && polygon.front() == polygon.back()) polygon.pop_back();
        if (drawn && !polygon.empty()) polygons.push_back(std::move(polygon));
        polygon.clear();
        drawn = false;
    };
    path.Walk([&](const Segment& s) {
        if (s.begins) {
            end();
            add(s.from);
        }
        drawn |= s.op != PathOp::Move;
        if (s.op == PathOp::Line) add(s.End());
        if (s.op == PathOp::Curve) FlattenCurve(s, budget.Of(s), add);
        if (s.op == PathOp::Close) end();
    });
    end();
    return polygons;
}

}  // namespace geometry
