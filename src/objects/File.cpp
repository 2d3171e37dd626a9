// Files: blocks of a source, streams of the C library, and sinks.
#include "objects/File.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <limits>

#include "objects/HexDigit.h"
#include "objects/Sources.h"
#include "platform/FileSystem.h"

namespace {

FileKind KindOf(std::string_view name) {
    if (name == "%stdin") return FK_STDIN;
    if (name == "stdout") return FK_STDOUT;
    if (name == "stderr") return FK_STDERR;
    if (name == "%statementedit") return FK_STATEMENTEDIT;
    if (name == "%lineedit") return FK_LINEEDIT;
    return FK_DISK;
}

bool IsStandardStream(std::int32_t kind) { return kind == FK_STDIN || kind == FK_STDOUT || kind == FK_STDERR; }

/// White space, and the delimiters that mean nothing where no token is open.
bool IsPassedOver(unsigned char c) {
    return std::string_view(" \t\r\n\f)}\\").find(static_cast<char>(c)) != std::string_view::npos;
}

}  // namespace

CFileBody::CFileBody(const char* name, const char* mode, std::int32_t blockSize)
    : CBody(BK_FILE),
      m_Name(name ? name : ""),
      m_Mode(mode ? mode : ""),
      m_bNamed(name && mode),
      m_nBufCount(blockSize + 1),
      m_nBlockSize(blockSize) {
    if (m_bNamed) m_nFileKind = KindOf(m_Name);
}

CFileBody::CFileBody(std::unique_ptr<CByteSource> source, std::int32_t blockSize)
    : CFileBody(nullptr, nullptr, blockSize) {
    m_nFileKind = FK_SOURCE;
    ReadFrom(std::move(source));
}

CFileBody::CFileBody(std::unique_ptr<CByteSink> sink) : CFileBody(nullptr, nullptr) {
    m_nFileKind = FK_SINK;
    m_pSink = std::move(sink);
}

CFileBody::~CFileBody() {
    m_pSink.reset();
    Close();
}

int CFileBody::Open() {
    if (!m_bNamed) return 0;
    if (m_nFileKind == FK_STATEMENTEDIT || m_nFileKind == FK_LINEEDIT) return 1;
    if (m_nFileKind == FK_INPUT) {
        ReadFrom(OpenDisk());
        return m_pSource ? 1 : 0;
    }
    if (IsStandardStream(m_nFileKind)) {
        m_pStream = FileSystem::StandardStream(m_nFileKind);
        return m_pStream ? 1 : 0;
    }
    m_pStream = FileSystem::Open(m_Name.c_str(), m_Mode.c_str());
    if (!m_pStream) return 0;
    std::fseek(m_pStream, 0, SEEK_END);
    m_nEnd = std::ftell(m_pStream);
    m_nFileSize = static_cast<std::int32_t>(m_nEnd);
    std::fseek(m_pStream, 0, SEEK_SET);
    return 1;
}

void CFileBody::Close() {
    if (m_pStream && !IsStandardStream(m_nFileKind)) std::fclose(m_pStream);
    m_pStream = nullptr;
    m_pSource.reset();
    m_pPlaces = nullptr;
    m_bLoading = false;
    // A sink that writes to this very file while it ends finds it closed.
    const std::unique_ptr<CByteSink> sink = std::move(m_pSink);
    if (sink) static_cast<void>(sink->Close());
}

// Blocks

std::unique_ptr<CByteSource> CFileBody::OpenDisk() const {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(
        m_nFileKind == FK_INPUT && m_bNamed ? FileSystem::OpenInput(m_Name.c_str(), m_Mode.c_str()) : nullptr,
        std::fclose);
    if (!stream) return nullptr;
    auto source = std::make_unique<CDiskSource>(stream.get());
    static_cast<void>(stream.release());
    return source;
}

void CFileBody::ReadFrom(std::unique_ptr<CByteSource> source) {
    m_pSource = std::move(source);
    m_pPlaces = dynamic_cast<CSeekableSource*>(m_pSource.get());
    if (!m_pSource) return;
    m_nEnd = m_pPlaces ? m_pPlaces->GetSize() : UNKNOWN_END;
    m_nFileSize = m_pPlaces ? static_cast<std::int32_t>(m_nEnd) : 0;
}

int CFileBody::LoadBlock() {
    // A source may run a procedure of the program, which may close this file, read from it, or take its storage away
    // by a `restore`. So the source and the block are held here meanwhile, and the file is one without a source.
    const CBodyRef<CFileBody> self(this);
    const bool registered = m_nRegistry != 0;
    m_Buffer.resize(static_cast<size_t>(m_nBlockSize));
    std::unique_ptr<CByteSource> source = std::move(m_pSource);
    std::vector<unsigned char> block = std::move(m_Buffer);
    m_bLoading = true;
    std::ptrdiff_t count = -1;
    try {
        count = source->Read(block.data(), block.size());
    } catch (...) {
        if (!registered || self.Get()) Close();
        throw;
    }
    if ((registered && !self.Get()) || !m_bLoading) return -1;
    m_bLoading = false;
    m_pSource = std::move(source);
    m_Buffer = std::move(block);
    if (count <= 0) return count == 0 ? 0 : -1;
    m_bBufLoaded = true;
    m_nBufIndex = 0;
    m_nBufCount = static_cast<std::int32_t>(count);
    return 1;
}

std::span<const unsigned char> CFileBody::Peek(int& result) {
    if (m_pStream) {
        // Departure: here the end is the end at once.
        const int c = std::fgetc(m_pStream);
        result = c != EOF ? 1 : std::ferror(m_pStream) ? -1 : 0;
        if (result != 1) return {};
        std::ungetc(c, m_pStream);
        m_Buffer.assign(1, static_cast<unsigned char>(c));
        return m_Buffer;
    }
    result = m_pSource ? 0 : -1;
    if (!m_pSource || m_nPos >= m_nEnd) return {};
    if (!m_bBufLoaded || m_nBufIndex == m_nBufCount) {
        result = LoadBlock();
        if (result != 1) return {};
    }
    result = 1;
    return AtHand();
}

void CFileBody::SkipInStream(size_t n) noexcept {
    while (n-- > 0) std::fgetc(m_pStream);
}

// Bytes

int CFileBody::ReadByte(unsigned* pByte) {
    if (m_pStream) {
        if (std::feof(m_pStream)) return 0;
        *pByte = static_cast<unsigned>(std::fgetc(m_pStream));
        return 1;
    }
    int result = 0;
    const std::span<const unsigned char> bytes = Peek(result);
    if (result != 1) return result;
    *pByte = bytes.front();
    Skip(1);
    return 1;
}

void CFileBody::UnreadByte() {
    if (m_pStream) {
        std::fseek(m_pStream, -1, SEEK_CUR);
    } else if (m_nBufIndex > 0) {
        --m_nBufIndex;
        --m_nPos;
    }
}

int CFileBody::ReadBlock(void* buffer, unsigned n, unsigned* pCount) {
    *pCount = 0;
    if (m_pStream) {
        *pCount = static_cast<unsigned>(std::fread(buffer, 1, n, m_pStream));
        if (*pCount == n) return 1;
        return std::feof(m_pStream) ? 0 : -1;
    }
    if (!m_pSource) return -1;
    while (*pCount < n) {
        int result = 0;
        const std::span<const unsigned char> bytes = Peek(result);
        if (result != 1) return result;
        const size_t count = std::min<size_t>(bytes.size(), n - *pCount);
        std::memcpy(static_cast<char*>(buffer) + *pCount, bytes.data(), count);
        Skip(count);
        *pCount += static_cast<unsigned>(count);
    }
    return 1;
}

int CFileBody::Write(std::string_view bytes) {
    if (m_pStream) return std::fwrite(bytes.data(), 1, bytes.size(), m_pStream) == bytes.size() ? 1 : -1;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    return m_pSink && m_pSink->Write({data, bytes.size()}) ? 1 : -1;
}

int CFileBody::WriteByte(int c) {
    const auto byte = static_cast<char>(c);
    return Write({&byte, 1});
}

int CFileBody::WriteText(const char* text) { return Write(text); }

int CFileBody::GetPosition(std::int64_t& pos) const {
    if (m_pStream) {
        const long at = std::ftell(m_pStream);
        if (at < 0) return 0;
        pos = at;
        return 1;
    }
    if (!m_pPlaces) return 0;
    pos = m_nPos;
    return 1;
}

int CFileBody::SetPosition(std::int64_t pos) {
    if (pos < 0) return 0;
    if (m_pStream) return std::fseek(m_pStream, static_cast<long>(pos), SEEK_SET) == 0 ? 1 : 0;
    if (!m_pPlaces || !m_pPlaces->Seek(pos)) return 0;
    m_nPos = pos;
    m_nBufIndex = 0;
    m_nBufCount = m_nBlockSize + 1;
    m_bBufLoaded = false;
    return 1;
}

int CFileBody::SetLimit(std::int64_t pos) noexcept {
    m_nEnd = pos;
    return 1;
}

int CFileBody::GetLimit(std::int64_t& pos) const noexcept {
    if (m_nEnd == UNKNOWN_END) return 0;
    pos = m_nEnd;
    return 1;
}

void CFileBody::Flush() noexcept {
    if (m_pStream) std::fflush(m_pStream);
}

int CFileBody::ReadLine(std::string& text, std::int32_t nMax) {
    text.clear();
    for (;;) {
        unsigned c = 0;
        if (const int result = ReadByte(&c); result != 1) return result;
        if (c == static_cast<unsigned>(EOF)) return 0;  // a stream ran into its end
        if (c == '\n') return 1;
        if (c == '\r') {
            const int result = ReadByte(&c);
            if (result < 0) return -1;
            if (result == 1 && c != '\n' && c != static_cast<unsigned>(EOF)) UnreadByte();
            return 1;
        }
        text.push_back(static_cast<char>(c));
        if (text.size() > static_cast<size_t>(nMax)) return -1;
    }
}

int CFileBody::ReadHex(std::vector<unsigned char>& values, std::int32_t nMax) {
    values.clear();
    int high = -1;
    while (values.size() < static_cast<size_t>(nMax)) {
        unsigned c = 0;
        if (const int result = ReadByte(&c); result != 1) return result;
        if (c == static_cast<unsigned>(EOF)) return 0;
        const int digit = HexDigitValue(static_cast<unsigned char>(c));
        if (digit < 0) continue;
        if (high < 0) {
            high = digit;
        } else {
            values.push_back(static_cast<unsigned char>(high * 16 + digit));
            high = -1;
        }
    }
    return 1;
}

int CFileBody::SkipToZeros() {
    if (!m_pStream && !m_pSource) return 0;
    constexpr int TRAILER_ZEROS = 200;  // of the 512 that follow an encrypted font
    for (int zeros = 0; zeros < TRAILER_ZEROS;) {
        unsigned c = 0;
        if (ReadByte(&c) != 1 || c == static_cast<unsigned>(EOF)) return -1;
        if (c == '0') {
            ++zeros;
        } else if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
            zeros = 0;
        }
    }
    return 1;
}

// Places

tagInputPlace CFileBody::PlaceOf(std::int64_t start, std::int64_t position) { return WalkTo(start, position, false); }

tagInputPlace CFileBody::ScanPlace(std::int64_t start) { return WalkTo(start, m_nScanStart, true); }

tagInputPlace CFileBody::WalkTo(std::int64_t start, std::int64_t position, bool passBlanks) {
    tagInputPlace place;
    place.nOffset = start;
    // A program can close the file that it stands in.
    const std::unique_ptr<CByteSource> again = m_pPlaces ? nullptr : OpenDisk();
    auto* source = m_pPlaces ? m_pPlaces : static_cast<CSeekableSource*>(again.get());
    if (!source || !source->Seek(start)) return place;
    unsigned char before = 0;
    bool comment = false;
    // Whether the walk goes on over a byte. A line is counted with the first byte behind its end.
    const auto passes = [&](unsigned char c) {
        if (place.nOffset >= m_nEnd) return false;
        if (before == '\n' || (before == '\r' && c != '\n')) {
            ++place.nLine;
            comment = false;
        }
        before = c;
        if (place.nOffset < position) return true;
        comment = comment || c == '%';
        return passBlanks && (comment || IsPassedOver(c));
    };
    unsigned char block[4096];
    for (bool arrived = false; !arrived;) {
        const std::ptrdiff_t count = source->Read(block, sizeof block);
        if (count <= 0) break;
        for (std::ptrdiff_t i = 0; i < count && !arrived; ++i) {
            arrived = !passes(block[i]);
            if (!arrived) ++place.nOffset;
        }
    }
    // The source goes on behind the block.
    if (m_pPlaces) static_cast<void>(m_pPlaces->Seek(m_nPos + (m_bBufLoaded ? m_nBufCount - m_nBufIndex : 0)));
    return place;
}

// The object

CFileElement::CFileElement(const char* name, const char* mode, std::int32_t blockSize)
    : CElement(ET_FILE), m_Body(AdoptBody(std::make_unique<CFileBody>(name, mode, blockSize))) {}

CFileElement::CFileElement(std::unique_ptr<CByteSource> source, std::int32_t blockSize)
    : CElement(ET_FILE), m_Body(AdoptBody(std::make_unique<CFileBody>(std::move(source), blockSize))) {}

CFileElement::CFileElement(std::unique_ptr<CByteSink> sink)
    : CElement(ET_FILE), m_Body(AdoptBody(std::make_unique<CFileBody>(std::move(sink)))) {}

void CFileElement::SetFileKind(std::int32_t kind) const noexcept {
    if (CFileBody* body = GetBody()) body->SetFileKind(kind);
}

void CFileElement::Close() const {
    if (CFileBody* body = GetBody()) body->Close();
}

void CFileElement::UnreadByte() const {
    if (CFileBody* body = GetBody()) body->UnreadByte();
}

int CFileElement::GetPosition(std::int64_t& pos) const {
    const CFileBody* body = GetBody();
    return body ? body->GetPosition(pos) : 0;
}

int CFileElement::SetLimit(std::int64_t pos) const {
    CFileBody* body = GetBody();
    return body ? body->SetLimit(pos) : 0;
}

int CFileElement::GetLimit(std::int64_t& pos) const {
    const CFileBody* body = GetBody();
    return body ? body->GetLimit(pos) : 0;
}

void CFileElement::Flush() const noexcept {
    if (CFileBody* body = GetBody()) body->Flush();
}

bool CFileElement::IsGlobal() const {
    const CFileBody* body = GetBody();
    return body && body->m_bGlobal;
}

bool CFileElement::IsEqual(const CElement* pOther) const {
    const auto* other = As<CFileElement>(pOther);
    return other && m_Body.SameBody(other->m_Body);
}

TypedPtr<CFileElement> CFileElement::CloneFile() const {
    auto copy = MakeElement<CFileElement>();
    copy->m_Body = m_Body;
    return WithAttributes(std::move(copy));
}
