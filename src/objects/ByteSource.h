// Where bytes come from and go: the faces between files and filters. A decoder takes bytes of a reader and is
// a source itself, an encoder is a sink over another, so that filters chain without knowing what stands below them.
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

/// A source that can be read from another place, too: a disk file, memory.
class CSeekableSource : public CByteSource {
public:
    /// The next bytes come from a position, in bytes from the front; behind the last byte there are none. False when
    /// that can't be.
    [[nodiscard]] virtual bool Seek(std::int64_t position) = 0;
    /// Bytes in all.
    [[nodiscard]] virtual std::int64_t GetSize() const noexcept = 0;
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

/// A stream of bytes that is written once, from front to end: an encoder, memory.
class CByteSink {
public:
    CByteSink() = default;
    CByteSink(const CByteSink&) = delete;
    CByteSink& operator=(const CByteSink&) = delete;
    virtual ~CByteSink() = default;

    /// False when the bytes could not be written; nothing more is worth writing then.
    [[nodiscard]] virtual bool Write(std::span<const unsigned char> bytes) = 0;
    /// Writes what is still held back, and the mark of the data's end; not to be written to behind it. An encoder does
    /// not close what it writes to. Destruction without Close drops what was held back.
    [[nodiscard]] virtual bool Close() = 0;
};
