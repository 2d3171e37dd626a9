// Filters as files of a program: a decoder over another file, a string or a procedure is a source of a file, an encoder
// is its sink. What they stand on is a file, too, so that chains have one kind of link.
#pragma once

#include <memory>
#include <string_view>

#include "complete/filters/Filters.h"
#include "interp/FilterEPS.h"

/// Filters ask the machine, that is the host, whether they may go on.
class CMachineLimits final : public CFilterLimits {
public:
    explicit CMachineLimits(CFilterEPS& m) noexcept : m_Machine(m) {}
    [[nodiscard]] bool Spend(std::size_t bytes) override;

private:
    CFilterEPS& m_Machine;
};

/// A decoder and the file that it reads. When its data have ended it has a decoder below take its own end as well, if
/// that comes next.
class CFilterSource final : public CByteSource {
public:
    CFilterSource(CFilterEPS& m, TypedPtr<CFileElement> below) noexcept
        : m_Limits(m), m_pBelow(std::move(below)), m_Reader(*m_pBelow) {}

    /// Makes the decoder: false with a fault. To be called once, before Read.
    [[nodiscard]] bool Start(std::string_view name, const FilterParameters& params, FilterFault& fault);
    void SetCloseSource(bool close) noexcept { m_bCloseSource = close; }

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override;
    [[nodiscard]] const CFileElement& Below() const noexcept { return *m_pBelow; }
    [[nodiscard]] bool ClosesSource() const noexcept { return m_bCloseSource; }

private:
    CMachineLimits m_Limits;
    TypedPtr<CFileElement> m_pBelow;
    CFileReader m_Reader;
    std::unique_ptr<CByteSource> m_pDecoder;
    bool m_bCloseSource = false;
};

/// A file over the operand of `filter` that is to be read: the file itself, or a new one over a string or a procedure.
[[nodiscard]] TypedPtr<CFileElement> OpenDataSource(CFilterEPS& m, const CElement& operand);
/// Notes that a filter stands on the operand of `filter`. False, with limitcheck, when too many stand on one another.
[[nodiscard]] bool StandOn(CFilterEPS& m, const CFileElement& filter, const CElement& operand);
/// The sink for the operand of `filter` that is to be written to.
[[nodiscard]] std::unique_ptr<CByteSink> OpenDataTarget(CFilterEPS& m, const CElement& operand, bool closeTarget);

/// An encoder and what it writes to, which it ends when it ends itself.
class CFilterSink final : public CByteSink {
public:
    explicit CFilterSink(std::unique_ptr<CByteSink> target) noexcept : m_pTarget(std::move(target)) {}

    /// As CFilterSource has it.
    [[nodiscard]] bool Start(std::string_view name, const FilterParameters& params, FilterFault& fault);

    [[nodiscard]] bool Write(std::span<const unsigned char> bytes) override { return m_pEncoder->Write(bytes); }
    [[nodiscard]] bool Close() override;

private:
    std::unique_ptr<CByteSink> m_pTarget;
    std::unique_ptr<CByteSink> m_pEncoder;
};

/// What an operator answers when a file could not be read: ioerror, unless a procedure that a filter runs has gone
/// another way out.
int FailRead(CFilterEPS& m);

/// Closes a file as `closefile` does: the source of a filter with it where the filter was told to.
void CloseFile(const CFileElement& file);

/// Called when all has been read of a file that is wanted: a filter that has nothing but its end mark left takes that
/// from its source. Nothing for a filter that would have to run a procedure to know.
void PassFilterEnd(const CFileElement& file);
