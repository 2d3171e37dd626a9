// The machine's life: what stands when it is made, how it goes, its input file, and how an error is shown.
#include "interp/FilterEPS.h"

#include "hostout/HostCore.h"
#include "objects/File.h"
#include "platform/LocalResources.h"
#include "platform/Stack.h"
#include "platform/Window.h"

namespace {

void EndProcessState() noexcept {
    // Bodies hold numbers, so the pool goes behind them. No element that is left looks at its body.
    g_RegistryStack.Clear();
    DestroyNumberPool();
    ClearNames();
    g_nSaveLevel = 0;
    g_bGlobalMode = false;
    g_bExitFlag = false;
    g_bStopFlag = false;
    g_nWorkLeft = WORK_INTERVAL;
}

}  // namespace

CFilterEPS::CProcessState::CProcessState() try {
    CreateNumberPool();
    g_RegistryStack.Open(PlaceOfLevel(0));
    g_RegistryStack.Open(PLACE_GLOBAL);
} catch (...) {
    EndProcessState();
    throw;
}

CFilterEPS::CProcessState::~CProcessState() { EndProcessState(); }

CFilterEPS::CFilterEPS(std::int32_t nHostVersion, std::unique_ptr<CDialect> dialect)
    : m_pDialect(std::move(dialect)),
      m_nHostVersion(nHostVersion),
      m_pFontDirectoryName(InternName("FontDirectory")),
      m_pStackFloor(StackFloor()) {
    for (point_2d& point : m_ptScratch) point = point_2d{};
    BuildDefaultFont();
    BuildSystemDict();
    BuildInternalDict();
    CreateFirstGState();
    m_pPageDevice = MakeElement<CDictionary>(40);
    m_pDialect->FinishStartup(*this);
}

CFilterEPS::~CFilterEPS() = default;

int CFilterEPS::OpenInputFile(const char* path, std::int32_t blockSize) {
    m_pCurrentFile = MakeElement<CFileElement>(path, "r+b", blockSize);
    m_Input = m_pCurrentFile->m_Body;
    m_pCurrentFile->SetFileKind(FK_INPUT);
    return m_pCurrentFile->Open() == 1 ? 1 : 0;
}

void CFilterEPS::OpenInputSource(std::unique_ptr<CByteSource> source, std::int32_t blockSize) {
    m_pCurrentFile = MakeElement<CFileElement>(std::move(source), blockSize);
    m_Input = m_pCurrentFile->m_Body;
}

void CFilterEPS::CloseInputFile() {
    if (m_pCurrentFile) m_pCurrentFile->Close();
    m_pCurrentFile.reset();
}

int CFilterEPS::RefuseOperator(const CName* name) {
    Fail(PSERR_UNSUPPORTED);
    return RaiseError(name) == 1 ? 1 : 0;
}

int CFilterEPS::RaiseError(const CName* running) {
    // A silent end, or an error that has been raised where it was met.
    if (m_nError == PSERR_NONE || m_Report.failure) return -1;
    // A read that was broken off because the user wants out is no error.
    if (m_nError == PSERR_IO && PollHost()) return Fail(PSERR_NONE);
    RecordFailure(running);
    return m_pDialect->OnError(*this, running);
}

void CFilterEPS::RecordFailure(const CName* running) {
    tagRunFailure& failure = m_Report.failure.emplace();
    failure.nError = m_nError;
    failure.strError = m_pErrorName ? m_pErrorName : ErrorName(m_nError);
    if (running) failure.strOperator = running->Text();
    m_pErrorName = nullptr;
}

void CFilterEPS::ForgetError() {
    m_nError = PSERR_NONE;
    m_pErrorName = nullptr;
    m_Report.failure.reset();
    m_pDialect->ForgetError(*this);
}

void CFilterEPS::ReportError() {
    if (m_nError == PSERR_NONE) return;
    const bool known = m_nError >= PSERR_FORMAT && m_nError <= PSERR_UNSUPPORTED;
    const std::string detail = known ? LocalText(IDS_FIRST_ERROR + static_cast<unsigned>(m_nError)) : std::string();
    const std::string message = LocalText(IDS_ERROR_HEAD) + detail;
    glbf_GetMainFrame()->ShowMessageBox(message.c_str(), LocalText(IDS_ERROR_CAPTION).c_str(), MB_OK | MB_ICONERROR);
}
