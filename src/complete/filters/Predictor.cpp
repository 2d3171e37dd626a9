// Undoes the predictors of LZWDecode and FlateDecode row by row; bytes as PNG has them, components as TIFF has them.
#include "complete/filters/Predictor.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

PredictorRow RowOf(const PredictorParameters& params) noexcept {
    const std::int64_t bits = std::int64_t{params.nColors} * params.nBitsPerComponent;
    return {static_cast<std::size_t>((bits * params.nColumns + 7) / 8),
            static_cast<std::size_t>(std::max<std::int64_t>(1, bits / 8))};
}

unsigned char PaethPredictor(unsigned char left, unsigned char above, unsigned char upperLeft) noexcept {
    const int byLeft = std::abs(above - upperLeft);
    const int byAbove = std::abs(left - upperLeft);
    const int byUpperLeft = std::abs(left + above - 2 * upperLeft);
    if (byLeft <= byAbove && byLeft <= byUpperLeft) return left;
    return byAbove <= byUpperLeft ? above : upperLeft;
}

CPredictorDecoder::CPredictorDecoder(std::unique_ptr<CByteSource> source, const PredictorParameters& params)
    : m_Source(std::move(source)), m_Params(params), m_Layout(RowOf(params)), m_bPng(params.nPredictor >= 10) {
    m_Row.resize(m_Layout.nBytes + (m_bPng ? 1 : 0));
    m_Above.resize(m_Row.size());
}

std::ptrdiff_t CPredictorDecoder::Read(unsigned char* buffer, std::size_t size) {
    std::size_t made = 0;
    while (made < size) {
        if (m_nAt == m_nEnd && (m_nStop < 1 || !ReadRow())) break;
        const std::size_t n = std::min(size - made, m_nEnd - m_nAt);
        std::memcpy(buffer + made, &m_Row[m_nAt], n);
        m_nAt += n;
        made += n;
    }
    return made > 0 ? static_cast<std::ptrdiff_t>(made) : m_nStop;
}

/// Reads a row and adds its neighbours; false when nothing of it came or can be told.
bool CPredictorDecoder::ReadRow() {
    std::swap(m_Row, m_Above);
    std::size_t count = 0;
    while (count < m_Row.size()) {
        const std::ptrdiff_t n = m_Source->Read(&m_Row[count], m_Row.size() - count);
        if (n <= 0) {
            m_nStop = n;
            break;
        }
        count += static_cast<std::size_t>(n);
    }
    m_nAt = m_nEnd = 0;
    if (count < (m_bPng ? 2u : 1u)) return false;
    if (!m_bPng) {
        UndoTiff(count);
    } else if (!UndoPng(count)) {
        m_nStop = -1;
        return false;
    }
    m_nAt = m_bPng ? 1 : 0;
    m_nEnd = count;
    return true;
}

bool CPredictorDecoder::UndoPng(std::size_t count) {
    unsigned char* const row = m_Row.data();
    const unsigned char* const above = m_Above.data();
    const std::size_t first = std::min(count, 1 + m_Layout.nSample);  // the bytes before it have no left neighbour
    const auto add = [](unsigned char& byte, unsigned value) { byte = static_cast<unsigned char>(byte + value); };
    switch (row[0]) {
        case 0:
            return true;
        case 1:
            for (std::size_t i = first; i < count; ++i) add(row[i], row[i - m_Layout.nSample]);
            return true;
        case 2:
            for (std::size_t i = 1; i < count; ++i) add(row[i], above[i]);
            return true;
        case 3:
            for (std::size_t i = 1; i < first; ++i) add(row[i], above[i] / 2u);
            for (std::size_t i = first; i < count; ++i) add(row[i], (0u + row[i - m_Layout.nSample] + above[i]) / 2);
            return true;
        case 4:
            for (std::size_t i = 1; i < first; ++i) add(row[i], above[i]);
            for (std::size_t i = first; i < count; ++i) {
                const std::size_t left = i - m_Layout.nSample;
                add(row[i], PaethPredictor(row[left], above[i], above[left]));
            }
            return true;
        default:
            return false;
    }
}

void CPredictorDecoder::UndoTiff(std::size_t count) {
    const auto colors = static_cast<std::size_t>(m_Params.nColors);
    const auto bits = static_cast<std::size_t>(m_Params.nBitsPerComponent);
    if (bits == 8) {
        for (std::size_t i = colors; i < count; ++i)
            m_Row[i] = static_cast<unsigned char>(m_Row[i] + m_Row[i - colors]);
    } else if (bits == 16) {
        for (std::size_t i = 2 * colors; i + 1 < count; i += 2) {
            const std::size_t left = i - 2 * colors;
            const unsigned sum = (m_Row[i] << 8 | m_Row[i + 1]) + (m_Row[left] << 8 | m_Row[left + 1]);
            m_Row[i] = static_cast<unsigned char>(sum >> 8);
            m_Row[i + 1] = static_cast<unsigned char>(sum);
        }
    } else {
        const unsigned mask = (1u << bits) - 1;
        const std::size_t components = std::min(colors * static_cast<std::size_t>(m_Params.nColumns), count * 8 / bits);
        const auto shiftOf = [bits](std::size_t i) { return 8 - bits - i * bits % 8; };
        for (std::size_t i = colors; i < components; ++i) {
            const std::size_t left = i - colors;
            unsigned char& byte = m_Row[i * bits / 8];
            const unsigned sum = (unsigned{byte} >> shiftOf(i)) + (unsigned{m_Row[left * bits / 8]} >> shiftOf(left));
            byte = static_cast<unsigned char>((byte & ~(mask << shiftOf(i))) | (sum & mask) << shiftOf(i));
        }
    }
}
