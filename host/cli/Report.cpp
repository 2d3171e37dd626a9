#include "cli/Report.h"

#include "cli/Options.h"
#include "writers/JsonText.h"
#include "writers/ReportJson.h"

namespace {

const char* NameOf(ImportEnd end) {
    switch (end) {
        case ImportEnd::Whole:
            return "whole";
        case ImportEnd::NotOpened:
            return "not-opened";
        case ImportEnd::Refused:
            return "refused";
        case ImportEnd::Failed:
            return "failed";
        case ImportEnd::NoSection:
            return "no-section";
        case ImportEnd::TimedOut:
            return "timed-out";
        case ImportEnd::Interrupted:
            return "interrupted";
        case ImportEnd::OutOfMemory:
            return "out-of-memory";
    }
    return "unknown";
}

const char* NameOfTail(std::int32_t tail) {
    switch (tail) {
        case RT_TOKEN:
            return "token";
        case RT_STRING:
            return "string";
        case RT_PROCEDURE:
            return "procedure";
        case RT_ENDCOMMENT:
            return "behind-eof-comment";
    }
    return "unknown";
}

std::string TextOrNull(const std::string& text) { return text.empty() ? "null" : JsonText(text); }

}  // namespace

std::string ReportLine(const std::string& path, const std::optional<std::string>& output, int status,
                       const std::string& reason, std::size_t entities, const Drawing& drawing) {
    std::string line = "{ \"source\": " + JsonText(path) + ", \"output\": " + (output ? JsonText(*output) : "null");
    line += drawing.complete ? ", \"dialect\": \"complete\"" : ", \"dialect\": \"plain\"";
    line += ", \"status\": " + std::to_string(status) + ", \"end\": \"" + NameOf(drawing.end) + '"';
    line += ", \"reason\": " + TextOrNull(reason) + ", \"entities\": " + std::to_string(entities);
    line += ", \"messages\": [";
    const char* separator = "";
    for (const MessageBox& box : drawing.messages) {
        line += separator + JsonText(box.text);
        separator = ", ";
    }
    line += ']';
    const tagRunReport& report = drawing.report;
    if (report.failure) line += ", \"failure\": " + FailureJson(*report.failure);
    if (!report.leftOut.IsEmpty()) line += ", \"leftOut\": " + LeftOutJson(report.leftOut);
    if (!report.fonts.empty()) line += ", \"fonts\": " + FontsJson(report.fonts);
    if (report.nTail != RT_NONE) {
        line += std::string(", \"tail\": { \"kind\": \"") + NameOfTail(report.nTail) +
                "\", \"line\": " + std::to_string(report.nTailLine) +
                ", \"offset\": " + std::to_string(report.nTailOffset) + " }";
    }
    return line + " }";
}

std::string ReportLineWithoutDrawing(const std::string& path, const char* end, const std::string& reason) {
    return "{ \"source\": " + JsonText(path) + ", \"output\": null, \"status\": " + std::to_string(kExitNotWhole) +
           ", \"end\": \"" + end + "\", \"reason\": " + TextOrNull(reason) + ", \"entities\": 0, \"messages\": [] }";
}
