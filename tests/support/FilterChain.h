// Readers, sinks and limits to drive filters with, in blocks of any size. No file, no machine.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "complete/filters/Decoder.h"
#include "objects/ByteSource.h"

/// Bytes in memory, of which a Peek shows at most `block`, up to the next multiple of it.
class MemoryReader final : public CByteReader {
public:
    MemoryReader(std::string_view bytes, std::size_t block, bool fails = false)
        : m_Bytes(bytes), m_nBlock(block), m_bFails(fails) {}

    std::span<const unsigned char> Peek(int& result) override {
        const std::size_t count = std::min(m_Bytes.size() - m_nAt, m_nBlock - m_nAt % m_nBlock);
        result = count > 0 ? 1 : m_bFails ? -1 : 0;
        // A copy of its own, so that reading beyond the block shows under the sanitizers.
        const auto* from = reinterpret_cast<const unsigned char*>(m_Bytes.data()) + m_nAt;
        m_Shown.assign(from, from + count);
        m_Shown.shrink_to_fit();
        return m_Shown;
    }
    void Skip(std::size_t n) noexcept override { m_nAt += n; }
    [[nodiscard]] std::string_view Rest() const { return m_Bytes.substr(m_nAt); }

private:
    std::string_view m_Bytes;
    std::size_t m_nBlock;
    std::size_t m_nAt = 0;
    bool m_bFails;  ///< instead of ending
    std::vector<unsigned char> m_Shown;
};

/// A source read by blocks, as a file reads its decoder.
class SourceReader final : public CByteReader {
public:
    SourceReader(CByteSource& source, std::size_t block) : m_Source(source), m_Block(block) {}

    std::span<const unsigned char> Peek(int& result) override {
        if (m_nAt == m_nEnd) {
            const std::ptrdiff_t count = m_Source.Read(m_Block.data(), m_Block.size());
            m_nAt = 0;
            m_nEnd = count > 0 ? static_cast<std::size_t>(count) : 0;
            if (count <= 0) {
                result = static_cast<int>(count);
                return {};
            }
        }
        result = 1;
        return std::span<const unsigned char>(m_Block).subspan(m_nAt, m_nEnd - m_nAt);
    }
    void Skip(std::size_t n) noexcept override { m_nAt += n; }

private:
    CByteSource& m_Source;
    std::vector<unsigned char> m_Block;
    std::size_t m_nAt = 0;
    std::size_t m_nEnd = 0;
};

/// Keeps what is written.
class MemorySink final : public CByteSink {
public:
    bool Write(std::span<const unsigned char> bytes) override {
        m_Bytes.append(bytes.begin(), bytes.end());
        return true;
    }
    bool Close() override { return true; }
    std::string m_Bytes;
};

/// So many bytes, and no more.
class ByteBudget final : public CFilterLimits {
public:
    explicit ByteBudget(std::size_t bytes) : m_nLeft(bytes) {}
    bool Spend(std::size_t bytes) override {
        m_bUsedUp = m_bUsedUp || bytes > m_nLeft;
        m_nLeft -= std::min(bytes, m_nLeft);
        return !m_bUsedUp;
    }
    std::size_t m_nLeft;
    bool m_bUsedUp = false;
};

/// Reads a source to its end by pieces; the last Read's answer is its end.
inline std::ptrdiff_t ReadAll(CByteSource& source, std::size_t piece, std::string& bytes) {
    std::vector<unsigned char> buffer(piece);
    for (;;) {
        const std::ptrdiff_t count = source.Read(buffer.data(), piece);
        if (count <= 0) return count;
        bytes.append(buffer.begin(), buffer.begin() + count);
    }
}
