// What a host program tells the host library about itself before it sends commands to a plug-in.
#pragma once

#include "hostout/HostCore.h"

/// The main window; it stays the caller's and must outlive every import. Null takes it back. To be set before
/// the first import command (command 4), which shows its dialog there.
HOST_API void SetHostMainFrame(CFrameWnd* frame) noexcept;
/// The major version, 5 before the first call.
HOST_API void SetHostVersion(int major) noexcept;
/// The localised resources of a component, which stay the caller's; null for none. A plug-in asks for them
/// when it is loaded.
HOST_API void SetHostLocalResources(const char* component, HINSTANCE resources);
/// The name of the default font.
HOST_API void SetHostDefaultFont(const char* name) noexcept;
