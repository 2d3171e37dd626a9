// How an import ended, in words.
#pragma once

#include <string>

#include "cli/Options.h"
#include "drawing/Survey.h"
#include "import/Drawing.h"

// Why the import is not whole: "the time ran out (5 s)". Empty for one that is, and for a file that couldn't be
// opened.
std::string ReasonOf(const Options& options, const Drawing& drawing);

// "2 entities (8 segments, 4 curves)"
std::string AmountText(const Survey& survey, std::size_t entities);

// "62 x 55.74 mm"
std::string SizeText(const Survey& survey);
