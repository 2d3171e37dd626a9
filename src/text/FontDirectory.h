// The font directory: where fonts stand under their keys, for the font operators and the Font category of resources.
// It is two dictionaries that programs see, FontDirectory and GlobalFontDirectory (SharedFontDirectory).
#pragma once

#include "interp/FilterEPS.h"

/// Enters an object of the font, in the global directory, too, when the font is global. The key is one of a dictionary
/// (CName::IsKey).
void EnterFont(CFilterEPS& m, const CName* key, const CElement& font);

/// Enters an object of the font in the local directory alone.
void EnterLocalFont(CFilterEPS& m, const CName* key, const CElement& font);

/// Enters objects of the font in both directories, whatever its VM.
void EnterFontEverywhere(CFilterEPS& m, const CName* key, const CElement& font);

/// Takes the key out of both directories.
void RemoveFont(CFilterEPS& m, const CName* key);

/// What stands under the key, a font unless a program has put something else there; null when nothing does. It stays
/// the directory's.
[[nodiscard]] const CElement* EnteredFont(const CFilterEPS& m, const CName* key);

/// An object of what stands under the key, else of the font that the dialect has for it, which is not entered. Null
/// with the code set.
[[nodiscard]] ElementPtr FindFont(CFilterEPS& m, const CName* key);
