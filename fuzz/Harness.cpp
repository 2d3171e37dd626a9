// The bodies of the fuzz targets. Input stands in a file in memory, so that no disk slows a run down.
#include "fuzz/Harness.h"

#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdlib>
#include <string>

#include "hostout/DataFilter.h"
#include "hostout/HostCore.h"
#include "interp/FilterEPS.h"
#include "lib/HostSetup.h"
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

std::uint64_t ImportAndExport(const char* path) {
    FuzzFrame frame;
    Digest curves;
    curves.m_nOutFlags |= OUT_BEZIER;
    Digest lines;
    CEntGroup group;
    {
        CFilterEPS machine(5);
        if (machine.OpenInputFile(path) != 1) std::abort();
        machine.RunFile(&group);
        machine.CloseInputFile();
    }
    curves.WriteEntity(&group);
    lines.WriteEntity(&group);
    group.DeleteChildren();
    return curves.m_nSum * 31 + lines.m_nSum;
}

}  // namespace

void FuzzRun(const std::uint8_t* data, std::size_t size) {
    if (size > 64u << 10) return;  // long inputs only cost time
    const MemoryFile file(data, size);
    if (ImportAndExport(file.Path()) != ImportAndExport(file.Path())) std::abort();
}

void FuzzFileInfo(const std::uint8_t* data, std::size_t size) {
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
