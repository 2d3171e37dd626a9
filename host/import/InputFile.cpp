// Input checks and private copies. Relies on POSIX file calls, since permissions and pipes are what matters
// here.
#include "import/InputFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "objects/EpsHeader.h"
#include "plugin/PlugFilterMain.h"

namespace fs = std::filesystem;

namespace {

std::string Reason(int error) { return std::strerror(error); }

class CDescriptor {
public:
    explicit CDescriptor(int fd) : m_fd(fd) {}
    ~CDescriptor() {
        if (m_fd >= 0) ::close(m_fd);
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    int Get() const { return m_fd; }

private:
    int m_fd;
};

// Waits until there is something to read from `source`, or its end. What stops the wait, nothing when nothing did.
std::optional<ImportEnd> WaitForBytes(int source, const CStopCause& stop) {
    constexpr int kMilliseconds = 50;  // between two looks at the cause
    for (;;) {
        if (const std::optional<ImportEnd> cause = stop.Get()) return cause;
        pollfd wait{source, POLLIN, 0};
        if (::poll(&wait, 1, kMilliseconds) > 0) return std::nullopt;
    }
}

// Copies until the end of `source`. Answers 0, or the errno of the failure: EINTR when `stoppedBy` tells why.
int CopyBytes(int source, int target, const CStopCause& stop, std::uint64_t& copied,
              std::optional<ImportEnd>& stoppedBy) {
    std::array<char, 1 << 16> block;
    for (;;) {
        stoppedBy = WaitForBytes(source, stop);
        if (stoppedBy) return EINTR;
        const ssize_t got = ::read(source, block.data(), block.size());
        if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (got < 0) return errno;
        if (got == 0) return 0;
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = ::write(target, block.data() + done, static_cast<std::size_t>(got - done));
            if (put < 0 && errno == EINTR) continue;
            if (put < 0) return errno;
            done += put;
        }
        copied += static_cast<std::uint64_t>(got);
    }
}

}  // namespace

CInputFile::CInputFile(const std::string& path, const CStopCause& stop) {
    Open(path == "-" ? "/dev/stdin" : path, stop);
    if (m_Error.empty()) ReadHeader();
}

CInputFile::~CInputFile() {
    if (m_PrivateDirectory.empty()) return;
    std::error_code ignored;
    fs::remove_all(m_PrivateDirectory, ignored);
}

void CInputFile::Open(const std::string& path, const CStopCause& stop) {
    // O_NONBLOCK: opening a pipe would wait for its other end.
    const CDescriptor source(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (source.Get() < 0 || ::fstat(source.Get(), &status) != 0) {
        m_Error = Reason(errno);
        return;
    }
    if (S_ISDIR(status.st_mode)) {
        m_Error = Reason(EISDIR);
        return;
    }
    if (!S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode)) {
        m_Error = "Not a regular file";
        return;
    }
    std::error_code error;
    m_PlugInPath = fs::absolute(path, error).string();
    m_nSize = static_cast<std::uint64_t>(status.st_size);
    const bool fits = !error && m_PlugInPath.size() < sizeof(tagPlugImportJob::szPath);
    if (fits && S_ISREG(status.st_mode) && CDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC)).Get() >= 0) return;
    CopyToPrivateFile(source.Get(), stop);
}

void CInputFile::CopyToPrivateFile(int source, const CStopCause& stop) {
    std::error_code error;
    std::string directory = (fs::temp_directory_path(error) / "epsimport-XXXXXX").string();
    if (error || ::mkdtemp(directory.data()) == nullptr) {
        m_Error = "no room for a private copy: " + (error ? error.message() : Reason(errno));
        return;
    }
    m_PrivateDirectory = directory;
    m_PlugInPath = directory + "/input.eps";
    const CDescriptor target(::open(m_PlugInPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    m_nSize = 0;
    const int failure = target.Get() < 0 ? errno : CopyBytes(source, target.Get(), stop, m_nSize, m_StoppedBy);
    if (m_StoppedBy)
        m_Error = "stopped";
    else if (failure != 0)
        m_Error = "can't make a private copy: " + Reason(failure);
}

void CInputFile::ReadHeader() {
    const CDescriptor file(::open(m_PlugInPath.c_str(), O_RDONLY | O_CLOEXEC));
    const auto readAt = [&file](std::uint64_t position, std::uint64_t size) {
        std::string bytes(static_cast<std::size_t>(size), '\0');
        const ssize_t got = ::pread(file.Get(), bytes.data(), bytes.size(), static_cast<off_t>(position));
        bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return bytes;
    };
    std::uint64_t start = 0, end = m_nSize;
    const std::string head = readAt(0, EPS_SIGNATURE_BYTES + EPS_SECTION_BYTES);
    const auto* bytes = reinterpret_cast<const unsigned char*>(head.data());
    if (head.size() == EPS_SIGNATURE_BYTES + EPS_SECTION_BYTES && EpsSignatureOf(bytes) == EpsSignature::binary) {
        const tagEpsSection section = EpsSectionOf(bytes + EPS_SIGNATURE_BYTES);
        start = section.nOffset;
        end = std::min(m_nSize, start + section.nLength);
        m_bSectionMissing = start >= m_nSize;
    }
    if (start >= end) return;
    tagEpsBox box{};
    const EpsBoxPlace place = EpsHeaderBox(readAt(start, std::min<std::uint64_t>(end - start, EPS_HEADER_BYTES)), box);
    const std::uint64_t trailer = std::min<std::uint64_t>(end - start, EPS_TRAILER_BYTES);
    if (place == EpsBoxPlace::header ||
        (place == EpsBoxPlace::trailer && EpsTrailerBox(readAt(end - trailer, trailer), box)))
        m_Page = box;
}
