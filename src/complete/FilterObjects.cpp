// The sources and sinks between filters and the objects of a program.
#include "complete/FilterObjects.h"

#include <algorithm>
#include <string>

#include "complete/CompleteDialect.h"
#include "interp/Operands.h"

namespace {

/// The bytes of a string object, as they are when they are read.
class CStringSource final : public CByteSource {
public:
    explicit CStringSource(ElementPtr string) noexcept : m_pString(std::move(string)) {}

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override {
        const std::string_view bytes = static_cast<const CStringElement&>(*m_pString).Bytes();
        const std::size_t count = std::min(size, bytes.size() - std::min(m_nAt, bytes.size()));
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(m_nAt), count, buffer);
        m_nAt += count;
        return static_cast<std::ptrdiff_t>(count);
    }

private:
    ElementPtr m_pString;
    std::size_t m_nAt = 0;
};

/// The strings that a procedure leaves, up to an empty one.
class CProcedureSource final : public CByteSource {
public:
    CProcedureSource(CFilterEPS& m, ElementPtr procedure) noexcept : m_Machine(m), m_pProcedure(std::move(procedure)) {}

    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override {
        if (m_nAt == m_Bytes.size() && !m_bEnded) {
            const int result = Fetch();
            if (result != 1) return result;
        }
        const std::size_t count = m_Bytes.copy(reinterpret_cast<char*>(buffer), size, m_nAt);
        m_nAt += count;
        return static_cast<std::ptrdiff_t>(count);
    }

private:
    int Fetch() {
        m_nAt = 0;
        m_Bytes.clear();
        m_bEnded = true;  // unless the procedure says otherwise; it may come here again while it runs
        if (m_Machine.ExecuteProcedure(static_cast<const CArrayElement*>(m_pProcedure.get())) != 1) return -1;
        Operands in(m_Machine);
        in.String(0);
        if (!in) return -1;
        m_Bytes = Take<CStringElement>(m_Machine)->GetText();
        m_bEnded = m_Bytes.empty();
        return m_bEnded ? 0 : 1;
    }

    CFilterEPS& m_Machine;
    ElementPtr m_pProcedure;
    std::string m_Bytes;
    std::size_t m_nAt = 0;
    bool m_bEnded = false;
};

/// Writes to a file object.
class CFileTarget final : public CByteSink {
public:
    CFileTarget(const CFileElement& file, bool closeTarget) : m_pFile(file.CloneFile()), m_bClose(closeTarget) {}

    [[nodiscard]] bool Write(std::span<const unsigned char> bytes) override {
        CFileBody* body = m_pFile->GetBody();
        return body && body->Write({reinterpret_cast<const char*>(bytes.data()), bytes.size()}) == 1;
    }
    [[nodiscard]] bool Close() override {
        if (m_bClose) CloseFile(*m_pFile);
        return true;
    }

private:
    TypedPtr<CFileElement> m_pFile;
    bool m_bClose;
};

/// Fills a string object. What finds no room is a failure.
class CStringTarget final : public CByteSink {
public:
    explicit CStringTarget(ElementPtr string) noexcept : m_pString(std::move(string)) {}

    [[nodiscard]] bool Write(std::span<const unsigned char> bytes) override {
        const auto& string = static_cast<const CStringElement&>(*m_pString);
        for (const unsigned char c : bytes) {
            if (m_nAt >= string.GetLength()) return false;
            string.SetAt(m_nAt++, c);
        }
        return true;
    }
    [[nodiscard]] bool Close() override { return true; }

private:
    ElementPtr m_pString;
    std::int32_t m_nAt = 0;
};

/// Hands a procedure the string that it has filled, with true, or with false at the end, and goes on in the string that
/// the procedure leaves (PLRM, Filters: procedures as data targets).
class CProcedureTarget final : public CByteSink {
public:
    CProcedureTarget(CFilterEPS& m, ElementPtr procedure) noexcept
        : m_Machine(m),
          m_pProcedure(std::move(procedure)),
          m_pString(MakeElement<CStringElement>(std::string_view())) {}

    [[nodiscard]] bool Write(std::span<const unsigned char> bytes) override {
        for (const unsigned char c : bytes) {
            if (m_nAt == m_pString->GetLength() && (!HandOver(true) || m_pString->GetLength() == 0)) return false;
            m_pString->SetAt(m_nAt++, c);
        }
        return true;
    }
    [[nodiscard]] bool Close() override { return HandOver(false); }

private:
    bool HandOver(bool more) {
        m_Machine.Push(m_pString->GetInterval(0, m_nAt));
        m_Machine.PushBool(more);
        m_nAt = 0;
        if (m_Machine.ExecuteProcedure(static_cast<const CArrayElement*>(m_pProcedure.get())) != 1) return false;
        Operands in(m_Machine);
        in.String(0);
        if (!in) return false;
        m_pString = Take<CStringElement>(m_Machine);
        return true;
    }

    CFilterEPS& m_Machine;
    ElementPtr m_pProcedure;
    TypedPtr<CStringElement> m_pString;
    std::int32_t m_nAt = 0;
};

/// The source of a file, when it is one of a class.
template <class Source>
const Source* SourceOf(const CFileElement& file) {
    const CFileBody* body = file.GetBody();
    return body ? dynamic_cast<const Source*>(body->GetSource()) : nullptr;
}

/// Has a filter look for what comes next, which it keeps.
void LookAhead(const CFileElement& file) {
    if (!SourceOf<CFilterSource>(file)) return;
    int result = 0;
    static_cast<void>(file.GetBody()->Peek(result));
}

}  // namespace

bool CMachineLimits::Spend(std::size_t bytes) {
    return !m_Machine.IsInterrupted(static_cast<std::int64_t>(bytes / BYTES_PER_STEP) + 1);
}

bool CFilterSource::Start(std::string_view name, const FilterParameters& params, FilterFault& fault) {
    m_pDecoder = MakeDecoder(name, params, m_Reader, &m_Limits, fault);
    return m_pDecoder != nullptr;
}

std::ptrdiff_t CFilterSource::Read(unsigned char* buffer, std::size_t size) {
    const std::ptrdiff_t count = m_pDecoder->Read(buffer, size);
    if (count == 0) PassFilterEnd(*m_pBelow);
    return count;
}

bool CFilterSink::Start(std::string_view name, const FilterParameters& params, FilterFault& fault) {
    m_pEncoder = MakeEncoder(name, params, *m_pTarget, fault);
    return m_pEncoder != nullptr;
}

bool CFilterSink::Close() {
    const bool ended = m_pEncoder->Close();
    return m_pTarget->Close() && ended;
}

TypedPtr<CFileElement> OpenDataSource(CFilterEPS& m, const CElement& operand) {
    if (const auto* file = As<CFileElement>(&operand)) return file->CloneFile();
    if (operand.m_nType == ET_STRING)
        return MakeElement<CFileElement>(std::make_unique<CStringSource>(operand.Clone()));
    return MakeElement<CFileElement>(std::make_unique<CProcedureSource>(m, operand.Clone()));
}

bool StandOn(CFilterEPS& m, const CFileElement& filter, const CElement& operand) {
    constexpr int most = 100;  // each reads and writes through the next, on the thread's stack
    const auto* file = As<CFileElement>(&operand);
    const CFileBody* below = file ? file->GetBody() : nullptr;
    const int depth = (below ? below->m_nFilterDepth : 0) + 1;
    filter.GetBody()->m_nFilterDepth = depth;
    if (depth > most) m.Fail(PSERR_RANGE, "limitcheck");
    return depth <= most;
}

std::unique_ptr<CByteSink> OpenDataTarget(CFilterEPS& m, const CElement& operand, bool closeTarget) {
    if (const auto* file = As<CFileElement>(&operand)) return std::make_unique<CFileTarget>(*file, closeTarget);
    if (operand.m_nType == ET_STRING) return std::make_unique<CStringTarget>(operand.Clone());
    return std::make_unique<CProcedureTarget>(m, operand.Clone());
}

int FailRead(CFilterEPS& m) { return CCompleteDialect::Of(m).IsLeaving() ? -1 : m.Fail(PSERR_IO); }

void CloseFile(const CFileElement& file) {
    TypedPtr<CFileElement> at = file.CloneFile();
    while (at) {
        const auto* filter = SourceOf<CFilterSource>(*at);
        TypedPtr<CFileElement> below = filter && filter->ClosesSource() ? filter->Below().CloneFile() : nullptr;
        at->Close();
        at = std::move(below);
    }
}

void PassFilterEnd(const CFileElement& file) {
    const CFileElement* bottom = &file;
    while (const auto* filter = SourceOf<CFilterSource>(*bottom)) bottom = &filter->Below();
    if (!SourceOf<CProcedureSource>(*bottom)) LookAhead(file);
}
