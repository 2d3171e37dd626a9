// The graphics state object: what stands on the graphics state stack and what `gstate` gives to a program.
#pragma once

#include "graphics/GraphState.h"
#include "objects/Body.h"
#include "objects/Element.h"
#include "objects/Pooled.h"

class CGStateElement final : public CElement, public CPooled<CGStateElement> {
public:
    static bool IsType(int type) noexcept { return type == ET_GSTATE; }

    /// No body: what a clone starts as.
    CGStateElement() noexcept : CElement(ET_GSTATE) {}
    /// A new body that copies the source, registered by the current mode and level.
    explicit CGStateElement(const CGraphState* source) : CGStateElement(NewCopy(source)) {}
    /// Takes over and registers a new state.
    explicit CGStateElement(std::unique_ptr<CGraphState> state)
        : CElement(ET_GSTATE), m_Body(AdoptBody(std::move(state))) {}

    /// Null once the body is gone.
    [[nodiscard]] CGraphState* GetBody() const noexcept { return m_Body.Get(); }
    /// Gives this element a new body that copies the source. Elements that share the old body keep it.
    void ReplaceBody(const CGraphState* source) { m_Body = AdoptBody(NewCopy(source)); }
    /// Says that a `save` has been taken above this state.
    void SetSaved() noexcept { m_bSaved = true; }

    [[nodiscard]] bool IsGlobal() const override;
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    /// The clone is not saved.
    [[nodiscard]] ElementPtr Clone() const override;
    /// Departure: shares the body, too.
    [[nodiscard]] ElementPtr DeepCopy() const override { return Clone(); }

    bool m_bSaved = false;  ///< where grestoreall stops
    CBodyRef<CGraphState> m_Body;

private:
    [[nodiscard]] static std::unique_ptr<CGraphState> NewCopy(const CGraphState* source);
};
