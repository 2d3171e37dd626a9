// File objects, and the block reader behind the input file of an import.
#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "objects/Body.h"
#include "objects/Element.h"
#include "objects/Pooled.h"

/// File kinds, by the name at construction; the input kind is set with SetFileKind.
enum FileKind : std::int32_t {
    FK_STDIN = 0,          ///< "%stdin"
    FK_STDOUT = 1,         ///< "stdout". Departure: no percent sign
    FK_STDERR = 2,         ///< "stderr". Departure: no percent sign
    FK_DISK = 3,           ///< any other name
    FK_STATEMENTEDIT = 4,  ///< "%statementedit": opens, and every read fails
    FK_LINEEDIT = 5,       ///< "%lineedit": the same
    FK_INPUT = 6           ///< the input of an import: read through a block buffer and up to a limit
};

/// A place in a file as people look it up.
struct tagInputPlace {
    std::int64_t nLine = 1;    ///< from 1, counted from the start of the program; CR, LF and CR LF each end one
    std::int64_t nOffset = 0;  ///< bytes from the start of the file
};

/// A stream with its position. Operations report by result value and touch no error code.
/// One step back, directly behind a byte that was delivered, is all that UnreadByte can do.
class CFileBody final : public CBody {
public:
    /// Copies name and mode; a null argument leaves a body that can't be opened.
    CFileBody(const char* name, const char* mode);
    ~CFileBody() override { Close(); }

    void SetFileKind(std::int32_t kind) noexcept { m_nFileKind = kind; }
    /// 1, or 0 when the file can't be opened.
    int Open();
    /// Closes the stream; from here on the file reads and writes as one that was never opened.
    void Close() noexcept;
    [[nodiscard]] const char* GetName() const noexcept { return m_Name.c_str(); }
    /// Size in bytes that Open found, cut to 32 bits.
    [[nodiscard]] std::int32_t GetFileSize() const noexcept { return m_nFileSize; }
    /// 1 with a byte, 0 at the end of input, -1 on a failure or without a stream. Departure: on a file that is not
    /// the input, the read that runs into the end delivers 4294967295 (-1) with 1, and the next one 0.
    int ReadByte(unsigned* pByte);
    void UnreadByte();
    /// 1 when all n bytes came, 0 when input ended before, -1 on a failure. pCount takes the bytes read.
    int ReadBlock(void* buffer, unsigned n, unsigned* pCount);
    /// 1, or -1 without a stream or on the input.
    int WriteByte(int c);
    int WriteText(const char* text);
    /// 1, or 0 without a stream or on failure.
    int GetPosition(std::int64_t& pos) const;
    int SetPosition(std::int64_t pos);
    /// The position at which input ends: 1.
    int SetLimit(std::int64_t pos) noexcept;
    int GetLimit(std::int64_t& pos) const noexcept;
    void Flush() noexcept;
    /// Reads up to a line end, which is not stored: 1 when there was one, 0 at the end of input, -1 on a failure or
    /// when the line is longer than nMax bytes.
    int ReadLine(std::string& text, std::int32_t nMax);
    /// Reads pairs of hexadecimal digits, over everything else: 1 when nMax values came, 0 at the end of input, -1.
    int ReadHex(std::vector<unsigned char>& values, std::int32_t nMax);
    /// Reads until 200 characters "0" have come with nothing but white space between them: 1; -1 when input ends
    /// first; 0 without a stream.
    int SkipToZeros();

    // The input kind's block, for a scanner that walks it without a call for each byte.
    /// The bytes at hand, after loading a block if need be. Empty at the end of input or on a failure; result then
    /// tells which, as ReadByte does.
    [[nodiscard]] std::span<const unsigned char> Peek(int& result);
    /// Takes n bytes of what Peek gave.
    void Skip(size_t n) noexcept {
        m_nBufIndex += static_cast<std::int32_t>(n);
        m_nPos += static_cast<std::int64_t>(n);
    }

    /// Where the last lexeme that a scan of this file looked for begins, in a program that starts at a position.
    [[nodiscard]] tagInputPlace ScanPlace(std::int64_t start) const;

#ifdef EPS_TINY_LIMITS
    static constexpr std::int32_t BLOCK_SIZE = 7;
#else
    static constexpr std::int32_t BLOCK_SIZE = 10000;
#endif

    std::int32_t m_nFileKind = FK_DISK;
    std::string m_Name;
    std::string m_Mode;
    bool m_bNamed;
    std::FILE* m_pStream = nullptr;
    std::int64_t m_nPos = 0;                    ///< input kind: bytes consumed, as a file position
    std::int32_t m_nBufIndex = 0;               ///< input kind: next byte in the block
    std::int64_t m_nEnd = 0;                    ///< where input ends
    std::int32_t m_nBufCount = BLOCK_SIZE + 1;  ///< bytes of a short block; one more than a block before there was one
    std::vector<unsigned char> m_Buffer;        ///< the block
    bool m_bBufLoaded = false;
    std::int32_t m_nFileSize = 0;
    std::int64_t m_nScanStart = 0;  ///< position from which the scanner looked for its last lexeme

private:
    int LoadBlock();
};

/// A file object: the operations of its body, with the failure value of each when there is none.
class CFileElement final : public CElement, public CPooled<CFileElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_FILE; }

    /// No body: what a copy starts as.
    CFileElement() noexcept : CElement(ET_FILE) {}
    CFileElement(const char* name, const char* mode);

    [[nodiscard]] CFileBody* GetBody() const noexcept { return m_Body.Get(); }
    /// The result of an operation of the body, or `without` when there is none.
    template <class... Params, class... Args>
    int Ask(int without, int (CFileBody::*operation)(Params...), Args&&... args) const {
        CFileBody* body = GetBody();
        return body ? (body->*operation)(static_cast<Args&&>(args)...) : without;
    }
    void SetFileKind(std::int32_t kind) const noexcept;
    int Open() const { return Ask(0, &CFileBody::Open); }
    void Close() const noexcept;
    int ReadByte(unsigned* pByte) const { return Ask(-1, &CFileBody::ReadByte, pByte); }
    void UnreadByte() const;
    int ReadBlock(void* buffer, unsigned n, unsigned* pCount) const {
        return Ask(-1, &CFileBody::ReadBlock, buffer, n, pCount);
    }
    int WriteByte(int c) const { return Ask(-1, &CFileBody::WriteByte, c); }
    int WriteText(const char* text) const { return Ask(-1, &CFileBody::WriteText, text); }
    int GetPosition(std::int64_t& pos) const;
    int SetPosition(std::int64_t pos) const { return Ask(0, &CFileBody::SetPosition, pos); }
    int SetLimit(std::int64_t pos) const;
    int GetLimit(std::int64_t& pos) const;
    void Flush() const noexcept;
    int ReadLine(std::string& text, std::int32_t nMax) const { return Ask(-1, &CFileBody::ReadLine, text, nMax); }
    int ReadHex(std::vector<unsigned char>& values, std::int32_t nMax) const {
        return Ask(-1, &CFileBody::ReadHex, values, nMax);
    }
    int SkipToZeros() const { return Ask(0, &CFileBody::SkipToZeros); }

    [[nodiscard]] bool IsGlobal() const override;
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    CBodyRef<CFileBody> m_Body;
};
