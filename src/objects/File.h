// File objects. A file reads blocks of a source (the input of an import, a decoder, memory), or is a stream of the
// C library (what a program opens by its name), or writes to a sink.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "objects/Body.h"
#include "objects/ByteSource.h"
#include "objects/Element.h"
#include "objects/Limits.h"
#include "objects/Pooled.h"

/// File kinds, by the name at construction; the input kind is set with SetFileKind. The last two have no name.
enum FileKind : std::int32_t {
    FK_STDIN = 0,          ///< "%stdin"
    FK_STDOUT = 1,         ///< "stdout". Departure: no percent sign
    FK_STDERR = 2,         ///< "stderr". Departure: no percent sign
    FK_DISK = 3,           ///< any other name
    FK_STATEMENTEDIT = 4,  ///< "%statementedit": opens, and every read fails
    FK_LINEEDIT = 5,       ///< "%lineedit": the same
    FK_INPUT = 6,          ///< the input of an import: blocks of a disk file, up to a limit
    FK_SOURCE = 7,         ///< blocks of a source
    FK_SINK = 8            ///< writes to a sink
};

/// A place in a file as people look it up.
struct tagInputPlace {
    std::int64_t nLine = 1;    ///< from 1, counted from the start of the program; CR, LF and CR LF each end one
    std::int64_t nOffset = 0;  ///< bytes from the start of the file
};

/// A file and its position. Operations report by result value and touch no error code.
/// One step back, directly behind a byte that was delivered, is all that UnreadByte can do.
class CFileBody final : public CBody, public CByteReader {
public:
    static constexpr std::int32_t BLOCK_SIZE = UsualOrTiny(10000, 7);

    /// Copies name and mode; a null argument leaves a body that can't be opened. Blocks have blockSize bytes, above 0.
    CFileBody(const char* name, const char* mode, std::int32_t blockSize = BLOCK_SIZE);
    /// An open file over a source, which it owns: it goes with Close. Without a place to seek to, GetPosition,
    /// SetPosition and GetLimit fail. A file of this kind has no name.
    explicit CFileBody(std::unique_ptr<CByteSource> source, std::int32_t blockSize = BLOCK_SIZE);
    /// An open file that writes to a sink, which it owns. Close ends the sink's data; a file that just goes does not.
    explicit CFileBody(std::unique_ptr<CByteSink> sink);
    ~CFileBody() override;

    void SetFileKind(std::int32_t kind) noexcept { m_nFileKind = kind; }
    /// 1, or 0 when the file can't be opened.
    [[nodiscard]] int Open();
    /// Closes what the file stands on; from here on it reads and writes as one that was never opened.
    /// Throws what the end of a sink throws; the sink is gone all the same.
    void Close();
    /// Whether there is something to read from or to write to.
    [[nodiscard]] bool IsOpen() const noexcept { return m_pStream || m_pSource || m_pSink || m_bLoading; }
    /// What the blocks are read from; null on a stream, on a file that writes or is closed, and while it is being read.
    [[nodiscard]] CByteSource* GetSource() const noexcept { return m_pSource.get(); }
    [[nodiscard]] const char* GetName() const noexcept { return m_Name.c_str(); }
    /// Size in bytes that Open found, cut to 32 bits.
    [[nodiscard]] std::int32_t GetFileSize() const noexcept { return m_nFileSize; }
    /// 1 with a byte, 0 at the end of input, -1 on a failure or with nothing to read from. Departure: on a stream, the
    /// read that runs into the end delivers 4294967295 (-1) with 1, and the next one 0.
    [[nodiscard]] int ReadByte(unsigned* pByte);
    void UnreadByte();
    /// 1 when all n bytes came, 0 when input ended before, -1 on a failure. pCount takes the bytes read.
    [[nodiscard]] int ReadBlock(void* buffer, unsigned n, unsigned* pCount);
    /// 1, or -1 on a failure and on a file that can't be written.
    [[nodiscard]] int Write(std::string_view bytes);
    [[nodiscard]] int WriteByte(int c);
    [[nodiscard]] int WriteText(const char* text);
    /// 1, or 0 on a failure and on a file without places.
    int GetPosition(std::int64_t& pos) const;
    [[nodiscard]] int SetPosition(std::int64_t pos);
    /// The position at which input ends. SetLimit: 1. GetLimit: 1, or 0 when it is not known before it is reached.
    int SetLimit(std::int64_t pos) noexcept;
    int GetLimit(std::int64_t& pos) const noexcept;
    void Flush() noexcept;
    /// Reads up to a line end, which is not stored: 1 when there was one, 0 at the end of input, -1 on a failure or
    /// when the line is longer than nMax bytes.
    [[nodiscard]] int ReadLine(std::string& text, std::int32_t nMax);
    /// Reads pairs of hexadecimal digits, over everything else: 1 when nMax values came, 0 at the end of input, -1.
    [[nodiscard]] int ReadHex(std::vector<unsigned char>& values, std::int32_t nMax);
    /// Reads until 200 characters "0" have come with nothing but white space between them: 1; -1 when input ends
    /// first; 0 on a file that isn't open.
    [[nodiscard]] int SkipToZeros();

    // For a scanner or decoder that walks the bytes without a call for each of them.
    /// What is left of the block, after loading one if need be. Of a stream one byte at a time.
    [[nodiscard]] std::span<const unsigned char> Peek(int& result) override;
    /// What is left of a block that has been loaded, for as long as nothing else is done with the file.
    [[nodiscard]] std::span<const unsigned char> AtHand() const noexcept {
        if (!m_pSource || !m_bBufLoaded || m_nPos >= m_nEnd) return {};
        const std::int64_t left = std::min<std::int64_t>(m_nBufCount - m_nBufIndex, m_nEnd - m_nPos);
        return {m_Buffer.data() + m_nBufIndex, static_cast<size_t>(left)};
    }
    void Skip(size_t n) noexcept override {
        if (m_pStream) return SkipInStream(n);
        m_nBufIndex += static_cast<std::int32_t>(n);
        m_nPos += static_cast<std::int64_t>(n);
    }

    /// The place of a position in a program that starts at another one, counted by reading the file anew. Of a file
    /// without places, the start.
    [[nodiscard]] tagInputPlace PlaceOf(std::int64_t start, std::int64_t position);
    /// The same of the lexeme that a scan of this file looked for last.
    [[nodiscard]] tagInputPlace ScanPlace(std::int64_t start);

    std::int32_t m_nFileKind = FK_DISK;
    std::string m_Name;
    std::string m_Mode;
    bool m_bNamed;
    std::FILE* m_pStream = nullptr;       ///< null on a file that reads blocks or writes to a sink
    std::int64_t m_nPos = 0;              ///< blocks: bytes consumed, as a file position
    std::int32_t m_nBufIndex = 0;         ///< blocks: next byte in the block
    std::int64_t m_nEnd = 0;              ///< where input ends
    std::int32_t m_nBufCount;             ///< bytes in the block; one more than it can hold before there is one
    std::vector<unsigned char> m_Buffer;  ///< the block
    bool m_bBufLoaded = false;            ///< a block has been read since the file was opened or placed
    std::int32_t m_nFileSize = 0;         ///< cut to 32 bits
    std::int64_t m_nScanStart = 0;        ///< position from which the scanner looked for its last lexeme
    int m_nFilterDepth = 0;               ///< filters of a chain from here on; 0 for a file that is none

private:
    void ReadFrom(std::unique_ptr<CByteSource> source);
    [[nodiscard]] std::unique_ptr<CByteSource> OpenDisk() const;
    [[nodiscard]] int LoadBlock();
    void SkipInStream(size_t n) noexcept;
    [[nodiscard]] tagInputPlace WalkTo(std::int64_t start, std::int64_t position, bool passBlanks);

    static constexpr std::int64_t UNKNOWN_END = std::numeric_limits<std::int64_t>::max();

    std::int32_t m_nBlockSize;
    bool m_bLoading = false;                 ///< a source is being asked for a block
    std::unique_ptr<CByteSource> m_pSource;  ///< of the blocks
    CSeekableSource* m_pPlaces = nullptr;    ///< the same, when it has places
    std::unique_ptr<CByteSink> m_pSink;
};

/// A file object: the operations of its body, with the failure value of each when there is none.
class CFileElement final : public CElement, public CPooled<CFileElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_FILE; }

    /// No body: what a copy starts as.
    CFileElement() noexcept : CElement(ET_FILE) {}
    CFileElement(const char* name, const char* mode, std::int32_t blockSize = CFileBody::BLOCK_SIZE);
    /// An open file over a source or a sink; see CFileBody.
    explicit CFileElement(std::unique_ptr<CByteSource> source, std::int32_t blockSize = CFileBody::BLOCK_SIZE);
    explicit CFileElement(std::unique_ptr<CByteSink> sink);

    [[nodiscard]] CFileBody* GetBody() const noexcept { return m_Body.Get(); }
    /// Another object of the same file.
    [[nodiscard]] TypedPtr<CFileElement> CloneFile() const;
    /// The result of an operation of the body, or `without` when there is none.
    template <class... Params, class... Args>
    int Ask(int without, int (CFileBody::*operation)(Params...), Args&&... args) const {
        CFileBody* body = GetBody();
        return body ? (body->*operation)(static_cast<Args&&>(args)...) : without;
    }
    void SetFileKind(std::int32_t kind) const noexcept;
    [[nodiscard]] int Open() const { return Ask(0, &CFileBody::Open); }
    void Close() const;
    [[nodiscard]] int ReadByte(unsigned* pByte) const { return Ask(-1, &CFileBody::ReadByte, pByte); }
    void UnreadByte() const;
    [[nodiscard]] int ReadBlock(void* buffer, unsigned n, unsigned* pCount) const {
        return Ask(-1, &CFileBody::ReadBlock, buffer, n, pCount);
    }
    [[nodiscard]] int WriteByte(int c) const { return Ask(-1, &CFileBody::WriteByte, c); }
    [[nodiscard]] int WriteText(const char* text) const { return Ask(-1, &CFileBody::WriteText, text); }
    int GetPosition(std::int64_t& pos) const;
    [[nodiscard]] int SetPosition(std::int64_t pos) const { return Ask(0, &CFileBody::SetPosition, pos); }
    int SetLimit(std::int64_t pos) const;
    int GetLimit(std::int64_t& pos) const;
    void Flush() const noexcept;
    [[nodiscard]] int ReadLine(std::string& text, std::int32_t nMax) const {
        return Ask(-1, &CFileBody::ReadLine, text, nMax);
    }
    [[nodiscard]] int ReadHex(std::vector<unsigned char>& values, std::int32_t nMax) const {
        return Ask(-1, &CFileBody::ReadHex, values, nMax);
    }
    [[nodiscard]] int SkipToZeros() const { return Ask(0, &CFileBody::SkipToZeros); }

    [[nodiscard]] bool IsGlobal() const override;
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override { return CloneFile(); }
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    CBodyRef<CFileBody> m_Body;
};

/// Reads a file object's bytes for a decoder. A file whose storage went with a `restore` fails from then on.
class CFileReader final : public CByteReader {
public:
    explicit CFileReader(const CFileElement& file) noexcept : m_Body(file.m_Body) {}

    [[nodiscard]] std::span<const unsigned char> Peek(int& result) override {
        result = -1;
        CFileBody* body = m_Body.Get();
        return body ? body->Peek(result) : std::span<const unsigned char>{};
    }
    void Skip(size_t n) noexcept override {
        if (CFileBody* body = m_Body.Get()) body->Skip(n);
    }

private:
    CBodyRef<CFileBody> m_Body;
};
