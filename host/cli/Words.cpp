// All words about imports, apart from those of the message boxes, which are the plug-in's.
#include "cli/Words.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "cli/Text.h"
#include "import/EnglishResources.h"
#include "writers/ReportJson.h"

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

// A name out of a file, cut short, as it may be as long as the file, and with bytes that no terminal should see as
// \ooo.
std::string Printable(const std::string& token) {
    constexpr std::size_t kMost = 40;
    std::string text;
    for (const char c : token.substr(0, kMost)) {
        if (c >= ' ' && c <= '~') {
            text += c;
        } else {
            char octal[5];
            std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned>(static_cast<unsigned char>(c)));
            text += octal;
        }
    }
    return token.size() > kMost ? text + "..." : text;
}

std::string Quoted(const std::string& token) { return '"' + Printable(token) + '"'; }

// "line 41: typecheck in add (operand of the wrong type)"; "line 41: the program ended itself (stop)"
std::string FailureText(const std::optional<tagRunFailure>& failure) {
    if (!failure) return "the import ended with an error";
    if (failure->nError < 0)  // no error, and so no box
        return LineText(failure->nLine) + "the program ended itself (" + Printable(failure->strOperator) + ")";
    std::string text = LineText(failure->nLine) + Printable(failure->strError);
    if (!failure->strOperator.empty()) text += " in " + Printable(failure->strOperator);
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

// "A, B, C, D, E, ..."
std::string ListText(const std::vector<std::string>& names) {
    constexpr std::size_t kMost = 5;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < kMost; ++i) text += (i > 0 ? ", " : "") + names[i];
    if (names.size() > kMost) text += ", ...";
    return text;
}

std::string CharactersText(std::int64_t count) {
    return CountText(static_cast<std::uint64_t>(count), "character", "characters") + " left out: ";
}

// Whether the package of the standard fonts has a font of that name, by its family.
bool IsStandardFont(const std::string& name) {
    constexpr std::string_view kFamilies[] = {"Arial",     "AvantGarde",   "Bookman",     "Courier",
                                              "Helvetica", "NewCentury",   "Palatino",    "Symbol",
                                              "Times",     "ZapfChancery", "ZapfDingbats"};
    return std::any_of(std::begin(kFamilies), std::end(kFamilies),
                       [&name](std::string_view family) { return name.starts_with(family); });
}

// "no font for Helvetica, Symbol (the package fonts-urw-base35 has them)"
std::string NoFontText(const std::vector<std::string>& fonts) {
    const auto standard = std::count_if(fonts.begin(), fonts.end(), IsStandardFont);
    const char* remedy = standard == 0                  ? "--fonts DIR tells where to look"
                         : standard < std::ssize(fonts) ? "the package fonts-urw-base35 has the standard ones"
                                                        : "the package fonts-urw-base35 has them";
    return "no font for " + ListText(fonts) + " (" + remedy + ")";
}

// What became of characters whose font isn't there, or lacks them, and of fonts that others stand for.
void AddFontWarnings(const std::vector<tagFontUse>& fonts, std::vector<std::string>& warnings) {
    std::vector<std::string> absent, lacking, replaced;
    std::int64_t withoutFont = 0, withoutGlyph = 0;
    for (const tagFontUse& font : fonts) {
        if (font.strUsed.empty()) {
            if (font.nMissing == 0) continue;
            absent.push_back(font.strName);
            withoutFont += font.nMissing;
            continue;
        }
        if (font.nMissing > 0) {
            lacking.push_back(font.strName);
            withoutGlyph += font.nMissing;
        }
        if (!font.bSameWidths) replaced.push_back(font.strName + " drawn with " + font.strUsed);
    }
    if (!absent.empty()) warnings.push_back(CharactersText(withoutFont) + NoFontText(absent));
    if (!lacking.empty()) warnings.push_back(CharactersText(withoutGlyph) + "no glyph in " + ListText(lacking));
    if (!replaced.empty()) warnings.push_back("not the font asked for: " + ListText(replaced));
}

// "12 texts (Helvetica, Times-Roman), 1 image"
std::string LeftOutText(const tagLeftOut& leftOut, bool withTexts) {
    std::string text;
    const auto add = [&text](std::int64_t count, const char* one, const char* many) {
        if (count == 0) return;
        if (!text.empty()) text += ", ";
        text += CountText(static_cast<std::uint64_t>(count), one, many);
    };
    if (withTexts) add(leftOut.nTexts, "text", "texts");
    if (withTexts && !leftOut.strFonts.empty()) text += " (" + ListText(leftOut.strFonts) + ")";
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
    const std::vector<tagFontUse>& fonts = drawing.report.fonts;  // tell more of the texts, where there are any
    if (const std::string text = LeftOutText(leftOut, fonts.empty()); !text.empty())
        warnings.push_back("not drawn: " + text);
    AddFontWarnings(fonts, warnings);
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

std::string TextsText(const tagRunReport& report) {
    if (report.nTextsDrawn == 0) return {};
    std::vector<std::string> replaced;
    std::uint64_t drawn = 0;
    for (const tagFontUse& font : report.fonts) {
        if (font.nGlyphs == 0) continue;
        ++drawn;
        if (!font.bEmbedded && font.strUsed != font.strName) replaced.push_back(font.strName + " with " + font.strUsed);
    }
    std::string text = CountText(static_cast<std::uint64_t>(report.nTextsDrawn), "text", "texts") + " drawn in " +
                       CountText(drawn, "font", "fonts");
    if (!replaced.empty()) text += " (" + ListText(replaced) + ")";
    return text + ", ";
}

std::string PassesText(const PassReport& report) {
    std::string text;
    if (report.skipped > 0) text += CountText(report.skipped, "entity", "entities") + " skipped, ";
    if (report.doubles.sections > 0)
        text += CountText(report.doubles.sections, "doubled section", "doubled sections") + " removed, ";
    if (report.join.contours > 0)
        text += CountText(report.join.contours, "contour", "contours") + " joined from " +
                CountText(report.join.pieces, "piece", "pieces") + ", ";
    if (report.join.closed > 0) text += CountText(report.join.closed, "contour", "contours") + " closed, ";
    if (report.circles > 0) text += CountText(report.circles, "circle", "circles") + ", ";
    return text;
}

std::string SizeText(const CBox& box) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6g x %.6g mm", box.Width(), box.Height());
    return text;
}

std::string CheckText(const CheckReport& check, const Drawing& drawing) {
    constexpr std::size_t kMostPlaces = 10;
    const auto place = [](const Point& at) {
        char text[64];
        std::snprintf(text, sizeof text, "%.6g, %.6g", at.x + 0.0, at.y + 0.0);
        return std::string(text);
    };
    std::string text = "  size " + SizeText(check.box);
    if (!check.box.IsEmpty()) text += ", lower left corner at " + place(check.box.Min());
    text += "\n  " + CountText(check.closed, "closed contour", "closed contours") + ", " +
            CountText(check.open, "open one", "open ones");
    if (check.ends > 0) {
        text += "\n  " + CountText(check.ends, "end", "ends") + " of open contours within 1 mm of another:";
        for (std::size_t i = 0; i < check.endPlaces.size() && i < kMostPlaces; ++i)
            text += (i > 0 ? "; " : " ") + place(check.endPlaces[i]);
        if (check.ends > kMostPlaces) text += "; ...";
    }
    if (check.doubles > 0) {
        char length[64];
        std::snprintf(length, sizeof length, "\n  %.6g mm drawn twice", check.doubledLength);
        text += length;
    }
    const auto add = [&text](std::size_t count, const char* one, const char* many) {
        if (count > 0) text += "\n  " + CountText(count, one, many);
    };
    add(check.shortSections, "section shorter than 0.01 mm", "sections shorter than 0.01 mm");
    add(check.white, "entity in white", "entities in white");
    add(check.outsidePage, "entity wholly outside the page", "entities wholly outside the page");
    if (const std::string lacking = LeftOutText(drawing.report.leftOut, true); !lacking.empty())
        text += "\n  not drawn: " + lacking;
    const std::vector<std::string> advice = AdviceOf(check, drawing);
    for (std::size_t i = 0; i < advice.size(); ++i) text += (i > 0 ? ", " : "\n  may help: ") + advice[i];
    return text;
}
