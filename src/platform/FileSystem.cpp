// File access on Linux. Files are opened and then looked at, so that nothing can be swapped in between.
#include "platform/FileSystem.h"

#include <fcntl.h>
#include <glob.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "hostout/HostCore.h"
#include "platform/Window.h"

namespace {

bool HasLeave() {
    const CFrameWnd* frame = glbf_GetMainFrame();
    return frame && frame->AllowsFileAccess();
}

/// The flags of open(2) for a mode of fopen; -1 for none. Letters other than r, w, a and + say nothing here.
int OpenFlags(std::string_view mode) {
    if (mode.empty()) return -1;
    const bool both = mode.find('+') != std::string_view::npos;
    switch (mode[0]) {
        case 'r':
            return both ? O_RDWR : O_RDONLY;
        case 'w':
            return (both ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
        case 'a':
            return (both ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
        default:
            return -1;
    }
}

std::FILE* OpenRegular(const char* name, const char* mode) {
    if (!name || !mode) return nullptr;
    const int flags = OpenFlags(mode);
    if (flags < 0) return nullptr;
    // Without O_NONBLOCK, opening a pipe waits for its other end.
    const int fd = ::open(name, flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (fd < 0) return nullptr;
    struct stat status {};
    std::FILE* file = nullptr;
    if (::fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) file = ::fdopen(fd, mode);
    if (!file) ::close(fd);
    return file;
}

/// Reads what standard input has, once it has something; -1 when the user wants out before that.
ssize_t ReadInput(void*, char* buffer, size_t size) {
    constexpr int milliseconds = 50;  // between two questions
    for (;;) {
        CFrameWnd* frame = glbf_GetMainFrame();
        if (frame && frame->OnWait()) {
            errno = ECANCELED;
            return -1;
        }
        pollfd wait{STDIN_FILENO, POLLIN, 0};
        if (::poll(&wait, 1, milliseconds) <= 0) continue;
        const ssize_t got = ::read(STDIN_FILENO, buffer, size);
        if (got >= 0 || (errno != EINTR && errno != EAGAIN)) return got;
    }
}

int SeekInput(void*, off64_t* offset, int whence) {
    *offset = ::lseek64(STDIN_FILENO, *offset, whence);
    return *offset < 0 ? -1 : 0;
}

/// Standard input as a stream that waits no longer than the host does. Never closed, as stdin itself.
std::FILE* WaitingInput() noexcept {
    static std::FILE* const stream = ::fopencookie(nullptr, "r", {ReadInput, nullptr, SeekInput, nullptr});
    if (stream) std::clearerr(stream);
    return stream;
}

}  // namespace

namespace FileSystem {

std::FILE* Open(const char* name, const char* mode) noexcept { return HasLeave() ? OpenRegular(name, mode) : nullptr; }

std::FILE* OpenInput(const char* path, const char* mode) noexcept { return OpenRegular(path, mode); }

std::FILE* StandardStream(int kind) noexcept {
    if (kind < 0 || kind > 2 || !HasLeave()) return nullptr;
    return kind == 0 ? WaitingInput() : stderr;
}

std::optional<FileStatus> Status(const char* name) noexcept {
    struct statx status {};
    if (!name || !HasLeave()) return std::nullopt;
    if (::statx(AT_FDCWD, name, 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) return std::nullopt;
    const bool born = (status.stx_mask & STATX_BTIME) != 0;
    return FileStatus{static_cast<std::int64_t>(status.stx_size), status.stx_mtime.tv_sec,
                      born ? status.stx_btime.tv_sec : status.stx_ctime.tv_sec};
}

bool Remove(const char* name) noexcept { return name && HasLeave() && ::unlink(name) == 0; }

bool Rename(const char* oldName, const char* newName) noexcept {
    if (!oldName || !newName || !HasLeave()) return false;
    if (::renameat2(AT_FDCWD, oldName, AT_FDCWD, newName, RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // A file system that can't refuse by itself.
    struct stat status {};
    return ::lstat(newName, &status) != 0 && std::rename(oldName, newName) == 0;
}

std::vector<std::string> FindFiles(const char* pattern) {
    std::vector<std::string> paths;
    if (!pattern || !HasLeave()) return paths;
    glob_t matches{};
    const std::unique_ptr<glob_t, void (*)(glob_t*)> release(&matches, ::globfree);
    if (::glob(pattern, GLOB_NOSORT, nullptr, &matches) == 0) {
        for (size_t i = 0; i < matches.gl_pathc; ++i) {
            const std::filesystem::path path = matches.gl_pathv[i];
            std::error_code failed;
            const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
            if (!failed && path.filename() != "." && path.filename() != "..") paths.push_back(absolute.string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

void FlushAll() noexcept {
    if (HasLeave()) std::fflush(nullptr);
}

}  // namespace FileSystem
