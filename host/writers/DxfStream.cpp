// Group output and the three mends. Handles are hexadecimal, as DXF has them.
#include "writers/DxfStream.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

constexpr double kViewMargin = 1.05;
constexpr double kViewAspect = 1.6;  // width to height of the window that a drawing is likely to open in

// Group codes that the mends look at.
enum Group { kRecord = 0, kName = 2, kHandle = 5, kVariable = 9, kOwner = 330, kEntryHandle = 350 };
enum ViewGroup { kCentreX = 12, kCentreY = 22, kViewHeight = 40, kAspect = 41 };

constexpr std::size_t kCodeRoom = 16;
constexpr double kMostShort = 1e9;  // below this, whole numbers are told by an int

// Puts a group code, right-aligned to three characters, on a line of its own. Answers where the value begins.
char* PutCode(char* at, int code) {
    const auto digit = [code](int power) { return static_cast<char>('0' + code / power % 10); };
    if (code < 100) {
        *at++ = ' ';
        *at++ = code >= 10 ? digit(10) : ' ';
    } else {
        if (code >= 1000) *at++ = digit(1000);
        *at++ = digit(100);
        *at++ = digit(10);
    }
    *at++ = digit(1);
    *at++ = '\n';
    return at;
}

}  // namespace

CDxfStream::CDxfStream(COutputFile& out, const CBox& box, int handleSeed)
    : DL_WriterA("", DL_VERSION_2000), m_Out(out), m_Box(box), m_nHandleSeed(handleSeed) {}

void CDxfStream::dxfReal(int code, double value) const {
    if (m_bInView && !m_Box.IsEmpty()) {
        if (code == kCentreX) value = (m_Box.Min().x + m_Box.Max().x) / 2;
        if (code == kCentreY) value = (m_Box.Min().y + m_Box.Max().y) / 2;
        if (code == kViewHeight) value = std::max({m_Box.Height(), m_Box.Width() / kViewAspect, 1.0}) * kViewMargin;
        if (code == kAspect) value = kViewAspect;
    }
    char* const text = PutCode(m_Out.Room(kCodeRoom + kDecimalRoom), code);
    // A coordinate is a 32-bit float, if its unit is the millimetre; then the float's decimals say it all.
    const auto single = static_cast<float>(value);
    char* end = static_cast<double>(single) == value ? PutShortest(text, single) : PutShortest(text, value);
    // A real without a point is allowed, but some readers take it for an integer.
    const bool isWhole = !(std::fabs(value) < kMostShort) || value == static_cast<int>(value);
    if (isWhole && std::find_if(text, end, [](char c) { return c == '.' || c == 'e'; }) == end) {
        *end++ = '.';
        *end++ = '0';
    }
    *end++ = '\n';
    m_Out.EndAt(end);
}

void CDxfStream::dxfInt(int code, int value) const {
    char room[kCodeRoom + 16];
    char* end = std::to_chars(PutCode(room, code), room + sizeof room, value).ptr;
    *end++ = '\n';
    m_Out.Write({room, static_cast<std::size_t>(end - room)});
}

void CDxfStream::dxfHex(int code, int value) const {
    if (m_bInSeed) value = m_nHandleSeed;
    char room[kCodeRoom + 16];
    char* const text = PutCode(room, code);
    char* end = std::to_chars(text, room + sizeof room, static_cast<unsigned>(value), 16).ptr;
    std::transform(text, end, text, [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    *end++ = '\n';
    m_Out.Write({room, static_cast<std::size_t>(end - room)});
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
    const std::string_view text = value;
    if (code == kRecord || code == kName || code == kVariable) {
        m_bInView = text == "*Active";
        m_bInSeed = text == "$HANDSEED";
    }
    char room[kCodeRoom];
    m_Out.Write({room, static_cast<std::size_t>(PutCode(room, code) - room)});
    m_Out.Write(text);
    m_Out.Write('\n');
}
