// The sources that stand on nothing else: disk files and memory.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "objects/ByteSource.h"

/// A disk file.
class CDiskSource final : public CSeekableSource {
public:
    /// Takes over a stream that can be read and placed, and goes to its front.
    explicit CDiskSource(std::FILE* stream);

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override;
    [[nodiscard]] bool Seek(std::int64_t position) override;
    [[nodiscard]] std::int64_t GetSize() const noexcept override { return m_nSize; }

private:
    struct Closer {
        void operator()(std::FILE* stream) const noexcept { std::fclose(stream); }
    };
    std::unique_ptr<std::FILE, Closer> m_pStream;
    std::int64_t m_nSize = 0;
};

/// Bytes in memory, which it owns.
class CMemorySource final : public CSeekableSource {
public:
    explicit CMemorySource(std::string bytes) noexcept : m_Bytes(std::move(bytes)) {}

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override;
    [[nodiscard]] bool Seek(std::int64_t position) override;
    [[nodiscard]] std::int64_t GetSize() const noexcept override { return static_cast<std::int64_t>(m_Bytes.size()); }

private:
    std::string m_Bytes;
    std::size_t m_nAt = 0;
};
