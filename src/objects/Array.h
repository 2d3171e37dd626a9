// Arrays, packed arrays and procedures: views of a shared body of elements.
#pragma once

#include <memory>
#include <vector>

#include "objects/Body.h"
#include "objects/BodyCode.h"
#include "objects/Element.h"
#include "objects/Pooled.h"

/// Most elements that `array` and its relatives make at once. Bodies are real memory, so that a count from a
/// broken or hostile file must end in an error and not in an exhausted machine.
inline constexpr std::int32_t MAX_ARRAY_LENGTH = 1 << 22;

/// How far a deep copy goes: what lies deeper, or behind that many elements, stays shared. Arrays that stand in each
/// other twice, level by level, would fill any machine.
inline constexpr int MAX_COPY_DEPTH = 100;
inline constexpr std::int64_t MAX_COPIED_ELEMENTS = 1 << 20;

/// The elements of an array; owns them. No slot is ever null.
class CElementList {
public:
    explicit CElementList(std::vector<ElementPtr> elements) noexcept : m_Elements(std::move(elements)) {}

    [[nodiscard]] size_t GetSize() const noexcept { return m_Elements.size(); }
    [[nodiscard]] const CElement& At(size_t i) const noexcept { return *m_Elements[i]; }
    [[nodiscard]] CElement& At(size_t i) noexcept { return *m_Elements[i]; }
    void Set(size_t i, ElementPtr p) noexcept { m_Elements[i] = std::move(p); }
    void Append(ElementPtr p) { m_Elements.push_back(std::move(p)); }

private:
    std::vector<ElementPtr> m_Elements;
};

class CArrayBody final : public CBodyOf<CElementList> {
public:
    explicit CArrayBody(std::vector<ElementPtr> elements) noexcept
        : CBodyOf(BK_ARRAY, CElementList(std::move(elements))) {}
    ~CArrayBody() override { DropCode(); }

    /// As of any body. The code goes with what it was made of.
    [[nodiscard]] CElementList& Change() noexcept {
        DropCode();
        return CBodyOf::Change();
    }
    /// The code of the elements, or null. It stays, and so does the body, while g_nCodeEpoch does.
    [[nodiscard]] const Step* Code() const noexcept { return m_pCode.get(); }
    void SetCode(std::unique_ptr<Step[]> code) noexcept { m_pCode = std::move(code); }
    /// Counts an entry of a procedure without code, and answers whether it is the one to make the code at. A body that
    /// is changed again and again is given up after a few times.
    [[nodiscard]] bool IsToCompile(int atEntry) noexcept {
        if (m_nCompiled >= MOST_COMPILED || atEntry <= 0 || ++m_nEntries < atEntry) return false;
        m_nEntries = 0;
        ++m_nCompiled;
        return true;
    }

    /// Whether all that share it are told as packed arrays. The plain dialect tells it by the type of the element.
    [[nodiscard]] bool IsPacked() const noexcept { return m_bPacked; }
    /// For a new body, which no other array shares yet; no restore takes it back.
    void Pack() noexcept { m_bPacked = true; }

private:
    static constexpr int MOST_COMPILED = 4;

    void DropCode() noexcept {
        if (!m_pCode) return;
        m_pCode = nullptr;
        ++g_nCodeEpoch;
    }

    std::unique_ptr<Step[]> m_pCode;
    std::uint8_t m_nEntries = 0;
    std::uint8_t m_nCompiled = 0;
    bool m_bPacked = false;
};

class CArrayElement final : public CElement, public CPooled<CArrayElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_ARRAY || type == ET_PACKEDARRAY; }

    /// No body: what a copy starts as.
    CArrayElement() noexcept : CElement(ET_ARRAY) {}
    /// A new body that takes the elements over.
    explicit CArrayElement(std::vector<ElementPtr> elements);
    /// A new body of that many nulls; a negative count makes none.
    explicit CArrayElement(std::int32_t count);

    [[nodiscard]] CArrayBody* GetBody() const noexcept { return m_Body.Get(); }
    /// Elements that this object covers; 0 without a body.
    [[nodiscard]] std::int32_t GetLength() const noexcept;
    /// The element at index i of the object; it stays the body's. Departure: the bound is the end of the body,
    /// not that of the view. Null for a negative index, at or beyond the body's end, and without a body.
    [[nodiscard]] const CElement* GetAt(std::int32_t i) const noexcept;
    /// The same for a caller who changes the element's value now.
    [[nodiscard]] CElement* ChangeAt(std::int32_t i) const noexcept;
    /// Replaces the element at i. Beyond the bounds of GetAt nothing is stored and p is dropped.
    void SetAt(std::int32_t i, ElementPtr p) const noexcept;
    /// A view of nCount elements from nStart; null when it would pass the end or an argument is negative.
    [[nodiscard]] TypedPtr<CArrayElement> GetInterval(std::int32_t nStart, std::int32_t nCount) const;

    /// Whether it is told as a packed array.
    [[nodiscard]] bool IsPacked() const noexcept {
        const CArrayBody* body = GetBody();
        return m_nType == ET_PACKEDARRAY || (body && body->IsPacked());
    }
    [[nodiscard]] bool IsGlobal() const override;
    /// Same type and same body, whatever the two views cover.
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    /// Departure: the copy of a packed array is an array.
    [[nodiscard]] ElementPtr Clone() const override;
    /// A body of its own with deep copies of the elements seen. Below 100 levels of nesting, and so also in an
    /// array that contains itself, copies go on sharing their bodies.
    [[nodiscard]] ElementPtr DeepCopy() const override;

    /// Whether no other object was ever made of this one: nothing else refers to its body.
    [[nodiscard]] bool IsSole() const noexcept { return m_bSole; }

    CBodyRef<CArrayBody> m_Body;
    bool m_bView = false;  ///< when set, m_nStart and m_nLength tell the part of the body that is covered
    std::int32_t m_nStart = 0;
    std::int32_t m_nLength = 0;

private:
    mutable bool m_bSole = false;

    [[nodiscard]] TypedPtr<CArrayElement> CloneArray() const;
    /// Index i of the object as one of the body; -1 when it lies outside.
    [[nodiscard]] std::int64_t BodyIndex(const CArrayBody& body, std::int32_t i) const noexcept;
};

// What runs for each element of a program is inline.

inline std::int32_t CArrayElement::GetLength() const noexcept {
    const CArrayBody* body = GetBody();
    if (!body) return 0;
    return m_bView ? m_nLength : static_cast<std::int32_t>(body->Contents().GetSize());
}

inline std::int64_t CArrayElement::BodyIndex(const CArrayBody& body, std::int32_t i) const noexcept {
    if (i < 0) return -1;
    const std::int64_t at = std::int64_t{i} + (m_bView ? m_nStart : 0);
    return at < static_cast<std::int64_t>(body.Contents().GetSize()) ? at : -1;
}

inline const CElement* CArrayElement::GetAt(std::int32_t i) const noexcept {
    const CArrayBody* body = GetBody();
    const std::int64_t at = body ? BodyIndex(*body, i) : -1;
    return at < 0 ? nullptr : &body->Contents().At(static_cast<size_t>(at));
}

inline CElement* CArrayElement::ChangeAt(std::int32_t i) const noexcept {
    CArrayBody* body = GetBody();
    const std::int64_t at = body ? BodyIndex(*body, i) : -1;
    return at < 0 ? nullptr : &body->Change().At(static_cast<size_t>(at));
}

inline void CArrayElement::SetAt(std::int32_t i, ElementPtr p) const noexcept {
    CArrayBody* body = GetBody();
    const std::int64_t at = body && p ? BodyIndex(*body, i) : -1;
    if (at >= 0) body->Change().Set(static_cast<size_t>(at), std::move(p));
}

inline TypedPtr<CArrayElement> CArrayElement::CloneArray() const {
    m_bSole = false;
    auto copy = MakeElement<CArrayElement>();
    copy->m_Body = m_Body;
    copy->m_bView = m_bView;
    copy->m_nStart = m_nStart;
    copy->m_nLength = m_nLength;
    return WithAttributes(std::move(copy));
}
