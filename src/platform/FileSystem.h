// The one door to the file system. What a program inside an imported file does to files of its own choice
// goes through the first group, and the host decides (CFrameWnd::AllowsFileAccess) whether it gets in; the
// file that the user chose to import is opened by OpenInput.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace FileSystem {

struct FileStatus {
    std::int64_t nSize;      ///< bytes
    std::int64_t nModified;  ///< seconds since 1970
    std::int64_t nCreated;   ///< the same; where no time of birth is kept, of the last change of status
};

// For programs. Without the host's leave each of these answers as for a file that isn't there.

/// Opens a regular file in a mode of fopen; the caller closes it. Null when that fails, and for a directory,
/// pipe or device.
[[nodiscard]] std::FILE* Open(const char* name, const char* mode) noexcept;

/// The process's stream of kind 0 (input), 1 (output) or 2 (error), which is not the caller's to close. Null
/// for any other kind. What a program writes to kind 1 goes to standard error, too: standard output may be
/// carrying the drawing. Reading of kind 0 fails when the host wants out while it waits (CFrameWnd::OnWait).
[[nodiscard]] std::FILE* StandardStream(int kind) noexcept;

/// Nothing when there is no file or directory of that name.
[[nodiscard]] std::optional<FileStatus> Status(const char* name) noexcept;

/// Removes a file, but no directory. Whether it went.
[[nodiscard]] bool Remove(const char* name) noexcept;

/// Renames a file. False also when there is a file of the new name: that one stays.
[[nodiscard]] bool Rename(const char* oldName, const char* newName) noexcept;

/// The absolute paths of all that matches a pattern with * ? [ ], in the order of their bytes, without "."
/// and "..".
[[nodiscard]] std::vector<std::string> FindFiles(const char* pattern);

/// Writes out what the streams of the process hold back, those of the host among them.
void FlushAll() noexcept;

// For the import itself.

/// Opens the file to import. "r+b" asks for one that may be written. Null when that fails, and for a
/// directory, pipe or device.
[[nodiscard]] std::FILE* OpenInput(const char* path, const char* mode) noexcept;

}  // namespace FileSystem
