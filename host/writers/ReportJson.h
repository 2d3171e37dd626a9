// What a run report tells, as JSON objects on one line.
#pragma once

#include <string>
#include <vector>

#include "drawing/Check.h"
#include "import/Drawing.h"

/// { "error": "typecheck", "operator": "add", "line": 41, "offset": 1203 }
std::string FailureJson(const tagRunFailure& failure);

/// [{ "name": "Helvetica", "used": "NimbusSans-Regular", "embedded": false, "glyphs": 120, "missing": 0 }]; "used" is
/// null for a font that there was no face for.
std::string FontsJson(const std::vector<tagFontUse>& fonts);

/// { "texts": 12, "fonts": ["Helvetica"], "images": 1, "shadings": 0, "patterns": 0, "points": 0 }
std::string LeftOutJson(const tagLeftOut& leftOut);

/// { "size": [62, 55.74], "position": [0, 0], "closed": 10, "open": 6, ... }; lengths and places are mm.
std::string CheckJson(const CheckReport& check, const Drawing& drawing);

/// The options of the command line that would mend what a check found.
std::vector<std::string> AdviceOf(const CheckReport& check, const Drawing& drawing);
