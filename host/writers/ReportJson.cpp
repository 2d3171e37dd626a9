#include "writers/ReportJson.h"

#include <cmath>
#include <cstdio>

#include "writers/JsonText.h"

namespace {

// Tenths of a micrometre, as many as there are.
std::string NumberText(double value) {
    constexpr double kSteps = 1e4;
    char text[64];
    std::snprintf(text, sizeof text, "%.12g", std::round(value * kSteps) / kSteps + 0.0);
    return std::isfinite(value) ? text : "null";
}

std::string PairText(double x, double y) { return "[" + NumberText(x) + ", " + NumberText(y) + "]"; }

// Of what a drawing lacks, what there is.
std::string LackingJson(const tagLeftOut& leftOut) {
    std::string text;
    const auto add = [&text](const char* name, std::int64_t count) {
        if (count == 0) return;
        text += std::string(text.empty() ? " \"" : ", \"") + name + "\": " + std::to_string(count);
    };
    add("texts", leftOut.nTexts);
    add("images", leftOut.nImages);
    add("shadings", leftOut.nShadings);
    add("patterns", leftOut.nPatterns);
    add("points", leftOut.nPoints);
    return text.empty() ? "{}" : "{" + text + " }";
}

}  // namespace

std::string FailureJson(const tagRunFailure& failure) {
    return "{ \"error\": " + JsonText(failure.strError) + ", \"operator\": " + JsonText(failure.strOperator) +
           ", \"line\": " + std::to_string(failure.nLine) + ", \"offset\": " + std::to_string(failure.nOffset) + " }";
}

std::string FontsJson(const std::vector<tagFontUse>& fonts) {
    std::string text = "[";
    const char* separator = "";
    for (const tagFontUse& font : fonts) {
        text += separator + ("{ \"name\": " + JsonText(font.strName)) +
                ", \"used\": " + (font.strUsed.empty() ? "null" : JsonText(font.strUsed)) +
                ", \"embedded\": " + (font.bEmbedded ? "true" : "false") +
                ", \"glyphs\": " + std::to_string(font.nGlyphs) + ", \"missing\": " + std::to_string(font.nMissing) +
                " }";
        separator = ", ";
    }
    return text + "]";
}

std::string LeftOutJson(const tagLeftOut& leftOut) {
    std::string text = "{ \"texts\": " + std::to_string(leftOut.nTexts) + ", \"fonts\": [";
    for (std::size_t i = 0; i < leftOut.strFonts.size(); ++i)
        text += (i > 0 ? ", " : "") + JsonText(leftOut.strFonts[i]);
    text += "], \"images\": " + std::to_string(leftOut.nImages);
    text += ", \"shadings\": " + std::to_string(leftOut.nShadings);
    text += ", \"patterns\": " + std::to_string(leftOut.nPatterns);
    text += ", \"points\": " + std::to_string(leftOut.nPoints);
    if (leftOut.nClips > 0) text += ", \"clips\": " + std::to_string(leftOut.nClips);  // only one dialect has clips
    return text + " }";
}

std::string CheckJson(const CheckReport& check, const Drawing& drawing) {
    const Point corner = check.box.IsEmpty() ? Point() : check.box.Min();
    std::string text = "{ \"size\": " + PairText(check.box.Width(), check.box.Height());
    text += ", \"position\": " + PairText(corner.x, corner.y);
    text += ", \"closed\": " + std::to_string(check.closed) + ", \"open\": " + std::to_string(check.open);
    text += ", \"ends\": " + std::to_string(check.ends) + ", \"endPlaces\": [";
    for (std::size_t i = 0; i < check.endPlaces.size(); ++i)
        text += (i > 0 ? ", " : "") + PairText(check.endPlaces[i].x, check.endPlaces[i].y);
    text += "], \"doubledLength\": " + NumberText(check.doubledLength);
    text += ", \"shortSections\": " + std::to_string(check.shortSections);
    text += ", \"white\": " + std::to_string(check.white);
    text += ", \"outsidePage\": " + std::to_string(check.outsidePage);
    text += ", \"lacking\": " + LackingJson(drawing.report.leftOut) + ", \"advice\": [";
    const std::vector<std::string> advice = AdviceOf(check, drawing);
    for (std::size_t i = 0; i < advice.size(); ++i) text += (i > 0 ? ", " : "") + JsonText(advice[i]);
    return text + "] }";
}

std::vector<std::string> AdviceOf(const CheckReport& check, const Drawing& drawing) {
    std::vector<std::string> advice;
    if (check.doubles > 0) advice.push_back("--dedupe");
    if (check.ends > 0 || check.meets) advice.push_back("--join");
    if (!drawing.complete && (drawing.end == ImportEnd::Failed || !drawing.report.leftOut.IsEmpty()))
        advice.push_back("--complete");
    return advice;
}
