// Shadings (PLRM, Shading Dictionaries) as one colour: by their functions, or by the colours of their vertices.
#include "complete/ShadingColor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "complete/Functions.h"
#include "complete/PathBridge.h"
#include "interp/FilterEPS.h"

namespace {

using Numbers = std::vector<double>;

enum ShadingType : int { FUNCTION_BASED = 1, RADIAL = 3, FREE_TRIANGLES = 4, LATTICE = 5, COONS = 6, TENSOR = 7 };

/// Most bytes that are read of a mesh.
constexpr std::size_t MAX_MESH_BYTES = std::size_t{1} << 22;

Numbers NumbersOf(const CDictionary& dict, const char* key) {
    Numbers numbers;
    const CElement* value = dict.GetValue(key);
    if (!value || ReadNumbers(*value, numbers) != PSERR_NONE) numbers.clear();
    return numbers;
}

int IntegerOf(const CDictionary& dict, const char* key) {
    const auto* number = As<CNumberElement>(dict.GetValue(key));
    return number ? number->GetInt() : 0;
}

/// Function of a shading for its inputs: one function of all components, or one for each.
Numbers ApplyFunction(const CElement& function, const Numbers& inputs) {
    if (const auto* dict = As<CDictionary>(&function)) return EvaluateFunction(*dict, inputs);
    Numbers components;
    const auto* functions = As<CArrayElement>(&function);
    for (std::int32_t i = 0; functions && i < functions->GetLength(); ++i) {
        const auto* dict = As<CDictionary>(functions->GetAt(i));
        const Numbers values = dict ? EvaluateFunction(*dict, inputs) : Numbers();
        if (values.size() != 1) return {};
        components.push_back(values[0]);
    }
    return components;
}

/// The numbers of a mesh in the order of its data: flags, coordinates and colour components.
class MeshNumbers {
public:
    MeshNumbers(const CDictionary& shading, int components) : m_nComponents(components) {
        const CElement* source = shading.GetValue("DataSource");
        if (source && source->IsArrayKind()) {
            m_Numbers = NumbersOf(shading, "DataSource");
            m_bArray = true;
            return;
        }
        m_nFlagBits = BitsOf(shading, "BitsPerFlag");
        m_nPointBits = BitsOf(shading, "BitsPerCoordinate");
        m_nColorBits = BitsOf(shading, "BitsPerComponent");
        m_Decode = NumbersOf(shading, "Decode");
        if (m_nPointBits == 0 || m_nColorBits == 0 || m_Decode.size() < 4 + 2 * static_cast<std::size_t>(components))
            return;
        if (const auto* string = As<CStringElement>(source)) m_Bytes = string->GetText();
        if (const auto* file = As<CFileElement>(source)) {
            m_Bytes.resize(MAX_MESH_BYTES);
            unsigned count = 0;
            if (file->ReadBlock(m_Bytes.data(), static_cast<unsigned>(m_Bytes.size()), &count) < 0) count = 0;
            m_Bytes.resize(count);
        }
    }
    [[nodiscard]] bool IsAtEnd() const noexcept {
        return m_bArray ? m_nAt >= m_Numbers.size() : m_nAt + 8 > BitCount();
    }
    bool Flag(int& flag) {
        double value = 0;
        if (!Take(m_nFlagBits, value)) return false;
        flag = static_cast<int>(std::clamp(value, 0.0, 255.0)) & 3;
        return true;
    }
    bool AddPoints(int count, std::vector<MeshPoint>& points) {
        for (int i = 0; i < count; ++i) {
            double pair[2];
            for (std::size_t k = 0; k < 2; ++k) {
                if (!Take(m_nPointBits, pair[k])) return false;
                if (m_bArray) continue;
                const double low = m_Decode[2 * k];
                pair[k] = low + pair[k] * (m_Decode[2 * k + 1] - low) / (std::exp2(m_nPointBits) - 1);
            }
            points.push_back({pair[0], pair[1]});
        }
        return true;
    }
    bool AddColors(int count, Numbers& sum) {
        for (int i = 0; i < count * m_nComponents; ++i) {
            double value = 0;
            if (!Take(m_nColorBits, value)) return false;
            const auto k = static_cast<std::size_t>(i % m_nComponents);
            if (!m_bArray) {
                const double low = m_Decode[4 + 2 * k];
                value = low + value * (m_Decode[5 + 2 * k] - low) / (std::exp2(m_nColorBits) - 1);
            }
            sum[k] += value;
        }
        return true;
    }
    /// Vertices and patches end on whole bytes.
    void Align() {
        if (!m_bArray) m_nAt = (m_nAt + 7) / 8 * 8;
    }

private:
    static unsigned BitsOf(const CDictionary& shading, const char* key) {
        return static_cast<unsigned>(std::clamp(IntegerOf(shading, key), 0, 32));
    }
    [[nodiscard]] std::size_t BitCount() const noexcept { return m_Bytes.size() * 8; }
    bool Take(unsigned bits, double& value) {
        if (m_bArray) {
            if (m_nAt >= m_Numbers.size()) return false;
            value = m_Numbers[m_nAt++];
            return true;
        }
        if (bits == 0 || m_nAt + bits > BitCount()) return false;
        std::uint64_t read = 0;
        for (const std::size_t end = m_nAt + bits; m_nAt < end; ++m_nAt) {
            read = read << 1 | (static_cast<unsigned char>(m_Bytes[m_nAt / 8]) >> (7 - m_nAt % 8) & 1U);
        }
        value = static_cast<double>(read);
        return true;
    }

    int m_nComponents;
    bool m_bArray = false;
    Numbers m_Numbers;
    Numbers m_Decode;
    std::string m_Bytes;
    unsigned m_nFlagBits = 0;
    unsigned m_nPointBits = 0;
    unsigned m_nColorBits = 0;
    std::size_t m_nAt = 0;  ///< of the numbers of an array, else of the bits
};

/// The outline of an area of polygons that share edges: an edge that two polygons run along in opposite directions lies
/// within it.
class OutlineOfPolygons {
public:
    void Add(std::vector<MeshPoint> corners) {
        double area = 0;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const auto& [x, y] = corners[i];
            const auto& [nextX, nextY] = corners[(i + 1) % corners.size()];
            area += x * nextY - nextX * y;
        }
        if (area < 0) std::reverse(corners.begin(), corners.end());
        for (std::size_t i = 0; i < corners.size(); ++i) AddEdge(corners[i], corners[(i + 1) % corners.size()]);
    }
    [[nodiscard]] MeshOutline Loops() {
        MeshOutline loops;
        while (!m_Edges.empty()) {
            std::vector<MeshPoint> loop;
            for (auto edge = m_Edges.begin(); edge != m_Edges.end(); edge = m_Edges.lower_bound({loop.back(), LEAST})) {
                if (!loop.empty() && edge->first != loop.back()) break;
                if (loop.empty()) loop.push_back(edge->first);
                loop.push_back(edge->second);
                m_Edges.erase(edge);
            }
            if (loop.front() == loop.back()) loop.pop_back();
            loops.push_back(std::move(loop));
        }
        return loops;
    }

private:
    static constexpr MeshPoint LEAST{-std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity()};

    void AddEdge(const MeshPoint& from, const MeshPoint& to) {
        if (from == to || m_Edges.erase({to, from}) > 0) return;
        m_Edges.insert({from, to});
    }

    std::set<std::pair<MeshPoint, MeshPoint>> m_Edges;
};

/// The outline of a mesh of triangles: by the flags of its vertices (PLRM, Type 4 Shadings).
MeshOutline OutlineOfTriangles(const std::vector<MeshPoint>& points, const std::vector<int>& flags) {
    OutlineOfPolygons outline;
    std::vector<MeshPoint> corners;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (corners.size() == 3 && flags[i] == 0) corners.clear();
        if (corners.size() == 3) corners.erase(corners.begin() + (flags[i] == 1 ? 0 : 1));
        corners.push_back(points[i]);
        if (corners.size() == 3) outline.Add(corners);
    }
    return outline.Loops();
}

/// The outline of a lattice of rows of that many vertices.
MeshOutline OutlineOfLattice(const std::vector<MeshPoint>& points, std::size_t row) {
    OutlineOfPolygons outline;
    for (std::size_t i = row; row >= 2 && i + 1 < points.size(); ++i) {
        if (i % row + 1 == row) continue;
        outline.Add({points[i - row], points[i - row + 1], points[i + 1], points[i]});
    }
    return outline.Loops();
}

/// The mean of what the vertices of a mesh say, and the outline of triangles. Nothing for a mesh without a whole one.
Numbers MeanOfMesh(const CDictionary& shading, int type, int components, MeshOutline* outline) {
    // Points and colours of a vertex, of a patch, and of a patch that goes on along an edge of the one before.
    struct Layout {
        bool hasFlag;
        int points;
        int colors;
        int nextPoints;
        int nextColors;
    };
    constexpr Layout layouts[] = {{true, 1, 1, 1, 1}, {false, 1, 1, 1, 1}, {true, 12, 4, 8, 2}, {true, 16, 4, 12, 2}};
    const Layout& layout = layouts[type - FREE_TRIANGLES];
    MeshNumbers mesh(shading, components);
    Numbers sum(static_cast<std::size_t>(components));
    Numbers mean;
    int count = 0;
    std::vector<MeshPoint> points;
    std::vector<int> flags;
    while (!mesh.IsAtEnd()) {
        int flag = 0;
        if (layout.hasFlag && !mesh.Flag(flag)) break;
        const int colors = flag == 0 ? layout.colors : layout.nextColors;
        if (type >= COONS) points.clear();
        if (!mesh.AddPoints(flag == 0 ? layout.points : layout.nextPoints, points) || !mesh.AddColors(colors, sum))
            break;
        mesh.Align();
        flags.push_back(flag);
        count += colors;
        mean = sum;
    }
    for (double& component : mean) component /= count;
    points.resize(std::min(points.size(), flags.size()));
    if (outline && type == FREE_TRIANGLES) *outline = OutlineOfTriangles(points, flags);
    if (outline && type == LATTICE) {
        *outline =
            OutlineOfLattice(points, static_cast<std::size_t>(std::max(IntegerOf(shading, "VerticesPerRow"), 0)));
    }
    return mean;
}

/// Components that the data of a mesh without functions have, by the device space's name; an array's space says nothing
/// here but for the families of one component and those that name their colorants.
int CountComponents(const CElement& space) {
    const auto* array = As<CArrayElement>(&space);
    const auto* name = As<CSimpElement>(array ? array->GetAt(0) : &space);
    const std::string_view family = name ? name->m_pName->Text() : std::string_view();
    if (family == "DeviceGray" || family == "CIEBasedA" || family == "Separation" || family == "Indexed") return 1;
    if (family == "DeviceCMYK" || family == "CIEBasedDEFG") return 4;
    const auto* names = array && family == "DeviceN" ? As<CArrayElement>(array->GetAt(1)) : nullptr;
    return names ? std::clamp(names->GetLength(), 1, 32) : 3;
}

}  // namespace

int FindShadingColor(CFilterEPS& m, const CDictionary& shading, RgbColor& color, bool& isKnown, MeshOutline* outline) {
    isKnown = false;
    const CElement* number = shading.GetValue("ShadingType");
    const CElement* space = shading.GetValue("ColorSpace");
    if (!number || !space) return m.Fail(PSERR_UNDEFINED);
    if (!As<CNumberElement>(number)) return m.Fail(PSERR_TYPECHECK);
    const int type = IntegerOf(shading, "ShadingType");
    if (type < FUNCTION_BASED || type > TENSOR) return m.Fail(PSERR_RANGE);

    const CElement* function = shading.GetValue("Function");
    Numbers components;
    if (type >= FREE_TRIANGLES) {
        components = MeanOfMesh(shading, type, function ? 1 : CountComponents(*space), outline);
    } else {
        Numbers domain = NumbersOf(shading, "Domain");
        const std::size_t bounds = type == FUNCTION_BASED ? 4 : 2;
        if (domain.size() != bounds) domain = type == FUNCTION_BASED ? Numbers{0, 1, 0, 1} : Numbers{0, 1};
        for (std::size_t i = 0; i < bounds; i += 2) components.push_back((domain[i] + domain[i + 1]) / 2);
        if (!function) return m.Fail(PSERR_UNDEFINED);
    }
    if (function && !components.empty()) components = ApplyFunction(*function, components);
    return components.empty() ? 1 : FindColorIn(m, *space, components, color, isKnown);
}
