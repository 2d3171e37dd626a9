// The body of the fuzz target of what stands behind an import: figures made of bytes or drawn by a program, the passes
// over them, and every writer, whose output is read back by small checkers.
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/Check.h"
#include "drawing/FigureReader.h"
#include "drawing/Work.h"
#include "drawing/passes/FlattenCurves.h"
#include "drawing/passes/Pipeline.h"
#include "fuzz/Harness.h"
#include "interp/FilterEPS.h"
#include "objects/Sources.h"
#include "support/TestFrame.h"
#include "writers/DxfWriter.h"
#include "writers/JsonWriter.h"
#include "writers/SvgWriter.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

/// What a writer writes.
template <class Write>
std::string Written(Write write) {
    const int file = ::memfd_create("drawing", 0);
    Require(file >= 0);
    COutputFile out("/proc/self/fd/" + std::to_string(file));
    write(out);
    Require(out.Close());
    std::string text(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)), '\0');
    Require(::pread(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
    ::close(file);
    return text;
}

double FiniteNumber(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    Require(error == std::errc() && end == text.data() + text.size() && std::isfinite(value));
    return value;
}

/// Elements that open and close, attributes in quotation marks, and path data of finite numbers.
void CheckSvg(std::string_view text) {
    std::vector<std::string_view> open;
    for (std::size_t at = 0; (at = text.find('<', at)) != std::string_view::npos;) {
        const std::size_t end = text.find('>', at);
        Require(end != std::string_view::npos);
        const std::string_view tag = text.substr(at + 1, end - at - 1);
        at = end;
        if (tag.starts_with('?')) continue;
        if (tag.starts_with('/')) {
            Require(!open.empty() && open.back() == tag.substr(1));
            open.pop_back();
            continue;
        }
        if (!tag.ends_with('/')) open.push_back(tag.substr(0, tag.find(' ')));
        constexpr std::string_view path = " d=\"";
        const std::size_t data = tag.find(path);
        if (data == std::string_view::npos) continue;
        const std::string_view commands = tag.substr(data + path.size(), tag.find('"', data + path.size()) - data - 4);
        for (std::size_t i = 0; i < commands.size();) {
            const std::size_t number = commands.find_first_not_of("MLCAZh ,", i);
            if (number == std::string_view::npos) break;
            i = std::min(commands.find_first_of("MLCAZh ,", number), commands.size());
            FiniteNumber(commands.substr(number, i - number));
        }
    }
    Require(open.empty());
}

/// Pairs of lines: group codes, and values of the kind that a code has; sections that begin and end.
void CheckDxf(std::string_view text) {
    const auto line = [&text] {
        const std::size_t end = text.find('\n');
        Require(end != std::string_view::npos);
        std::string_view result = text.substr(0, end);
        text.remove_prefix(end + 1);
        result.remove_prefix(std::min(result.find_first_not_of(' '), result.size()));
        return result;
    };
    bool inSection = false, ended = false;
    while (!text.empty()) {
        Require(!ended);
        const std::string_view code = line();
        const std::string_view value = line();
        const double group = FiniteNumber(code);
        if (group >= 10 && group < 60) FiniteNumber(value);
        if (group >= 60 && group < 80) Require(FiniteNumber(value) == std::floor(FiniteNumber(value)));
        if (group != 0) continue;
        if (value == "SECTION") Require(!std::exchange(inSection, true));
        if (value == "ENDSEC") Require(std::exchange(inSection, false));
        ended = value == "EOF";
    }
    Require(ended && !inSection);
}

void CheckFigures(const std::vector<Figure>& figures) {
    for (const Figure& figure : figures) {
        std::size_t points = 1;
        for (const SegmentKind kind : figure.segments) points += PointsOf(kind);
        Require(figure.points.size() == points);
        for (const Point& point : figure.points) Require(std::isfinite(point.x) && std::isfinite(point.y));
    }
}

/// Takes an input apart; behind its end come zeros.
class CBytes {
public:
    explicit CBytes(std::span<const std::uint8_t> bytes) : m_Bytes(bytes) {}

    [[nodiscard]] bool IsEmpty() const { return m_Bytes.empty(); }
    unsigned Byte() {
        if (m_Bytes.empty()) return 0;
        const unsigned byte = m_Bytes[0];
        m_Bytes = m_Bytes.subspan(1);
        return byte;
    }
    /// Mostly on a coarse grid, so that much meets, lies on one line, or is drawn twice; or near it; or any float.
    double Coordinate() {
        const unsigned byte = Byte();
        if (byte < 200) return byte % 16;
        if (byte < 240) return byte % 16 + Byte() * 1e-4;
        float any = 0;
        std::array<unsigned char, sizeof any> raw{};
        for (unsigned char& part : raw) part = static_cast<unsigned char>(Byte());
        std::memcpy(&any, raw.data(), sizeof any);
        return std::isfinite(any) ? any : 0;
    }
    Point NextPoint() {
        const double x = Coordinate();
        return {x, Coordinate()};
    }
    [[nodiscard]] std::string Rest() const { return {m_Bytes.begin(), m_Bytes.end()}; }

private:
    std::span<const std::uint8_t> m_Bytes;
};

std::vector<Figure> MakeFigures(CBytes& bytes) {
    constexpr std::size_t most = 100;
    std::vector<Figure> figures;
    while (!bytes.IsEmpty() && figures.size() < most) {
        const unsigned kind = bytes.Byte();
        if (kind % 8 == 7 && !figures.empty()) {  // once more
            figures.push_back(figures[bytes.Byte() % figures.size()]);
            continue;
        }
        Figure figure;
        figure.color = kind & 1 ? 0x0000FF : 0;
        figure.closed = (kind & 2) != 0;
        figure.points.push_back(bytes.NextPoint());
        for (unsigned left = bytes.Byte() % 12; left > 0; --left) {
            if (bytes.Byte() % 3 != 0) {
                figure.AddLine(bytes.NextPoint());
                continue;
            }
            const Point first = bytes.NextPoint();
            const Point second = bytes.NextPoint();
            figure.AddCurve(first, second, bytes.NextPoint());
        }
        figures.push_back(std::move(figure));
    }
    return figures;
}

/// A frame that lets a run take so many polls.
class PatientFrame final : public TestFrame {
public:
    bool OnProgress(const tagImportProgress&) override { return ++m_nPolls > 3; }
    bool AllowsFileAccess() const override { return false; }
    int m_nPolls = 0;
};

/// What a program draws.
Drawing Import(const std::string& program) {
    PatientFrame frame;
    CEntGroup group;
    CFilterEPS machine(5);
    machine.OpenInputSource(std::make_unique<CMemorySource>(program));
    machine.RunFile(&group);
    machine.CloseInputFile();
    Drawing drawing;
    // The group lets go of them when it goes.
    for (CEntity* child = group.GetFirstChild(); child; child = child->m_pNext) drawing.entities.emplace_back(child);
    return drawing;
}

PassSettings SettingsOf(unsigned bits) {
    PassSettings settings;
    settings.doubles = static_cast<DoublesStyle>(bits % 3);
    settings.curves = static_cast<CurveStyle>(bits / 3 % 3);
    const std::optional<double> reach[] = {std::nullopt, 0.0, 0.01, 1.0};
    settings.join = reach[bits / 9 % 4];
    settings.origin = bits / 36 % 2 == 0 ? Origin::Keep : Origin::Corner;
    settings.scale = bits / 72 % 2 == 0 ? 1 : 2.5;
    if (bits >= 144) settings.skippedColors = {0x0000FF};
    return settings;
}

}  // namespace

void FuzzWriters(const std::uint8_t* data, std::size_t size) {
    CBytes bytes({data, size});
    const bool isProgram = bytes.Byte() % 4 == 0;
    const PassSettings settings = SettingsOf(bytes.Byte());
    Drawing drawing;
    std::vector<Figure> figures;
    if (isProgram) {
        drawing = Import("%!PS\n" + bytes.Rest());
        Require(nlohmann::json::accept(Written([&](COutputFile& out) { WriteJson(drawing, std::nullopt, out); })));
        figures = ReadFigures(std::span<const EntityPtr>(drawing.entities), 1).figures;
    } else {
        figures = MakeFigures(bytes);
    }
    CheckFigures(figures);
    std::optional<CheckReport> check;
    try {
        int questions = 0;
        const CWorkLimit limit([&] { return ++questions > 10; });
        RunPasses(figures, settings);
        CheckFigures(figures);
        check = CheckDrawing(figures, {});
        if (settings.curves == CurveStyle::Polyline) figures = FlattenCurves(std::move(figures), 0.1);
    } catch (const WorkEnded&) {
        return;
    }
    CheckFigures(figures);
    Require(nlohmann::json::accept(Written([&](COutputFile& out) { WriteJson(drawing, figures, check, out); })));
    CheckSvg(Written([&](COutputFile& out) { WriteSvg(figures, out); }));
    CheckDxf(Written([&](COutputFile& out) { WriteDxf(figures, out); }));
    CheckDxf(Written([&](COutputFile& out) { WriteDxfR12(figures, out); }));
}
