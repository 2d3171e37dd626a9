// The stroker. Every contour is made of left sides: that of a line, a cap, that of the line reversed, and a cap;
// or both by themselves where the line is closed. FreeType's stroker would serve but for its outlines, which
// count their points in 16 bits, and for its fixed point, which these coordinates would have to be scaled into.
#include "complete/geometry/Stroke.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "complete/geometry/Flatten.h"
#include "complete/geometry/StrokeLine.h"
#include "graphics/Matrix.h"

namespace geometry {

namespace {

constexpr double PI = std::numbers::pi;

/// The derivatives of a cubic that its offset needs.
struct Derivatives {
    Point direction;  ///< unit vector
    double speed;     ///< of the curve
    double turning;   ///< curvature times speed, positive to the left

    /// The speed of the curve at a distance to the left: negative where it runs backwards, because the distance
    /// is greater than the radius of curvature.
    [[nodiscard]] double SpeedAt(double distance) const noexcept { return speed - distance * turning; }
};

Derivatives Derive(const StrokePiece& piece, double t) noexcept {
    const Point* p = piece.p;
    const double s = 1 - t;
    const Point a = p[1] - p[0], b = p[2] - p[1], c = p[3] - p[2];
    const Point first = 3 * (s * s * a + 2 * s * t * b + t * t * c);
    const Point second = 6 * (s * (b - a) + t * (c - b));
    const double speed = Length(first);
    if (speed > ROUNDING * (Length(a) + Length(b) + Length(c))) {
        const Point along = (1 / speed) * first;
        return {t == 0   ? piece.StartDirection()
                : t == 1 ? piece.EndDirection()
                         : along,
                speed, Cross(along, second) / speed};
    }
    // The curve stands still: the limits of both, by the rule of L'Hospital.
    const Point third = 6 * (c - b - (b - a));
    const double square = Dot(second, second);
    const Point direction = t < 0.5 ? piece.StartDirection() : piece.EndDirection();
    return {direction, 0, square > 0 ? Cross(second, third) / (2 * square) : 0};
}

void Split(const StrokePiece& piece, StrokePiece& first, StrokePiece& last) noexcept {
    const Point* p = piece.p;
    const Point ab = Mix(p[0], p[1], 0.5), bc = Mix(p[1], p[2], 0.5), cd = Mix(p[2], p[3], 0.5);
    const Point abc = Mix(ab, bc, 0.5), bcd = Mix(bc, cd, 0.5);
    const Point middle = Mix(abc, bcd, 0.5);
    first = {{p[0], ab, abc, middle}, true};
    last = {{middle, bcd, cd, p[3]}, true};
}

/// How the left sides of two pieces are joined.
struct Joint {
    enum class Kind {
        Tip,    ///< through one point; from and to lines the offsets' own ends are left out
        Bevel,  ///< straight from end to start
        Round,  ///< an arc to the right
        Pivot   ///< through the corner itself, on the inner side where pieces are too short to meet
    };
    Kind kind = Kind::Bevel;
    Point tip;
};

class Stroker {
public:
    /// half: of the line width; tolerance: both in user space.
    Stroker(const StrokeStyle& style, double half, double tolerance, Path& out)
        : m_Style(style), m_dHalf(half), m_dTolerance(tolerance), m_Out(out) {}

    /// False when the outline has grown too long.
    [[nodiscard]] bool Add(const StrokeLine& line) {
        if (line.pieces.empty()) {
            AddDot(line);
            return IsWithinBounds();
        }
        std::vector<StrokePiece> reversed;
        reversed.reserve(line.pieces.size());
        for (size_t i = line.pieces.size(); i-- > 0;) reversed.push_back(line.pieces[i].Reversed());
        if (line.isClosed) return AddClosedSide(line.pieces) && AddClosedSide(reversed);
        Begin(CapStart(line.pieces.front()));
        if (!AddOpenSide(line.pieces)) return false;
        AddCap(line.pieces.back(), false);
        if (!AddOpenSide(reversed)) return false;
        AddCap(reversed.back(), true);
        m_Out.Close();
        return true;
    }

private:
    [[nodiscard]] bool IsWithinBounds() const noexcept { return m_Out.Points().size() <= MAX_OUTLINE_POINTS; }

    void Begin(Point p) {
        m_Out.MoveTo(p);
        m_Start = m_Last = p;
    }
    /// Points may be computed in two ways, and differ by rounding only.
    [[nodiscard]] bool AreSame(Point p, Point q) const noexcept {
        const double limit = ROUNDING * (std::fabs(p.x) + std::fabs(p.y) + m_dHalf);
        return std::fabs(p.x - q.x) <= limit && std::fabs(p.y - q.y) <= limit;
    }
    void LineTo(Point p) {
        if (AreSame(p, m_Last)) return;
        m_Out.LineTo(p);
        m_Last = p;
    }
    /// The last point of a contour, which Close draws when it is the first.
    void EndAt(Point p) {
        if (!AreSame(p, m_Start)) LineTo(p);
    }
    void CurveTo(Point p1, Point p2, Point p3) {
        m_Out.CurveTo(p1, p2, p3);
        m_Last = p3;
    }

    [[nodiscard]] Point Offset(Point direction) const noexcept { return m_dHalf * LeftOf(direction); }
    [[nodiscard]] Point OffsetStart(const StrokePiece& piece) const noexcept {
        return piece.Start() + Offset(piece.StartDirection());
    }
    [[nodiscard]] Point OffsetEnd(const StrokePiece& piece) const noexcept {
        return piece.End() + Offset(piece.EndDirection());
    }

    /// A circular arc to the right around a centre, from one radius to another, in curves of a quarter at most.
    void AddArc(Point centre, Point from, Point to) {
        double angle = std::atan2(Cross(from, to), Dot(from, to));
        if (angle > PI / 2) angle -= 2 * PI;  // half a turn, which has either sign
        if (!(angle < 0)) return LineTo(centre + to);
        const int pieces = std::max(1, static_cast<int>(std::ceil(-angle / (PI / 2) - ROUNDING)));
        const double step = angle / pieces;
        // The handle of an arc of an angle has 4/3 tan(angle/4) of its radius.
        const double handle = 4.0 / 3.0 * std::tan(step / 4);
        Point a = from;
        for (int i = 1; i <= pieces; ++i) {
            const double turn = i * step;
            const Point b = i == pieces ? to : std::cos(turn) * from + std::sin(turn) * LeftOf(from);
            CurveTo(centre + a + handle * LeftOf(a), centre + b - handle * LeftOf(b), centre + b);
            a = b;
        }
    }

    // Caps

    [[nodiscard]] Point CapStart(const StrokePiece& piece) const noexcept {
        const Point direction = piece.StartDirection();
        const Point corner = OffsetStart(piece);
        return m_Style.cap == LineCap::Square ? corner - m_dHalf * direction : corner;
    }

    /// From the left side of a piece's end around it; the right side, or Close behind the last cap, goes on.
    void AddCap(const StrokePiece& piece, bool isLast) {
        const Point out = m_dHalf * piece.EndDirection();
        const Point left = LeftOf(out);
        const Point right = -1.0 * left;
        if (m_Style.cap != LineCap::Square && !piece.isCurve) LineTo(piece.End() + left);
        switch (m_Style.cap) {
            case LineCap::Butt:
                break;
            case LineCap::Round:
                AddArc(piece.End(), left, right);
                return;
            case LineCap::Square:
                LineTo(piece.End() + left + out);
                if (!isLast) LineTo(piece.End() + right + out);
                break;
        }
    }

    void AddDot(const StrokeLine& line) {
        const bool hasDirection = Dot(line.direction, line.direction) > 0;
        if (m_Style.cap == LineCap::Butt || (m_Style.cap == LineCap::Square && !hasDirection)) return;
        const Point along = m_dHalf * (hasDirection ? line.direction : Point{1, 0});
        const Point left = LeftOf(along);
        const Point at = line.at;
        if (m_Style.cap == LineCap::Round) {
            Begin(at + left);
            AddArc(at, left, -1.0 * left);
            AddArc(at, -1.0 * left, left);
        } else {
            Begin(at + left - along);
            LineTo(at + left + along);
            LineTo(at - left + along);
            LineTo(at - left - along);
        }
        m_Out.Close();
    }

    // Sides

    /// What the corner from one piece to the next makes of the left side. The length of a straight piece that an
    /// inner tip takes away is counted in the pieces' used.
    [[nodiscard]] Joint JoinOf(const StrokePiece& piece, const StrokePiece& next, double& used,
                               double& nextUsed) const {
        const Point u = piece.EndDirection();
        const Point v = next.StartDirection();
        const double turn = Cross(u, v);
        const double cosine = std::clamp(Dot(u, v), -1.0, 1.0);
        const Point corner = piece.End();
        const Point tip = corner + m_dHalf / (1 + cosine) * (LeftOf(u) + LeftOf(v));
        // The tip is away from the corner by half / cos(angle/2), an arc by half.
        const double reach = std::sqrt(2 / (1 + cosine));  // of the tip: the miter length over the line width
        const bool isFlat = cosine > 0 && m_dHalf * (reach - 1) <= m_dTolerance;
        if (turn > 0) {
            const double inset = m_dHalf * std::sqrt((1 - cosine) / (1 + cosine));
            if (!piece.isCurve && !next.isCurve && used + inset <= Length(piece.End() - piece.Start()) &&
                nextUsed + inset <= Length(next.End() - next.Start())) {
                used += inset;
                nextUsed += inset;
                return {Joint::Kind::Tip, tip};
            }
            return {isFlat ? Joint::Kind::Bevel : Joint::Kind::Pivot, {}};
        }
        if (isFlat) return {piece.isCurve || next.isCurve ? Joint::Kind::Bevel : Joint::Kind::Tip, tip};
        if (m_Style.join == LineJoin::Round) return {Joint::Kind::Round, {}};
        if (m_Style.join == LineJoin::Miter && cosine > -1 && reach <= m_Style.miterLimit)
            return {Joint::Kind::Tip, tip};
        return {Joint::Kind::Bevel, {}};
    }

    /// Where the side goes on behind a joint.
    [[nodiscard]] Point ExitOf(const Joint& joint, const StrokePiece& next) const noexcept {
        return joint.kind == Joint::Kind::Tip && !next.isCurve ? joint.tip : OffsetStart(next);
    }

    void AddJoint(const Joint& joint, const StrokePiece& piece, const StrokePiece& next, bool isLast) {
        if (joint.kind != Joint::Kind::Tip && !piece.isCurve) LineTo(OffsetEnd(piece));
        if (joint.kind == Joint::Kind::Round) {
            AddArc(piece.End(), Offset(piece.EndDirection()), Offset(next.StartDirection()));
            return;
        }
        if (joint.kind == Joint::Kind::Pivot) LineTo(piece.End());
        const Point exit = ExitOf(joint, next);
        if (joint.kind == Joint::Kind::Tip && !(exit == joint.tip)) LineTo(joint.tip);
        if (isLast) {
            EndAt(exit);
        } else {
            LineTo(exit);
        }
    }

    [[nodiscard]] bool AddClosedSide(const std::vector<StrokePiece>& pieces) {
        const size_t count = pieces.size();
        m_Used.assign(count, 0);
        m_Joints.resize(count);
        for (size_t i = 0; i < count; ++i) {
            // One piece alone is joined to itself: both of its ends use its length.
            const size_t next = (i + 1) % count;
            m_Joints[i] = JoinOf(pieces[i], pieces[next], m_Used[i], m_Used[next]);
        }
        Begin(ExitOf(m_Joints[count - 1], pieces[0]));
        for (size_t i = 0; i < count; ++i) {
            if (pieces[i].isCurve) AddCurve(pieces[i], 0);
            AddJoint(m_Joints[i], pieces[i], pieces[(i + 1) % count], i + 1 == count);
            if (!IsWithinBounds()) return false;
        }
        m_Out.Close();
        return true;
    }

    /// From the start of the first piece, where a cap has led to, to the end of the last, which a cap goes on from.
    [[nodiscard]] bool AddOpenSide(const std::vector<StrokePiece>& pieces) {
        if (m_Style.cap != LineCap::Square || pieces[0].isCurve) LineTo(OffsetStart(pieces[0]));
        double used = 0;
        for (size_t i = 0; i < pieces.size(); ++i) {
            if (pieces[i].isCurve) AddCurve(pieces[i], 0);
            if (!IsWithinBounds()) return false;
            if (i + 1 == pieces.size()) break;
            double nextUsed = 0;
            const Joint joint = JoinOf(pieces[i], pieces[i + 1], used, nextUsed);
            AddJoint(joint, pieces[i], pieces[i + 1], false);
            used = nextUsed;
        }
        return true;
    }

    // Curves

    static constexpr double COS_30 = std::numbers::sqrt3 / 2;
    static constexpr int MAX_SPLITS = 8;
    static constexpr int MAX_TURN_SPLITS = 20;  // of what turns by more than 30 degrees, as few parts can

    /// Around a point where a curve turns on the spot, or as good as: round whatever the join, as next to it.
    void AddTurn(Point at, Point direction, Point next) {
        if (Cross(direction, next) > 0 && Dot(direction, next) > -1 + ROUNDING) {
            LineTo(at);
            LineTo(at + Offset(next));
        } else {
            AddArc(at, Offset(direction), Offset(next));
        }
    }

    /// The left side of a curve, from its start, where the side is, to its end: the curve through the offsets of
    /// both ends with the derivatives there, or those of its halves.
    void AddCurve(const StrokePiece& piece, int depth) {
        const Derivatives start = Derive(piece, 0);
        const Derivatives end = Derive(piece, 1);
        const Derivatives middle = Derive(piece, 0.5);
        const double speeds[3] = {start.SpeedAt(m_dHalf), middle.SpeedAt(m_dHalf), end.SpeedAt(m_dHalf)};
        const bool isForward = speeds[0] >= 0 && speeds[1] >= 0 && speeds[2] >= 0;
        const bool isBackward = speeds[0] < 0 && speeds[1] < 0 && speeds[2] < 0;
        const double cosine = Dot(start.direction, end.direction);
        const bool isSharp = cosine < COS_30 || Dot(start.direction, middle.direction) < COS_30;
        const Point from = piece.Start() + Offset(start.direction);
        const Point to = piece.End() + Offset(end.direction);
        double handles[2] = {speeds[0] / 3, speeds[2] / 3};
        const StrokePiece side{{from, from + handles[0] * start.direction, to - handles[1] * end.direction, to}, true};
        const bool isFine = isForward ? cosine > -ROUNDING && Fits(side, piece) : isBackward && !isSharp;
        if (!isFine && depth < (isSharp ? MAX_TURN_SPLITS : MAX_SPLITS)) {
            if (!IsWithinBounds()) return;
            StrokePiece first;
            StrokePiece last;
            Split(piece, first, last);
            AddCurve(first, depth + 1);
            const Point before = first.EndDirection();
            const Point after = last.StartDirection();
            if (Dot(before, after) < 0) AddTurn(first.End(), before, after);
            return AddCurve(last, depth + 1);
        }
        LineTo(from);
        if (!isFine && isSharp) {
            AddTurn(piece.Start(), start.direction, end.direction);
            return LineTo(to);
        }
        if (isForward) {
            // What was split often enough may still bend much at one end: no handle reaches too far.
            const double most = isFine ? std::numeric_limits<double>::infinity() : Length(to - from) / 2;
            for (double& handle : handles) handle = std::min(handle, most);
            return CurveTo(from + handles[0] * start.direction, to - handles[1] * end.direction, to);
        }
        // Where the side runs backwards it would take away from what is painted. The parallel of the chord, reached
        // and left through the curve itself, paints what a corner would.
        const Point chord = piece.End() - piece.Start();
        const double length = Length(chord);
        const Point parallel = length > 0 ? Offset((1 / length) * chord) : Offset(start.direction);
        LineTo(piece.Start());
        LineTo(piece.Start() + parallel);
        LineTo(piece.End() + parallel);
        LineTo(piece.End());
        LineTo(to);
    }

    /// The side is nowhere further from the true offset than the tolerance, as far as three places can tell, and
    /// runs along with it.
    [[nodiscard]] bool Fits(const StrokePiece& side, const StrokePiece& piece) const noexcept {
        const double slip = Length(side.End() - side.Start()) / 8;
        for (const double t : {0.25, 0.5, 0.75}) {
            const Point direction = Derive(piece, t).direction;
            const Point error = OnCubic(side.p, t) - OnCubic(piece.p, t) - Offset(direction);
            if (!(std::fabs(Cross(direction, error)) <= m_dTolerance)) return false;
            if (!(std::fabs(Dot(direction, error)) <= slip + m_dTolerance)) return false;
        }
        return true;
    }

    const StrokeStyle& m_Style;
    double m_dHalf;
    double m_dTolerance;
    Path& m_Out;
    Point m_Start;  ///< of the contour
    Point m_Last;
    std::vector<Joint> m_Joints;
    std::vector<double> m_Used;
};

}  // namespace

std::optional<Path> OutlineStroke(const Path& path, const StrokeStyle& style, const double userToPath[9],
                                  double tolerance) {
    double pathToUser[9];
    MatInvert(userToPath, pathToUser);
    const double scale = std::max(std::hypot(userToPath[0], userToPath[1]), std::hypot(userToPath[3], userToPath[4]));
    const double half = std::fabs(style.width) / 2;
    Path outline;
    if (!(half <= STROKE_MAX_COORDINATE) || !std::isfinite(scale) || !(scale > 0)) return outline;

    Path inUserSpace = path;
    inUserSpace.Transform(pathToUser);
    Stroker stroker(style, half, tolerance / scale, outline);
    for (const StrokeLine& line : CutDashes(SplitSubpaths(inUserSpace), style.dashes, style.dashOffset)) {
        if (!stroker.Add(line)) return std::nullopt;
    }
    outline.Transform(userToPath);
    return outline;
}

}  // namespace geometry
