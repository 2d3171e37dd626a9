// How an EPS file begins: with its program, or with the binary header of a file that carries a preview (Encapsulated
// PostScript File Format, version 3). Header-only and free of all else, so that the host can read it, too.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <system_error>

/// Where the PostScript section stands, in bytes from the start of the file.
struct tagEpsSection {
    std::uint32_t nOffset;
    std::uint32_t nLength;
};

enum class EpsSignature {
    none,
    program,  ///< %!PS
    binary    ///< C5 D0 D3 C6
};

inline constexpr unsigned EPS_SIGNATURE_BYTES = 4;
/// The section's place and length behind the signature: two numbers of 32 bits, the low byte first.
inline constexpr unsigned EPS_SECTION_BYTES = 8;

/// Of the first EPS_SIGNATURE_BYTES of a file.
[[nodiscard]] inline EpsSignature EpsSignatureOf(const unsigned char* bytes) noexcept {
    if (std::memcmp(bytes, "%!PS", EPS_SIGNATURE_BYTES) == 0) return EpsSignature::program;
    if (std::memcmp(bytes, "\xC5\xD0\xD3\xC6", EPS_SIGNATURE_BYTES) == 0) return EpsSignature::binary;
    return EpsSignature::none;
}

/// Of the EPS_SECTION_BYTES behind the signature.
[[nodiscard]] inline tagEpsSection EpsSectionOf(const unsigned char* bytes) noexcept {
    const auto word = [bytes](int at) {
        return bytes[at] | static_cast<std::uint32_t>(bytes[at + 1]) << 8 |
               static_cast<std::uint32_t>(bytes[at + 2]) << 16 | static_cast<std::uint32_t>(bytes[at + 3]) << 24;
    };
    return {word(0), word(4)};
}

/// What EnterEpsSection found.
enum class EpsEntry {
    program,      ///< the file is the section
    section,      ///< a section behind a binary header
    unknown,      ///< neither: no EPS file
    unreadable,   ///< the file is too short or can't be read
    unreachable,  ///< the file can't be placed at its section
};

/// Reads the header of a file that stands at its start (a CFileBody or an object of one) and goes to the start of its
/// PostScript section; section tells where that is, once the answer is program or section. Behind a binary header,
/// input ends with the section.
template <class File>
[[nodiscard]] EpsEntry EnterEpsSection(File& file, tagEpsSection& section) {
    unsigned char bytes[EPS_SECTION_BYTES] = {};
    unsigned count = 0;
    section = {};
    if (file.ReadBlock(bytes, EPS_SIGNATURE_BYTES, &count) != 1) return EpsEntry::unreadable;
    switch (EpsSignatureOf(bytes)) {
        case EpsSignature::program:
            return file.SetPosition(0) == 1 ? EpsEntry::program : EpsEntry::unreachable;
        case EpsSignature::binary:
            break;
        default:
            return EpsEntry::unknown;
    }
    if (file.ReadBlock(bytes, EPS_SECTION_BYTES, &count) != 1) return EpsEntry::unreadable;
    section = EpsSectionOf(bytes);
    if (file.SetPosition(section.nOffset) != 1) return EpsEntry::unreachable;
    file.SetLimit(std::int64_t{section.nOffset} + section.nLength);
    return EpsEntry::section;
}

/// A box of the comments, in units of default user space.
struct tagEpsBox {
    double left, bottom, right, top;
};

enum class EpsBoxPlace {
    none,
    header,
    trailer  ///< the header says that the trailer has it
};

/// How much of a file is searched for the %%BoundingBox: bytes from the start of the section, and before its end.
inline constexpr unsigned EPS_HEADER_BYTES = 8192;
inline constexpr unsigned EPS_TRAILER_BYTES = 16384;

inline constexpr std::string_view EPS_BOUNDING_BOX = "%%BoundingBox:";

/// Four numbers behind a comment's colon, if they are a box.
[[nodiscard]] inline bool ParseEpsBox(std::string_view text, tagEpsBox& box) noexcept {
    double sides[4];
    const char* at = text.data();
    const char* const end = at + text.size();
    for (double& side : sides) {
        while (at < end && (*at == ' ' || *at == '\t')) ++at;
        const auto [behind, error] = std::from_chars(at, end, side);
        if (error != std::errc()) return false;
        at = behind;
    }
    if (!(sides[0] < sides[2] && sides[1] < sides[3])) return false;
    box = {sides[0], sides[1], sides[2], sides[3]};
    return true;
}

/// Calls visit(line) for each line of a text, until it answers false.
template <class Visit>
void VisitEpsLines(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        if (!visit(text.substr(0, end)) || end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

/// The page in a section's first EPS_HEADER_BYTES; box changes only with the answer header.
[[nodiscard]] inline EpsBoxPlace EpsHeaderBox(std::string_view header, tagEpsBox& box) {
    EpsBoxPlace place = EpsBoxPlace::none;
    VisitEpsLines(header, [&](std::string_view line) {
        if (line.starts_with("%%EndComments") || line.starts_with("%%BeginDocument")) return false;
        if (!line.starts_with(EPS_BOUNDING_BOX)) return true;
        const std::string_view value = line.substr(EPS_BOUNDING_BOX.size());
        if (ParseEpsBox(value, box)) place = EpsBoxPlace::header;
        if (value.find("(atend)") != std::string_view::npos) place = EpsBoxPlace::trailer;
        return false;
    });
    return place;
}

/// The page in a section's last EPS_TRAILER_BYTES: the last box, since those of embedded documents stand before it.
[[nodiscard]] inline bool EpsTrailerBox(std::string_view trailer, tagEpsBox& box) {
    bool found = false;
    VisitEpsLines(trailer, [&](std::string_view line) {
        if (line.starts_with(EPS_BOUNDING_BOX) && ParseEpsBox(line.substr(EPS_BOUNDING_BOX.size()), box)) found = true;
        return true;
    });
    return found;
}
