// Import, passes, writer, words. Figures are made once; of JSON that writes the entities themselves, only when the
// words need their measures.
#include "cli/ImportJob.h"

#include <chrono>
#include <cstdio>
#include <span>

#include "cli/Interrupt.h"
#include "cli/Report.h"
#include "cli/Text.h"
#include "cli/Words.h"
#include "drawing/FigureReader.h"
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

}  // namespace

bool CImportJob::Write(const Drawing& drawing, const std::vector<Figure>* figures,
                       const std::optional<CheckReport>& check, const std::string& output) const {
    COutputFile out(output);
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
    const bool written = out.Close();
    if (!written) Complain(ForTerminal(output) + ": can't write the drawing: " + out.Error());
    return written;
}

JobResult CImportJob::Run(const std::string& path, const std::string& output, ImportCounters& counters) {
    const auto start = std::chrono::steady_clock::now();
    Drawing drawing = m_Session.Import(path, counters, g_bInterrupted);
    const std::string name = ForTerminal(path);
    const std::string reason = ReasonOf(m_Options, drawing);
    if (drawing.end == ImportEnd::NotOpened) Complain(name + ": " + ForTerminal(reason));

    const PassSettings& passes = m_Options.output.passes;
    const bool isJson = m_Options.output.format == DrawingFormat::Json;
    const bool wantsCheck = m_Options.output.check;
    const bool asDelivered = isJson && !passes.ChangeDrawing() && !wantsCheck;
    const bool ended = drawing.end != ImportEnd::Whole && drawing.end != ImportEnd::NotOpened;
    const bool summarised = m_bSummarise && drawing.end == ImportEnd::Whole;
    const std::size_t entities = drawing.entities.size();
    const double unit = drawing.UnitInMillimetres();
    bool written = true;
    if (asDelivered && !output.empty()) written = Write(drawing, nullptr, std::nullopt, output);
    FigureReading reading;
    if (isJson && !asDelivered)  // which may be written as they are
        reading = ReadFigures(std::span<const EntityPtr>(drawing.entities), unit);
    else if (ended || summarised || wantsCheck || (!asDelivered && !output.empty()))
        reading = ReadFigures(std::move(drawing.entities), unit);
    Survey survey;
    if (ended || summarised) survey = Measure(reading.figures);
    const PassReport done = RunPasses(reading.figures, passes);
    std::optional<CheckReport> check;
    if (wantsCheck) check = CheckDrawing(reading.figures, PageOf(drawing, done.placement));
    if (!asDelivered && !output.empty()) {
        if (!isJson && passes.curves == CurveStyle::Polyline)
            reading.figures = FlattenCurves(std::move(reading.figures), passes.arcs.flatness);
        const bool figures = !isJson || done.changed;
        written = Write(drawing, figures ? &reading.figures : nullptr, check, output);
        if (figures && reading.leftOut > 0) {
            Complain(name + ": " + CountText(reading.leftOut, "entity", "entities") +
                     " left out, with a coordinate that is no finite number");
        }
    }
    if (check) Note(name + ":\n" + CheckText(*check, drawing));
    if (!isJson && drawing.information) Note(name + ":\n" + ForTerminal(*drawing.information));

    for (const std::string& warning : WarningsOf(drawing)) Complain(name + ": " + ForTerminal(warning));
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
