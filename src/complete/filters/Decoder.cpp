// The states of a decoder, its way to the input, and the accounts of its limits.
#include "complete/filters/Decoder.h"

#include <algorithm>

std::ptrdiff_t CDecoder::Read(unsigned char* buffer, std::size_t size) {
    if (m_State == State::Live) {
        const std::size_t count = Decode({buffer, std::min(size, FILTER_BLOCK)});
        GiveBack();
        if (count > 0) {
            Spend(count);
            return static_cast<std::ptrdiff_t>(count);
        }
    }
    return m_State == State::Failed ? -1 : 0;
}

void CDecoder::Refill() {
    if (!m_Block.empty()) {
        const std::size_t taken = m_nTaken;
        GiveBack();
        Spend(taken);
    }
    if (!IsLive() || m_bInputFailed) return;
    int result = 0;
    const std::span<const unsigned char> bytes = m_Input.Peek(result);
    m_bInputFailed = result < 0;
    if (result > 0) m_Block = bytes.first(std::min(bytes.size(), FILTER_BLOCK));
}

/// Has the input skip what was taken; between two reads its block may change.
void CDecoder::GiveBack() noexcept {
    if (m_nTaken > 0) m_Input.Skip(m_nTaken);
    m_Block = {};
    m_nTaken = 0;
}

void CDecoder::Spend(std::size_t bytes) {
    if (m_pLimits && !m_pLimits->Spend(bytes)) Fail();
}
