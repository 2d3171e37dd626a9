// The key rule: names and strings address the text keys of a dictionary, all other objects its element keys.
#pragma once

#include "interp/FilterEPS.h"

/// Most bytes of a key, unless the dialect of the machine that there is has another limit while it lives.
extern std::uint32_t g_nKeyLimit;

/// The text of a name or string operand as a key; null for another type. No test of the length.
[[nodiscard]] inline const CName* KeyNameOf(const CElement& e) {
    if (e.m_nType == ET_NAME) return static_cast<const CSimpElement&>(e).m_pName;
    if (const auto* string = As<CStringElement>(&e)) return InternName(string->KeyText());
    return nullptr;
}

/// A dictionary key read from an operand; refers to the operand, which must outlive it.
class CKey {
public:
    /// No key.
    CKey() noexcept : m_pName(nullptr), m_pOther(nullptr) {}
    /// Reads an element as a key. A string counts up to its first zero byte.
    explicit CKey(const CElement& e) : m_pName(KeyNameOf(e)), m_pOther(m_pName ? nullptr : &e) {}

    /// Whether the text, if it is one, is short enough for a key (g_nKeyLimit).
    [[nodiscard]] bool IsValid() const noexcept { return !m_pName || m_pName->m_nLength <= g_nKeyLimit; }
    /// The text, or null for an element key.
    [[nodiscard]] const CName* Text() const noexcept { return m_pName; }

    /// The current value in a dictionary, or null; it stays the dictionary's.
    [[nodiscard]] const CElement* FindIn(const CDictionary& dict) const;
    /// Whether a dictionary has the key.
    [[nodiscard]] bool IsIn(const CDictionary& dict) const;
    /// Defines the key; an element key goes in as a copy.
    void PutIn(CDictionary& dict, ElementPtr value) const {
        if (m_pName) {
            dict.Put(m_pName, std::move(value));
        } else {
            dict.PutOther(m_pOther->Clone(), std::move(value));
        }
    }
    /// Replaces the value of a key that the dictionary has; false, and the value untouched, when it has not.
    [[nodiscard]] bool ReplaceIn(CDictionary& dict, ElementPtr& value) const;
    void RemoveFrom(CDictionary& dict) const;

private:
    const CName* m_pName;
    const CElement* m_pOther;
};
