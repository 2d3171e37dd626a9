// Patterns and forms. A pattern has no lines of its own in the drawing: its procedure runs up to the first thing that
// it paints, to see in which colour.
#include "complete/PatternOperators.h"

#include <algorithm>

#include "complete/ClipOperators.h"
#include "complete/CompleteDialect.h"
#include "complete/PathBridge.h"
#include "complete/ShadingColor.h"
#include "graphics/MatrixOperators.h"
#include "graphics/PaintOperators.h"
#include "graphics/PatternOperators.h"
#include "interp/Operands.h"

namespace {

/// How deep patterns may be painted with patterns.
constexpr int MAX_PATTERN_DEPTH = 8;

constexpr std::int32_t TILING = 1;
constexpr std::int32_t SHADING = 2;
constexpr std::int32_t COLORED = 1;

std::int32_t IntegerOf(const CDictionary& dict, std::string_view key) {
    const auto* number = As<CNumberElement>(dict.GetValue(key));
    return number ? number->GetInt() : 0;
}

/// Runs something that must leave no trace but what it returns: graphics state, stacks, entities and errors are as
/// before. 1, or -1 when the run has to end.
int RunAside(CFilterEPS& m, const std::function<int()>& run) {
    const CGStateScope scope(m);
    const int operands = m.m_OperandStack.GetCount();
    const int dicts = m.m_DictStack.GetCount();
    CEntGroup* const group = std::exchange(m.m_pGroup, nullptr);
    CEntGroup* const other = std::exchange(m.m_pOtherGroup, nullptr);
    const tagLeftOut leftOut = m.m_Report.leftOut;
    const int result = run();
    m.m_pGroup = group;
    m.m_pOtherGroup = other;
    m.m_Report.leftOut = leftOut;
    m.Drop(std::max(m.m_OperandStack.GetCount() - operands, 0));
    while (m.m_DictStack.GetCount() > dicts) m.m_DictStack.Pop();
    if (result == 1) return 1;
    auto& dialect = CCompleteDialect::Of(m);
    if (dialect.Take(WayOut::stop) || dialect.Take(WayOut::exit)) return 1;
    if (m.m_nError == PSERR_NONE) return -1;
    m.ForgetError();
    return 1;
}

/// The first colour that a pattern's procedure paints with, or the last one that it sets when it paints no path.
int FindPaintedColor(CFilterEPS& m, const CDictionary& pattern, RgbColor& color, bool& isKnown) {
    auto& dialect = CCompleteDialect::Of(m);
    PatternProbe* const outer = dialect.Probe();
    PatternProbe probe{outer, outer ? outer->depth + 1 : 1};
    const CElement* paint = pattern.GetValue("PaintProc");
    if (!paint || !paint->IsProcedure() || probe.depth > MAX_PATTERN_DEPTH) return 1;
    const ElementPtr procedure = paint->Clone();
    dialect.SetProbe(&probe);
    const int result = RunAside(m, [&] {
        CGraphState& state = *m.GetCurrentGState();
        state.ClearPath();
        state.SetColorKind(COLOR_GRAY);
        state.m_fGray = 0;
        m.Push(pattern.Clone());
        const int answer = m.ExecuteProcedure(static_cast<const CArrayElement*>(procedure.get()));
        if (answer != 1 || probe.isKnown) return answer;
        static_cast<void>(LeaveColor(m));
        return -1;
    });
    dialect.SetProbe(outer);
    color = probe.color;
    isKnown = probe.isKnown;
    return result;
}

// dict matrix  makepattern  pattern          stackunderflow typecheck undefined rangecheck
int OpMakepattern(CFilterEPS& m) {
    Operands in(m);
    const CArrayElement* matrix = in.AnyArray(0);
    const CDictionary* dict = in.Dict(1);
    if (!in) return -1;
    double six[6];
    if (const ErrorCode error = ReadMatrix(*matrix, six); error != PSERR_NONE) return m.Fail(error);
    if (!dict->GetValue("PatternType")) return m.Fail(PSERR_UNDEFINED);
    const std::int32_t type = IntegerOf(*dict, "PatternType");
    if (type != TILING && type != SHADING) return m.Fail(PSERR_RANGE);
    if (type == TILING) {
        const CElement* paint = dict->GetValue("PaintProc");
        if (!paint || !dict->GetValue("PaintType")) return m.Fail(PSERR_UNDEFINED);
        if (!paint->IsProcedure()) return m.Fail(PSERR_TYPECHECK);
    } else if (!As<CDictionary>(dict->GetValue("Shading"))) {
        return m.Fail(dict->GetValue("Shading") ? PSERR_TYPECHECK : PSERR_UNDEFINED);
    }
    auto pattern = MakeElement<CDictionary>(dict->GetMaxLength() + 1);
    static_cast<void>(dict->CopyTo(pattern.get()));
    pattern->Put("Implementation", matrix->DeepCopy());
    pattern->m_nAccess = ACC_READONLY;
    m.Drop(2);
    m.Push(std::move(pattern));
    return 1;
}

// color(1)..color(n) pattern  setpattern  -  stackunderflow typecheck rangecheck undefined
// The current space, whatever its family, is that of an uncoloured pattern's components (PLRM, setpattern).
int OpSetpattern(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    CGraphState& state = *m.GetCurrentGState();
    if (state.m_nColorKind != COLOR_PATTERN) {
        std::vector<ElementPtr> space;
        space.push_back(MakeElement<CSimpElement>(std::string_view("Pattern")));
        space.push_back(state.GetColorSpace()->Clone());
        m.Push(MakeElement<CArrayElement>(std::move(space)));
        if (m.ExecuteOperator("setcolorspace") != 1) return -1;
    }
    return m.ExecuteOperator("setcolor");
}

/// Clips to the box of a form.
int ClipToForm(CFilterEPS& m, const CDictionary& form) {
    std::vector<double> box;
    const CElement* bounds = form.GetValue("BBox");
    if (!bounds) return 1;
    if (ReadNumbers(*bounds, box) != PSERR_NONE || box.size() != 4) return m.Fail(PSERR_TYPECHECK);
    m.AddRectPath(static_cast<float>(box[0]), static_cast<float>(box[1]), static_cast<float>(box[2] - box[0]),
                  static_cast<float>(box[3] - box[1]));
    ClipTo(m, ToGeometry(m.GetCurrentGState()->m_Path), geometry::FillRule::NonZero);
    m.NewPath();
    return 1;
}

// form  execform  -                          stackunderflow typecheck rangecheck
// The first time the form is told to be known, by an entry Implementation.
int OpExecform(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* operand = in.Dict(0);
    if (!in) return -1;
    const ElementPtr kept = operand->Clone();
    if (RunForm(m, ClipToForm) != 1) return -1;
    auto& form = static_cast<CDictionary&>(*kept);
    if (!form.GetValue("Implementation")) form.Put("Implementation", MakeElement<CNullElement>());
    return 1;
}

constexpr OpRow kRows[] = {
    {"makepattern", OpMakepattern},
    {"setpattern", OpSetpattern},
    {"execform", OpExecform},
};

}  // namespace

constinit const OpTable kCompletePatternOperators{kRows};

RgbScope::RgbScope(CGraphState& state, const RgbColor& color) noexcept : m_State(state), m_nKind(state.m_nColorKind) {
    std::copy_n(state.m_fRGB, m_Color.size(), m_Color.begin());
    std::copy(color.begin(), color.end(), state.m_fRGB);
    state.m_nColorKind = COLOR_RGB;
}

RgbScope::~RgbScope() {
    std::copy(m_Color.begin(), m_Color.end(), m_State.m_fRGB);
    m_State.m_nColorKind = m_nKind;
}

int FindPatternColor(CFilterEPS& m, RgbColor& color, bool& isKnown) {
    isKnown = false;
    CGraphState& state = *m.GetCurrentGState();
    const CArrayElement* operands = state.GetPatternColor();
    const auto* found = operands ? As<CDictionary>(operands->GetAt(0)) : nullptr;
    if (!found) return 1;
    const ElementPtr kept = found->Clone();  // what runs may set another pattern
    const auto& pattern = static_cast<const CDictionary&>(*kept);
    if (IntegerOf(pattern, "PatternType") == SHADING) {
        const auto* shading = As<CDictionary>(pattern.GetValue("Shading"));
        return shading ? FindShadingColor(m, *shading, color, isKnown) : 1;
    }
    if (IntegerOf(pattern, "PaintType") == COLORED) return FindPaintedColor(m, pattern, color, isKnown);

    const CArrayElement* space = state.PeekColorSpace();
    if (!space || space->GetLength() < 2) return 1;
    std::vector<double> components;
    for (std::int32_t i = 1; i < operands->GetLength(); ++i) {
        const auto* number = As<CNumberElement>(operands->GetAt(i));
        components.push_back(number ? number->GetReal() : 0);
    }
    return FindColorIn(m, *state.GetColorSpace()->GetAt(1), components, color, isKnown);
}

int FindColorIn(CFilterEPS& m, const CElement& space, const std::vector<double>& components, RgbColor& color,
                bool& isKnown) {
    const ElementPtr operand = space.Clone();
    return RunAside(m, [&] {
        m.Push(operand->Clone());
        if (m.ExecuteOperator("setcolorspace") != 1) return -1;
        for (const double component : components) m.PushReal(component);
        if (m.ExecuteOperator("setcolor") != 1) return -1;
        m.GetCurrentGState()->GetRGBColor(color.data());
        isKnown = true;
        return 1;
    });
}

bool IsColorProbed(const CFilterEPS& m) { return CCompleteDialect::Of(m).Probe() != nullptr; }

int LeaveColor(CFilterEPS& m) {
    PatternProbe& probe = *CCompleteDialect::Of(m).Probe();
    if (!probe.isKnown) {
        CGraphState& state = *m.GetCurrentGState();
        if (state.m_nColorKind != COLOR_PATTERN) {
            state.GetRGBColor(probe.color.data());
            probe.isKnown = true;
        } else if (FindPatternColor(m, probe.color, probe.isKnown) != 1) {
            return -1;
        }
    }
    return CCompleteDialect::Leave(m, WayOut::stop);
}
