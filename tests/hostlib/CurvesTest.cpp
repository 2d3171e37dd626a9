// The host's curves measured against the true ones: arcs made in every way, as Bézier curves and as lines.
#include "hostout/HostCurves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

namespace {

constexpr double PI = std::numbers::pi;
constexpr double TURN = 2 * PI;
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float INFINITE = std::numeric_limits<float>::infinity();

struct Vec {
    double x;
    double y;
};

float Radians(double degrees) { return static_cast<float>(degrees * PI / 180); }

double Distance(Vec a, Vec b) { return std::hypot(a.x - b.x, a.y - b.y); }
Vec ToVec(point_2d p) { return {p.x, p.y}; }

double DistanceToChord(Vec p, Vec a, Vec b) {
    const Vec d = {b.x - a.x, b.y - a.y};
    const double length = d.x * d.x + d.y * d.y;
    const double t = length > 0 ? std::clamp(((p.x - a.x) * d.x + (p.y - a.y) * d.y) / length, 0.0, 1.0) : 0.0;
    return Distance(p, {a.x + t * d.x, a.y + t * d.y});
}

Vec OnCubic(const point_2d* p, double t) {
    const double s = 1 - t;
    const double w[4] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    Vec at{0, 0};
    for (int i = 0; i < 4; ++i) at = {at.x + w[i] * p[i].x, at.y + w[i] * p[i].y};
    return at;
}

/// The greatest distance of a curve over 0 to 1 from the line through the points.
double FarthestFrom(std::span<const point_2d> line, const std::function<Vec(double)>& curve) {
    constexpr int SAMPLES = 500;
    double farthest = 0;
    for (int i = 0; i <= SAMPLES; ++i) {
        const Vec at = curve(static_cast<double>(i) / SAMPLES);
        double nearest = HUGE_VAL;
        for (size_t k = 1; k < line.size(); ++k) {
            nearest = std::min(nearest, DistanceToChord(at, ToVec(line[k - 1]), ToVec(line[k])));
        }
        farthest = std::max(farthest, nearest);
    }
    return farthest;
}

/// What an arc's Bézier curves do, seen from the centre.
struct Walk {
    int count = 0;
    double sweep = 0;  ///< signed, all turns counted
    double worst = 0;  ///< distance from the circle, in radii
    bool turnsBack = false;
    Vec first{};
    Vec last{};
};

Walk WalkArc(const CSectArc& arc, int capacity = 20) {
    std::vector<point_2d> points(static_cast<size_t>(capacity));
    Walk walk;
    arc.GetBezierPoints(capacity, walk.count, points.data());
    if (walk.count == 0) return walk;
    const Vec centre = ToVec(arc.m_ptCentre);
    const double radius = std::fabs(arc.m_fRadius);
    const double direction = arc.m_fEnd > arc.m_fStart ? 1 : -1;
    walk.first = ToVec(points[0]);
    walk.last = ToVec(points[static_cast<size_t>(walk.count) - 1]);
    Vec before = walk.first;
    for (int i = 0; i + 3 < walk.count; i += 3) {
        constexpr int STEPS = 64;
        for (int k = 1; k <= STEPS; ++k) {
            const Vec at = OnCubic(&points[static_cast<size_t>(i)], static_cast<double>(k) / STEPS);
            const Vec u = {before.x - centre.x, before.y - centre.y};
            const Vec v = {at.x - centre.x, at.y - centre.y};
            const double turn = std::atan2(u.x * v.y - u.y * v.x, u.x * v.x + u.y * v.y);
            walk.turnsBack = walk.turnsBack || turn * direction < 0;
            walk.sweep += turn;
            walk.worst = std::max(walk.worst, std::fabs(Distance(at, centre) - radius) / radius);
            before = at;
        }
    }
    return walk;
}

CSectArc& Made(CSectArc& arc, point_2d centre, float radius, double startDegrees, double endDegrees) {
    arc.CreateCRA(centre, radius, {Radians(startDegrees), Radians(endDegrees)});
    return arc;
}

Vec OnCircle(const CSectArc& arc, double angle) {
    return {arc.m_ptCentre.x + arc.m_fRadius * std::cos(angle), arc.m_ptCentre.y + arc.m_fRadius * std::sin(angle)};
}

class Random {
public:
    double Between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_Engine); }
    point_2d Point(double size) {
        return {static_cast<float>(Between(-size, size)), static_cast<float>(Between(-size, size))};
    }

private:
    std::mt19937 m_Engine{20230711};
};

// Bézier curves of arcs

TEST(ArcBezier, LiesOnTheCircleAndRunsTheGivenWay) {
    Random random;
    for (int i = 0; i < 2000; ++i) {
        CSectArc arc;
        const double start = random.Between(-720, 720);
        const double sweep = random.Between(-360, 360);
        const auto radius = static_cast<float>(std::pow(10, random.Between(-3, 5)));
        // The centre is no farther away than its coordinates have digits for the radius.
        Made(arc, random.Point(radius), radius, start, start + sweep);
        const Walk walk = WalkArc(arc);
        SCOPED_TRACE(testing::Message() << "from " << start << " by " << sweep << ", radius " << radius);
        ASSERT_EQ(walk.count % 3, 1);
        ASSERT_LE(walk.count, 19);
        ASSERT_LT(walk.worst, 1e-4);
        ASSERT_FALSE(walk.turnsBack);
        ASSERT_NEAR(walk.sweep, arc.m_fEnd - arc.m_fStart, 1e-5);
        ASSERT_LT(Distance(walk.first, OnCircle(arc, arc.m_fStart)), 1e-6 * radius);
        ASSERT_LT(Distance(walk.last, OnCircle(arc, arc.m_fEnd)), 1e-6 * radius);
    }
}

TEST(ArcBezier, AnglesAreNotNormalised) {
    struct Case {
        const char* name;
        double start, end;
        double sweep, last;  // degrees
        int segments;
    };
    for (const Case& c : {
             Case{"40 degrees clockwise", 400, 360, -40, 0, 1},
             Case{"a quarter", 0, 90, 90, 90, 2},
             Case{"a full turn", 0, 360, 360, 0, 6},
             Case{"a full turn clockwise", 360, 0, -360, 0, 6},
             Case{"a full turn far out", 36090, 36450, 360, 90, 6},
             Case{"as much more than a turn as six segments hold", 0, 450, 450, 90, 6},
             Case{"the last turn of a longer one", 0, 500, 360, 140, 6},
             Case{"the last turn of a longer one clockwise", 30, -470, -360, -110, 6},
             Case{"ten turns", 0, 3600, 360, 0, 6},
         }) {
        SCOPED_TRACE(c.name);
        CSectArc arc;
        const Walk walk = WalkArc(Made(arc, {3, -2}, 50, c.start, c.end));
        EXPECT_EQ(walk.count, 3 * c.segments + 1);
        EXPECT_NEAR(walk.sweep * 180 / PI, c.sweep, 0.01);
        EXPECT_LT(walk.worst, 1e-4);
        EXPECT_LT(Distance(walk.last, OnCircle(arc, c.last * PI / 180)), 0.01);
    }
}

TEST(ArcBezier, FullTurnEndsExactlyWhereItStarts) {
    for (const double start : {0.0, 17.0, 90.0, -123.4}) {
        CSectArc arc;
        const Walk walk = WalkArc(Made(arc, {1234.5f, -77}, 900, start, start + 360));
        EXPECT_EQ(walk.first.x, walk.last.x) << start;
        EXPECT_EQ(walk.first.y, walk.last.y) << start;
    }
}

TEST(ArcBezier, StaysWithinItsCapacityAndTakesAnyNumber) {
    CSectArc notMade;
    EXPECT_EQ(WalkArc(notMade).count, 0);
    CSectArc point;
    EXPECT_EQ(WalkArc(Made(point, {5, 6}, 0, 0, 360)).count, 1);
    EXPECT_EQ(WalkArc(Made(point, {5, 6}, 10, 30, 30)).count, 1);
    for (const float odd : {NOT_A_NUMBER, INFINITE, -INFINITE, 3e38f}) {
        for (int capacity = 0; capacity <= 20; ++capacity) {
            for (const point_2d angles : {point_2d{0, 1}, point_2d{odd, 1}, point_2d{0, odd}}) {
                for (const float radius : {10.0f, odd}) {
                    CSectArc arc;
                    arc.CreateCRA({1, 2}, radius, angles);
                    // On the heap, so that a sanitizer sees a point too many.
                    std::vector<point_2d> points(static_cast<size_t>(capacity));
                    int count = -1;
                    arc.GetBezierPoints(capacity, count, points.data());
                    ASSERT_GE(count, 0);
                    ASSERT_LE(count, capacity);
                }
            }
        }
    }
}

// Ways to make an arc

TEST(ArcMaking, ByCentreStartAndEndInEveryQuadrant) {
    const point_2d centre = {2, -3};
    for (int from = 0; from < 360; from += 45) {
        for (int to = 0; to < 360; to += 45) {
            for (const int flag : {0, 1}) {
                SCOPED_TRACE(testing::Message() << from << " to " << to << " flag " << flag);
                CSectArc arc;
                const auto at = [&](int degrees, double radius) {
                    return point_2d{static_cast<float>(centre.x + radius * std::cos(degrees * PI / 180)),
                                    static_cast<float>(centre.y + radius * std::sin(degrees * PI / 180))};
                };
                // The end is a direction: how far out it lies has no meaning.
                ASSERT_EQ(arc.CreateCSE(centre, at(from, 10), at(to, 25), flag), 1);
                const Walk walk = WalkArc(arc);
                if (from != to) {
                    const int degrees = flag != 0 ? (to - from + 360) % 360 : -((from - to + 360) % 360);
                    EXPECT_NEAR(walk.sweep * 180 / PI, degrees, 0.001);
                }
                EXPECT_NEAR(arc.m_fRadius, 10, 1e-5);
                EXPECT_LT(Distance(walk.first, ToVec(at(from, 10))), 1e-4);
                EXPECT_LT(Distance(walk.last, ToVec(at(to, 10))), 1e-4);
            }
        }
    }
}

TEST(ArcMaking, ByCentreIntoOneDirectionMakesAFullTurn) {
    for (const point_2d start : {point_2d{1, 0}, {0, 1}, {-1, 0.0f}, {-1, -0.0f}}) {
        for (const point_2d end : {start, point_2d{2 * start.x, 2 * start.y}, point_2d{start.x, -start.y}}) {
            if (end.y != start.y) continue;  // 0 and -0 are one direction
            for (const int flag : {0, 1}) {
                CSectArc arc;
                ASSERT_EQ(arc.CreateCSE({0, 0}, start, end, flag), 1);
                EXPECT_NEAR(WalkArc(arc).sweep, flag != 0 ? TURN : -TURN, 1e-5)
                    << start.x << ' ' << start.y << " flag " << flag;
            }
        }
    }
}

TEST(ArcMaking, ByEndsAndIncludedAngle) {
    Random random;
    for (int i = 0; i < 1000; ++i) {
        const point_2d start = random.Point(100);
        const point_2d end = random.Point(100);
        const auto angle = static_cast<float>(random.Between(0.05, TURN - 0.05));
        const int flag = i % 2;
        SCOPED_TRACE(testing::Message() << "angle " << angle << " flag " << flag);
        CSectArc arc;
        ASSERT_EQ(arc.CreateSEA(start, end, angle, flag), 1);
        const Walk walk = WalkArc(arc);
        const double slack = 1e-5 * (arc.m_fRadius + 100);
        ASSERT_LT(Distance(walk.first, ToVec(start)), slack);
        ASSERT_LT(Distance(walk.last, ToVec(end)), slack);
        ASSERT_NEAR(walk.sweep, flag != 0 ? angle : -angle, 1e-4);
    }
}

TEST(ArcMaking, ByEndsAndTangent) {
    Random random;
    for (int i = 0; i < 1000; ++i) {
        const point_2d start = random.Point(100);
        const point_2d end = random.Point(100);
        const point_2d tangent = random.Point(30);
        const Vec chord = {end.x - start.x, end.y - start.y};
        const double across =
            (tangent.x * chord.y - tangent.y * chord.x) / (Distance(ToVec(tangent), {0, 0}) * Distance(chord, {0, 0}));
        if (std::fabs(across) < 0.01) continue;
        CSectArc arc;
        ASSERT_EQ(arc.CreateSEST(start, end, tangent), 1);
        const Walk walk = WalkArc(arc);
        const double slack = 1e-5 * (arc.m_fRadius + 100);
        SCOPED_TRACE(testing::Message() << "tangent " << tangent.x << ' ' << tangent.y);
        ASSERT_LT(Distance(walk.first, ToVec(start)), slack);
        ASSERT_LT(Distance(walk.last, ToVec(end)), slack);
        // An end on the tangent's left is reached counter-clockwise; between chord and tangent stands half
        // the sweep.
        const double along =
            (tangent.x * chord.x + tangent.y * chord.y) / (Distance(ToVec(tangent), {0, 0}) * Distance(chord, {0, 0}));
        ASSERT_NEAR(walk.sweep, 2 * std::atan2(across, along), 1e-3);
        std::vector<point_2d> points(20);
        int count = 0;
        arc.GetBezierPoints(20, count, points.data());
        const Vec leaves = {points[1].x - points[0].x, points[1].y - points[0].y};
        ASSERT_GT((leaves.x * tangent.x + leaves.y * tangent.y) /
                      (Distance(leaves, {0, 0}) * Distance(ToVec(tangent), {0, 0})),
                  0.9999);
    }
}

TEST(ArcMaking, RefusesWhatIsNoArc) {
    CSectArc arc;
    EXPECT_EQ(arc.CreateCSE({1, 1}, {1, 1}, {2, 1}, 1), 0) << "start on the centre";
    EXPECT_EQ(arc.CreateCSE({1, 1}, {2, 1}, {1, 1}, 1), 0) << "end on the centre";
    EXPECT_EQ(arc.CreateCSE({1, 1}, {INFINITE, 1}, {1, 2}, 1), 0);
    EXPECT_EQ(arc.CreateCSE({NOT_A_NUMBER, 1}, {3, 1}, {1, 2}, 1), 0);
    EXPECT_EQ(arc.CreateSEA({1, 1}, {1, 1}, 1, 1), 0) << "coinciding ends";
    for (const float angle : {0.0f, 1e-7f, 7.0f, NOT_A_NUMBER, INFINITE}) {
        EXPECT_EQ(arc.CreateSEA({0, 0}, {1, 1}, angle, 1), 0) << angle;
    }
    struct Case {
        const char* name;
        point_2d start, end, tangent;
    };
    for (const Case& c :
         {Case{"straight on", {0, 0}, {10, 0}, {1, 0}}, Case{"straight back", {0, 0}, {10, 0}, {-1, 0}},
          Case{"straight but for a rounding", {0, 0}, {10, 1e-6f}, {1, 0}}, Case{"no tangent", {0, 0}, {10, 0}, {0, 0}},
          Case{"no number", {0, 0}, {NOT_A_NUMBER, 0}, {0, 1}},
          Case{"no numbered tangent", {0, 0}, {10, 0}, {0, NOT_A_NUMBER}}}) {
        SCOPED_TRACE(c.name);
        arc.CreateCRA({0, 0}, 1, {0, 1});
        EXPECT_EQ(arc.CreateSEST(c.start, c.end, c.tangent), 0);
        EXPECT_EQ(WalkArc(arc).count, 0) << "nothing of the arc before is left";
    }
    // A corner that is rounded by nothing is still a point of the path.
    ASSERT_EQ(arc.CreateSEST({5, 5}, {5, 5}, {1, 0}), 1);
    EXPECT_EQ(WalkArc(arc).count, 1);
    EXPECT_EQ(WalkArc(arc).first.x, 5);
}

// Flattening

struct Block {
    std::vector<point_2d> points = std::vector<point_2d>(FLATTEN_MAX_POINTS);
    [[nodiscard]] std::span<const point_2d> Line(int count) const {
        return std::span(points).first(static_cast<size_t>(count));
    }
};

TEST(Flattening, KeepsItsToleranceForArcsOfAnySize) {
    Random random;
    Block block;
    for (int i = 0; i < 200; ++i) {
        const auto radius = static_cast<float>(std::pow(10, random.Between(-6, 6)));
        const auto tolerance = static_cast<float>(radius * std::pow(10, random.Between(-4.5, 1)));
        const auto start = static_cast<float>(random.Between(-10, 10));
        const auto end = static_cast<float>(start + random.Between(-TURN, TURN));
        SCOPED_TRACE(testing::Message() << "radius " << radius << " tolerance " << tolerance);
        const int count = ArcToLine({0, 0}, radius, start, end, tolerance, block.points.data());
        ASSERT_GE(count, 2);
        ASSERT_LE(count, FLATTEN_MAX_POINTS);
        const std::span<const point_2d> line = block.Line(count);
        const auto curve = [&](double t) {
            const double angle = start + t * (static_cast<double>(end) - start);
            return Vec{radius * std::cos(angle), radius * std::sin(angle)};
        };
        const double rounding = 1e-6 * radius;
        ASSERT_LE(FarthestFrom(line, curve), tolerance + rounding);
        ASSERT_LT(Distance(ToVec(line.front()), curve(0)), rounding);
        ASSERT_LT(Distance(ToVec(line.back()), curve(1)), rounding);
    }
}

TEST(Flattening, KeepsItsToleranceForCirclesAndEllipses) {
    Random random;
    Block block;
    for (int i = 0; i < 100; ++i) {
        const auto a = static_cast<float>(std::pow(10, random.Between(-2, 4)));
        const auto b = i % 4 == 0 ? a : static_cast<float>(a * std::pow(10, random.Between(-2, 1)));
        const auto turn = i % 4 == 0 ? 0.0f : static_cast<float>(random.Between(-TURN, TURN));
        const float size = std::max(a, b);
        const auto tolerance = static_cast<float>(size * std::pow(10, random.Between(-4, 0)));
        SCOPED_TRACE(testing::Message() << a << ' ' << b << " turned " << turn << " within " << tolerance);
        const point_2d centre = random.Point(size);
        const int count = i % 4 == 0 ? CircleToLine(centre, a, tolerance, block.points.data())
                                     : EllipseToLine(centre, a, b, turn, tolerance, block.points.data());
        ASSERT_GE(count, 5) << "no chord is longer than a quarter turn";
        const std::span<const point_2d> line = block.Line(count);
        const auto curve = [&](double t) {
            const double x = a * std::cos(TURN * t);
            const double y = b * std::sin(TURN * t);
            return Vec{centre.x + x * std::cos(turn) - y * std::sin(turn),
                       centre.y + x * std::sin(turn) + y * std::cos(turn)};
        };
        ASSERT_LE(FarthestFrom(line, curve), tolerance + 1e-6 * size);
        ASSERT_EQ(std::memcmp(&line.front(), &line.back(), sizeof(point_2d)), 0) << "closed to the bit";
    }
}

TEST(Flattening, TakesAnyNumberAndStaysInItsBlock) {
    Block block;
    point_2d* out = block.points.data();
    for (const float radius : {0.0f, NOT_A_NUMBER, INFINITE, -INFINITE}) {
        EXPECT_EQ(ArcToLine({0, 0}, radius, 0, 1, 0.1f, out), 0) << radius;
        EXPECT_EQ(CircleToLine({0, 0}, radius, 0.1f, out), 0) << radius;
    }
    EXPECT_EQ(EllipseToLine({0, 0}, 0, 0, 0, 0.1f, out), 0);
    EXPECT_EQ(EllipseToLine({0, 0}, NOT_A_NUMBER, 1, 0, 0.1f, out), 0);
    EXPECT_EQ(EllipseToLine({0, 0}, 1, NOT_A_NUMBER, 0, 0.1f, out), 0);
    EXPECT_EQ(ArcToLine({0, 0}, 1, NOT_A_NUMBER, 1, 0.1f, out), 0);
    EXPECT_EQ(ArcToLine({0, 0}, 1, 0, INFINITE, 0.1f, out), 0);
    for (const float tolerance : {0.0f, -1.0f, NOT_A_NUMBER, 1e-45f}) {
        EXPECT_EQ(CircleToLine({0, 0}, 3e38f, tolerance, out), FLATTEN_MAX_POINTS) << tolerance;
        EXPECT_EQ(ArcToLine({0, 0}, 1e6f, 0, 1e9f, tolerance, out), FLATTEN_MAX_POINTS) << tolerance;
    }
    EXPECT_EQ(CircleToLine({0, 0}, 1, INFINITE, out), 5);
    // A thousand turns are drawn no more often than needed to get from one end to the other.
    EXPECT_LT(ArcToLine({0, 0}, 10, 0, static_cast<float>(1000 * TURN + 1), 0.1f, out), 60);
}

TEST(Flattening, PointsThatOverflowAreInfinite) {
    Block block;
    point_2d* out = block.points.data();
    constexpr float FARTHEST = std::numeric_limits<float>::max();
    for (const int count : {CircleToLine({FARTHEST, 0}, FARTHEST, 1e37f, out),
                            EllipseToLine({FARTHEST, 0}, FARTHEST, FARTHEST / 2, 0, 1e37f, out),
                            ArcToLine({FARTHEST, 0}, FARTHEST, 0, 1, 1e37f, out)}) {
        EXPECT_GE(count, 3);
        EXPECT_LE(count, FLATTEN_MAX_POINTS);
        EXPECT_EQ(out[0].x, INFINITE);
        EXPECT_EQ(out[0].y, 0);
    }
}

TEST(Flattening, SectionsGiveWhatTheirBlocksGive) {
    Block block;
    const auto check = [&block](const CSectObject& section, int count) {
        std::vector<point_2d> line;
        section.Flatten(0.01f, line);
        ASSERT_EQ(line.size(), static_cast<size_t>(count));
        EXPECT_EQ(std::memcmp(line.data(), block.points.data(), line.size() * sizeof(point_2d)), 0);
        std::vector<point_2d> again;
        const CSectChain clone(section.Clone());
        clone->Flatten(0.01f, again);
        ASSERT_EQ(again.size(), line.size());
        EXPECT_EQ(std::memcmp(line.data(), again.data(), line.size() * sizeof(point_2d)), 0) << "of a copy";
    };
    CSectArc arc;
    arc.CreateCRA({1, 2}, 3, {4, 5});
    check(arc, ArcToLine({1, 2}, 3, 4, 5, 0.01f, block.points.data()));
    CSectCircle circle;
    ASSERT_EQ(circle.CreateCR({1, 2}, 3), 1);
    check(circle, CircleToLine({1, 2}, 3, 0.01f, block.points.data()));
    CSectEllipse ellipse;
    ellipse.Create({1, 2}, 4, 3, 0.5f, 0);
    check(ellipse, EllipseToLine({1, 2}, 4, 3, 0.5f, 0.01f, block.points.data()));
    CSectPoint point;
    point.Copy({6, 7});
    block.points[0] = {6, 7};
    check(point, 1);
}

TEST(Flattening, BezierPiecesKeepTheirTolerance) {
    Random random;
    for (int i = 0; i < 40; ++i) {
        point_2d points[7];
        for (point_2d& point : points) point = random.Point(100);
        CSectBezier bezier;
        bezier.Copy(points, 7);
        const auto tolerance = static_cast<float>(std::pow(10, random.Between(-2, 2)));
        std::vector<point_2d> line;
        bezier.Flatten(tolerance, line);
        const auto curve = [&](double t) { return t < 0.5 ? OnCubic(points, 2 * t) : OnCubic(points + 3, 2 * t - 1); };
        SCOPED_TRACE(testing::Message() << "tolerance " << tolerance << ", " << line.size() << " points");
        ASSERT_LE(FarthestFrom(line, curve), tolerance + 1e-4);
        ASSERT_EQ(line.front().DistFrom(points[0]), 0);
        ASSERT_EQ(line.back().DistFrom(points[6]), 0);

        // Subdivision gives the same points with the curves between them.
        std::vector<point_2d> pieces;
        bezier.Subdivide(tolerance, pieces);
        ASSERT_EQ(pieces.size(), 3 * (line.size() - 1) + 1);
        std::vector<point_2d> fine;
        for (size_t k = 0; k + 3 < pieces.size(); k += 3) {
            ASSERT_LT(pieces[k].DistFrom(line[k / 3]), 1e-4);
            for (int t = 0; t < 8; ++t) {
                const Vec at = OnCubic(&pieces[k], t / 8.0);
                fine.push_back({static_cast<float>(at.x), static_cast<float>(at.y)});
            }
        }
        fine.push_back(pieces.back());
        ASSERT_EQ(pieces.back().DistFrom(points[6]), 0);
        ASSERT_LE(FarthestFrom(fine, curve), tolerance / 32 + 1e-4);
    }
}

TEST(Flattening, BezierIsBoundedForAnyNumber) {
    const point_2d wild[] = {{0, 0}, {3e38f, -3e38f}, {-3e38f, 3e38f}, {1, 1}};
    const point_2d broken[] = {{0, 0}, {NOT_A_NUMBER, 1}, {INFINITE, -INFINITE}, {1, 1}};
    for (const auto* points : {wild, broken}) {
        for (const float tolerance : {0.0f, -1.0f, NOT_A_NUMBER, 1e-45f, 1.0f, INFINITE}) {
            CSectBezier bezier;
            bezier.Copy(points, 4);
            std::vector<point_2d> line;
            bezier.Flatten(tolerance, line);
            EXPECT_LE(line.size(), static_cast<size_t>(FLATTEN_MAX_POINTS)) << tolerance;
            EXPECT_EQ(line.back().x, 1) << tolerance;
            std::vector<point_2d> pieces;
            bezier.Subdivide(tolerance, pieces);
            EXPECT_EQ(pieces.size(), 3 * (line.size() - 1) + 1) << tolerance;
        }
    }
}

// Sections and their chains

TEST(Sections, CopiesAndChains) {
    const point_2d points[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
    CSectLine2D line;
    line.Copy(points, 5);
    line.Copy(points, 2);  // from many points back to few
    ASSERT_EQ(line.GetPoints().size(), 2u);
    line.Copy(points, 5);
    line.m_pNext = &line;
    const CSectChain clone(line.Clone());
    line.m_pNext = nullptr;
    EXPECT_EQ(clone->GetNext(), nullptr) << "a clone has no link";
    EXPECT_EQ(clone->GetPoints()[4].y, 0);
    line.Copy(nullptr, 3);
    EXPECT_TRUE(line.GetPoints().empty());

    // Longer than any recursion would live through.
    CSectionList list;
    EXPECT_TRUE(list.IsEmpty());
    list.AddSectToTail(nullptr);
    EXPECT_TRUE(list.IsEmpty());
    auto* first = new CSectPoint;
    first->AddListToTail(new CSectPoint);
    list.Create(first, nullptr, 2, 0);
    for (int i = 0; i < 300000; ++i) list.AddSectToTail(new CSectPoint);
    int count = 0;
    for (const CSectObject* section = list.GetFirst(); section; section = section->GetNext()) ++count;
    EXPECT_EQ(count, 300002);
}

}  // namespace
