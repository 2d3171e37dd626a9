// Import, passes, writer, words. Figures are made once; of JSON that writes the entities themselves, only when the
// words need their measures.
#include "cli/ImportJob.h"

#include <chrono>
#include <cstdio>
#include <new>
#include <span>

#include "cli/Interrupt.h"
#include "cli/Report.h"
#include "cli/Text.h"
#include "cli/Words.h"
#include "drawing/Work.h"
#include "drawing/passes/FlattenCurves.h"
#include "writers/DxfWriter.h"
#include "writers/JsonWriter.h"
#include "writers/SvgWriter.h"

namespace {

// The page in millimetres, where the passes have put it; empty when the file doesn't tell it.
CBox PageOf(const Drawing& drawing, const Placement& placement) {
    constexpr double kPoint = 25.4 / 72;  // mm
    CBox page;
    if (!drawing.page) return page;
    page.Add(placement({drawing.page->left * kPoint, drawing.page->bottom * kPoint}));
    page.Add(placement({drawing.page->right * kPoint, drawing.page->top * kPoint}));
    return page;
}

// What is kept of the time limit: rather more than the writing takes.
WritingTime TimeToWrite(DrawingFormat format) {
    switch (format) {
        case DrawingFormat::Svg:
        case DrawingFormat::Dxf:
            return {.perEntity = 2e-6, .perPoint = 0.2e-6};
        case DrawingFormat::Json:
            return {.perEntity = 1e-6, .perPoint = 0.2e-6};
        case DrawingFormat::None:
            break;
    }
    return {.perEntity = 0.5e-6, .perPoint = 0.05e-6};  // for the words
}

}  // namespace

CImportJob::Prepared CImportJob::Prepare(Drawing& drawing, bool keepEntities, const CStopCause& stop,
                                         std::uint64_t usedMemory) const {
    const PassSettings& passes = m_Options.output.passes;
    const DrawingFormat format = m_Options.output.format;
    const bool flattens =
        passes.curves == CurveStyle::Polyline && (format == DrawingFormat::Svg || format == DrawingFormat::Dxf);
    const std::span<const EntityPtr> entities(drawing.entities);
    const double unit = drawing.UnitInMillimetres();
    Prepared result;
    if (passes.ChangeDrawing() || m_Options.output.check || flattens) {
        const DrawnAmount drawn{static_cast<std::int64_t>(entities.size()), drawing.report.nPointsDrawn};
        const CWorkLimit time([&] { return stop.Get(drawn).has_value(); });
        const CMemoryLimit memory(m_Options.import.memoryLimit, usedMemory);
        std::optional<ImportEnd> end;
        try {
            result.reading = ReadFigures(entities, unit);
            result.survey = Measure(result.reading.figures);
            result.passes = RunPasses(result.reading.figures, passes);
            if (m_Options.output.check)
                result.check = CheckDrawing(result.reading.figures, PageOf(drawing, result.passes.placement));
            if (flattens)
                result.reading.figures = FlattenCurves(std::move(result.reading.figures), passes.arcs.flatness);
        } catch (const WorkEnded&) {
            end = stop.Get(drawn);
        } catch (const std::bad_alloc&) {
            end = ImportEnd::OutOfMemory;
        }
        if (!end) {
            if (!keepEntities) drawing.entities.clear();
            return result;
        }
        if (drawing.end == ImportEnd::Whole) drawing.end = *end;
        result = {};
        result.whole = false;
    }
    result.reading = keepEntities ? ReadFigures(entities, unit) : ReadFigures(std::move(drawing.entities), unit);
    result.survey = Measure(result.reading.figures);
    return result;
}

bool CImportJob::Write(const Drawing& drawing, const std::vector<Figure>* figures,
                       const std::optional<CheckReport>& check, const std::string& output) const {
    COutputFile out(output);
    try {
        switch (m_Options.output.format) {
            case DrawingFormat::Svg:
                WriteSvg(*figures, out);
                break;
            case DrawingFormat::Dxf:
                if (m_Options.output.dxf == DxfForm::R12)
                    WriteDxfR12(*figures, out);
                else
                    WriteDxf(*figures, out);
                break;
            case DrawingFormat::Json:
                if (figures != nullptr)
                    WriteJson(drawing, *figures, check, out);
                else
                    WriteJson(drawing, check, out);
                break;
            case DrawingFormat::None:
                break;
        }
    } catch (const std::bad_alloc&) {
        Complain(ForTerminal(output) + ": the drawing is cut off: the memory ran out");
        return false;
    }
    const bool written = out.Close();
    if (!written) Complain(ForTerminal(output) + ": can't write the drawing: " + out.Error());
    return written;
}

JobResult CImportJob::Run(const std::string& path, const std::string& output, ImportCounters& counters) {
    const auto start = std::chrono::steady_clock::now();
    const CStopCause stop(m_Options.import.timeout, g_bInterrupted, TimeToWrite(m_Options.output.format));
    const std::uint64_t usedMemory = UsedAddressSpace();
    Drawing drawing = m_Session.Import(path, counters, stop);
    const std::string name = ForTerminal(path);
    if (drawing.end == ImportEnd::NotOpened) Complain(name + ": " + ForTerminal(ReasonOf(m_Options, drawing)));

    const bool isJson = m_Options.output.format == DrawingFormat::Json;
    const bool asDelivered = isJson && !m_Options.output.passes.ChangeDrawing() && !m_Options.output.check;
    const bool summarised = m_bSummarise && drawing.end == ImportEnd::Whole;
    const bool hasWords = summarised || (drawing.end != ImportEnd::Whole && drawing.end != ImportEnd::NotOpened);
    const std::size_t entities = drawing.entities.size();
    bool written = true;
    if (asDelivered && !output.empty()) written = Write(drawing, nullptr, std::nullopt, output);
    Prepared prepared;
    try {
        if (hasWords || m_Options.output.check || (!asDelivered && !output.empty()))
            prepared = Prepare(drawing, isJson && !asDelivered, stop, usedMemory);
    } catch (const std::bad_alloc&) {  // even without the limit
        drawing.end = ImportEnd::OutOfMemory;
        prepared.whole = false;
    }
    const auto& [reading, survey, done, check, whole] = prepared;
    if (!asDelivered && !output.empty()) {
        const bool figures = !isJson || done.changed;  // else the entities may be written as they are
        written = Write(drawing, figures ? &reading.figures : nullptr, check, output);
        if (figures && reading.leftOut > 0) {
            Complain(name + ": " + CountText(reading.leftOut, "entity", "entities") +
                     " left out, with a coordinate that is no finite number");
        }
    }
    const std::string reason = ReasonOf(m_Options, drawing);
    const bool ended = drawing.end != ImportEnd::Whole && drawing.end != ImportEnd::NotOpened;
    if (check) Note(name + ":\n" + CheckText(*check, drawing));
    if (!isJson && drawing.information) Note(name + ":\n" + ForTerminal(*drawing.information));

    for (const std::string& warning : WarningsOf(drawing)) Complain(name + ": " + ForTerminal(warning));
    if (!whole) Complain(name + ": written as it was drawn, without the changes and checks that were asked for");
    if (ended) {
        const std::string remedy = RemedyOf(m_Options, drawing);
        Complain(name + ": not imported whole: " + ForTerminal(reason) + "; got " + AmountText(survey, entities) +
                 (remedy.empty() ? "" : "; " + remedy));
    } else if (summarised) {
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%.2f s", time.count());
        Note(name + ": " + AmountText(survey, entities) + ", " + SizeText(survey.box) + ", " +
             CountText(survey.colors.size(), "colour", "colours") + ", " + TextsText(drawing.report) +
             PassesText(done) + seconds);
    }
    if (!drawing.complete && (drawing.end == ImportEnd::Failed || !drawing.report.leftOut.IsEmpty()))
        Complain(name + ": --complete may import more of it");

    JobResult result;
    result.status = drawing.end == ImportEnd::Whole && written ? kExitDone : kExitNotWhole;
    if (!m_Options.report.empty()) {
        const auto drawn = written && !output.empty() ? std::optional(output) : std::nullopt;
        result.reportLine = ReportLine(path, drawn, result.status, reason, entities, drawing);
    }
    return result;
}
