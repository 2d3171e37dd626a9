// Colour operators. Each device space has a store of its own, and nothing is converted between them: only
// painting asks for RGB (CGraphState::GetRGBColor).
#include "graphics/ColorOperators.h"

#include <algorithm>

#include "graphics/GraphState.h"
#include "interp/Operands.h"

namespace {

/// The stores of the device spaces, in the order of the colour kinds.
constexpr int kComponents[] = {1, 3, 4};

float* StoreOf(CGraphState& state, std::int32_t kind) {
    switch (kind) {
        case COLOR_RGB:
            return state.m_fRGB;
        case COLOR_CMYK:
            return state.m_fCMYK;
        default:
            return &state.m_fGray;
    }
}

/// Pops count numbers into a store, the last one of which is the top.
int TakeComponents(CFilterEPS& m, float* store, int count) {
    Operands in(m);
    float values[4];
    for (int i = 0; i < count; ++i) values[count - 1 - i] = static_cast<float>(in.Real(i));
    if (!in) return -1;
    m.Drop(count);
    std::copy_n(values, count, store);
    return 1;
}

void PushComponents(CFilterEPS& m, const float* store, int count) {
    for (int i = 0; i < count; ++i) m.PushReal(store[i]);
}

// gray  setgray  -                           STACKUNDERFLOW TYPECHECK
// red green blue  setrgbcolor  -
// cyan magenta yellow black  setcmykcolor  -
template <std::int32_t Kind>
int OpSetDeviceColor(CFilterEPS& m) {
    CGraphState& state = *m.GetCurrentGState();
    if (TakeComponents(m, StoreOf(state, Kind), kComponents[Kind]) != 1) return -1;
    state.SetColorKind(Kind);
    return 1;
}

// array|name  setcolorspace  -               STACKUNDERFLOW TYPECHECK UNSUPPORTED
// Departure: the colour values stay, and there are no spaces but the device spaces and Pattern.
int OpSetcolorspace(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_ARRAY, ET_NAME});
    if (!in) return -1;
    ElementPtr operand = m.Pop();
    const auto* array = As<CArrayElement>(operand.get());
    const auto* name = As<CSimpElement>(array ? array->GetAt(0) : operand.get());
    if (!name) return m.Fail(PSERR_TYPECHECK);
    return m.Dialect().SetColorSpace(m, name->m_pName, std::move(operand));
}

// -  currentcolorspace  array
int OpCurrentcolorspace(CFilterEPS& m) {
    m.Push(m.GetCurrentGState()->GetColorSpace()->Clone());
    return 1;
}

// comp1..compN  setcolor  -                  STACKUNDERFLOW TYPECHECK UNSUPPORTED
// comp1..compN pattern  setcolor  -
int OpSetcolor(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.OneOf(0, {ET_NUMBER, ET_DICT});
    if (!in) return -1;
    CGraphState& state = *m.GetCurrentGState();
    if (state.m_nColorKind != COLOR_PATTERN) {
        return TakeComponents(m, StoreOf(state, state.m_nColorKind), kComponents[state.m_nColorKind]);
    }
    return top->m_nType == ET_DICT ? SetPatternColor(m, PSERR_TYPECHECK) : m.Fail(PSERR_TYPECHECK);
}

// -  currentcolor  comp1..compN
// -  currentcolor  pattern comp1..compN
// Departure: the pattern comes first, and nothing before the first setcolor in a Pattern space.
int OpCurrentcolor(CFilterEPS& m) {
    CGraphState& state = *m.GetCurrentGState();
    if (state.m_nColorKind != COLOR_PATTERN) {
        PushComponents(m, StoreOf(state, state.m_nColorKind), kComponents[state.m_nColorKind]);
        return 1;
    }
    const CArrayElement* color = state.GetPatternColor();
    const std::int32_t length = color ? color->GetLength() : 0;
    for (std::int32_t i = 0; i < length; ++i) m.Push(color->GetAt(i)->Clone());
    return 1;
}

// -  currentgray  gray
// -  currentrgbcolor  red green blue
// -  currentcmykcolor  cyan magenta yellow black
// Departure: what the store was set to last, whatever the colour space is now.
template <std::int32_t Kind>
int OpCurrentDeviceColor(CFilterEPS& m) {
    PushComponents(m, StoreOf(*m.GetCurrentGState(), Kind), kComponents[Kind]);
    return 1;
}

// hue saturation brightness  sethsbcolor  -  STACKUNDERFLOW TYPECHECK
// Departure: the colour painted stays the last RGB colour.
int OpSethsbcolor(CFilterEPS& m) {
    CGraphState& state = *m.GetCurrentGState();
    if (TakeComponents(m, state.m_fHSB, 3) != 1) return -1;
    state.SetColorKind(COLOR_RGB);
    return 1;
}

// -  currenthsbcolor  hue saturation brightness
int OpCurrenthsbcolor(CFilterEPS& m) {
    PushComponents(m, m.GetCurrentGState()->m_fHSB, 3);
    return 1;
}

/// An integer entry of a pattern dictionary; false when it is missing or no number.
bool ReadEntry(const CDictionary& pattern, std::string_view key, std::int32_t& value) {
    const auto* number = As<CNumberElement>(pattern.GetValue(key));
    if (number) value = number->GetInt();
    return number != nullptr;
}

/// The name of the space that uncoloured patterns take their colour in; null when there is none.
const CName* UnderlyingName(const CElement* space) {
    if (const auto* array = As<CArrayElement>(space); array && array->m_nType == ET_ARRAY) space = array->GetAt(0);
    const auto* name = As<CSimpElement>(space);
    return name ? name->m_pName : nullptr;
}

// Place 7 of the chain, compared after kStateCoreOperators.
constexpr OpRow kCoreRows[] = {
    {"setgray", OpSetDeviceColor<COLOR_GRAY>},
    {"setrgbcolor", OpSetDeviceColor<COLOR_RGB>},
    {"setcmykcolor", OpSetDeviceColor<COLOR_CMYK>},
};

// Place 21 of the chain, compared after kStateOperators.
constexpr OpRow kRows[] = {
    {"setcolorspace", OpSetcolorspace},
    {"currentcolorspace", OpCurrentcolorspace},
    {"setcolor", OpSetcolor},
    {"currentcolor", OpCurrentcolor},
    {"currentgray", OpCurrentDeviceColor<COLOR_GRAY>},
    {"sethsbcolor", OpSethsbcolor},
    {"currenthsbcolor", OpCurrenthsbcolor},
    {"currentrgbcolor", OpCurrentDeviceColor<COLOR_RGB>},
    {"currentcmykcolor", OpCurrentDeviceColor<COLOR_CMYK>},
};

}  // namespace

constinit const OpTable kColorCoreOperators{kCoreRows};
constinit const OpTable kColorOperators{kRows};

int CDialect::SetColorSpace(CFilterEPS& m, const CName* family, ElementPtr operand) {
    const std::int32_t kind = ColorKindOf(family);
    if (kind < 0) return m.Fail(PSERR_UNSUPPORTED);
    CGraphState* state = m.GetCurrentGState();
    if (As<CArrayElement>(operand.get())) {
        state->SetColorSpace(TypedPtr<CArrayElement>(static_cast<CArrayElement*>(operand.release())));
    } else if (operand->m_bExec) {
        std::vector<ElementPtr> space;  // of this very name; a literal one is made when it is asked for
        space.push_back(std::move(operand));
        state->SetColorSpace(MakeElement<CArrayElement>(std::move(space)));
    } else {
        state->SetNamedColorSpace(kind);
    }
    return 1;
}

int SetPatternColor(CFilterEPS& m, ErrorCode withoutSpace) {
    auto pattern = Take<CDictionary>(m);
    CGraphState& state = *m.GetCurrentGState();
    constexpr std::int32_t TILING = 1;
    constexpr std::int32_t SHADING = 2;
    constexpr std::int32_t COLORED = 1;
    std::int32_t type = 0;
    std::int32_t paint = 0;
    if (!ReadEntry(*pattern, "PatternType", type)) return m.Fail(PSERR_TYPECHECK);
    // A shading pattern has no PaintType.
    if (!ReadEntry(*pattern, "PaintType", paint) && type != SHADING) return m.Fail(PSERR_TYPECHECK);

    int count = 0;
    if (type != SHADING && !(type == TILING && paint == COLORED)) {
        const CArrayElement* space = state.PeekColorSpace();
        const CElement* underlying = space && space->GetLength() > 1 ? space->GetAt(1) : nullptr;
        if (!underlying) return m.Fail(withoutSpace);
        const CName* name = UnderlyingName(underlying);
        if (!name) return m.Fail(PSERR_TYPECHECK);
        const std::int32_t kind = ColorKindOf(name);
        if (kind < 0 || kind == COLOR_PATTERN) return m.Fail(PSERR_UNSUPPORTED);
        count = kComponents[kind];
    }
    Operands in(m);
    for (int i = 0; i < count; ++i) in.Number(i);
    if (!in) return -1;

    std::vector<ElementPtr> color(static_cast<size_t>(count) + 1);
    for (size_t i = color.size(); --i > 0;) color[i] = m.Pop();
    color[0] = std::move(pattern);
    state.SetPatternColor(MakeElement<CArrayElement>(std::move(color)));
    return 1;
}
