// The graphics state stack, state objects and the line parameters. No value is clamped: what a program sets
// is what it gets back, and nothing of it shows in the drawing.
#include "graphics/GraphStateOperators.h"

#include "graphics/GStateStack.h"
#include "interp/Operands.h"

namespace {

// -  gsave  -
int OpGsave(CFilterEPS& m) {
    m.PushGState();
    return 1;
}

// -  grestore  -
// Departure: pops past the state of a save, too. The last state stays as it is.
int OpGrestore(CFilterEPS& m) {
    m.PopGState();
    return 1;
}

// number  set...  -                          STACKUNDERFLOW TYPECHECK
template <float CGraphParameters::*Field>
int OpSetReal(CFilterEPS& m) {
    Operands in(m);
    const double value = in.Real(0);
    if (!in) return -1;
    m.GetCurrentGState()->*Field = static_cast<float>(value);
    m.Drop(1);
    return 1;
}

template <std::int32_t CGraphParameters::*Field>
int OpSetInt(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t value = in.Int(0);
    if (!in) return -1;
    m.GetCurrentGState()->*Field = value;
    m.Drop(1);
    return 1;
}

// bool  setstrokeadjust  -                   STACKUNDERFLOW TYPECHECK
int OpSetstrokeadjust(CFilterEPS& m) {
    Operands in(m);
    const bool value = in.Bool(0);
    if (!in) return -1;
    m.GetCurrentGState()->m_bStrokeAdjust = value;
    m.Drop(1);
    return 1;
}

// array offset  setdash  -                   STACKUNDERFLOW TYPECHECK
int OpSetdash(CFilterEPS& m) {
    Operands in(m);
    const double offset = in.Real(0);
    in.Array(1);
    if (!in) return -1;
    m.Drop(1);
    CGraphState* state = m.GetCurrentGState();
    state->m_fDashOffset = static_cast<float>(offset);
    state->SetDash(Take<CArrayElement>(m));
    return 1;
}

// -  grestoreall  -
// Departure: a restore does not clear the mark of its save, so that this goes on stopping there.
int OpGrestoreall(CFilterEPS& m) {
    const CElement* stop = m.m_GStateStack.Top();
    while (stop->m_pPrev && !static_cast<const CGStateElement*>(stop)->m_bSaved) stop = stop->m_pPrev;
    while (m.m_GStateStack.Top() != stop) m.PopGState();
    return 1;
}

// -  initgraphics  -
// Departure: the line width, the font and the device parameters stay.
int OpInitgraphics(CFilterEPS& m) {
    CGraphState* state = m.GetCurrentGState();
    state->ResetCTM();
    state->ClearPath();
    state->SetColorKind(COLOR_GRAY);
    state->m_fGray = 0;
    state->m_nLineCap = 0;
    state->m_nLineJoin = 0;
    state->m_fMiterLimit = 10.0F;
    state->m_fDashOffset = 0;
    state->ClearDash();
    return 1;
}

// -  gstate  gstate
int OpGstate(CFilterEPS& m) {
    m.Push(MakeElement<CGStateElement>(m.GetCurrentGState()));
    return 1;
}

// gstate  setgstate  -                       STACKUNDERFLOW TYPECHECK
// Departure: the object itself becomes the current state, not a copy of it. One without a body changes
// nothing.
int OpSetgstate(CFilterEPS& m) {
    Operands in(m);
    const auto* gstate = in.Get<CGStateElement>(0);
    if (!in) return -1;
    if (gstate->GetBody()) {
        ReplaceTopGState(m, Take<CGStateElement>(m));
    } else {
        m.Drop(1);
    }
    return 1;
}

// gstate  currentgstate  gstate              STACKUNDERFLOW TYPECHECK
// Departure: the object gets new storage. Others that shared the old one don't see the change.
int OpCurrentgstate(CFilterEPS& m) {
    Operands in(m);
    auto* gstate = in.Get<CGStateElement>(0);
    if (!in) return -1;
    gstate->ReplaceBody(m.GetCurrentGState());
    return 1;
}

// -  current...  number
template <float CGraphParameters::*Field>
int OpCurrentReal(CFilterEPS& m) {
    m.PushReal(m.GetCurrentGState()->*Field);
    return 1;
}

template <std::int32_t CGraphParameters::*Field>
int OpCurrentInt(CFilterEPS& m) {
    m.PushInt(m.GetCurrentGState()->*Field);
    return 1;
}

// -  currentstrokeadjust  bool
int OpCurrentstrokeadjust(CFilterEPS& m) {
    m.PushBool(m.GetCurrentGState()->m_bStrokeAdjust != 0);
    return 1;
}

// -  currentdash  array offset
int OpCurrentdash(CFilterEPS& m) {
    CGraphState* state = m.GetCurrentGState();
    m.Push(state->GetDash()->Clone());
    m.PushReal(state->m_fDashOffset);
    return 1;
}

// Place 7 of the chain, compared after kSaveOperators.
constexpr OpRow kCoreRows[] = {
    {"gsave", OpGsave},
    {"grestore", OpGrestore},
    {"setlinewidth", OpSetReal<&CGraphParameters::m_fLineWidth>},
    {"setlinecap", OpSetInt<&CGraphParameters::m_nLineCap>},
    {"setlinejoin", OpSetInt<&CGraphParameters::m_nLineJoin>},
    {"setmiterlimit", OpSetReal<&CGraphParameters::m_fMiterLimit>},
    {"setstrokeadjust", OpSetstrokeadjust},
    {"setdash", OpSetdash},
};

// Place 21 of the chain, its first table.
constexpr OpRow kRows[] = {
    {"clipsave", OpNothing},  // Departure: there is no clip
    {"cliprestore", OpNothing},
    {"grestoreall", OpGrestoreall},
    {"initgraphics", OpInitgraphics},
    {"gstate", OpGstate},
    {"setgstate", OpSetgstate},
    {"currentgstate", OpCurrentgstate},
    {"currentlinewidth", OpCurrentReal<&CGraphParameters::m_fLineWidth>},
    {"currentlinecap", OpCurrentInt<&CGraphParameters::m_nLineCap>},
    {"currentlinejoin", OpCurrentInt<&CGraphParameters::m_nLineJoin>},
    {"currentmiterlimit", OpCurrentReal<&CGraphParameters::m_fMiterLimit>},
    {"currentstrokeadjust", OpCurrentstrokeadjust},
    {"currentdash", OpCurrentdash},
};

}  // namespace

constinit const OpTable kStateCoreOperators{kCoreRows};
constinit const OpTable kStateOperators{kRows};
