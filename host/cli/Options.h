// The command line of epsimport: what the user asked for, checked and complete.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class DrawingFormat { Json, Svg, Dxf, None };
enum class CurveStyle { Spline, Polyline };

struct Options {
    std::vector<std::string> files;
    std::string output;  // empty when not given; "-" is standard output
    DrawingFormat format = DrawingFormat::Json;
    std::optional<std::string> tolerance;  // text for the dialog's edit control, as the user wrote it
    bool fillOutline = true;
    std::uint16_t hostVersion = 5;
    bool wantsInformation = false;
    bool english = false;
    CurveStyle curves = CurveStyle::Spline;
    double flatness = 0.05;  // mm
    unsigned jobs = 1;
    std::optional<double> timeout;             // seconds
    std::optional<std::uint64_t> memoryLimit;  // bytes
    bool allowFileAccess = false;
    bool quiet = false;
};

// The file name ending of a format, with its dot; empty for DrawingFormat::None.
const char* EndingOf(DrawingFormat format);

// The program's exit statuses.
enum ExitStatus : int { kExitDone = 0, kExitNotWhole = 1, kExitUsage = 2 };

// Reads the command line. When there is nothing to import (help, version, a mistake) it has already printed
// what there is to say, leaves `options` unusable and answers the exit status; otherwise it answers nothing.
std::optional<int> ParseOptions(int argc, const char* const* argv, Options& options);
