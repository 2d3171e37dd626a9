#include "writers/ReportJson.h"

#include "writers/JsonText.h"

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
