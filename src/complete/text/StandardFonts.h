// The 35 standard fonts: the other spellings of their names, and the faces of equal metrics.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "complete/text/Encodings.h"
#include "complete/text/StandardMetrics.h"

namespace text {

/// What a class of faces is asked for.
struct FaceClass {
    enum class Family { Sans, Serif, Mono };
    Family family = Family::Sans;
    bool isBold = false;
    bool isItalic = false;
};

struct StandardFont {
    std::vector<std::string_view> faces;  ///< PostScript names of faces with its metrics, best first
    std::optional<FaceClass> faceClass;   ///< nothing for a font of symbols
    std::optional<StandardFace> widths;   ///< where they are known
    const EncodingVector* encoding = &kStandardEncoding;
};

/// The standard font of a name, in any of the spellings in use: Helvetica-Bold, Arial,Bold, Arial-BoldMT. Nothing for
/// another name.
[[nodiscard]] std::optional<StandardFont> FindStandardFont(std::string_view name);

/// The class of text face that words in a name tell; nothing when none does.
[[nodiscard]] std::optional<FaceClass> ClassOfName(std::string_view name);

}  // namespace text
