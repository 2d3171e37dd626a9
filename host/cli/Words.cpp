#include "cli/Words.h"

#include <cstdio>

#include "cli/Text.h"

namespace {

std::string SecondsText(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

// "line 41: typecheck in add"
std::string FailureText(const tagRunReport& report) {
    if (!report.failure) return "an error";
    std::string text = "line " + std::to_string(report.failure->nLine) + ": " + report.failure->strError;
    if (!report.failure->strOperator.empty()) text += " in " + ForTerminal(report.failure->strOperator);
    return text;
}

}  // namespace

std::string ReasonOf(const Options& options, const Drawing& drawing) {
    switch (drawing.end) {
        case ImportEnd::Refused:
            if (!drawing.messages.empty() && drawing.information) return "the file's header can't be analysed";
            return "the dialog refused the tolerance " + options.dialog.tolerance.value_or("");
        case ImportEnd::Failed:
            return FailureText(drawing.report);
        case ImportEnd::NoSection:
            return "the file's binary header points outside the file";
        case ImportEnd::TimedOut:
            return "the time ran out (" + SecondsText(options.import.timeout.value_or(0)) + ")";
        case ImportEnd::Interrupted:
            return "interrupted";
        case ImportEnd::OutOfMemory:
            return "the memory ran out";
        case ImportEnd::Whole:
        case ImportEnd::NotOpened:
            break;
    }
    return {};
}

std::string AmountText(const Survey& survey, std::size_t entities) {
    return CountText(entities, "entity", "entities") + " (" + CountText(survey.lines, "segment", "segments") + ", " +
           CountText(survey.curves, "curve", "curves") + ")";
}

std::string SizeText(const Survey& survey) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6g x %.6g mm", survey.box.Width(), survey.box.Height());
    return text;
}
