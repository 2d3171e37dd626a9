// The localised resources of this host: the plug-in's texts in English.
#pragma once

#include "platform/Resources.h"

// The string table and the dialog with the ids of the plug-in's own. Lives as long as the program.
HINSTANCE EnglishResources();
