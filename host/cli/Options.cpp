// The table of command line options, on top of CLI11. Range checks that need two options together are at the
// end.
#include "cli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <limits>
#include <map>
#include <numeric>
#include <string_view>

#include "Version.h"
#include "cli/Text.h"
#include "import/MemoryLimit.h"

namespace {

const std::map<std::string, DrawingFormat> kFormats{{"json", DrawingFormat::Json},
                                                    {"svg", DrawingFormat::Svg},
                                                    {"dxf", DrawingFormat::Dxf},
                                                    {"none", DrawingFormat::None}};

const std::map<std::string, CurveStyle> kCurves{
    {"spline", CurveStyle::Spline}, {"arc", CurveStyle::Arc}, {"polyline", CurveStyle::Polyline}};

// "drawing.SVG" -> svg; empty for a name without an ending.
std::string EndingOf(const std::string& path) {
    std::string ending = std::filesystem::path(path).extension().string();
    if (!ending.empty()) ending.erase(0, 1);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

// CLI11's own PositiveNumber lets "nan" pass.
std::string CheckPositive(const std::string& text) {
    double value = 0;
    if (!CLI::detail::lexical_cast(text, value)) return "not a number: " + text;
    return value > 0 && std::isfinite(value) ? std::string() : "must be greater than 0: " + text;
}

std::string CheckColor(const std::string& text) {
    const bool hexadecimal = text.size() == 6 && std::all_of(text.begin(), text.end(),
                                                             [](unsigned char c) { return std::isxdigit(c) != 0; });
    return hexadecimal ? std::string() : "no colour: " + text + " (six hexadecimal digits, RRGGBB)";
}

// 0x00BBGGRR of RRGGBB.
std::uint32_t ColorOf(const std::string& text) {
    const unsigned long value = std::stoul(text, nullptr, 16);
    return static_cast<std::uint32_t>(value >> 16 | (value & 0xFF00) | (value & 0xFF) << 16);
}

std::string CheckNotNegative(const std::string& text) {
    double value = 0;
    if (!CLI::detail::lexical_cast(text, value)) return "not a number: " + text;
    return value >= 0 && std::isfinite(value) ? std::string() : "must not be less than 0: " + text;
}

// "true" is what a flag without a value has.
std::string CheckDoubles(const std::string& text) {
    return text == "true" || text == "contours" ? std::string() : "takes no value but contours: " + text;
}

// How many letters must change, come or go to make one text of the other.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

// What is wrong with an option that doesn't exist, and which one may have been meant. Empty when all exist.
std::string UnknownOption(const CLI::App& app, int argc, const char* const* argv) {
    for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
        const std::string name = std::string(argv[i]).substr(0, std::string_view(argv[i]).find('='));
        if (name.size() < 3 || name.rfind("--", 0) != 0 || app.get_option_no_throw(name) != nullptr) continue;
        constexpr std::size_t kMostChanges = 3;
        std::size_t least = std::min(kMostChanges, name.size() / 3) + 1;
        std::string meant;
        for (const CLI::Option* option : app.get_options()) {
            for (const std::string& known : option->get_lnames()) {
                const std::size_t distance = EditDistance(name, "--" + known);
                if (distance >= least) continue;
                least = distance;
                meant = "--" + known;
            }
        }
        return "there is no option " + name + (meant.empty() ? "" : "; did you mean " + meant + "?");
    }
    return {};
}

// The old form of DXF knows no splines.
std::string CheckCurves(OutputSettings& output, bool curvesGiven) {
    if (output.dxf != DxfForm::R12) return {};
    if (!curvesGiven && output.format == DrawingFormat::Dxf) output.passes.curves = CurveStyle::Arc;
    if (curvesGiven && output.passes.curves == CurveStyle::Spline)
        return "--dxf r12 knows no splines: choose --curves arc or --curves polyline";
    return {};
}

// The mistakes that show only when all options are known. `formatGiven` is whether -f was.
std::string CheckTogether(Options& options, bool formatGiven) {
    const bool several = options.files.size() > 1;
    OutputSettings& output = options.output;
    std::error_code ignored;
    const bool toDirectory =
        several || output.path.ends_with('/') || std::filesystem::is_directory(output.path, ignored);
    if (!formatGiven) {
        const std::string ending = EndingOf(output.path);
        const auto format = kFormats.find(ending);
        if (format != kFormats.end() && ending != "none")
            output.format = format->second;
        else if (!ending.empty() && !toDirectory)
            return "no format has the ending ." + ending + ": choose .svg, .dxf or .json, or one of them with -f";
    }
    const bool toStdout = output.format != DrawingFormat::None && (output.path.empty() || output.path == "-");
    if (options.report == "-" && toStdout) return "the report and the drawing can't share standard output";
    if (!several || output.format == DrawingFormat::None) return {};
    if (output.path.empty()) {
        const std::string ending = EndingOf(options.files.back());
        if (options.files.size() == 2 && ending != "none" && kFormats.contains(ending))
            return "to write the drawing to " + options.files.back() + ", put -o before it";
        return "several input files need a directory for their drawings: -o PATH";
    }
    if (output.path == "-") return "the drawings of several input files can't share standard output";
    if (std::filesystem::exists(output.path, ignored) && !std::filesystem::is_directory(output.path, ignored))
        return output.path + " is no directory, and there are several input files";
    return {};
}

int RefuseCommandLine(const std::string& mistake) {
    Complain(ForTerminal(mistake) + "\nRun epsimport --help for more information.");
    return kExitUsage;
}

}  // namespace

const char* EndingOf(DrawingFormat format) {
    switch (format) {
        case DrawingFormat::Json:
            return ".json";
        case DrawingFormat::Svg:
            return ".svg";
        case DrawingFormat::Dxf:
            return ".dxf";
        case DrawingFormat::None:
            break;
    }
    return "";
}

std::optional<int> ParseOptions(int argc, const char* const* argv, Options& options) {
    CLI::App app{"Imports EPS files: runs their PostScript, writes the vector geometry it draws."};
    app.name("epsimport");
    app.get_formatter()->column_width(27);
    app.get_formatter()->label("Positionals", "Arguments");
    app.set_help_flag("-h,--help", "Show this text");
    app.set_version_flag("-V,--version", "epsimport " EPSIMPORT_VERSION, "Show the version");

    std::string formatName;
    std::string language = "zh";
    std::string curves;
    std::string dxf = "r2000";
    double megabytes = 0;
    double timeout = 0;
    std::string tolerance;
    bool noFillOutline = false;
    std::vector<std::string> skippedColors;
    std::string origin;
    std::string dedupe;

    app.add_option("FILE", options.files, "EPS files (- is standard input)")->required()->option_text("...");
    app.add_option("-o,--output", options.output.path, "Drawing; - is standard output; directory for several")
        ->option_text("PATH");
    app.add_option("-f,--format", formatName, "json, svg, dxf or none (default: by PATH, or json)")
        ->option_text("NAME")
        ->check(CLI::IsMember({"json", "svg", "dxf", "none"}));
    auto* toleranceOption =
        app.add_option("-t,--tolerance", tolerance, "Drop shorter line segments, 0.0001 to 5 (0.01)")
            ->option_text("MM");
    app.add_flag("--no-fill-outline", noFillOutline, "Leave out the outlines of filled areas");
    app.add_option("--host-version", options.import.hostVersion, "Host version; below 5 the unit is mm/40 (5)")
        ->option_text("N");
    app.add_flag("--info", options.import.wantsInformation, "Report the file's header comments");
    app.add_flag("--complete", options.import.complete, "Import with all of PostScript's operators");
    app.add_option("--fonts", options.import.fontFolders, "Folder to look for fonts in first; may be repeated")
        ->option_text("DIR")
        ->allow_extra_args(false)
        ->check(CLI::ExistingDirectory);
    app.add_option("--lang", language, "Language of the import's texts: zh or en (zh)")
        ->option_text("L")
        ->check(CLI::IsMember({"zh", "en"}));
    app.add_option("--curves", curves, "Curves as spline, arc or polyline (spline)")
        ->option_text("KIND")
        ->check(CLI::IsMember({"spline", "arc", "polyline"}));
    app.add_option("--flatness", options.output.passes.arcs.flatness, "Tolerance of lines and of chains of arcs (0.05)")
        ->option_text("MM")
        ->check(CheckPositive);
    app.add_option("--arc-tolerance", options.output.passes.arcs.arcTolerance,
                   "Tolerance of one arc for a curve (0.01)")
        ->option_text("MM")
        ->check(CheckPositive);
    app.add_option("--dxf", dxf, "Form of DXF: r2000 or r12 (r2000)")
        ->option_text("FORM")
        ->check(CLI::IsMember({"r2000", "r12"}));
    // A flag, so that --dedupe without a value takes no FILE for one.
    app.add_flag("--dedupe", dedupe, "Draw nothing twice; =contours: no contour twice")
        ->option_text("[=contours]")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->check(CheckDoubles);
    app.add_option("--join", options.output.passes.join, "Join contours whose ends lie so near (0: equal ends)")
        ->option_text("MM")
        ->check(CheckNotNegative);
    app.add_flag("--check", options.output.check, "Report what a cutter would trip over");
    app.add_option("--origin", origin, "Lower left corner: keep, or corner for 0, 0 (keep)")
        ->option_text("PLACE")
        ->check(CLI::IsMember({"keep", "corner"}));
    app.add_option("--scale", options.output.passes.scale, "Factor for the size of the drawing (1)")
        ->option_text("F")
        ->check(CheckPositive);
    app.add_option("--skip-color", skippedColors, "Leave this colour out; may be given several times")
        ->option_text("RRGGBB")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CheckColor);
    app.add_option("--report", options.report, "File for a line of JSON for each input")->option_text("FILE");
    app.add_option("-j,--jobs", options.jobs, "Files imported at the same time (1)")
        ->option_text("N")
        ->check(CLI::Range(1u, 4096u));
    auto* timeoutOption = app.add_option("--timeout", timeout, "End each import after this time")
                              ->option_text("SECONDS")
                              ->check(CheckPositive);
    auto* memoryOption = app.add_option("--memory", megabytes, "Most memory that one import may take (3/4 of all)")
                             ->option_text("MB")
                             ->check(CheckPositive);
    app.add_flag("--allow-file-access", options.import.allowFileAccess,
                 "Let programs in EPS files use the file system");
    app.add_flag("-q,--quiet", options.quiet, "Don't show message boxes on standard error");

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& stop) {
        return app.exit(stop, std::cout, std::cerr) == 0 ? kExitDone : kExitUsage;
    } catch (const CLI::ParseError& stop) {
        const std::string unknown = UnknownOption(app, argc, argv);
        if (!unknown.empty()) return RefuseCommandLine(unknown);
        return RefuseCommandLine(options.files.empty() && stop.get_name() == "RequiredError" ? "no input FILE is given"
                                                                                             : stop.what());
    }

    if (!formatName.empty()) options.output.format = kFormats.at(formatName);
    options.dialog.fillOutline = !noFillOutline;
    options.import.english = language == "en";
    if (!curves.empty()) options.output.passes.curves = kCurves.at(curves);
    if (!dedupe.empty())
        options.output.passes.doubles =
            dedupe == "contours" ? DoublesStyle::RemoveContours : DoublesStyle::RemoveStretches;
    if (origin == "corner") options.output.passes.origin = Origin::Corner;
    for (const std::string& color : skippedColors) options.output.passes.skippedColors.push_back(ColorOf(color));
    options.output.dxf = dxf == "r12" ? DxfForm::R12 : DxfForm::R2000;
    if (toleranceOption->count() > 0) options.dialog.tolerance = tolerance;
    if (timeoutOption->count() > 0) options.import.timeout = timeout;
    if (memoryOption->count() > 0) {
        const double bytes = megabytes * 1024 * 1024;
        constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
        options.import.memoryLimit =
            bytes < static_cast<double>(kMost) ? static_cast<std::uint64_t>(bytes) : static_cast<std::uint64_t>(kMost);
    } else if (const std::optional<std::uint64_t> usual = UsualMemoryLimit()) {
        options.import.memoryLimit = *usual / options.jobs;  // those that run at once share it
    }
    std::string mistake = CheckTogether(options, !formatName.empty());
    if (mistake.empty()) mistake = CheckCurves(options.output, !curves.empty());
    if (!mistake.empty()) return RefuseCommandLine(mistake);
    return std::nullopt;
}
