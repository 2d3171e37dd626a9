// The command line of epsimport: what the user asked for, checked and complete.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "drawing/passes/Pipeline.h"
#include "import/ImportSettings.h"

enum class DrawingFormat { Json, Svg, Dxf, None };
enum class DxfForm { R2000, R12 };

/// What is typed and pressed in the import dialog.
struct DialogAnswers {
    std::optional<std::string> tolerance;  ///< text for the edit control, as the user wrote it
    bool fillOutline = true;
};

struct OutputSettings {
    std::string path;  ///< empty when not given; "-" is standard output
    DrawingFormat format = DrawingFormat::Json;
    DxfForm dxf = DxfForm::R2000;
    PassSettings passes;
    bool check = false;
};

struct Options {
    std::vector<std::string> files;
    ImportSettings import;
    DialogAnswers dialog;
    OutputSettings output;
    unsigned jobs = 1;
    std::string report;  ///< path of the report; empty for none
    bool quiet = false;
};

/// The file name ending of a format, with its dot; empty for DrawingFormat::None.
const char* EndingOf(DrawingFormat format);

/// The program's exit statuses.
enum ExitStatus : int { kExitDone = 0, kExitNotWhole = 1, kExitUsage = 2 };

/// Reads the command line. When there is nothing to import (help, version, a mistake) it has already printed
/// what there is to say, leaves `options` unusable and answers the exit status; otherwise it answers nothing.
std::optional<int> ParseOptions(int argc, const char* const* argv, Options& options);
