// The predictors of LZW and Flate: rows of samples of which the neighbours were subtracted before they were packed.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "complete/filters/Decoder.h"
#include "complete/filters/FilterParameters.h"

/// The longest row in bytes; parameters beyond it are refused.
inline constexpr std::int64_t MAX_PREDICTOR_ROW = 1 << 20;

/// Row lengths that the parameters give.
struct PredictorRow {
    std::size_t nBytes;   ///< of a row, without the type that stands before it with the predictors of PNG
    std::size_t nSample;  ///< of a sample, 1 at least: how far the left neighbour of a byte is
};
[[nodiscard]] PredictorRow RowOf(const PredictorParameters& params) noexcept;

/// The value of PNG's Paeth predictor: left, above or upper left, whichever is nearest to left + above - upper left.
[[nodiscard]] unsigned char PaethPredictor(unsigned char left, unsigned char above, unsigned char upperLeft) noexcept;

/// Adds the neighbours again. A last row that is cut off is delivered as far as it goes; a row type that PNG has not
/// is a failure.
class CPredictorDecoder final : public CByteSource {
public:
    /// Owns the source. The parameters' ranges are checked before; see MakeDecoder.
    CPredictorDecoder(std::unique_ptr<CByteSource> source, const PredictorParameters& params);

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override;

private:
    bool ReadRow();
    bool UndoPng(std::size_t count);
    void UndoTiff(std::size_t count);

    std::unique_ptr<CByteSource> m_Source;
    const PredictorParameters m_Params;
    const PredictorRow m_Layout;
    const bool m_bPng;
    std::vector<unsigned char> m_Row;    ///< with m_bPng its type first
    std::vector<unsigned char> m_Above;  ///< the row before, in the same places
    std::size_t m_nAt = 0;               ///< next byte of the row to deliver
    std::size_t m_nEnd = 0;              ///< behind the row's last byte
    std::ptrdiff_t m_nStop = 1;          ///< what Read answers behind the row: 1 for another row, or 0 or -1
};
