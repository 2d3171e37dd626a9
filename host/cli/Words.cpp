// All words about imports, apart from those of the message boxes, which are the plug-in's.
#include "cli/Words.h"

#include <cstdio>

#include "cli/Text.h"
#include "import/EnglishResources.h"

namespace {

std::string SecondsText(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

// " (512 MB)"
std::string LimitText(const std::optional<std::uint64_t>& bytes) {
    return bytes ? " (" + std::to_string(*bytes >> 20) + " MB)" : "";
}

std::string LineText(std::int64_t line) { return "line " + std::to_string(line) + ": "; }

// Cut short: a token may be as long as the file.
std::string Quoted(const std::string& token) {
    constexpr std::size_t kMost = 40;
    return '"' + (token.size() > kMost ? token.substr(0, kMost) + "..." : token) + '"';
}

// "line 41: typecheck in add (operand of the wrong type)"
std::string FailureText(const std::optional<tagRunFailure>& failure) {
    if (!failure) return "the import ended with an error";
    std::string text = LineText(failure->nLine) + failure->strError;
    if (!failure->strOperator.empty()) text += " in " + failure->strOperator;
    const std::string_view meaning = EnglishErrorText(failure->nError);
    if (!meaning.empty()) text += " (" + std::string(meaning) + ")";
    return text;
}

std::string TailText(const tagRunReport& report) {
    const std::string where = LineText(report.nTailLine);
    switch (report.nTail) {
        case RT_TOKEN:
            return where + Quoted(report.strTail) + " did not run: the file ends without a line feed behind it";
        case RT_STRING:
            return where + "the file ends inside the string that begins here";
        case RT_PROCEDURE:
            return where + "the file ends inside the procedure that begins here, which did not run";
        case RT_ENDCOMMENT:
            return where + "%%EOF stands before the end of the file; what follows it did not run";
    }
    return {};
}

// "12 texts (Helvetica, Times-Roman), 1 image"
std::string LeftOutText(const tagLeftOut& leftOut) {
    std::string text;
    const auto add = [&text](std::int64_t count, const char* one, const char* many) {
        if (count == 0) return;
        if (!text.empty()) text += ", ";
        text += CountText(static_cast<std::uint64_t>(count), one, many);
    };
    add(leftOut.nTexts, "text", "texts");
    if (!leftOut.strFonts.empty()) {
        constexpr std::size_t kMost = 5;
        std::string fonts;
        for (std::size_t i = 0; i < leftOut.strFonts.size() && i < kMost; ++i)
            fonts += (i > 0 ? ", " : "") + leftOut.strFonts[i];
        if (leftOut.strFonts.size() > kMost) fonts += ", ...";
        text += " (" + fonts + ")";
    }
    add(leftOut.nImages, "image", "images");
    add(leftOut.nShadings, "shading", "shadings");
    add(leftOut.nPatterns, "pattern fill", "pattern fills");
    add(leftOut.nPoints, "path point beyond the limit", "path points beyond the limit");
    return text;
}

}  // namespace

std::string ReasonOf(const Options& options, const Drawing& drawing) {
    switch (drawing.end) {
        case ImportEnd::NotOpened:
            return drawing.openError;
        case ImportEnd::Refused:
            return "the dialog refused the tolerance " + options.dialog.tolerance.value_or("");
        case ImportEnd::Failed:
            return FailureText(drawing.report.failure);
        case ImportEnd::NoSection:
            return "the file's binary header points outside the file";
        case ImportEnd::TimedOut:
            return "the time ran out (" + SecondsText(options.import.timeout.value_or(0)) + ")";
        case ImportEnd::Interrupted:
            return "interrupted";
        case ImportEnd::OutOfMemory:
            return "the memory ran out" + LimitText(options.import.memoryLimit);
        case ImportEnd::Whole:
            break;
    }
    return {};
}

std::string RemedyOf(const Options& options, const Drawing& drawing) {
    switch (drawing.end) {
        case ImportEnd::Refused:
            return "-t takes 0.0001 to 5";
        case ImportEnd::Failed:
            return drawing.fileAccessDenied ? "the program asked for a file, and --allow-file-access lets it" : "";
        case ImportEnd::TimedOut:
            return "a greater --timeout gives it longer";
        case ImportEnd::OutOfMemory:
            return options.import.memoryLimit ? "a greater --memory gives it more" : "";
        case ImportEnd::Whole:
        case ImportEnd::NotOpened:
        case ImportEnd::NoSection:
        case ImportEnd::Interrupted:
            break;
    }
    return {};
}

std::vector<std::string> WarningsOf(const Drawing& drawing) {
    std::vector<std::string> warnings;
    if (const std::string tail = TailText(drawing.report); !tail.empty()) warnings.push_back("warning: " + tail);
    const tagLeftOut& leftOut = drawing.report.leftOut;
    if (const std::string text = LeftOutText(leftOut); !text.empty()) warnings.push_back("not drawn: " + text);
    if (leftOut.nClips > 0)
        warnings.push_back("not clipped: " + CountText(static_cast<std::uint64_t>(leftOut.nClips), "clip", "clips") +
                           " would have cut the drawing");
    return warnings;
}

std::string AmountText(const Survey& survey, std::size_t entities) {
    if (entities == 0) return "nothing";
    return CountText(entities, "entity", "entities") + " (" + CountText(survey.lines, "segment", "segments") + ", " +
           CountText(survey.curves, "curve", "curves") + ")";
}

std::string PassesText(const PassReport& report) {
    std::string text;
    if (report.circles > 0) text += CountText(report.circles, "circle", "circles") + ", ";
    return text;
}

std::string SizeText(const Survey& survey) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6g x %.6g mm", survey.box.Width(), survey.box.Height());
    return text;
}
