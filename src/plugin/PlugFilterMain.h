// The contact surface between the host and the plug-in: one function, and the host's records. Layouts are the
// host's, to the byte: 64-bit pointers, little-endian.
#pragma once

#include <cstddef>
#include <cstdint>

class CPtrList;

/// Commands of a request.
enum PlugCommand : std::uint32_t {
    PFC_QUERY_A = 1,
    PFC_QUERY_B = 2,
    PFC_DESCRIBE = 3,  ///< fills a tagPlugFilterInfo
    PFC_IMPORT = 4,    ///< runs a tagPlugImportJob
    PFC_RESET = 7      ///< clears a word of a tagPlugImportJob
};

/// What PlugFilterMain answers.
enum PlugResult : std::int32_t {
    PFR_MISSING = 0,  ///< a pointer is null
    PFR_HANDLED = 1,  ///< also when the user cancelled or the import failed
    PFR_NOT_SERVED = 16
};

struct tagPlugRequest {
    std::uint32_t nCommand;
    std::uint32_t reserved;
    union {
        std::uint32_t nResult;  ///< commands 1 and 2
        void* pRecord;          ///< the other commands: their record
    };
};
static_assert(offsetof(tagPlugRequest, nCommand) == 0);
static_assert(offsetof(tagPlugRequest, nResult) == 8);
static_assert(offsetof(tagPlugRequest, pRecord) == 8);

/// What the host lists among its import types. The texts are zero-terminated UTF-8.
struct tagPlugFilterInfo {
    char szName[128];      ///< display name
    char szFileType[50];   ///< file type for the file dialog
    char szExtension[50];  ///< without the dot
    std::int32_t nKind;    ///< 2
    std::int32_t nFlags;   ///< 265
};
static_assert(offsetof(tagPlugFilterInfo, szFileType) == 128);
static_assert(offsetof(tagPlugFilterInfo, szExtension) == 178);
static_assert(offsetof(tagPlugFilterInfo, nKind) == 228);
static_assert(offsetof(tagPlugFilterInfo, nFlags) == 232);

struct tagPlugImportJob {
    char szPath[264];  ///< full path of the file, zero-terminated, as the C library takes it
    CPtrList* pList;   ///< receives the entities; the host's
    std::uint32_t reserved[3];
    std::uint32_t nReset;     ///< set to 0 by PFC_RESET
    std::uint32_t nImported;  ///< set to 0 behind an import
};
static_assert(offsetof(tagPlugImportJob, pList) == 264);
static_assert(offsetof(tagPlugImportJob, nReset) == 284);
static_assert(offsetof(tagPlugImportJob, nImported) == 288);

/// Serves one command and answers a PlugResult. Of the host's records only the fields told above are written.
/// Exhausted memory passes through as std::bad_alloc, with nothing left behind.
extern "C" __attribute__((visibility("default"))) std::int32_t PlugFilterMain(tagPlugRequest* pRequest);
