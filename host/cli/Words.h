// How an import ended, in words.
#pragma once

#include <string>
#include <vector>

#include "cli/Options.h"
#include "drawing/Check.h"
#include "drawing/Survey.h"
#include "import/Drawing.h"

/// Why the import is not whole, and where: "line 41: typecheck in add (operand of the wrong type)". Empty for one
/// that is whole.
std::string ReasonOf(const Options& options, const Drawing& drawing);

/// What the user can do about it: "--timeout gives it more time". Empty when nothing helps.
std::string RemedyOf(const Options& options, const Drawing& drawing);

/// What a drawing lacks although no error was met: sentences for what did not run, and for what the dialect leaves
/// out, and for fonts that are missing or replaced.
std::vector<std::string> WarningsOf(const Drawing& drawing);

/// "2 entities (8 segments, 4 curves)"; "nothing" without entities.
std::string AmountText(const Survey& survey, std::size_t entities);

/// What text there is: "12 texts drawn in 3 fonts (Helvetica with NimbusSans-Regular), "; empty without any.
std::string TextsText(const tagRunReport& report);

/// What the passes did: "38 doubled sections removed, 12 contours joined from 47 pieces, 16 circles, "; empty when
/// there is nothing to tell.
std::string PassesText(const PassReport& report);

/// What a machine would trip over: a line for each, indented.
std::string CheckText(const CheckReport& check, const Drawing& drawing);

/// "62 x 55.74 mm"
std::string SizeText(const CBox& box);
