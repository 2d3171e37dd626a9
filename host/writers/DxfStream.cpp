// Group output and the three mends. Handles are hexadecimal, as DXF has them.
#include "writers/DxfStream.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace {

constexpr double kViewMargin = 1.05;
constexpr double kViewAspect = 1.6;  // width to height of the window that a drawing is likely to open in

// Group codes that the mends look at.
enum Group { kRecord = 0, kName = 2, kHandle = 5, kVariable = 9, kOwner = 330, kEntryHandle = 350 };
enum ViewGroup { kCentreX = 12, kCentreY = 22, kViewHeight = 40, kAspect = 41 };

}  // namespace

CDxfStream::CDxfStream(COutputFile& out, const CBox& box, int handleSeed)
    : DL_WriterA("", DL_VERSION_2000), m_Out(out), m_Box(box), m_nHandleSeed(handleSeed) {}

void CDxfStream::WriteCode(int code) const {
    m_Out.Write(code < 10 ? "  " : code < 100 ? " " : "");
    m_Out.WriteInteger(code);
    m_Out.Write('\n');
}

void CDxfStream::dxfReal(int code, double value) const {
    if (m_Record == "*Active" && !m_Box.IsEmpty()) {
        if (code == kCentreX) value = (m_Box.Min().x + m_Box.Max().x) / 2;
        if (code == kCentreY) value = (m_Box.Min().y + m_Box.Max().y) / 2;
        if (code == kViewHeight) value = std::max({m_Box.Height(), m_Box.Width() / kViewAspect, 1.0}) * kViewMargin;
        if (code == kAspect) value = kViewAspect;
    }
    WriteCode(code);
    char room[64];
    // A coordinate is a 32-bit float, if its unit is the millimetre; then the float's decimals say it all.
    const auto single = static_cast<float>(value);
    char* end = static_cast<double>(single) == value ? std::to_chars(room, room + sizeof room, single).ptr
                                                     : std::to_chars(room, room + sizeof room, value).ptr;
    const std::string_view text(room, static_cast<std::size_t>(end - room));
    m_Out.Write(text);
    // A real without a point is allowed, but some readers take it for an integer.
    m_Out.Write(text.find_first_of(".e") == std::string_view::npos ? ".0\n" : "\n");
}

void CDxfStream::dxfInt(int code, int value) const {
    WriteCode(code);
    m_Out.WriteInteger(value);
    m_Out.Write('\n');
}

void CDxfStream::dxfHex(int code, int value) const {
    if (m_Record == "$HANDSEED") value = m_nHandleSeed;
    WriteCode(code);
    char room[16];
    std::snprintf(room, sizeof room, "%X\n", static_cast<unsigned>(value));
    m_Out.Write(room);
    if (!m_bObjects) return;
    // A dictionary stands before its entries and names them by their handles: so it is known who owns an
    // object.
    if (code == kEntryHandle) m_ObjectOwners[value] = m_nObject;
    if (code == kHandle) {
        m_nObject = value;
        dxfHex(kOwner, m_ObjectOwners[value]);
    }
}

void CDxfStream::dxfString(int code, const char* value) const {
    if (code == kRecord || code == kName || code == kVariable) m_Record = value;
    WriteCode(code);
    m_Out.Write(value);
    m_Out.Write('\n');
}
