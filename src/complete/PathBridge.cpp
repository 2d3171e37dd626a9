// Paths and lists of numbers in both directions between the machine and the geometry.
#include "complete/PathBridge.h"

#include <algorithm>

#include "complete/geometry/EncodedPath.h"
#include "complete/geometry/Flatten.h"
#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "graphics/Matrix.h"
#include "interp/FilterEPS.h"

namespace {

using geometry::PathOp;
using geometry::Point;

constexpr double PIXELS_PER_INCH = 1200;

Point PointOf(const tagPLPoint& record) noexcept { return {record.pt.x, record.pt.y}; }

point_2d HostPoint(Point p) noexcept { return {static_cast<float>(p.x), static_cast<float>(p.y)}; }

/// Appends the records from first to below last, which stands at no place inside a curve.
void AppendRecords(const CPath& path, std::int32_t first, std::int32_t last, geometry::Path& result) {
    for (std::int32_t i = first; i < last; ++i) {
        const Point p = PointOf(path.At(i));
        switch (path.At(i).nOp) {
            case PATH_MOVE:
                result.MoveTo(p);
                break;
            case PATH_LINE:
                result.LineTo(p);
                break;
            case PATH_CURVE:
                result.CurveTo(p, PointOf(path.At(i + 1)), PointOf(path.At(i + 2)));
                i += 2;
                break;
            default:
                result.Close();
        }
    }
}

/// The value of an element that is a number, or the token of one in a procedure.
bool NumberOf(const CElement* e, double& value) {
    if (const auto* number = As<CNumberElement>(e)) {
        value = number->GetReal();
        return true;
    }
    const auto* token = As<CSimpElement>(e);
    if (!token || token->m_nType != ET_RAWTOKEN || !token->m_pName->IsNumber()) return false;
    value = token->m_pName->m_fNumber;
    return token->m_pName->m_bValidNumber;
}

}  // namespace

geometry::Path ToGeometry(const CPath& path) {
    geometry::Path result;
    CountWork(path.GetCount());
    AppendRecords(path, 0, path.GetCount(), result);
    return result;
}

void ReplacePath(CFilterEPS& m, const geometry::Path& path) {
    CGraphState& state = *m.GetCurrentGState();
    state.ClearPath();
    AppendPath(state, path);
}

void AppendPath(CGraphState& state, const geometry::Path& path) {
    path.Walk([&state](const geometry::Segment& segment) {
        constexpr PathLetter letters[] = {PATH_MOVE, PATH_LINE, PATH_CURVE, PATH_CLOSE};
        const point_2d points[3] = {HostPoint(segment.p[0]), HostPoint(segment.p[1]), HostPoint(segment.p[2])};
        state.AddPathPoint(points, letters[static_cast<std::size_t>(segment.op)]);
    });
}

geometry::Path SeePath(CFilterEPS& m) {
    const CPath& path = m.GetCurrentGState()->m_Path;
    const std::int32_t flattened = path.CountFlattened();
    if (flattened == 0) return ToGeometry(path);
    geometry::Path curved;
    AppendRecords(path, 0, flattened, curved);
    geometry::Path seen = geometry::FlattenPath(curved, Flatness(m));
    AppendRecords(path, flattened, path.GetCount(), seen);
    ReplacePath(m, seen);
    return seen;
}

double Flatness(const CFilterEPS& m) {
    // The bounds of the language (PLRM, setflat).
    const float pixels = std::clamp(m.GetCurrentGState()->GetDevice().m_fFlatness, 0.2F, 100.0F);
    return pixels / PIXELS_PER_INCH * MM_PER_INCH * UnitsPerMillimetre(m);
}

void UserToHost(const CFilterEPS& m, double matrix[9]) {
    const double unit = MM_PER_INCH / POINTS_PER_INCH * UnitsPerMillimetre(m);
    const double scale[9] = {unit, 0, 0, 0, unit, 0, 0, 0, 1};
    MatMultiply(m.GetCurrentGState()->m_CTM, scale, matrix);
}

geometry::Box ToHostUnits(const CFilterEPS& m, const geometry::Box& points) {
    return {ToHostUnits(m, points.left), ToHostUnits(m, points.bottom), ToHostUnits(m, points.right),
            ToHostUnits(m, points.top)};
}

ErrorCode ReadNumbers(const CElement& e, std::vector<double>& numbers) {
    numbers.clear();
    if (const auto* array = As<CArrayElement>(&e)) {
        for (std::int32_t i = 0; i < array->GetLength(); ++i) {
            double value = 0;
            if (!NumberOf(array->GetAt(i), value)) return PSERR_TYPECHECK;
            numbers.push_back(value);
        }
        return PSERR_NONE;
    }
    const auto* string = As<CStringElement>(&e);
    if (!string) return PSERR_TYPECHECK;
    const std::string_view bytes = string->Bytes();
    auto decoded = geometry::DecodeNumberString({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    numbers = std::move(decoded.numbers);
    switch (decoded.fault) {
        case geometry::EncodingFault::None:
            return PSERR_NONE;
        case geometry::EncodingFault::NotEncoded:
            return PSERR_TYPECHECK;
        default:
            return PSERR_RANGE;
    }
}
