// The localised resources of this host: the plug-in's texts in English.
#pragma once

#include <string_view>

#include "platform/Resources.h"

/// The string table and the dialog with the ids of the plug-in's own. Lives as long as the program.
HINSTANCE EnglishResources();

/// What an error code of a run report means: "operand of the wrong type"; empty for an unknown one.
std::string_view EnglishErrorText(int code);
