// The machine's graphics state stack. A state that only the stack refers to goes when it is popped; one that
// a program may have an object of (gstate, setgstate) stays, as every body does, until its save level ends.
#include "graphics/GStateStack.h"

#include "interp/Operands.h"

namespace {

void DropState(ElementPtr element) noexcept {
    CGraphState* state = static_cast<CGStateElement*>(element.get())->GetBody();
    if (state && state->m_bPrivate) g_RegistryStack.At(PlaceOf(*state))->Destroy(state);
}

}  // namespace

std::int32_t CDialect::PathLimit() const { return PATH_MAX_RECORDS; }

CGraphState* CFilterEPS::GetCurrentGState() const {
    return static_cast<CGStateElement*>(m_GStateStack.Top())->GetBody();
}

void CFilterEPS::PushGState() {
    auto element = MakeElement<CGStateElement>(GetCurrentGState());
    element->GetBody()->m_bPrivate = true;
    m_GStateStack.Push(std::move(element));
}

void CFilterEPS::PopGState() {
    if (m_GStateStack.GetCount() > 1) DropState(m_GStateStack.Pop());
}

void CFilterEPS::CreateFirstGState() {
    auto state = std::make_unique<CGraphState>();
    state->InitDefaults();
    state->m_Path.SetLimit(m_pDialect->PathLimit());
    state->m_bPrivate = true;
    m_GStateStack.Push(MakeElement<CGStateElement>(std::move(state)));
}

int CFilterEPS::CopyGState() {
    auto target = Take<CGStateElement>(*this);
    const auto source = Take<CGStateElement>(*this);
    if (const CGraphState* state = source->GetBody()) target->ReplaceBody(state);
    Push(std::move(target));
    return 1;
}

void ReplaceTopGState(CFilterEPS& m, TypedPtr<CGStateElement> element) {
    DropState(m.m_GStateStack.Pop());
    m.m_GStateStack.Push(std::move(element));
}

void MarkGStatesSaved(CFilterEPS& m) noexcept {
    CountWork(m.m_GStateStack.GetCount());
    for (CElement* e = m.m_GStateStack.Bottom(); e; e = e->m_pNext) static_cast<CGStateElement*>(e)->SetSaved();
}

void KeepGStates(CFilterEPS& m, std::int32_t level) {
    for (CElement* e = m.m_GStateStack.Bottom(); e; e = e->m_pNext) {
        auto* element = static_cast<CGStateElement*>(e);
        const CGraphState* state = element->GetBody();
        if (PlaceOf(*state) <= PlaceOfLevel(level)) continue;  // global states are below all levels
        // Copied at the level where the values are read, registered at the level that stays.
        const CBodyPlaceScope local(PlaceOfLevel(g_nSaveLevel));
        auto copy = std::make_unique<CGraphState>();
        copy->CopyFrom(state);
        copy->m_bPrivate = true;
        const CBodyPlaceScope stays(PlaceOfLevel(level));
        element->m_Body = AdoptBody(std::move(copy));
    }
}
