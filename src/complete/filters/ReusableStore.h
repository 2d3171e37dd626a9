// What ReusableStreamDecode keeps: bytes collected once, read as often and from wherever the program likes.
#pragma once

#include <vector>

#include "complete/filters/Decoder.h"

/// Bytes in memory with a reading position.
class CReusableStore final : public CSeekableSource {
public:
    /// Answers of Collect.
    enum Outcome { Collected, TooLong, InputFailed, OutOfLimits };

    /// Reads the source to its end. More than maxBytes, a failure of the source or the limits' refusal leaves what came
    /// before it. Null limits allow everything.
    [[nodiscard]] Outcome Collect(CByteSource& source, std::size_t maxBytes, CFilterLimits* limits);

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override;
    [[nodiscard]] bool Seek(std::int64_t position) override;
    [[nodiscard]] std::int64_t GetSize() const noexcept override { return static_cast<std::int64_t>(m_Bytes.size()); }
    [[nodiscard]] std::size_t Size() const noexcept { return m_Bytes.size(); }
    [[nodiscard]] std::size_t Position() const noexcept { return m_nAt; }
    /// False, and nothing moves, beyond the end.
    [[nodiscard]] bool SetPosition(std::size_t position) noexcept;

private:
    std::vector<unsigned char> m_Bytes;
    std::size_t m_nAt = 0;
};
