// hostcore: the host about itself, and what it lends: its main window, a text buffer, localised resources,
// memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "hostout/HostApi.h"

class CDataManager;
class CFrameWnd;
class CResourceModule;
using HINSTANCE = CResourceModule*;

/// The first version of the host whose units are millimetres. Before, they are 1/40 mm.
inline constexpr std::int32_t FIRST_MM_VERSION = 5;

struct tagVersionInfo {
    std::uint16_t nMajor;
    std::uint16_t nMinor;
    std::uint32_t nBuild;
};

/// Fills in the version of the host.
HOST_API void glbf_GetSysVersion(tagVersionInfo* info) noexcept;
/// Lends the data manager, which lives as long as the host.
HOST_API CDataManager* glbf_GetDataManager() noexcept;
/// The window that dialogs and message boxes belong to, the host's. An import needs one; it is null only
/// before the host program has set it.
HOST_API CFrameWnd* glbf_GetMainFrame() noexcept;

/// Bytes of the buffer that glbf_GetPromptString lends.
inline constexpr int PROMPT_BUFFER_BYTES = 1024;
/// A text buffer for short use: whoever asks next writes over it.
HOST_API char* glbf_GetPromptString() noexcept;

/// The localised resources of a component, or null when there are none. Goes back with
/// glbf_FreeLocalResHandle.
HOST_API HINSTANCE glbf_LoadLocalResHandle(const char* name) noexcept;
HOST_API void glbf_FreeLocalResHandle(HINSTANCE handle) noexcept;

/// Memory of the host's pool, aligned for any type; throws std::bad_alloc. Goes back with STD_FrePoolMem.
HOST_API void* STD_AlcPoolMem(std::size_t size);
HOST_API void STD_FrePoolMem(void* block) noexcept;
