// Where bytes go: the face that encoders write to, and have themselves.
#pragma once

#include <cstddef>
#include <span>

/// A stream of bytes that is written once, from front to end.
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
