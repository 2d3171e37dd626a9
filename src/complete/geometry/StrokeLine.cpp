// Subpaths as chains of pieces, their arc length, and dashes.
#include "complete/geometry/StrokeLine.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace geometry {

namespace {

Point Unit(Point v) noexcept {
    const double length = Length(v);
    return length > 0 ? (1 / length) * v : Point{1, 0};
}

Point FirstDirection(const Point p[4]) noexcept {
    for (int i = 1; i < 4; ++i) {
        if (!(p[i] == p[0])) return Unit(p[i] - p[0]);
    }
    return {1, 0};
}

bool IsUsable(Point p) noexcept {
    return std::fabs(p.x) <= STROKE_MAX_COORDINATE && std::fabs(p.y) <= STROKE_MAX_COORDINATE;
}

}  // namespace

Point StrokePiece::StartDirection() const noexcept { return FirstDirection(p); }

Point StrokePiece::EndDirection() const noexcept { return -1.0 * FirstDirection(Reversed().p); }

std::vector<StrokeLine> SplitSubpaths(const Path& path) {
    std::vector<StrokeLine> lines;
    StrokeLine line;
    bool isDrawn = false;
    bool isUsable = true;
    const auto end = [&] {
        if (isDrawn && isUsable) lines.push_back(std::move(line));
        line = {};
        isDrawn = false;
        isUsable = true;
    };
    const auto addLine = [&](Point from, Point to) {
        if (!(from == to)) line.pieces.push_back({{from, from, to, to}, false});
    };
    path.Walk([&](const Segment& s) {
        if (s.begins) {
            end();
            line.at = s.from;
            isUsable = IsUsable(s.from);
        }
        isDrawn |= s.op != PathOp::Move;
        isUsable = isUsable && IsUsable(s.End());
        switch (s.op) {
            case PathOp::Move:
                break;
            case PathOp::Line:
                addLine(s.from, s.p[0]);
                break;
            case PathOp::Curve:
                isUsable = isUsable && IsUsable(s.p[0]) && IsUsable(s.p[1]);
                if (!(s.from == s.p[0] && s.p[0] == s.p[1] && s.p[1] == s.p[2])) {
                    line.pieces.push_back({{s.from, s.p[0], s.p[1], s.p[2]}, true});
                }
                break;
            case PathOp::Close:
                addLine(s.from, s.p[0]);
                line.isClosed = !line.pieces.empty();
                end();
                break;
        }
    });
    end();
    return lines;
}

namespace {

/// Arc length along a piece, and back from a length to the parameter.
class ArcLength {
public:
    explicit ArcLength(const StrokePiece& piece) : m_Piece(piece) {
        if (!piece.isCurve) {
            m_dTotal = Length(piece.End() - piece.Start());
            return;
        }
        for (int i = 0; i < STEPS; ++i) m_dUpTo[i + 1] = m_dUpTo[i] + Over(Parameter(i), Parameter(i + 1));
        m_dTotal = m_dUpTo[STEPS];
    }
    [[nodiscard]] double Total() const noexcept { return m_dTotal; }

    /// The parameter at which a length from 0 to Total is reached.
    [[nodiscard]] double ParameterAt(double length) const noexcept {
        if (!(length > 0)) return 0;
        if (length >= m_dTotal) return 1;
        if (!m_Piece.isCurve) return length / m_dTotal;
        const auto* next = std::upper_bound(m_dUpTo + 1, m_dUpTo + STEPS, length);
        const int step = static_cast<int>(next - m_dUpTo) - 1;
        double low = Parameter(step);
        double high = Parameter(step + 1);
        const double rest = length - m_dUpTo[step];
        const double start = low;
        for (int i = 0; i < BISECTIONS; ++i) {
            const double middle = (low + high) / 2;
            (Over(start, middle) < rest ? low : high) = middle;
        }
        return (low + high) / 2;
    }

private:
    static constexpr int STEPS = 16;
    static constexpr int BISECTIONS = 36;  // of a sixteenth: to 10^-12 of the parameter

    static double Parameter(int step) noexcept { return static_cast<double>(step) / STEPS; }
    [[nodiscard]] double SpeedAt(double t) const noexcept {
        const Point* p = m_Piece.p;
        const double s = 1 - t;
        return 3 * Length(s * s * (p[1] - p[0]) + 2 * s * t * (p[2] - p[1]) + t * t * (p[3] - p[2]));
    }
    /// Gauss-Legendre quadrature of five points.
    [[nodiscard]] double Over(double from, double to) const noexcept {
        constexpr double at[5] = {-0.9061798459386640, -0.5384693101056831, 0, 0.5384693101056831, 0.9061798459386640};
        constexpr double weight[5] = {0.2369268850561891, 0.4786286704993665, 0.5688888888888889, 0.4786286704993665,
                                      0.2369268850561891};
        const double half = (to - from) / 2;
        double sum = 0;
        for (int i = 0; i < 5; ++i) sum += weight[i] * SpeedAt(from + half * (1 + at[i]));
        return half * sum;
    }

    const StrokePiece& m_Piece;
    double m_dUpTo[STEPS + 1] = {};  ///< of curves: the length up to each step
    double m_dTotal = 0;
};

/// The part of a piece between two parameters, by de Casteljau's construction.
StrokePiece PartOf(const StrokePiece& piece, double from, double to) noexcept {
    const Point* p = piece.p;
    if (!piece.isCurve) {
        const Point a = from > 0 ? Mix(p[0], p[3], from) : p[0];
        const Point b = to < 1 ? Mix(p[0], p[3], to) : p[3];
        return {{a, a, b, b}, false};
    }
    // The value of the curve's polar form at three parameters is a control point of the part.
    const auto polar = [&](double u, double v, double w) {
        const Point ab = Mix(p[0], p[1], u), bc = Mix(p[1], p[2], u), cd = Mix(p[2], p[3], u);
        return Mix(Mix(ab, bc, v), Mix(bc, cd, v), w);
    };
    return {{from > 0 ? polar(from, from, from) : p[0], polar(from, from, to), polar(from, to, to),
             to < 1 ? polar(to, to, to) : p[3]},
            true};
}

/// A place in the pattern.
class DashCursor {
public:
    DashCursor(std::span<const double> lengths, double offset) : m_Lengths(lengths) {
        double period = 0;
        for (const double length : lengths) period += length;
        if (lengths.size() % 2 != 0) period *= 2;
        double left = std::fmod(offset, period);
        if (left < 0) left += period;
        m_dLeft = lengths[0];
        while (left >= m_dLeft && left > 0) {
            left -= m_dLeft;
            Advance();
        }
        m_dLeft -= left;
    }
    [[nodiscard]] bool IsOn() const noexcept { return m_bOn; }
    [[nodiscard]] double Left() const noexcept { return m_dLeft; }
    void Use(double length) noexcept { m_dLeft -= length; }
    void Advance() noexcept {
        m_nIndex = (m_nIndex + 1) % m_Lengths.size();
        m_dLeft = m_Lengths[m_nIndex];
        m_bOn = !m_bOn;
    }

private:
    std::span<const double> m_Lengths;
    size_t m_nIndex = 0;
    double m_dLeft = 0;
    bool m_bOn = true;
};

/// Adds the dashes of one line that has pieces.
void CutLine(const StrokeLine& line, DashCursor cursor, std::vector<StrokeLine>& dashes) {
    const size_t first = dashes.size();
    const bool startsOn = cursor.IsOn();
    bool isWhole = true;
    StrokeLine dash;
    const auto begin = [&](Point at, Point direction) {
        dash = {};
        dash.at = at;
        dash.direction = direction;
    };
    begin(line.at, line.pieces.front().StartDirection());
    for (const StrokePiece& piece : line.pieces) {
        const ArcLength arc(piece);
        double done = 0;
        double from = 0;
        while (cursor.Left() < arc.Total() - done) {
            done += cursor.Left();
            const double to = arc.ParameterAt(done);
            const StrokePiece part = PartOf(piece, from, to);
            isWhole = false;
            if (cursor.IsOn()) {
                if (cursor.Left() > 0 && to > from) dash.pieces.push_back(part);
                dashes.push_back(std::move(dash));
            }
            from = to;
            cursor.Advance();
            begin(part.End(), to < 1 ? PartOf(piece, to, 1).StartDirection() : piece.EndDirection());
        }
        cursor.Use(arc.Total() - done);
        if (cursor.IsOn() && from < 1) dash.pieces.push_back(PartOf(piece, from, 1));
    }
    if (!cursor.IsOn()) return;
    if (isWhole) {
        dashes.push_back(line);
    } else if (line.isClosed && startsOn) {
        StrokeLine& start = dashes[first];
        dash.pieces.insert(dash.pieces.end(), start.pieces.begin(), start.pieces.end());
        start = std::move(dash);
    } else {
        dashes.push_back(std::move(dash));
    }
}

}  // namespace

std::vector<StrokeLine> CutDashes(std::vector<StrokeLine> lines, std::span<const double> lengths, double offset) {
    double period = 0;
    for (const double length : lengths) {
        if (!(length >= 0)) return lines;
        period += length;
    }
    if (!(period > 0) || !std::isfinite(period) || !std::isfinite(offset)) return lines;
    double count = 0;
    for (const StrokeLine& line : lines) {
        for (const StrokePiece& piece : line.pieces) count += ArcLength(piece).Total() / period;
        ++count;
    }
    if (!(count * static_cast<double>(lengths.size()) <= MAX_DASHES)) return lines;
    const DashCursor start(lengths, offset);
    std::vector<StrokeLine> dashes;
    for (const StrokeLine& line : lines) {
        if (line.pieces.empty()) {
            dashes.push_back(line);
        } else {
            CutLine(line, start, dashes);
        }
    }
    return dashes;
}

}  // namespace geometry
