// The faces that this system has, by PostScript name, and which of them stands for a font that a file only names.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "complete/text/Encodings.h"
#include "complete/text/FontFace.h"
#include "complete/text/StandardMetrics.h"

namespace text {

/// A face for a font that is only named, in thousandths of the em: the FontMatrix [0.001 0 0 0.001 0 0] is right for
/// it. Its glyphs are found by name.
struct SubstituteFace {
    std::shared_ptr<FontFace> face;  ///< never null
    std::string usedName;            ///< PostScript name of the face in the system
    bool sameWidths = true;          ///< it is the font of that name, or one of equal metrics
    /// The standard face whose widths the glyphs have been given, where that has a width for their names: `face` does
    /// so by itself, outlines included. Nothing for a face as it is.
    std::optional<StandardFace> fitTo;
    /// Encoding of the font by that name; lives as long as the face.
    const EncodingVector* builtInEncoding = &kStandardEncoding;
};

class FontCatalogue {
public:
    /// folders: where to look before the system's fonts, first ones first. Nothing is read before the first question.
    explicit FontCatalogue(std::vector<std::string> folders);
    FontCatalogue(const FontCatalogue&) = delete;
    FontCatalogue& operator=(const FontCatalogue&) = delete;
    ~FontCatalogue();

    /// The face of just that PostScript name; else one with the same metrics, for a standard name; else, for a name
    /// that tells a text face, one of its class. The same system gives the same answer, and the same name the same
    /// face.
    [[nodiscard]] std::optional<SubstituteFace> Find(std::string_view postScriptName);

private:
    struct Contents;
    std::unique_ptr<Contents> m_pContents;
};

}  // namespace text
