// Strings: views of a shared body of bytes.
#pragma once

#include <string>
#include <string_view>

#include "objects/Body.h"
#include "objects/Element.h"
#include "objects/Pooled.h"

/// Most bytes that `string` makes at once.
inline constexpr std::int32_t MAX_STRING_LENGTH = 1 << 26;

/// The bytes of a string, not zero-terminated. Their number never changes.
class CStringBody final : public CBodyOf<std::string> {
public:
    explicit CStringBody(std::string bytes) noexcept : CBodyOf(BK_STRING, std::move(bytes)) {}
};

class CStringElement final : public CElement, public CPooled<CStringElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_STRING; }

    /// No body: what a copy starts as.
    CStringElement() noexcept : CElement(ET_STRING) {}
    /// A new body with a copy of the bytes.
    explicit CStringElement(std::string_view bytes);
    /// A new body of that many bytes. Departure: each is the character "0", not a zero byte.
    explicit CStringElement(std::int32_t length);

    [[nodiscard]] CStringBody* GetBody() const noexcept { return m_Body.Get(); }
    [[nodiscard]] std::int32_t GetLength() const noexcept;
    /// The byte at index i of the object, 0 to 255; -1 outside the body. Departure: the bound is the end of the
    /// body, not that of the view.
    [[nodiscard]] std::int32_t GetAt(std::int32_t i) const noexcept;
    /// Stores a byte; outside the bounds of GetAt nothing happens.
    void SetAt(std::int32_t i, unsigned char b) const noexcept;
    /// Stores bytes from the object's start on, as far as the body reaches.
    void Write(std::string_view bytes) const noexcept;
    /// A view of nCount bytes from nStart. A view that would pass the body's end is cut there, and negative
    /// arguments count as 0.
    [[nodiscard]] TypedPtr<CStringElement> GetInterval(std::int32_t nStart, std::int32_t nCount) const;
    /// A copy of the bytes covered.
    [[nodiscard]] std::string GetText() const { return std::string(Bytes()); }
    /// The bytes covered, as long as nothing changes the string.
    [[nodiscard]] std::string_view Bytes() const noexcept;
    /// The bytes covered up to the first zero byte: what counts when a string serves as a key or C text.
    [[nodiscard]] std::string_view KeyText() const noexcept;
    /// Finds the first occurrence of pSeek: 1 and its index, or 0. An empty one is found at 0.
    [[nodiscard]] std::int32_t Search(const CStringElement* pSeek, unsigned* pIndex) const noexcept;

    [[nodiscard]] bool IsGlobal() const override;
    /// A string with the same bytes, or a name with the same text.
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override;

    CBodyRef<CStringBody> m_Body;
    bool m_bView = false;  ///< when set, m_nStart and m_nLength tell the part of the body that is covered
    std::int32_t m_nStart = 0;
    std::int32_t m_nLength = 0;

private:
    [[nodiscard]] TypedPtr<CStringElement> CloneString() const;
    [[nodiscard]] size_t Start() const noexcept { return m_bView ? static_cast<size_t>(m_nStart) : 0; }
};
