// The course of an import, and the words for how it ended.
#include "Importer.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>

#include "DxfWriter.h"
#include "ErrorNames.h"
#include "InputFile.h"
#include "JsonWriter.h"
#include "SvgWriter.h"
#include "Text.h"
#include "hostout/HostModel.h"
#include "platform/PtrList.h"

namespace {

ImportEnd JudgeEnd(const Drawing& drawing) {
    if (drawing.end != ImportEnd::Whole) return drawing.end;
    if (!drawing.settings) return ImportEnd::Refused;
    for (const MessageBox& box : drawing.messages)
        if (box.HasErrorIcon()) return ImportEnd::Failed;
    return ImportEnd::Whole;
}

// "typecheck (operand of the wrong type)", from the last error box.
std::string ErrorWords(const Drawing& drawing) {
    for (auto box = drawing.messages.rbegin(); box != drawing.messages.rend(); ++box)
        if (const ErrorName* name = box->HasErrorIcon() ? FindErrorName(box->text) : nullptr)
            return std::string(name->postScript) + " (" + name->english + ")";
    return "an error";
}

std::string SecondsText(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

std::string ReasonOf(const Options& options, const Drawing& drawing) {
    switch (drawing.end) {
        case ImportEnd::Refused:
            if (!drawing.messages.empty() && drawing.information) return "the file's header can't be analysed";
            return "the dialog refused the tolerance " + options.tolerance.value_or("");
        case ImportEnd::Failed:
            return ErrorWords(drawing);
        case ImportEnd::NoSection:
            return "the file's binary header points outside the file";
        case ImportEnd::TimedOut:
            return "the time ran out (" + SecondsText(options.timeout.value_or(0)) + ")";
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

Survey WriteFormat(const Options& options, const Drawing& drawing, COutputFile& out) {
    switch (options.format) {
        case DrawingFormat::Svg:
            return CSvgWriter(out).WriteDrawing(drawing);
        case DrawingFormat::Dxf:
            return CDxfWriter(out, options.curves, options.flatness).WriteDrawing(drawing);
        case DrawingFormat::Json:
            WriteJson(drawing, out);
            break;
        case DrawingFormat::None:
            break;
    }
    return {};
}

}  // namespace

void CImporter::Import(const std::string& path, ImportCounters& counters, CProgressLine* progress, Drawing& drawing) {
    drawing.source = path == "-" ? "stdin" : std::filesystem::path(path).filename().string();
    drawing.hostVersion = m_Options.hostVersion;
    const CInputFile input(path);
    if (!input.Error().empty()) {
        drawing.end = ImportEnd::NotOpened;
        Complain(ForTerminal(path + ": " + input.Error()));
        return;
    }
    CPtrList list;
    tagPlugImportJob job{};
    std::memcpy(job.szPath, input.PathForPlugIn().c_str(), input.PathForPlugIn().size() + 1);
    job.pList = &list;
    {
        CMemoryLimit limit(m_Options.memoryLimit);
        m_Frame.BeginImport(drawing, counters, limit, progress);
        try {
            m_Plugin.Import(job);
        } catch (const std::bad_alloc&) {
            m_Frame.OnMemoryExhausted();
        }
        m_Frame.EndImport();
    }
    drawing.entities.reserve(list.GetCount());
    for (void* entity : list) drawing.entities.push_back(static_cast<CEntity*>(entity));
    counters.entities.store(drawing.entities.size(), std::memory_order_relaxed);
    drawing.end = JudgeEnd(drawing);
    if (drawing.end == ImportEnd::Whole && input.IsSectionMissing()) drawing.end = ImportEnd::NoSection;
}

int CImporter::Run(const std::string& path, const std::string& output, ImportCounters& counters,
                   CProgressLine* progress) {
    const auto start = std::chrono::steady_clock::now();
    Drawing drawing;
    Import(path, counters, progress, drawing);
    const std::string name = ForTerminal(path);

    Survey survey;
    bool written = true;
    if (!output.empty()) {
        COutputFile out(output);
        survey = WriteFormat(m_Options, drawing, out);
        written = out.Close();
        if (!written) Complain(ForTerminal(output) + ": can't write the drawing: " + out.Error());
    }
    if (m_Options.format != DrawingFormat::Json && drawing.information)
        Note(name + ":\n" + ForTerminal(*drawing.information));
    if (survey.leftOut > 0) {
        Complain(name + ": " + CountText(survey.leftOut, "entity", "entities") +
                 " left out, with a coordinate that is no finite number");
    }

    const bool ended = drawing.end != ImportEnd::Whole && drawing.end != ImportEnd::NotOpened;
    if (ended || m_bSummarise) survey = CDrawingWriter().Measure(drawing);
    if (ended) {
        Complain(name + ": not imported whole: " + ReasonOf(m_Options, drawing) + "; got " +
                 AmountText(survey, drawing.entities.size()));
    } else if (m_bSummarise && drawing.end == ImportEnd::Whole) {
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%.2f s", time.count());
        Note(name + ": " + AmountText(survey, drawing.entities.size()) + ", " + SizeText(survey) + ", " +
             CountText(survey.colors.size(), "colour", "colours") + ", " + seconds);
    }
    return drawing.end == ImportEnd::Whole && written ? kExitDone : kExitNotWhole;
}
