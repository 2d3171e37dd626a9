#include "complete/text/SfntFace.h"

#include "complete/text/FreeTypeFace.h"

namespace text {

std::unique_ptr<FontFace> MakeSfntFace(std::string bytes) {
    // TrueType outlines only, no collections and no compressed containers.
    constexpr std::string_view versions[] = {std::string_view("\0\1\0\0", 4), std::string_view("\0\2\0\0", 4), "true"};
    for (const std::string_view version : versions) {
        if (bytes.starts_with(version))
            return FreeTypeFace::OpenBytes(std::move(bytes), FreeTypeFace::Driver::TrueType, 0, 1);
    }
    return nullptr;
}

std::string JoinSfntStrings(std::span<const std::string_view> strings) {
    std::string bytes;
    for (const std::string_view string : strings) bytes.append(string.substr(0, string.size() / 2 * 2));
    return bytes;
}

}  // namespace text
