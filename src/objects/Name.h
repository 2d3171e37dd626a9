// Interned names. Each text stands once in a process-wide table, so that comparing two names is comparing
// two pointers, and everything that would otherwise be worked out from a text again and again (its hashes,
// whether it is a number, which operator it names, what it means on the dictionary stack) stands beside it.
#pragma once

#include <cstdint>
#include <string_view>

#include "objects/NumberText.h"

class CDictNode;
class CFilterEPS;
struct OpRow;

/// Stands for what is on the dictionary stack: while the shape is the same, so are the dictionaries and their order
/// (interp/DictStack.h). 0 is no shape.
using DictStackShape = std::uint64_t;

/// What runs an operator: 1 done, -1 failed with the reason in the machine's m_nError.
using OperatorFn = int (*)(CFilterEPS&);

/// Longest text that may serve as a dictionary key or stand as a token, in bytes.
inline constexpr int MAX_KEY_LENGTH = 127;

/// One interned text. Entries live until ClearNames and never move.
struct CName {
    std::uint32_t m_nLength;           ///< bytes without the terminator
    std::uint32_t m_nHash;             ///< well mixed; for pointer-keyed tables
    std::uint32_t m_nBucketHash;       ///< h = h * 8 + signed byte; fixes the order in which dictionaries are walked
    NumberClass m_nNumberClass;        ///< what ClassifyNumber says of the text
    bool m_bValidNumber;               ///< false for a radix number that has no value
    double m_fNumber;                  ///< the value when it is a valid number
    mutable OperatorFn m_pfnOperator;  ///< the operator of this name, or null; filled by the operator chain
    mutable const OpRow* m_pRow;       ///< where that stands in the tables

    /// The entry that the name means under a dictionary stack of that shape; null when that isn't known.
    [[nodiscard]] const CDictNode* Meaning(DictStackShape shape) const noexcept {
        for (const MeaningUnder& meaning : m_Meanings) {
            if (meaning.shape == shape) return meaning.node;
        }
        return nullptr;
    }
    void RememberMeaning(DictStackShape shape, const CDictNode* node) const noexcept {
        m_Meanings[1] = m_Meanings[0];
        m_Meanings[0] = {shape, node};
    }
    /// To be called when any dictionary gets the name as a key or loses it.
    void ForgetMeanings() const noexcept { m_Meanings[0] = m_Meanings[1] = {}; }

    [[nodiscard]] const char* c_str() const noexcept { return reinterpret_cast<const char*>(this + 1); }
    [[nodiscard]] std::string_view Text() const noexcept { return {c_str(), m_nLength}; }
    [[nodiscard]] bool IsNumber() const noexcept { return m_nNumberClass != NumberClass::none; }
    /// A text longer than MAX_KEY_LENGTH is no key.
    [[nodiscard]] bool IsKey() const noexcept { return m_nLength <= MAX_KEY_LENGTH; }

private:
    struct MeaningUnder {
        DictStackShape shape;  ///< 0 for none
        const CDictNode* node;
    };
    /// Two, since many names are used by turns inside and outside of a procedure that begins a dictionary.
    mutable MeaningUnder m_Meanings[2];
};

/// The entry of a text, made if need be. The text counts up to its first zero byte, as names are C texts.
[[nodiscard]] const CName* InternName(std::string_view text);

/// Frees all names; only when no element is left. Belongs to the end of an import.
void ClearNames() noexcept;
