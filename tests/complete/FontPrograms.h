// Fonts that tests of text define: their glyphs are boxes, so that what is shown can be told by its corners.
#pragma once

#include <cstdint>
#include <string>

/// Bytes as hexadecimal digits of both cases, in lines.
inline std::string Hex(const std::string& bytes) {
    std::string hex;
    for (const char c : bytes) {
        hex.push_back("0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4]);
        hex.push_back("0123456789abcdef"[c & 15]);
        if (hex.size() % 65 == 64) hex.push_back('\n');
    }
    return hex;
}

/// As eexec reads it, with four blanks in front.
inline std::string Encrypt(const std::string& plain) {
    std::string encrypted;
    std::uint16_t key = 55665;
    for (const char c : "    " + plain) {
        const auto cipher = static_cast<unsigned char>(static_cast<unsigned char>(c) ^ (key >> 8));
        encrypted.push_back(static_cast<char>(cipher));
        key = static_cast<std::uint16_t>((cipher + key) * 52845u + 22719u);
    }
    return encrypted;
}

/// The head of a Type 1 font whose charstrings are not encrypted, up to its CharStrings, and its end.
inline const std::string kTypeOneHead =
    " 12 dict begin /FontType 1 def /FontName /Boxes def /FontMatrix [.001 0 0 .001 0 0] def /PaintType 0 def"
    " /FontBBox [0 0 0 0] def /Encoding StandardEncoding def"
    " /Private 5 dict dup begin /lenIV -1 def /Subrs [] def end def /CharStrings 9 dict dup begin ";
inline const std::string kTypeOneEnd = " end def currentdict end /Boxes exch definefont pop ";

// Charstrings: 0 500 hsbw 0 hmoveto 500 hlineto 700 vlineto -500 hlineto closepath endchar, and so on.
inline const std::string kBox = "<8B F888 0D 8B 16 F888 06 F950 07 FC88 06 09 0E> ";    ///< 500 by 700, 500 wide
inline const std::string kFlatBox = "<8B F8EC 0D 8B 16 F888 06 EF 07 FC88 06 09 0E> ";  ///< 500 by 100, 600 wide
inline const std::string kEmpty = "<8B F8EC 0D 0E> ";                                   ///< 600 wide
inline const std::string kFraction = "<8B FF000015B3 95 0C0C 0D 0E> ";                  ///< 5555 10 div wide
inline const std::string kAccented = "<8B F888 0D 8B EF F75C CC F756 0C06> ";  ///< 0 100 200 A acute seac, 500 wide

/// /Boxes with A a box of 500 by 700, B a flat one, and the space.
inline const std::string kBoxes = kTypeOneHead + "/.notdef " + kEmpty + "def /space " + kEmpty + "def /A " + kBox +
                                  "def /B " + kFlatBox + "def" + kTypeOneEnd;

/// /Drawn, a Type 3 font: each character is a square of its code in units of which 1000 make the em, as wide as that.
inline const std::string kDrawn =
    " /Drawn << /FontType 3 /FontMatrix [.001 0 0 .001 0 0] /FontBBox [0 0 0 0] /Encoding StandardEncoding"
    " /BuildChar {exch pop dup 0 0 0 3 index dup setcachedevice 0 0 2 index dup rectfill pop} >> definefont pop ";
