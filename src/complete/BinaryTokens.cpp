// Binary tokens by their first byte, and the tables of object sequences.
#include "complete/BinaryTokens.h"

#include <bit>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "complete/geometry/EncodedPath.h"

namespace {

/// The system name table (PLRM, System Name Encodings), as far as one byte goes.
constexpr std::string_view kSystemNames[] = {
    "abs",
    "add",
    "aload",
    "anchorsearch",
    "and",
    "arc",
    "arcn",
    "arct",
    "arcto",
    "array",
    "ashow",
    "astore",
    "awidthshow",
    "begin",
    "bind",
    "bitshift",
    "ceiling",
    "charpath",
    "clear",
    "cleartomark",
    "clip",
    "clippath",
    "closepath",
    "concat",
    "concatmatrix",
    "copy",
    "count",
    "counttomark",
    "currentcmykcolor",
    "currentdash",
    "currentdict",
    "currentfile",
    "currentfont",
    "currentgray",
    "currentgstate",
    "currenthsbcolor",
    "currentlinecap",
    "currentlinejoin",
    "currentlinewidth",
    "currentmatrix",
    "currentpoint",
    "currentrgbcolor",
    "currentshared",
    "curveto",
    "cvi",
    "cvlit",
    "cvn",
    "cvr",
    "cvrs",
    "cvs",
    "cvx",
    "def",
    "defineusername",
    "dict",
    "div",
    "dtransform",
    "dup",
    "end",
    "eoclip",
    "eofill",
    "eoviewclip",
    "eq",
    "exch",
    "exec",
    "exit",
    "file",
    "fill",
    "findfont",
    "flattenpath",
    "floor",
    "flush",
    "flushfile",
    "for",
    "forall",
    "ge",
    "get",
    "getinterval",
    "grestore",
    "gsave",
    "gstate",
    "gt",
    "identmatrix",
    "idiv",
    "idtransform",
    "if",
    "ifelse",
    "image",
    "imagemask",
    "index",
    "ineofill",
    "infill",
    "initviewclip",
    "inueofill",
    "inufill",
    "invertmatrix",
    "itransform",
    "known",
    "le",
    "length",
    "lineto",
    "load",
    "loop",
    "lt",
    "makefont",
    "matrix",
    "maxlength",
    "mod",
    "moveto",
    "mul",
    "ne",
    "neg",
    "newpath",
    "not",
    "null",
    "or",
    "pathbbox",
    "pathforall",
    "pop",
    "print",
    "printobject",
    "put",
    "putinterval",
    "rcurveto",
    "read",
    "readhexstring",
    "readline",
    "readstring",
    "rectclip",
    "rectfill",
    "rectstroke",
    "rectviewclip",
    "repeat",
    "restore",
    "rlineto",
    "rmoveto",
    "roll",
    "rotate",
    "round",
    "save",
    "scale",
    "scalefont",
    "search",
    "selectfont",
    "setbbox",
    "setcachedevice",
    "setcachedevice2",
    "setcharwidth",
    "setcmykcolor",
    "setdash",
    "setfont",
    "setgray",
    "setgstate",
    "sethsbcolor",
    "setlinecap",
    "setlinejoin",
    "setlinewidth",
    "setmatrix",
    "setrgbcolor",
    "setshared",
    "shareddict",
    "show",
    "showpage",
    "stop",
    "stopped",
    "store",
    "string",
    "stringwidth",
    "stroke",
    "strokepath",
    "sub",
    "systemdict",
    "token",
    "transform",
    "translate",
    "truncate",
    "type",
    "uappend",
    "ucache",
    "ueofill",
    "ufill",
    "undef",
    "upath",
    "userdict",
    "ustroke",
    "viewclip",
    "viewclippath",
    "where",
    "widthshow",
    "write",
    "writehexstring",
    "writeobject",
    "writestring",
    "wtranslation",
    "xor",
    "xshow",
    "xyshow",
    "yshow",
    "FontDirectory",
    "SharedFontDirectory",
    "Courier",
    "Courier-Bold",
    "Courier-BoldOblique",
    "Courier-Oblique",
    "Helvetica",
    "Helvetica-Bold",
    "Helvetica-BoldOblique",
    "Helvetica-Oblique",
    "Symbol",
    "Times-Bold",
    "Times-BoldItalic",
    "Times-Italic",
    "Times-Roman",
    "execuserobject",
    "currentcolor",
    "currentcolorspace",
    "currentglobal",
    "execform",
    "filter",
    "findresource",
    "globaldict",
    "makepattern",
    "setcolor",
    "setcolorspace",
    "setglobal",
    "setpagedevice",
    "setpattern",
};

enum class ByteOrder { highFirst, lowFirst };

/// Bytes as numbers in one order.
class CByteView {
public:
    CByteView(std::string_view bytes, ByteOrder order) noexcept : m_Bytes(bytes), m_Order(order) {}

    /// The unsigned number of count bytes; 0 where the bytes end before.
    [[nodiscard]] std::uint32_t Number(std::size_t at, std::size_t count) const noexcept {
        if (at > m_Bytes.size() || count > m_Bytes.size() - at) return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t from = m_Order == ByteOrder::highFirst ? at + i : at + count - 1 - i;
            value = value << 8 | static_cast<unsigned char>(m_Bytes[from]);
        }
        return value;
    }
    [[nodiscard]] std::int32_t Int(std::size_t at, std::size_t count) const noexcept {
        const std::uint32_t value = Number(at, count);
        return count == 2 ? static_cast<std::int16_t>(value) : static_cast<std::int32_t>(value);
    }
    [[nodiscard]] double Real(std::size_t at) const noexcept { return std::bit_cast<float>(Number(at, 4)); }

private:
    std::string_view m_Bytes;
    ByteOrder m_Order;
};

ElementPtr Name(std::string_view text, bool executable) {
    auto name = MakeElement<CSimpElement>(text);
    name->m_bExec = executable;
    return name;
}

/// An object sequence (PLRM, Binary Object Sequences): objects of eight bytes, those at the front being the elements
/// of the array that it stands for, behind which arrays refer to others and names and strings to characters.
class CSequence {
public:
    CSequence(CFilterEPS& m, std::string_view body, ByteOrder order) noexcept
        : m_Machine(m), m_Body(body), m_View(body, order) {}

    int Read(std::uint32_t count, ElementPtr& array) { return Array(0, count, true, 0, array); }

private:
    static constexpr std::size_t OBJECT_SIZE = 8;
    static constexpr int MAX_DEPTH = 100;
    static constexpr std::size_t MAX_OBJECTS = 1 << 20;  // however often arrays refer to one another

    int Array(std::size_t at, std::uint32_t count, bool executable, int depth, ElementPtr& result) {
        if (at > m_Body.size() || count > (m_Body.size() - at) / OBJECT_SIZE) return m_Machine.Fail(PSERR_SYNTAX);
        if (depth > MAX_DEPTH || count > MAX_OBJECTS - m_nObjects) return m_Machine.Fail(PSERR_RANGE, "limitcheck");
        m_nObjects += count;
        std::vector<ElementPtr> elements(count);
        for (std::size_t i = 0; i < count; ++i) {
            if (Object(at + i * OBJECT_SIZE, depth, elements[i]) != 1) return -1;
        }
        auto array = MakeElement<CArrayElement>(std::move(elements));
        array->m_bExec = executable;
        result = std::move(array);
        return 1;
    }

    int Object(std::size_t at, int depth, ElementPtr& object) {
        const auto head = static_cast<unsigned char>(m_Body[at]);
        const bool executable = head >= 128;
        const std::int32_t length = m_View.Int(at + 2, 2);
        const std::uint32_t value = m_View.Number(at + 4, 4);
        switch (head & 127) {
            case 0:
                object = MakeElement<CNullElement>();
                return 1;
            case 1:
                object = NewInt(m_View.Int(at + 4, 4));
                return 1;
            case 2:
                // With a length it is a fixed-point number of so many bits behind the point.
                object = length == 0 ? NewReal(m_View.Real(at + 4))
                                     : NewReal(m_View.Int(at + 4, 4) / static_cast<double>(1u << (length & 31)));
                return 1;
            case 3:
            case 6:
                return Named(length, value, executable, object);
            case 4:
                object = MakeElement<CBoolElement>(value != 0);
                return 1;
            case 5: {
                std::string_view text;
                if (!Text(length, value, text)) return m_Machine.Fail(PSERR_SYNTAX);
                auto string = MakeElement<CStringElement>(text);
                string->m_bExec = executable;
                object = std::move(string);
                return 1;
            }
            case 9:
                return Array(value, static_cast<std::uint16_t>(length), executable, depth + 1, object);
            case 10:
                object = NewMark();
                return 1;
            default:
                return m_Machine.Fail(PSERR_SYNTAX);
        }
    }

    int Named(std::int32_t length, std::uint32_t value, bool executable, ElementPtr& object) {
        std::string_view text;
        if (length == -1) {
            if (value >= std::size(kSystemNames)) return m_Machine.Fail(PSERR_UNDEFINED);
            text = kSystemNames[value];
        } else if (length <= 0 || !Text(length, value, text)) {
            return m_Machine.Fail(length == 0 ? PSERR_UNDEFINED : PSERR_SYNTAX);  // user names: there are none
        }
        object = Name(text, executable);
        return 1;
    }

    bool Text(std::int32_t length, std::uint32_t at, std::string_view& text) const {
        const std::size_t count = static_cast<std::uint16_t>(length);
        if (at > m_Body.size() || count > m_Body.size() - at) return false;
        text = m_Body.substr(at, count);
        return true;
    }

    CFilterEPS& m_Machine;
    std::string_view m_Body;
    CByteView m_View;
    std::size_t m_nObjects = 0;
};

int ReadSequence(CFilterEPS& m, unsigned char type, const TakeBytesFn& take, ElementPtr& object) {
    const ByteOrder order = type % 2 == 0 ? ByteOrder::highFirst : ByteOrder::lowFirst;
    constexpr std::uint32_t shortHead = 4;  // with the first byte, which lengths count
    constexpr std::uint32_t longHead = 8;
    std::string bytes;
    if (!take(bytes, shortHead - 1)) return m.Fail(PSERR_SYNTAX);
    std::uint32_t count = static_cast<unsigned char>(bytes[0]);
    std::uint32_t length = CByteView(bytes, order).Number(1, 2);
    std::uint32_t head = shortHead;
    if (count == 0) {
        count = length;
        head = longHead;
        if (!take(bytes, longHead - shortHead)) return m.Fail(PSERR_SYNTAX);
        length = CByteView(bytes, order).Number(0, 4);
    }
    if (length < head || !take(bytes, length - head)) return m.Fail(PSERR_SYNTAX);
    return CSequence(m, bytes, order).Read(count, object);
}

/// A number array: the form of the numbers, their count in the order of the form, and the numbers.
int ReadNumberArray(CFilterEPS& m, const TakeBytesFn& take, ElementPtr& object) {
    std::string head;
    if (!take(head, 3)) return m.Fail(PSERR_SYNTAX);
    const auto form = static_cast<unsigned char>(head[0]);
    const std::uint32_t count = CByteView(head, form < 128 ? ByteOrder::highFirst : ByteOrder::lowFirst).Number(1, 2);
    const std::size_t size = form % 128 >= 32 && form % 128 < 48 ? 2 : 4;
    std::string numbers;
    if (!take(numbers, count * size)) return m.Fail(PSERR_SYNTAX);
    const std::string all = std::string(1, static_cast<char>(geometry::NUMBER_ARRAY_TOKEN)) + head + numbers;
    const geometry::DecodedNumbers decoded =
        geometry::DecodeNumberString({reinterpret_cast<const std::uint8_t*>(all.data()), all.size()});
    if (decoded.fault != geometry::EncodingFault::None) return m.Fail(PSERR_SYNTAX);
    const bool isInteger = form % 128 == 0 || form % 128 == 32;
    std::vector<ElementPtr> elements;
    for (const double number : decoded.numbers) {
        elements.push_back(isInteger ? ElementPtr(NewInt(static_cast<std::int32_t>(number))) : NewReal(number));
    }
    object = MakeElement<CArrayElement>(std::move(elements));
    return 1;
}

int ReadFixed(CFilterEPS& m, const TakeBytesFn& take, ElementPtr& object) {
    std::string bytes;
    if (!take(bytes, 1)) return m.Fail(PSERR_SYNTAX);
    const auto form = static_cast<unsigned char>(bytes[0]);
    const ByteOrder order = form < 128 ? ByteOrder::highFirst : ByteOrder::lowFirst;
    const unsigned scale = form % 128;
    if (scale >= 48) return m.Fail(PSERR_SYNTAX);
    const std::size_t size = scale < 32 ? 4 : 2;
    if (!take(bytes, size)) return m.Fail(PSERR_SYNTAX);
    const std::int32_t value = CByteView(bytes, order).Int(0, size);
    const unsigned shift = scale % 32;
    object = shift == 0 ? ElementPtr(NewInt(value)) : NewReal(value / static_cast<double>(1u << shift));
    return 1;
}

}  // namespace

int ReadBinaryToken(CFilterEPS& m, unsigned char type, const TakeBytesFn& take, ElementPtr& object) {
    if (type <= 131) return ReadSequence(m, type, take, object);
    if (type == 137) return ReadFixed(m, take, object);
    if (type == geometry::NUMBER_ARRAY_TOKEN) return ReadNumberArray(m, take, object);

    /// Bytes behind the first one: a value, or the length of a string.
    constexpr std::size_t sizes[] = {4, 4, 2, 2, 1, 0, 4, 4, 4, 1, 1, 2, 2, 1, 1, 1, 1};
    if (type > 148) return m.Fail(PSERR_SYNTAX);
    std::string bytes;
    const std::size_t size = sizes[type - 132];
    if (!take(bytes, size)) return m.Fail(PSERR_SYNTAX);
    const bool isLow = type == 133 || type == 135 || type == 139 || type == 140 || type == 144;
    const CByteView view(bytes, isLow ? ByteOrder::lowFirst : ByteOrder::highFirst);
    const std::uint32_t value = view.Number(0, size);
    if (type <= 135) {
        object = NewInt(view.Int(0, size));
    } else if (type == 136) {
        object = NewInt(static_cast<signed char>(value));
    } else if (type <= 140) {
        object = NewReal(view.Real(0));
    } else if (type == 141) {
        if (value > 1) return m.Fail(PSERR_SYNTAX);
        object = MakeElement<CBoolElement>(value != 0);
    } else if (type <= 144) {
        if (!take(bytes, value)) return m.Fail(PSERR_SYNTAX);
        object = MakeElement<CStringElement>(bytes);
    } else {
        // Of the user name table there is nothing.
        if (type > 146 || value >= std::size(kSystemNames)) return m.Fail(PSERR_UNDEFINED);
        object = Name(kSystemNames[value], type == 146);
    }
    return 1;
}
