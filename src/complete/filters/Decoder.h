// What all decoders share: bytes are taken of a reader no further than they belong to the data, the state at their end
// is kept, and a limit is asked as the work goes on. Knows nothing of elements and of the machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "objects/ByteSource.h"

/// What bounds the work of filters: time, memory, the wish of a user to stop. One object may serve a whole chain.
class CFilterLimits {
public:
    CFilterLimits() = default;
    CFilterLimits(const CFilterLimits&) = delete;
    CFilterLimits& operator=(const CFilterLimits&) = delete;
    virtual ~CFilterLimits() = default;

    /// Told of bytes that a filter has taken or delivered, once for each FILTER_BLOCK of them or more often. After the
    /// answer false the filter delivers what it has and fails.
    [[nodiscard]] virtual bool Spend(std::size_t bytes) = 0;
};

/// The most bytes that a filter takes or delivers before it asks its limits.
inline constexpr std::size_t FILTER_BLOCK = 65536;

/// Base of the decoders. When the last byte of the data has been delivered and the mark of their end stands directly
/// behind it, the mark is taken with it, so that where the input stands depends on no one's block size.
class CDecoder : public CByteSource {
public:
    /// Reads as CByteSource says; a failure shows when the bytes before it are delivered, and stays.
    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) final;

protected:
    /// The input stays the caller's and outlives the decoder, as do the limits; null limits allow everything.
    CDecoder(CByteReader& input, CFilterLimits* limits) noexcept : m_Input(input), m_pLimits(limits) {}

    /// Decodes into out until the next byte finds no room or the data end, and answers how many bytes it made. Ends by
    /// End or Fail, or with a byte that is still to come: an end that can be seen without room is taken at once.
    virtual std::size_t Decode(std::span<unsigned char> out) = 0;

    /// The input's bytes at hand. None when it has ended or failed, or the limits are used up: what was still held back
    /// is to be delivered then, and End tells which it was.
    [[nodiscard]] std::span<const unsigned char> Peek() {
        if (m_nTaken == m_Block.size()) Refill();
        return m_Block.subspan(m_nTaken);
    }
    /// Takes n of the bytes that Peek gave.
    void Skip(std::size_t n) noexcept { m_nTaken += n; }
    /// Takes the next byte: 0 to 255, or -1 when Peek gives none.
    [[nodiscard]] int Take() {
        const std::span<const unsigned char> bytes = Peek();
        if (bytes.empty()) return -1;
        Skip(1);
        return bytes[0];
    }

    /// The data have ended; a failure when that is because the input failed.
    void End() noexcept {
        if (m_State == State::Live) m_State = m_bInputFailed ? State::Failed : State::Ended;
    }
    void Fail() noexcept { m_State = State::Failed; }
    [[nodiscard]] bool IsLive() const noexcept { return m_State == State::Live; }

private:
    enum class State { Live, Ended, Failed };

    void Refill();
    void GiveBack() noexcept;
    void Spend(std::size_t bytes);

    CByteReader& m_Input;
    CFilterLimits* m_pLimits;
    std::span<const unsigned char> m_Block;  ///< the input's, during a Read
    std::size_t m_nTaken = 0;                ///< bytes of the block that the input does not know to be taken yet
    State m_State = State::Live;
    bool m_bInputFailed = false;
};

/// Characters that text encodings pass over: the language's white space.
[[nodiscard]] constexpr bool IsFilterBlank(unsigned char c) noexcept {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}
