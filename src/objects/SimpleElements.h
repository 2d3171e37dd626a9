// The objects without a body beside numbers: booleans, operators, names and their relatives, save objects, null.
#pragma once

#include <string_view>

#include "objects/Element.h"
#include "objects/Name.h"
#include "objects/Pooled.h"

class CBoolElement final : public CElement, public CPooled<CBoolElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_BOOL; }

    explicit CBoolElement(bool value = false) noexcept : CElement(ET_BOOL), m_bValue(value) {}
    [[nodiscard]] bool GetValue() const noexcept { return m_bValue; }

    [[nodiscard]] bool IsGlobal() const override { return true; }
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    bool m_bValue;
};

/// An operator, known by its text: what it runs stands in the entry of its name.
class COperatorElement final : public CElement, public CPooled<COperatorElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_OPERATOR; }

    explicit COperatorElement(const CName* name) noexcept : CElement(ET_OPERATOR), m_pName(name) { m_bExec = true; }
    explicit COperatorElement(std::string_view text) : COperatorElement(InternName(text)) {}
    [[nodiscard]] const char* GetName() const noexcept { return m_pName->c_str(); }

    [[nodiscard]] bool IsGlobal() const override { return true; }
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    const CName* m_pName;
};

/// A name, mark, raw token or font identifier: an object that is its text.
class CSimpElement final : public CElement, public CPooled<CSimpElement> {
public:
    static bool IsType(int type) noexcept {
        return type == ET_NAME || type == ET_MARK || type == ET_RAWTOKEN || type == ET_FONTID;
    }

    explicit CSimpElement(const CName* name, ElementType type = ET_NAME) noexcept : CElement(type), m_pName(name) {}
    explicit CSimpElement(std::string_view text, ElementType type = ET_NAME) : CSimpElement(InternName(text), type) {}
    [[nodiscard]] const char* GetName() const noexcept { return m_pName->c_str(); }

    [[nodiscard]] bool IsGlobal() const override { return true; }
    /// A name equals a name or a string of the same text; any other type only its own type and text.
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    const CName* m_pName;
};

/// The mark object of `mark`, `[` and `<<`.
[[nodiscard]] ElementPtr NewMark();

/// What `save` leaves: the levels to go back to.
class CSaveElement final : public CElement, public CPooled<CSaveElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_SAVE; }

    CSaveElement(std::int32_t level, std::int32_t gstateCount) noexcept
        : CElement(ET_SAVE), m_nLevel(level), m_nGStateCount(gstateCount) {}
    [[nodiscard]] std::int32_t GetLevel() const noexcept { return m_nLevel; }
    [[nodiscard]] std::int32_t GetGStateCount() const noexcept { return m_nGStateCount; }

    [[nodiscard]] bool IsGlobal() const override { return true; }
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    /// The copy does not carry the attributes.
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    std::int32_t m_nLevel;        ///< save level before the save
    std::int32_t m_nGStateCount;  ///< depth of the graphics state stack before the save
};

class CNullElement final : public CElement, public CPooled<CNullElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_NULL; }

    CNullElement() noexcept : CElement(ET_NULL) {}

    [[nodiscard]] bool IsGlobal() const override { return true; }
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    /// The copy does not carry the attributes.
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }
};
