#include "complete/text/CffFace.h"

#include "complete/text/FreeTypeFace.h"

namespace text {

std::unique_ptr<FontFace> MakeCffFace(std::string table, int index) {
    constexpr char majorVersion = 1;
    constexpr double thousandths = 1000;
    if (table.empty() || table[0] != majorVersion) return nullptr;
    return FreeTypeFace::OpenBytes(std::move(table), FreeTypeFace::Driver::Cff, index, thousandths);
}

}  // namespace text
