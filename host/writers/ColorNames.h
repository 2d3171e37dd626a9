// Readable names for colours, and their nearest neighbours in the fixed palette of DXF.
#pragma once

#include <cstdint>
#include <string>

/// "red" for a colour that has a name, else the nearest name by hue with the value behind it: "red-E01818". Two
/// colours never share a name. `color` is 0x00BBGGRR.
std::string ColorName(std::uint32_t color);

/// The AutoCAD Color Index (1 to 255) that comes nearest, for programs that know no true colours.
int NearestColorIndex(std::uint32_t color);
