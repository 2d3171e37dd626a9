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

#include "Version.h"

namespace {

const std::map<std::string, DrawingFormat> kFormats{{"json", DrawingFormat::Json},
                                                    {"svg", DrawingFormat::Svg},
                                                    {"dxf", DrawingFormat::Dxf},
                                                    {"none", DrawingFormat::None}};

// "drawing.SVG" -> Svg; an ending that is no format's own means JSON.
DrawingFormat FormatByEnding(const std::string& output) {
    std::string ending = std::filesystem::path(output).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (ending == ".svg") return DrawingFormat::Svg;
    if (ending == ".dxf") return DrawingFormat::Dxf;
    return DrawingFormat::Json;
}

// CLI11's own PositiveNumber lets "nan" pass.
std::string CheckPositive(const std::string& text) {
    double value = 0;
    if (!CLI::detail::lexical_cast(text, value)) return "not a number: " + text;
    return value > 0 && std::isfinite(value) ? std::string() : "must be greater than 0: " + text;
}

std::string CheckTogether(const Options& options) {
    const bool several = options.files.size() > 1;
    if (several && options.output.format != DrawingFormat::None) {
        if (options.output.path.empty()) return "several input files need a directory for their drawings: -o PATH";
        if (options.output.path == "-") return "the drawings of several input files can't share standard output";
        std::error_code ignored;
        if (std::filesystem::exists(options.output.path, ignored) &&
            !std::filesystem::is_directory(options.output.path, ignored))
            return options.output.path + " is no directory, and there are several input files";
    }
    return {};
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
    app.set_help_flag("--help", "Show this text");
    app.set_version_flag("--version", "epsimport " EPSIMPORT_VERSION, "Show the version");

    std::string formatName;
    std::string language = "zh";
    std::string curves = "spline";
    double megabytes = 0;
    double timeout = 0;
    std::string tolerance;
    bool noFillOutline = false;

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
    app.add_option("--lang", language, "Language of the import's texts: zh or en (zh)")
        ->option_text("L")
        ->check(CLI::IsMember({"zh", "en"}));
    app.add_option("--curves", curves, "Curves in DXF: spline or polyline (spline)")
        ->option_text("KIND")
        ->check(CLI::IsMember({"spline", "polyline"}));
    app.add_option("--flatness", options.output.flatness, "Tolerance of --curves polyline (0.05)")
        ->option_text("MM")
        ->check(CheckPositive);
    app.add_option("-j,--jobs", options.jobs, "Files imported at the same time (1)")
        ->option_text("N")
        ->check(CLI::Range(1u, 4096u));
    auto* timeoutOption = app.add_option("--timeout", timeout, "End each import after this time")
                              ->option_text("SECONDS")
                              ->check(CheckPositive);
    auto* memoryOption = app.add_option("--memory", megabytes, "Most memory that one import may take")
                             ->option_text("MB")
                             ->check(CheckPositive);
    app.add_flag("--allow-file-access", options.import.allowFileAccess,
                 "Let programs in EPS files use the file system");
    app.add_flag("-q,--quiet", options.quiet, "Don't show message boxes on standard error");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& stop) {
        return app.exit(stop, std::cout, std::cerr) == 0 ? kExitDone : kExitUsage;
    }

    options.output.format = formatName.empty() ? FormatByEnding(options.output.path) : kFormats.at(formatName);
    options.dialog.fillOutline = !noFillOutline;
    options.import.english = language == "en";
    options.output.curves = curves == "polyline" ? CurveStyle::Polyline : CurveStyle::Spline;
    if (toleranceOption->count() > 0) options.dialog.tolerance = tolerance;
    if (timeoutOption->count() > 0) options.import.timeout = timeout;
    if (memoryOption->count() > 0) {
        const double bytes = megabytes * 1024 * 1024;
        constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
        options.import.memoryLimit =
            bytes < static_cast<double>(kMost) ? static_cast<std::uint64_t>(bytes) : static_cast<std::uint64_t>(kMost);
    }
    if (const std::string mistake = CheckTogether(options); !mistake.empty()) {
        std::cerr << "epsimport: " << mistake << "\nRun with --help for more information.\n";
        return kExitUsage;
    }
    return std::nullopt;
}
