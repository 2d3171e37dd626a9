// Where bytes come from: the two faces between files and decoders. A decoder takes bytes of a reader and is a source
// itself, so that filters chain without knowing what stands below them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// A stream of bytes that is read once, from front to end: a disk file, memory, a decoder, a procedure's strings.
class CByteSource {
public:
    CByteSource() = default;
    CByteSource(const CByteSource&) = delete;
    CByteSource& operator=(const CByteSource&) = delete;
    virtual ~CByteSource() = default;

    /// Reads up to size bytes, at least one unless the end is reached; size is above 0. Answers how many, 0 at the end
    /// (and from then on), -1 on a failure.
    [[nodiscard]] virtual std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) = 0;
};

/// Bytes at hand, taken in any number: what a decoder reads, so that it can stop exactly behind its data.
class CByteReader {
public:
    CByteReader() = default;
    CByteReader(const CByteReader&) = delete;
    CByteReader& operator=(const CByteReader&) = delete;
    virtual ~CByteReader() = default;

    /// The bytes at hand, at least one with result 1; none at the end with result 0, none on a failure with result -1.
    /// They stay where they are until the next call.
    [[nodiscard]] virtual std::span<const unsigned char> Peek(int& result) = 0;
    /// Takes n of the bytes that the last Peek gave.
    virtual void Skip(std::size_t n) noexcept = 0;
};
