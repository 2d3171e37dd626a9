// Colour names, and the search of dxflib's copy of the AutoCAD palette.
#include "writers/ColorNames.h"

#include <dxflib/dl_codes.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>

#include "drawing/Figure.h"

namespace {

struct NamedColor {
    const char* name;
    unsigned red, green, blue;
};

constexpr NamedColor kNamed[] = {
    {"black", 0, 0, 0},        {"white", 255, 255, 255}, {"gray", 128, 128, 128}, {"light-gray", 192, 192, 192},
    {"dark-gray", 64, 64, 64}, {"red", 255, 0, 0},       {"dark-red", 128, 0, 0}, {"orange", 255, 128, 0},
    {"brown", 128, 64, 0},     {"yellow", 255, 255, 0},  {"olive", 128, 128, 0},  {"green", 0, 255, 0},
    {"dark-green", 0, 128, 0}, {"cyan", 0, 255, 255},    {"teal", 0, 128, 128},   {"sky-blue", 0, 128, 255},
    {"blue", 0, 0, 255},       {"dark-blue", 0, 0, 128}, {"violet", 128, 0, 255}, {"purple", 128, 0, 128},
    {"magenta", 255, 0, 255},  {"pink", 255, 128, 192},
};

double Distance(std::uint32_t color, double red, double green, double blue) {
    const double dr = red - Red(color), dg = green - Green(color), db = blue - Blue(color);
    return dr * dr + dg * dg + db * db;
}

// Degrees on the colour circle, red at 0, green at 120; nothing for what the eye takes for a gray.
std::optional<double> Hue(double red, double green, double blue) {
    constexpr double kLeastSaturation = 0.1;  // of the HSV model
    constexpr double kLeastLight = 24;        // anything darker is a black
    const double most = std::max({red, green, blue});
    const double chroma = most - std::min({red, green, blue});
    if (most < kLeastLight || chroma < kLeastSaturation * most) return std::nullopt;
    const double sixth = most == red     ? (green - blue) / chroma
                         : most == green ? 2 + (blue - red) / chroma
                                         : 4 + (red - green) / chroma;
    return sixth < 0 ? 60 * sixth + 360 : 60 * sixth;
}

// How far apart two hues are, in degrees; names of one hue, a light and a dark one, count as equally far.
double HueDistance(double a, double b) {
    constexpr double kSame = 2;
    const double distance = std::min(std::fabs(a - b), 360 - std::fabs(a - b));
    return std::floor(distance / kSame);
}

}  // namespace

// A pale yellow is nearer to light gray than to yellow by its values, but nobody would call it so: hue comes first,
// and among the names of one hue the nearest value.
std::string ColorName(std::uint32_t color) {
    const std::optional<double> hue = Hue(Red(color), Green(color), Blue(color));
    const NamedColor* nearest = nullptr;
    std::pair<double, double> least;
    for (const NamedColor& named : kNamed) {
        const double distance = Distance(color, named.red, named.green, named.blue);
        if (distance == 0) return named.name;
        const std::optional<double> namedHue = Hue(named.red, named.green, named.blue);
        if (hue.has_value() != namedHue.has_value()) continue;
        const std::pair far(hue ? HueDistance(*hue, *namedHue) : 0.0, distance);
        if (nearest != nullptr && far >= least) continue;
        least = far;
        nearest = &named;
    }
    char value[8];
    std::snprintf(value, sizeof value, "-%02X%02X%02X", Red(color), Green(color), Blue(color));
    return nearest->name + std::string(value);
}

int NearestColorIndex(std::uint32_t color) {
    if (color == 0) return 7;  // 7 is drawn black or white, whichever shows against the background
    int nearest = 7;
    double least = HUGE_VAL;
    for (int index = 1; index <= 255; ++index) {
        const double distance =
            Distance(color, dxfColors[index][0] * 255, dxfColors[index][1] * 255, dxfColors[index][2] * 255);
        if (distance >= least) continue;
        least = distance;
        nearest = index;
    }
    return nearest;
}
