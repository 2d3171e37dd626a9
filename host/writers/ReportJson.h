// What a run report tells, as JSON objects on one line.
#pragma once

#include <string>

#include "import/Drawing.h"

// { "error": "typecheck", "operator": "add", "line": 41, "offset": 1203 }
std::string FailureJson(const tagRunFailure& failure);

// [{ "name": "Helvetica", "used": "NimbusSans-Regular", "embedded": false, "glyphs": 120, "missing": 0 }]; "used" is null
// for a font that there was no face for.
std::string FontsJson(const std::vector<tagFontUse>& fonts);

// { "texts": 12, "fonts": ["Helvetica"], "images": 1, "shadings": 0, "patterns": 0, "points": 0 }
std::string LeftOutJson(const tagLeftOut& leftOut);
