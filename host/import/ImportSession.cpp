// The course of an import.
#include "import/ImportSession.h"

#include <cstring>
#include <filesystem>
#include <new>

#include "import/DeepThread.h"
#include "import/EnglishResources.h"
#include "import/InputFile.h"
#include "lib/HostSetup.h"
#include "platform/PtrList.h"

namespace {

constexpr const char* kComponent = "Eps";

ImportEnd JudgeEnd(const Drawing& drawing) {
    if (drawing.end != ImportEnd::Whole) return drawing.end;
    if (!drawing.settings) return ImportEnd::Refused;
    for (const MessageBox& box : drawing.messages)
        if (box.HasErrorIcon()) return ImportEnd::Failed;
    // A program of the complete dialect that ends itself shows no box.
    return drawing.report.failure ? ImportEnd::Failed : ImportEnd::Whole;
}

}  // namespace

CImportSession::CHostSetup::CHostSetup(const ImportSettings& settings, CImportFrame& frame) {
    SetHostMainFrame(&frame);
    SetHostVersion(settings.hostVersion);
    SetHostLocalResources(kComponent, settings.english ? EnglishResources() : nullptr);
}

CImportSession::CHostSetup::~CHostSetup() {
    SetHostLocalResources(kComponent, nullptr);
    SetHostMainFrame(nullptr);
}

CImportSession::CImportSession(const ImportSettings& settings, CImportFrame& frame)
    : m_Settings(settings), m_Frame(frame), m_Setup(settings, frame), m_Plugin(settings.complete) {}

CImportSession::~CImportSession() = default;

void CImportSession::RunCommand(tagPlugImportJob& job, CImportFrame::DialogUse use) {
    m_Frame.SetDialogUse(use);
    try {
        m_Plugin.Import(job);
    } catch (const std::bad_alloc&) {
        m_Frame.OnMemoryExhausted();
    }
}

Drawing CImportSession::Import(const std::string& path, ImportCounters& counters, const CStopCause& stop) {
    Drawing drawing;
    drawing.source = path == "-" ? "stdin" : std::filesystem::path(path).filename().string();
    drawing.hostVersion = m_Settings.hostVersion;
    drawing.complete = m_Settings.complete;
    const CInputFile input(path, stop);
    if (!input.Error().empty()) {
        drawing.end = input.StoppedBy().value_or(ImportEnd::NotOpened);
        drawing.openError = input.Error();
        return drawing;
    }
    drawing.page = input.Page();
    CPtrList list;
    tagPlugImportJob job{};
    std::memcpy(job.szPath, input.PathForPlugIn().c_str(), input.PathForPlugIn().size() + 1);
    job.pList = &list;
    RunOnDeepStack([&] {
        CMemoryLimit limit(m_Settings.memoryLimit);
        m_Frame.BeginImport(m_Settings, drawing, counters, limit, stop);
        if (m_Settings.wantsInformation) RunCommand(job, CImportFrame::DialogUse::Information);
        RunCommand(job, CImportFrame::DialogUse::Import);
        m_Frame.EndImport();
    });
    drawing.library = m_Plugin.Share();
    drawing.entities.reserve(list.GetCount());
    for (void* entity : list) drawing.entities.emplace_back(static_cast<CEntity*>(entity));
    counters.entities.store(drawing.entities.size(), std::memory_order_relaxed);
    drawing.end = JudgeEnd(drawing);
    if (drawing.end == ImportEnd::Whole && input.IsSectionMissing()) drawing.end = ImportEnd::NoSection;
    return drawing;
}
