// Patterns and forms. Departure: a pattern is only remembered and paints nothing; a form is drawn by its
// procedure.
#include "graphics/PatternOperators.h"

#include "graphics/ColorOperators.h"
#include "graphics/GraphState.h"
#include "graphics/MatrixOperators.h"
#include "graphics/PaintOperators.h"
#include "interp/Operands.h"

namespace {

// dict matrix  makepattern  pattern          STACKUNDERFLOW TYPECHECK
int OpMakepattern(CFilterEPS& m) {
    Operands in(m);
    in.Array(0);
    in.Dict(1);
    if (!in) return -1;
    m.Drop(1);
    return 1;
}

// color(1)..color(n) pattern  setpattern  -  STACKUNDERFLOW TYPECHECK SYNTAX UNSUPPORTED
int OpSetpattern(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    CGraphState* state = m.GetCurrentGState();
    if (state->m_nColorKind != COLOR_PATTERN) {
        std::vector<ElementPtr> space;
        space.push_back(MakeElement<CSimpElement>(ColorSpaceName(COLOR_PATTERN)));
        space.push_back(state->GetColorSpace()->Clone());
        state->SetColorSpace(MakeElement<CArrayElement>(std::move(space)));
    }
    return SetPatternColor(m, PSERR_SYNTAX);
}

// form  execform  -                          STACKUNDERFLOW TYPECHECK
int OpExecform(CFilterEPS& m) { return RunForm(m, nullptr); }

// Place 26 of the chain.
constexpr OpRow kRows[] = {
    {"makepattern", OpMakepattern},
    {"setpattern", OpSetpattern},
    {"execform", OpExecform},
};

}  // namespace

constinit const OpTable kPatternOperators{kRows};

int RunForm(CFilterEPS& m, int (*begin)(CFilterEPS&, const CDictionary&)) {
    Operands in(m);
    const CDictionary* form = in.Dict(0);
    if (!in) return -1;
    const auto* matrix = As<CArrayElement>(form->GetValue("Matrix"));
    const CElement* paint = form->GetValue("PaintProc");
    if (!matrix || !paint || !paint->IsProcedure()) return m.Fail(PSERR_TYPECHECK);
    double six[6];
    if (const ErrorCode error = ReadMatrix(*matrix, six); error != PSERR_NONE) return m.Fail(error);
    const ElementPtr procedure = paint->Clone();
    const CGStateScope scope(m);
    m.GetCurrentGState()->Concat(six);
    m.NewPath();
    if (begin && begin(m, *form) != 1) return -1;
    // The form dictionary stays on the operand stack: PaintProc takes it.
    return m.ExecuteProcedure(static_cast<const CArrayElement*>(procedure.get()));
}
