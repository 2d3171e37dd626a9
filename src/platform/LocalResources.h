// The plug-in's texts in the user's language. The application object (plugin/EpsApp.cpp) defines these
// functions; they are declared here because lower floors report in texts, too: the interpreter's error box,
// for one.
#pragma once

#include <string>

#include "platform/Resources.h"

/// The localised resources of the host, or the library's own; null until the application object has started.
[[nodiscard]] HINSTANCE GetResHandle() noexcept;

/// Loads a text as LoadStringA does: its length, or 0 with an empty text.
int LoadResString(unsigned id, char* buffer, int limit) noexcept;

/// The same text by way of the host's prompt buffer, which cuts it at 199 bytes; empty when there is none.
[[nodiscard]] std::string LocalText(unsigned id);
