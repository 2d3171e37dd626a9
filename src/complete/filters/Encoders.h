// The encoders: what they are given goes to a sink in the form that the decoder of the same name reads.
#pragma once

#include <zlib.h>

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "complete/filters/FilterParameters.h"
#include "complete/filters/Predictor.h"
#include "objects/ByteSource.h"

/// Base of the encoders: collects small pieces for the sink, which stays the caller's and outlives the encoder.
class CEncoder : public CByteSink {
public:
    [[nodiscard]] bool Write(std::span<const unsigned char> bytes) final;
    [[nodiscard]] bool Close() final;

protected:
    explicit CEncoder(CByteSink& sink) : m_Sink(sink) {}

    virtual void Encode(std::span<const unsigned char> bytes) = 0;
    virtual void Finish() = 0;
    /// Closes the sink where it is the encoder's own.
    [[nodiscard]] virtual bool CloseSink() { return true; }

    void Put(unsigned char c) {
        m_Ready.push_back(c);
        if (m_Ready.size() >= FILTER_BLOCK) Flush();
    }
    void Put(std::span<const unsigned char> bytes);
    void Fail() noexcept { m_bFailed = true; }

private:
    void Flush();

    CByteSink& m_Sink;
    std::vector<unsigned char> m_Ready;
    bool m_bFailed = false;
};

/// NullEncode: bytes as they are.
class CNullEncoder final : public CEncoder {
public:
    explicit CNullEncoder(CByteSink& sink) : CEncoder(sink) {}

private:
    void Encode(std::span<const unsigned char> bytes) override { Put(bytes); }
    void Finish() override {}
};

/// DCTEncode and CCITTFaxEncode. Departure: what is written is dropped; a drawing has no use for it.
class CDroppingEncoder final : public CByteSink {
public:
    [[nodiscard]] bool Write(std::span<const unsigned char>) override { return true; }
    [[nodiscard]] bool Close() override { return true; }
};

class CAsciiHexEncoder final : public CEncoder {
public:
    explicit CAsciiHexEncoder(CByteSink& sink) : CEncoder(sink) {}

private:
    void Encode(std::span<const unsigned char> bytes) override;
    void Finish() override { Put('>'); }

    int m_nColumn = 0;
};

class CAscii85Encoder final : public CEncoder {
public:
    explicit CAscii85Encoder(CByteSink& sink) : CEncoder(sink) {}

private:
    void Encode(std::span<const unsigned char> bytes) override;
    void Finish() override;
    void PutGroup();
    void PutDigit(char c);

    std::uint32_t m_nGroup = 0;
    int m_nBytes = 0;
    int m_nColumn = 0;
};

/// Repeats from three equal bytes on; no run goes beyond a record.
class CRunLengthEncoder final : public CEncoder {
public:
    CRunLengthEncoder(CByteSink& sink, std::int32_t recordSize)
        : CEncoder(sink), m_nRecordSize(static_cast<std::size_t>(recordSize)) {}

private:
    void Encode(std::span<const unsigned char> bytes) override;
    void Finish() override;
    void PutRuns();

    const std::size_t m_nRecordSize;  ///< 0: one record without end
    std::size_t m_nInRecord = 0;
    std::vector<unsigned char> m_Held;  ///< bytes of the record that no run has taken yet
};

class CLzwEncoder final : public CEncoder {
public:
    CLzwEncoder(CByteSink& sink, const LzwParameters& params);

private:
    void Encode(std::span<const unsigned char> bytes) override;
    void Finish() override;
    void PutCode(unsigned code);
    void Clear();

    const LzwParameters m_Params;
    std::unordered_map<std::uint32_t, std::uint16_t> m_Strings;  ///< by code of the start and the unit behind it
    unsigned m_nNext = 0;
    unsigned m_nWidth = 0;
    int m_nCode = -1;  ///< of the string so far
    std::uint32_t m_nBits = 0;
    unsigned m_nBitCount = 0;
};

class CFlateEncoder final : public CEncoder {
public:
    CFlateEncoder(CByteSink& sink, std::int32_t effort);
    ~CFlateEncoder() override;

private:
    void Encode(std::span<const unsigned char> bytes) override { Deflate(bytes, Z_NO_FLUSH); }
    void Finish() override { Deflate({}, Z_FINISH); }
    void Deflate(std::span<const unsigned char> bytes, int flush);

    z_stream m_Stream{};
    bool m_bOpen;
};

/// Subtracts the neighbours before LZW or Flate; of the predictors of PNG, 15 means Sub for a first row and Up behind
/// it. A last row that isn't full is filled up with zeros.
class CPredictorEncoder final : public CEncoder {
public:
    /// Owns the encoder behind it, which Close closes.
    CPredictorEncoder(std::unique_ptr<CByteSink> packer, const PredictorParameters& params);

private:
    void Encode(std::span<const unsigned char> bytes) override;
    void Finish() override;
    [[nodiscard]] bool CloseSink() override { return m_Packer->Close(); }
    void PutRow();
    void PutTiffRow();
    void PutPngRow();

    std::unique_ptr<CByteSink> m_Packer;
    const PredictorParameters m_Params;
    const PredictorRow m_Layout;
    std::vector<unsigned char> m_Row;
    std::vector<unsigned char> m_Above;
    std::size_t m_nFilled = 0;
    bool m_bFirstRow = true;
};
