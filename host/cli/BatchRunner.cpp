// The process pool of a batch. The pipe that carries a child's standard error also tells of its end, so that
// one poll waits for texts, ends and the next progress line.
#include "cli/BatchRunner.h"

#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "cli/Interrupt.h"
#include "cli/ProgressLine.h"
#include "cli/Report.h"
#include "cli/Text.h"

namespace {

// One ImportCounters for each file, in memory that the children share.
class CSharedCounters {
public:
    explicit CSharedCounters(std::size_t count) : m_nBytes(count * sizeof(ImportCounters)) {
        void* room = ::mmap(nullptr, m_nBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (room == MAP_FAILED) throw std::bad_alloc();
        m_pCounters = static_cast<ImportCounters*>(room);
        for (std::size_t i = 0; i < count; ++i) new (m_pCounters + i) ImportCounters();
    }
    ~CSharedCounters() { ::munmap(m_pCounters, m_nBytes); }
    CSharedCounters(const CSharedCounters&) = delete;
    CSharedCounters& operator=(const CSharedCounters&) = delete;
    ImportCounters& operator[](std::size_t index) { return m_pCounters[index]; }

private:
    std::size_t m_nBytes;
    ImportCounters* m_pCounters;
};

struct RunningImport {
    std::size_t index;
    pid_t pid;
    int errorPipe;   // read end
    int reportFile;  // in memory; the child leaves its report line there
};

void WriteAll(int file, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t put = ::write(file, text.data() + done, text.size() - done);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return;
        done += static_cast<std::size_t>(put);
    }
}

std::string ReadAll(int file) {
    std::string text;
    char block[4096];
    for (off_t at = 0;;) {
        const ssize_t got = ::pread(file, block, sizeof block, at);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return text;
        text.append(block, static_cast<std::size_t>(got));
        at += got;
    }
}

class CBatch {
public:
    CBatch(const Options& options, const ImportFunction& importFile, COutputFile* report)
        : m_Options(options),
          m_Import(importFile),
          m_nFiles(options.files.size()),
          m_Counters(m_nFiles),
          m_Texts(m_nFiles),
          m_ReportLines(m_nFiles),
          m_Done(m_nFiles, false),
          m_pReport(report) {}

    int Run() {
        // Whoever started this program may have set that children vanish without a status.
        ::signal(SIGCHLD, SIG_DFL);
        while (m_nNext < m_nFiles || !m_Running.empty()) {
            if (g_bInterrupted) PassInterruptOn();
            while (!m_bInterrupted && m_nNext < m_nFiles && m_Running.size() < m_Options.jobs) Start(m_nNext++);
            if (m_Running.empty()) break;
            WaitForNews();
            if (m_Progress.IsDue()) ShowProgress();
        }
        m_Progress.Clear();
        if (m_nNext < m_nFiles) {
            Complain("interrupted: " + CountText(m_nFiles - m_nNext, "file", "files") + " not imported");
        }
        Note(std::to_string(m_nWhole) + " of " + std::to_string(m_nFiles) + " imported whole" +
             (m_nWhole < m_nFiles ? ", " + std::to_string(m_nFiles - m_nWhole) + " not" : ""));
        WriteReport();
        return m_nWhole == m_nFiles ? kExitDone : kExitNotWhole;
    }

private:
    void Start(std::size_t index) {
        int ends[2];
        if (::pipe(ends) != 0) return Fail(index, std::strerror(errno));
        const int reportFile = ::memfd_create("report", MFD_CLOEXEC);
        std::fflush(nullptr);
        const pid_t pid = reportFile < 0 ? -1 : ::fork();
        if (pid < 0) {
            const int error = errno;
            if (reportFile >= 0) ::close(reportFile);
            ::close(ends[0]);
            ::close(ends[1]);
            return Fail(index, std::strerror(error));
        }
        if (pid == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            for (const RunningImport& other : m_Running) ::close(other.errorPipe);
            ::close(ends[0]);
            ::dup2(ends[1], STDERR_FILENO);
            ::close(ends[1]);
            const JobResult result = m_Import(index, m_Counters[index]);
            WriteAll(reportFile, result.reportLine);
            std::fflush(nullptr);
            ::_exit(result.status);  // what the parent registered to run at exit isn't this process's to run
        }
        ::close(ends[1]);
        m_Running.push_back({index, pid, ends[0], reportFile});
    }

    void Fail(std::size_t index, const char* reason) {
        EndWithoutDrawing(index, "not-started", std::string("no process for the import: ") + reason);
        m_Done[index] = true;
        ++m_nDone;
        PrintTexts();
    }

    void EndWithoutDrawing(std::size_t index, const char* end, const std::string& reason) {
        m_Texts[index] += "epsimport: " + ForTerminal(m_Options.files[index]) + ": " + reason + "\n";
        m_ReportLines[index] = ReportLineWithoutDrawing(m_Options.files[index], end, reason);
    }

    void WriteReport() {
        if (m_pReport == nullptr) return;
        for (std::size_t i = 0; i < m_nFiles; ++i) {
            if (!m_Done[i])
                m_ReportLines[i] = ReportLineWithoutDrawing(m_Options.files[i], "not-started", "interrupted");
            m_pReport->Write(m_ReportLines[i]);
            m_pReport->Write('\n');
        }
    }

    void WaitForNews() {
        std::vector<pollfd> polls;
        for (const RunningImport& import : m_Running) polls.push_back({import.errorPipe, POLLIN, 0});
        // The time limit is for progress lines, and for a signal that arrives just before the call.
        if (::poll(polls.data(), polls.size(), 100) <= 0) return;
        std::vector<RunningImport> still;
        for (std::size_t i = 0; i < polls.size(); ++i)
            if (polls[i].revents == 0 || ReadText(m_Running[i]))
                still.push_back(m_Running[i]);
            else
                Reap(m_Running[i]);
        m_Running.swap(still);
        PrintTexts();
    }

    // False at the end of the child's standard error, which is the end of the child.
    bool ReadText(const RunningImport& import) {
        char block[4096];
        const ssize_t got = ::read(import.errorPipe, block, sizeof block);
        if (got > 0) m_Texts[import.index].append(block, static_cast<std::size_t>(got));
        return got > 0 || (got < 0 && errno == EINTR);
    }

    void Reap(const RunningImport& import) {
        ::close(import.errorPipe);
        int status = 0;
        pid_t reaped;
        do reaped = ::waitpid(import.pid, &status, 0);
        while (reaped < 0 && errno == EINTR);
        if (reaped < 0) {
            EndWithoutDrawing(import.index, "killed",
                              "how the import ended isn't known: " + std::string(std::strerror(errno)));
        } else if (WIFSIGNALED(status)) {
            EndWithoutDrawing(import.index, "killed",
                              "the import was killed by signal " + std::to_string(WTERMSIG(status)) + " (" +
                                  ::strsignal(WTERMSIG(status)) + ") and gave no drawing");
        } else {
            m_ReportLines[import.index] = ReadAll(import.reportFile);
            if (WIFEXITED(status) && WEXITSTATUS(status) == kExitDone) ++m_nWhole;
        }
        ::close(import.reportFile);
        m_Done[import.index] = true;
        ++m_nDone;
    }

    // A terminal's Ctrl-C has reached the children already; a SIGTERM for this process alone hasn't.
    void PassInterruptOn() {
        if (m_bInterrupted) return;
        m_bInterrupted = true;
        for (const RunningImport& import : m_Running) ::kill(import.pid, SIGTERM);
    }

    void PrintTexts() {
        for (; m_nPrinted < m_nFiles && m_Done[m_nPrinted]; ++m_nPrinted) {
            if (m_Texts[m_nPrinted].empty()) continue;
            m_Progress.Clear();
            std::fwrite(m_Texts[m_nPrinted].data(), 1, m_Texts[m_nPrinted].size(), stderr);
            std::fflush(stderr);
            m_Texts[m_nPrinted].clear();
        }
    }

    void ShowProgress() {
        std::uint64_t bytes = 0;
        std::uint64_t entities = 0;
        for (std::size_t i = 0; i < m_nNext; ++i) {
            bytes += m_Counters[i].bytesRead.load(std::memory_order_relaxed);
            entities += m_Counters[i].entities.load(std::memory_order_relaxed);
        }
        m_Progress.Show(std::to_string(m_nDone) + " of " + CountText(m_nFiles, "file", "files") + ", " +
                        ByteText(bytes) + " read, " + CountText(entities, "entity", "entities"));
    }

    const Options& m_Options;
    const ImportFunction& m_Import;
    const std::size_t m_nFiles;
    CSharedCounters m_Counters;
    std::vector<std::string> m_Texts;  // standard error of each import, until it is printed
    std::vector<std::string> m_ReportLines;
    std::vector<bool> m_Done;
    std::vector<RunningImport> m_Running;
    COutputFile* m_pReport;
    CProgressLine m_Progress;
    std::size_t m_nNext = 0;
    std::size_t m_nDone = 0;
    std::size_t m_nPrinted = 0;
    std::size_t m_nWhole = 0;
    bool m_bInterrupted = false;
};

}  // namespace

int RunBatch(const Options& options, const ImportFunction& importFile, COutputFile* report) {
    return CBatch(options, importFile, report).Run();
}
