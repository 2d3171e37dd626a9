// Halftones, screens, transfer functions and the other device parameters: there is no device, but prologs set
// and ask them and expect their own values back.
#include "graphics/DeviceParameterOperators.h"

#include "graphics/GraphState.h"
#include "interp/Operands.h"

namespace {

using Device = CDeviceParameters;

/// Pushes a procedure of the state, or an empty one when its storage went with a restore.
void PushProcedure(CFilterEPS& m, const CElement* e) {
    if (e) {
        m.Push(e->Clone());
        return;
    }
    auto empty = MakeElement<CArrayElement>(0);
    empty->m_bExec = true;
    m.Push(std::move(empty));
}

// dict  set...  -                            STACKUNDERFLOW TYPECHECK
template <CStateCell Device::*Cell>
int OpSetDict(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    (m.GetCurrentGState()->ChangeDevice().*Cell).Set(m.Pop());
    return 1;
}

// -  current...  dict
template <CStateCell Device::*Cell>
int OpCurrentDict(CFilterEPS& m) {
    const CElement* dict = m.GetCurrentGState()->GetDeviceElement(Cell);
    m.Push(dict ? dict->Clone() : MakeElement<CDictionary>(0));
    return 1;
}

/// The top operand of the screen operators, which a halftone dictionary may take the place of a procedure in.
bool ReadsHalftone(Operands& in) {
    const CElement* top = in.Any(0);
    if (!top) return false;
    const bool halftone = top->m_nType == ET_DICT;
    in.Require(halftone || top->IsProcedure(), PSERR_TYPECHECK);
    return halftone;
}

/// Pops frequency, angle and spot function or halftone into the fields of a screen.
void TakeScreen(CFilterEPS& m, bool halftone, float& frequency, float& angle, CStateCell& proc, CStateCell& dict) {
    (halftone ? dict : proc).Set(m.Pop());
    (halftone ? proc : dict).Set(nullptr);
    angle = static_cast<float>(Take<CNumberElement>(m)->GetReal());
    frequency = static_cast<float>(Take<CNumberElement>(m)->GetReal());
}

// frequency angle proc|dict  setscreen  -    STACKUNDERFLOW TYPECHECK
int OpSetscreen(CFilterEPS& m) {
    Operands in(m);
    const bool halftone = ReadsHalftone(in);
    in.Number(1);
    in.Number(2);
    if (!in) return -1;
    Device& device = m.GetCurrentGState()->ChangeDevice();
    TakeScreen(m, halftone, device.m_fScreenFreq, device.m_fScreenAngle, device.m_pScreenProc,
               device.m_pScreenHalftone);
    return 1;
}

// -  currentscreen  frequency angle proc|dict
int OpCurrentscreen(CFilterEPS& m) {
    CGraphState* state = m.GetCurrentGState();
    m.PushReal(state->GetDevice().m_fScreenFreq);
    m.PushReal(state->GetDevice().m_fScreenAngle);
    const CElement* proc = state->GetDeviceElement(&Device::m_pScreenProc);
    PushProcedure(m, proc ? proc : state->GetDeviceElement(&Device::m_pScreenHalftone));
    return 1;
}

// (frequency angle proc|dict) of red green blue gray  setcolorscreen  -      STACKUNDERFLOW TYPECHECK
// Departure: the top decides for all four whether they are taken for procedures or for halftones.
int OpSetcolorscreen(CFilterEPS& m) {
    Operands in(m);
    const bool halftone = ReadsHalftone(in);
    for (int group = 0; group < 4; ++group) {
        in.Any(group * 3);
        in.Number(group * 3 + 1);
        in.Number(group * 3 + 2);
    }
    if (!in) return -1;
    Device& device = m.GetCurrentGState()->ChangeDevice();
    for (int i = 3; i >= 0; --i) {
        TakeScreen(m, halftone, device.m_fColorScreenFreq[i], device.m_fColorScreenAngle[i],
                   device.m_pColorScreenProc[i], device.m_pColorScreenHalftone[i]);
    }
    return 1;
}

// -  currentcolorscreen  (frequency angle proc|dict) of red green blue gray
int OpCurrentcolorscreen(CFilterEPS& m) {
    CGraphState* state = m.GetCurrentGState();
    for (int i = 0; i < 4; ++i) {
        m.PushReal(state->GetDevice().m_fColorScreenFreq[i]);
        m.PushReal(state->GetDevice().m_fColorScreenAngle[i]);
        const CElement* proc = state->GetDeviceElement(&Device::m_pColorScreenProc, i);
        PushProcedure(m, proc ? proc : state->GetDeviceElement(&Device::m_pColorScreenHalftone, i));
    }
    return 1;
}

// proc  set...  -                            STACKUNDERFLOW TYPECHECK
template <CStateCell Device::*Cell>
int OpSetProcedure(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    if (!in) return -1;
    (m.GetCurrentGState()->ChangeDevice().*Cell).Set(m.Pop());
    return 1;
}

// -  current...  proc
template <CStateCell Device::*Cell>
int OpCurrentProcedure(CFilterEPS& m) {
    PushProcedure(m, m.GetCurrentGState()->GetDeviceElement(Cell));
    return 1;
}

// red green blue gray  setcolortransfer  -   STACKUNDERFLOW TYPECHECK
int OpSetcolortransfer(CFilterEPS& m) {
    Operands in(m);
    for (int i = 0; i < 4; ++i) in.Procedure(i);
    if (!in) return -1;
    Device& device = m.GetCurrentGState()->ChangeDevice();
    for (int i = 3; i >= 0; --i) device.m_pColorTransfer[i].Set(m.Pop());
    return 1;
}

// -  currentcolortransfer  red green blue gray
int OpCurrentcolortransfer(CFilterEPS& m) {
    for (int i = 0; i < 4; ++i) {
        PushProcedure(m, m.GetCurrentGState()->GetDeviceElement(&Device::m_pColorTransfer, i));
    }
    return 1;
}

// number  set...  -                          STACKUNDERFLOW TYPECHECK
template <float Device::*Field>
int OpSetReal(CFilterEPS& m) {
    Operands in(m);
    const double value = in.Real(0);
    if (!in) return -1;
    m.GetCurrentGState()->ChangeDevice().*Field = static_cast<float>(value);
    m.Drop(1);
    return 1;
}

// -  current...  number
template <float Device::*Field>
int OpCurrentReal(CFilterEPS& m) {
    m.PushReal(m.GetCurrentGState()->GetDevice().*Field);
    return 1;
}

// bool  setoverprint  -                      STACKUNDERFLOW TYPECHECK
int OpSetoverprint(CFilterEPS& m) {
    Operands in(m);
    const bool value = in.Bool(0);
    if (!in) return -1;
    m.GetCurrentGState()->ChangeDevice().m_bOverprint = value;
    m.Drop(1);
    return 1;
}

// -  currentoverprint  bool
int OpCurrentoverprint(CFilterEPS& m) {
    m.PushBool(m.GetCurrentGState()->GetDevice().m_bOverprint != 0);
    return 1;
}

// Place 22 of the chain.
constexpr OpRow kRows[] = {
    {"sethalftone", OpSetDict<&Device::m_pHalftone>},
    {"currenthalftone", OpCurrentDict<&Device::m_pHalftone>},
    {"setscreen", OpSetscreen},
    {"currentscreen", OpCurrentscreen},
    {"setcolorscreen", OpSetcolorscreen},
    {"currentcolorscreen", OpCurrentcolorscreen},
    {"settransfer", OpSetProcedure<&Device::m_pTransfer>},
    {"currenttransfer", OpCurrentProcedure<&Device::m_pTransfer>},
    {"setcolortransfer", OpSetcolortransfer},
    {"currentcolortransfer", OpCurrentcolortransfer},
    {"setblackgeneration", OpSetProcedure<&Device::m_pBlackGeneration>},
    {"currentblackgeneration", OpCurrentProcedure<&Device::m_pBlackGeneration>},
    {"setundercolorremoval", OpSetProcedure<&Device::m_pUnderColorRemoval>},
    {"currentundercolorremoval", OpCurrentProcedure<&Device::m_pUnderColorRemoval>},
    {"setcolorrendering", OpSetDict<&Device::m_pColorRendering>},
    {"currentcolorrendering", OpCurrentDict<&Device::m_pColorRendering>},
    {"setflat", OpSetReal<&Device::m_fFlatness>},
    {"currentflat", OpCurrentReal<&Device::m_fFlatness>},
    {"setoverprint", OpSetoverprint},
    {"currentoverprint", OpCurrentoverprint},
    {"setsmoothness", OpSetReal<&Device::m_fSmoothness>},
    {"currentsmoothness", OpCurrentReal<&Device::m_fSmoothness>},
};

}  // namespace

constinit const OpTable kDeviceParameterOperators{kRows};
