// The colour operators over ColorSpaces. In a space that is no device space the state holds the components as the
// program gave them where it holds those of a pattern, and in the stores of the device spaces what is painted with.
#include "complete/ColorOperators.h"

#include <algorithm>
#include <cmath>

#include "complete/ColorSpaces.h"
#include "complete/CompleteDialect.h"
#include "complete/KeptOperands.h"
#include "interp/Operands.h"
#include "interp/OperatorChain.h"

namespace {

/// The current space when it is neither a device space nor Pattern; null for those.
const CArrayElement* SpecialSpace(const CGraphState& state) {
    const CArrayElement* space = state.PeekColorSpace();
    const auto* name = space ? As<CSimpElement>(space->GetAt(0)) : nullptr;
    return name && ColorKindOf(name->m_pName) < 0 ? space : nullptr;
}

void SetDeviceColor(CGraphState& state, const DeviceColor& color) {
    state.m_nColorKind = color.kind;
    switch (color.kind) {
        case COLOR_RGB:
            std::copy_n(color.components.begin(), 3, state.m_fRGB);
            break;
        case COLOR_CMYK:
            std::copy_n(color.components.begin(), 4, state.m_fCMYK);
            break;
        default:
            state.m_fGray = color.components[0];
    }
}

/// Makes the components of a special space the current colour.
int SetSpecialColor(CFilterEPS& m, const CElement& space, const std::vector<double>& components) {
    DeviceColor color;
    if (FindDeviceColor(m, space, components, color) != 1) return -1;
    std::vector<ElementPtr> given;
    for (const double component : components) given.push_back(NewReal(component));
    CGraphState& state = *m.GetCurrentGState();
    SetDeviceColor(state, color);
    state.SetPatternColor(MakeElement<CArrayElement>(std::move(given)));
    return 1;
}

/// setcolor in a special space.
int SetSpecialColorOperands(CFilterEPS& m) {
    const CArrayElement* space = SpecialSpace(*m.GetCurrentGState());
    const int count = ComponentsOf(space);
    Operands in(m);
    std::vector<double> components(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) components[static_cast<std::size_t>(count - 1 - i)] = in.Real(i);
    if (!in) return -1;
    const ElementPtr kept = space->Clone();
    m.Drop(count);
    return SetSpecialColor(m, *kept, components);
}

/// The space under that of the pattern, when it is no device space and the pattern on top of the stack has no colour of
/// its own; else null.
const CElement* SpaceUnderPattern(const CFilterEPS& m) {
    const CGraphState& state = *m.GetCurrentGState();
    const auto* pattern = As<CDictionary>(m.m_OperandStack.Top());
    const auto* paint = pattern ? As<CNumberElement>(pattern->GetValue("PaintType")) : nullptr;
    constexpr std::int32_t UNCOLORED = 2;
    if (state.m_nColorKind != COLOR_PATTERN || !paint || paint->GetInt() != UNCOLORED) return nullptr;
    const CArrayElement* space = state.PeekColorSpace();
    const auto* under = space && space->GetLength() > 1 ? As<CArrayElement>(space->GetAt(1)) : nullptr;
    const auto* family = under ? As<CSimpElement>(under->GetAt(0)) : nullptr;
    return family && ColorKindOf(family->m_pName) < 0 && ComponentsOf(under) > 0 ? under : nullptr;
}

/// setcolor with such a pattern: the state keeps it with its components, as it keeps those over device spaces.
int SetPatternOver(CFilterEPS& m, const CElement& space) {
    const int count = ComponentsOf(&space);
    Operands in(m);
    for (int i = 1; i <= count; ++i) in.Number(i);
    if (!in) return -1;
    std::vector<ElementPtr> color(static_cast<std::size_t>(count) + 1);
    color[0] = m.Pop();
    for (std::size_t i = color.size(); --i > 0;) color[i] = m.Pop();
    m.GetCurrentGState()->SetPatternColor(MakeElement<CArrayElement>(std::move(color)));
    return 1;
}

// comp1..compN  setcolor  -                  stackunderflow typecheck, and what a lookup or tint transform meets
// comp1..compN pattern  setcolor  -
int OpSetcolor(CFilterEPS& m) {
    static const OperatorFn plain = ChainOperator("setcolor");
    if (const CElement* under = SpaceUnderPattern(m)) return SetPatternOver(m, *under);
    constexpr int MOST_KEPT = 5;  // a pattern and the components of a device space
    const CArrayElement* space = SpecialSpace(*m.GetCurrentGState());
    return space ? RunKept(m, ComponentsOf(space), SetSpecialColorOperands) : RunKept(m, MOST_KEPT, plain);
}

// -  currentcolor  comp1..compN
int OpCurrentcolor(CFilterEPS& m) {
    CGraphState& state = *m.GetCurrentGState();
    static const OperatorFn plain = ChainOperator("currentcolor");
    if (!SpecialSpace(state)) return plain(m);
    const CArrayElement* components = state.GetPatternColor();
    for (std::int32_t i = 0; components && i < components->GetLength(); ++i) m.Push(components->GetAt(i)->Clone());
    return 1;
}

// The operators that set a device space leave the special one, also when its colours are painted as those of theirs.
template <const char* const& Name, std::int32_t Kind>
int OpSetDeviceColor(CFilterEPS& m) {
    static const OperatorFn plain = ChainOperator(Name);
    const bool leaves = SpecialSpace(*m.GetCurrentGState()) != nullptr;
    if (plain(m) != 1) return -1;
    if (leaves) m.GetCurrentGState()->SetNamedColorSpace(Kind);
    return 1;
}

// hue saturation brightness  sethsbcolor  -  stackunderflow typecheck
int OpSethsbcolor(CFilterEPS& m) {
    static const OperatorFn plain = ChainOperator("sethsbcolor");
    const bool leaves = SpecialSpace(*m.GetCurrentGState()) != nullptr;
    if (plain(m) != 1) return -1;
    CGraphState& state = *m.GetCurrentGState();
    if (leaves) state.SetNamedColorSpace(COLOR_RGB);
    for (float& component : state.m_fHSB)
        component = std::isfinite(component) ? std::clamp(component, 0.0F, 1.0F) : 0.0F;
    // The sector of the hue and what is mixed in it (PLRM, HSB color).
    const float sector = state.m_fHSB[0] * 6;
    const float value = state.m_fHSB[2];
    const float saturation = state.m_fHSB[1];
    for (int i = 0; i < 3; ++i) {
        const float at = std::fmod(5.0F - 2.0F * static_cast<float>(i) + sector, 6.0F);
        state.m_fRGB[i] = value - value * saturation * std::max(0.0F, std::min({at, 4.0F - at, 1.0F}));
    }
    return 1;
}

// -  currentgray  gray
// Departure: of a space that is no device space, what is painted with, as for the next two.
int OpCurrentgray(CFilterEPS& m) {
    const CGraphState& state = *m.GetCurrentGState();
    float rgb[3];
    state.GetRGBColor(rgb);
    // NTSC weights (PLRM, Conversions among device color spaces); a gray stays to the bit what it was.
    m.PushReal(state.m_nColorKind == COLOR_GRAY ? state.m_fGray : 0.3 * rgb[0] + 0.59 * rgb[1] + 0.11 * rgb[2]);
    return 1;
}

// -  currentrgbcolor  red green blue
int OpCurrentrgbcolor(CFilterEPS& m) {
    float rgb[3];
    m.GetCurrentGState()->GetRGBColor(rgb);
    for (const float component : rgb) m.PushReal(component);
    return 1;
}

// -  currentcmykcolor  cyan magenta yellow black
int OpCurrentcmykcolor(CFilterEPS& m) {
    const CGraphState& state = *m.GetCurrentGState();
    float cmyk[4] = {};
    if (state.m_nColorKind == COLOR_CMYK) {
        std::copy_n(state.m_fCMYK, 4, cmyk);
    } else {
        float rgb[3];
        state.GetRGBColor(rgb);
        cmyk[3] = 1 - std::max({rgb[0], rgb[1], rgb[2]});  // black takes all that is common
        for (int i = 0; i < 3; ++i) cmyk[i] = 1 - rgb[i] - cmyk[3];
    }
    for (const float component : cmyk) m.PushReal(component);
    return 1;
}

constexpr const char* SETGRAY = "setgray";
constexpr const char* SETRGBCOLOR = "setrgbcolor";
constexpr const char* SETCMYKCOLOR = "setcmykcolor";

// clang-format off
constexpr OpRow kRows[] = {
    {"setcolor", OpSetcolor},
    {"currentcolor", OpCurrentcolor},
    {"setgray", OpSetDeviceColor<SETGRAY, COLOR_GRAY>},
    {"setrgbcolor", OpSetDeviceColor<SETRGBCOLOR, COLOR_RGB>},
    {"setcmykcolor", OpSetDeviceColor<SETCMYKCOLOR, COLOR_CMYK>},
    {"sethsbcolor", OpSethsbcolor},
    {"currentgray", OpCurrentgray},
    {"currentrgbcolor", OpCurrentrgbcolor},
    {"currentcmykcolor", OpCurrentcmykcolor},
};
// clang-format on

}  // namespace

constinit const OpTable kCompleteColorOperators{kRows};

int CCompleteDialect::SetColorSpace(CFilterEPS& m, const CName* family, ElementPtr operand) {
    const std::int32_t kind = ColorKindOf(family);
    CGraphState& state = *m.GetCurrentGState();
    if (kind >= 0) {
        if (CDialect::SetColorSpace(m, family, std::move(operand)) != 1) return -1;
        // A device space begins with black (PLRM, setcolorspace).
        DeviceColor black{.kind = kind};
        if (kind == COLOR_CMYK) black.components[3] = 1;
        if (kind != COLOR_PATTERN) SetDeviceColor(state, black);
        return 1;
    }
    const auto* array = As<CArrayElement>(operand.get());
    if (!array) return m.Fail(PSERR_UNDEFINED);
    if (ComponentsOf(array) == 0) return m.Fail(PSERR_RANGE);
    const std::vector<double> components = InitialComponents(*array);
    const ElementPtr kept = array->Clone();
    if (SetSpecialColor(m, *kept, components) != 1) return -1;
    m.GetCurrentGState()->SetColorSpace(TypedPtr<CArrayElement>(static_cast<CArrayElement*>(operand.release())));
    return 1;
}
