// Files: the block buffer of the input, and streams for everything else.
#include "objects/File.h"

#include <algorithm>
#include <cstring>
#include <string_view>

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

int HexValue(unsigned c) {
    if (c >= '0' && c <= '9') return static_cast<int>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<int>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<int>(c - 'A' + 10);
    return -1;
}

/// White space, and the delimiters that mean nothing where no token is open.
bool IsPassedOver(unsigned char c) {
    return std::string_view(" \t\r\n\f)}\\").find(static_cast<char>(c)) != std::string_view::npos;
}

}  // namespace

CFileBody::CFileBody(const char* name, const char* mode)
    : CBody(BK_FILE), m_Name(name ? name : ""), m_Mode(mode ? mode : ""), m_bNamed(name && mode) {
    if (m_bNamed) m_nFileKind = KindOf(m_Name);
}

int CFileBody::Open() {
    if (!m_bNamed) return 0;
    if (m_nFileKind == FK_STATEMENTEDIT || m_nFileKind == FK_LINEEDIT) return 1;
    if (IsStandardStream(m_nFileKind)) {
        m_pStream = FileSystem::StandardStream(m_nFileKind);
        return m_pStream ? 1 : 0;
    }
    m_pStream = m_nFileKind == FK_INPUT ? FileSystem::OpenInput(m_Name.c_str(), m_Mode.c_str())
                                        : FileSystem::Open(m_Name.c_str(), m_Mode.c_str());
    if (!m_pStream) return 0;
    if (m_nFileKind == FK_INPUT) m_Buffer.resize(BLOCK_SIZE);
    std::fseek(m_pStream, 0, SEEK_END);
    m_nEnd = std::ftell(m_pStream);
    m_nFileSize = static_cast<std::int32_t>(m_nEnd);
    std::fseek(m_pStream, 0, SEEK_SET);
    return 1;
}

void CFileBody::Close() noexcept {
    if (m_pStream && !IsStandardStream(m_nFileKind)) std::fclose(m_pStream);
    m_pStream = nullptr;
}

int CFileBody::LoadBlock() {
    m_bBufLoaded = true;
    m_nBufIndex = 0;
    const size_t count = std::fread(m_Buffer.data(), 1, BLOCK_SIZE, m_pStream);
    if (count < static_cast<size_t>(BLOCK_SIZE)) {
        if (std::ferror(m_pStream)) return -1;
        m_nBufCount = static_cast<std::int32_t>(count);
    }
    return 1;
}

std::span<const unsigned char> CFileBody::Peek(int& result) {
    result = -1;
    if (!m_pStream || m_nFileKind != FK_INPUT) return {};
    if ((!m_bBufLoaded || m_nBufIndex == BLOCK_SIZE) && LoadBlock() != 1) return {};
    result = 0;
    const std::int64_t left = std::min<std::int64_t>(std::min(m_nBufCount, BLOCK_SIZE) - m_nBufIndex, m_nEnd - m_nPos);
    if (left <= 0) return {};
    result = 1;
    return {m_Buffer.data() + m_nBufIndex, static_cast<size_t>(left)};
}

int CFileBody::ReadByte(unsigned* pByte) {
    if (!m_pStream) return -1;
    if (m_nFileKind == FK_INPUT) {
        int result = 0;
        const std::span<const unsigned char> bytes = Peek(result);
        if (result != 1) return result;
        *pByte = bytes.front();
        Skip(1);
        return 1;
    }
    if (std::feof(m_pStream)) return 0;
    *pByte = static_cast<unsigned>(std::fgetc(m_pStream));
    return 1;
}

void CFileBody::UnreadByte() {
    if (m_nFileKind == FK_INPUT) {
        if (m_nBufIndex == 0) return;
        --m_nBufIndex;
        --m_nPos;
    } else if (m_pStream) {
        std::fseek(m_pStream, -1, SEEK_CUR);
    }
}

int CFileBody::ReadBlock(void* buffer, unsigned n, unsigned* pCount) {
    *pCount = 0;
    if (!m_pStream) return -1;
    if (m_nFileKind != FK_INPUT) {
        *pCount = static_cast<unsigned>(std::fread(buffer, 1, n, m_pStream));
        if (*pCount == n) return 1;
        return std::feof(m_pStream) ? 0 : -1;
    }
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

int CFileBody::WriteByte(int c) {
    return m_pStream && m_nFileKind != FK_INPUT && std::fputc(c, m_pStream) != EOF ? 1 : -1;
}

int CFileBody::WriteText(const char* text) {
    return m_pStream && m_nFileKind != FK_INPUT && std::fputs(text, m_pStream) >= 0 ? 1 : -1;
}

int CFileBody::GetPosition(std::int64_t& pos) const {
    if (!m_pStream) return 0;
    if (m_nFileKind == FK_INPUT) {
        pos = m_nPos;
        return 1;
    }
    const long at = std::ftell(m_pStream);
    if (at < 0) return 0;
    pos = at;
    return 1;
}

int CFileBody::SetPosition(std::int64_t pos) {
    if (!m_pStream || pos < 0 || std::fseek(m_pStream, static_cast<long>(pos), SEEK_SET) != 0) return 0;
    if (m_nFileKind == FK_INPUT) {
        m_nPos = pos;
        m_nBufIndex = 0;
        m_nBufCount = BLOCK_SIZE + 1;
        m_bBufLoaded = false;
    }
    return 1;
}

int CFileBody::SetLimit(std::int64_t pos) noexcept {
    m_nEnd = pos;
    return 1;
}

int CFileBody::GetLimit(std::int64_t& pos) const noexcept {
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
        const int digit = HexValue(c);
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
    if (!m_pStream) return 0;
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

tagInputPlace CFileBody::ScanPlace(std::int64_t start) const {
    tagInputPlace place;
    place.nOffset = start;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(FileSystem::OpenInput(m_Name.c_str(), "rb"),
                                                               std::fclose);
    if (!file || std::fseek(file.get(), static_cast<long>(start), SEEK_SET) != 0) return place;
    // A line is counted with the first byte behind its end.
    int before = 0;
    bool comment = false;
    for (int c = 0; place.nOffset < m_nEnd && (c = std::fgetc(file.get())) != EOF; ++place.nOffset, before = c) {
        if (before == '\n' || (before == '\r' && c != '\n')) {
            ++place.nLine;
            comment = false;
        }
        if (place.nOffset < m_nScanStart) continue;
        // From here on, what stands before a lexeme.
        if (c == '%') comment = true;
        if (!comment && !IsPassedOver(static_cast<unsigned char>(c))) break;
    }
    return place;
}

// The object

CFileElement::CFileElement(const char* name, const char* mode)
    : CElement(ET_FILE), m_Body(AdoptBody(std::make_unique<CFileBody>(name, mode))) {}

void CFileElement::SetFileKind(std::int32_t kind) const noexcept {
    if (CFileBody* body = GetBody()) body->SetFileKind(kind);
}

void CFileElement::Close() const noexcept {
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

ElementPtr CFileElement::Clone() const {
    auto copy = MakeElement<CFileElement>();
    copy->m_Body = m_Body;
    return WithAttributes(std::move(copy));
}
