// Filter objects. Departure: they decode nothing; all they do is to know how the encoded data ends.
#pragma once

#include <cstdint>

#include "objects/Body.h"
#include "objects/Dictionary.h"
#include "objects/Element.h"
#include "objects/Pooled.h"

enum FilterKind : std::int32_t {
    FILTER_NONE = -1,
    FILTER_ASCIIHEX = 0,   ///< "ASCIIHexDecode"
    FILTER_ASCII85 = 1,    ///< "ASCII85Decode"
    FILTER_RUNLENGTH = 2,  ///< "RunLengthDecode"
    FILTER_DCT = 3,        ///< "DCTDecode"
    FILTER_REUSABLE = 4    ///< "ReusableStreamDecode"
};

/// The kind of a filter name; FILTER_NONE for any other text.
[[nodiscard]] FilterKind FilterKindOf(std::string_view name) noexcept;

/// Owns its source and its parameters, and so a whole chain of filters from the top down.
class CFilterBody final : public CBody {
public:
    CFilterBody(FilterKind kind, ElementPtr source, TypedPtr<CDictionary> params) noexcept
        : CBody(BK_FILTER), m_nFilterKind(kind), m_pSource(std::move(source)), m_pParams(std::move(params)) {}

    FilterKind m_nFilterKind;
    ElementPtr m_pSource;             ///< file, filter, string or procedure
    TypedPtr<CDictionary> m_pParams;  ///< the dictionary operand; nothing reads it
};

class CFilterElement final : public CElement, public CPooled<CFilterElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_FILTER; }

    /// No body: what a copy starts as.
    CFilterElement() noexcept : CElement(ET_FILTER) {}
    CFilterElement(FilterKind kind, ElementPtr source, TypedPtr<CDictionary> params);

    [[nodiscard]] CFilterBody* GetBody() const noexcept { return m_Body.Get(); }
    /// What the filter reads; it stays the filter's. Null without a body.
    [[nodiscard]] CElement* GetSource() const noexcept;
    /// FILTER_NONE without a body.
    [[nodiscard]] FilterKind GetFilterKind() const noexcept;

    [[nodiscard]] bool IsGlobal() const override;
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    CBodyRef<CFilterBody> m_Body;
};
