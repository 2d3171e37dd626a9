// The bodies of the fuzz targets. Input stands in a file in memory, so that no disk slows a run down.
#include "fuzz/Harness.h"

#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdlib>
#include <optional>
#include <string>

#include "hostout/DataFilter.h"
#include "hostout/HostCore.h"
#include "interp/FilterEPS.h"
#include "lib/HostSetup.h"
#include "objects/Sources.h"
#include "plugin/ImportInfoDlg.h"
#include "support/TestFrame.h"

namespace {

/// A file in memory with a path.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : m_nFd(::memfd_create("fuzz", 0)) {
        if (m_nFd < 0 || ::write(m_nFd, data, size) != static_cast<ssize_t>(size)) std::abort();
        m_Path = "/proc/self/fd/" + std::to_string(m_nFd);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(m_nFd); }
    [[nodiscard]] const char* Path() const { return m_Path.c_str(); }

private:
    int m_nFd;
    std::string m_Path;
};

/// A frame that lets a run take so many polls, denies it files, and cancels dialogs.
class FuzzFrame final : public TestFrame {
public:
    bool OnProgress(const tagImportProgress&) override { return ++m_nPolls > 50; }
    bool AllowsFileAccess() const override { return false; }
    int m_nPolls = 0;
};

/// Folds everything that the export face gives into one number.
class Digest final : public CDataFilter {
public:
    int OutLines(const point_2d* points, int count) override { return Take(points, count); }
    int OutBezier(const point_2d* points, int count) override { return Take(points, count); }
    std::uint64_t m_nSum = 0;

private:
    int Take(const point_2d* points, int count) {
        for (int i = 0; i < count; ++i) {
            for (const float value : {points[i].x, points[i].y}) {
                m_nSum = m_nSum * 1099511628211u + std::bit_cast<std::uint32_t>(value);
            }
        }
        return 1;
    }
};

/// A number for what is drawn; none when that depends on the size of the stack and of the frames on it.
std::optional<std::uint64_t> ImportAndExport(const std::string& bytes, std::int32_t blockSize, DialectMaker dialect,
                                             int compileAtEntry) {
    FuzzFrame frame;
    Digest curves;
    curves.m_nOutFlags |= OUT_BEZIER;
    Digest lines;
    CEntGroup group;
    bool isStackUsedUp = false;
    {
        CFilterEPS machine(5, dialect());
        machine.m_nCompileAtEntry = compileAtEntry;
        machine.OpenInputSource(std::make_unique<CMemorySource>(bytes), blockSize);
        machine.RunFile(&group);
        machine.CloseInputFile();
        isStackUsedUp = machine.m_bStackUsedUp;
    }
    curves.WriteEntity(&group);
    lines.WriteEntity(&group);
    group.DeleteChildren();
    if (isStackUsedUp) return std::nullopt;
    return curves.m_nSum * 31 + lines.m_nSum;
}

/// What the analysis says of the bytes, in one line.
std::string Analysis(const std::string& bytes, std::int32_t blockSize) {
    CFileBody file(std::make_unique<CMemorySource>(bytes), blockSize);
    CEPSFileInfo info;
    const AnalysisResult result = AnalyseEpsFile(file, info);
    return std::to_string(result) + ' ' + std::to_string(info.m_nPSLength) + ' ' + std::to_string(info.m_nBoxWidth) +
           ' ' + std::to_string(info.m_nBoxHeight) + ' ' + std::to_string(info.m_SuppliedRes.size()) +
           info.m_pszTitle.value_or("-");
}

}  // namespace

void FuzzRun(const std::uint8_t* data, std::size_t size, DialectMaker dialect) {
    if (size > 64u << 10) return;  // long inputs only cost time
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // A small block that goes by the input, so that boundaries fall everywhere.
    const auto small = static_cast<std::int32_t>(1 + size % 13);
    const auto fast = ImportAndExport(bytes, CFileBody::BLOCK_SIZE, dialect, 1);
    const auto slow = ImportAndExport(bytes, small, dialect, 0);
    if (fast && slow && *fast != *slow) std::abort();
}

void FuzzFileInfo(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (Analysis(bytes, CFileBody::BLOCK_SIZE) != Analysis(bytes, static_cast<std::int32_t>(1 + size % 13)))
        std::abort();
    const MemoryFile file(data, size);
    FuzzFrame frame;
    frame.m_Script = [](CDialog& dialog) {
        dialog.PressButton(4001);
        dialog.PressButton(2);
    };
    tagPlugImportJob job{};
    std::snprintf(reinterpret_cast<char*>(&job), 264, "%s", file.Path());
    CEPSImportInfoDlg dialog(&frame);
    dialog.m_pJob = &job;
    dialog.DoModal();
}
