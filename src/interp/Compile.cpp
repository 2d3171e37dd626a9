// Makes the code of procedures. What is found out here is what can't change while the body stays as it is; that a name
// is an operator now only makes it worthwhile to ask for that whenever the step runs.
#include <bit>
#include <new>

#include "interp/FilterEPS.h"

Step CFilterEPS::StepOf(const CElement& e) const {
    Step step;
    const bool isPlain = !e.m_bExec && e.m_nAccess == ACC_UNLIMITED;
    if (e.m_nType == ET_RAWTOKEN) {
        const CName* name = static_cast<const CSimpElement&>(e).m_pName;
        if (!name->IsNumber()) {
            step.kind = StepKind::name;
            step.name = name;
        } else if (name->m_bValidNumber) {
            step.kind = StepKind::number;
            step.isReal = name->m_nNumberClass == NumberClass::real;
            step.number = name->m_fNumber;
        }
    } else if (e.m_nType == ET_NAME && (e.m_bExec || isPlain)) {
        step.kind = e.m_bExec ? StepKind::nameObject : StepKind::nameLiteral;
        step.name = static_cast<const CSimpElement&>(e).m_pName;
    } else if (e.m_nType == ET_OPERATOR) {
        step.kind = StepKind::op;
        step.name = static_cast<const COperatorElement&>(e).m_pName;
    } else if (e.m_nType == ET_NUMBER && isPlain) {
        const auto& number = static_cast<const CNumberElement&>(e);
        step.kind = StepKind::number;
        step.isReal = number.IsReal();
        step.number = number.GetReal();
    }
    const bool isRun = step.kind == StepKind::name || step.kind == StepKind::nameObject;
    if (isRun && step.name == m_pFontDirectoryName) step.kind = StepKind::element;  // see ExecuteName
    return step;
}

void CFilterEPS::Compile(CArrayBody& body) const {
    const CElementList& elements = body.Contents();
    const size_t count = elements.GetSize();
    std::unique_ptr<Step[]> code(new (std::nothrow) Step[count]);
    if (!code) return;  // it runs without
    for (size_t i = 0; i < count; ++i) code[i] = StepOf(elements.At(i));
    const auto rowAt = [&](size_t i) -> const OpRow* {
        const CName* op = i < count ? OperatorOf(code[i]) : nullptr;
        return op ? op->m_pRow : nullptr;
    };
    for (size_t i = 0; i < count; ++i) {
        const OpRow* next = rowAt(i + 1);
        if (code[i].kind == StepKind::number) {
            if (next && next->onNumber) code[i].kind = StepKind::numberThenOp;
        } else if (elements.At(i).IsProcedure()) {
            if (next && next->onProcedure) code[i].kind = StepKind::procedureThenOp;
            const OpRow* behind = i + 1 < count && elements.At(i + 1).IsProcedure() ? rowAt(i + 2) : nullptr;
            if (behind && behind->onProcedures) code[i].kind = StepKind::proceduresThenOp;
        }
    }
    body.SetCode(std::move(code));
}

bool CFilterEPS::IsStepOf(const Step& step, const CElement& e) const {
    const Step now = StepOf(e);
    switch (step.kind) {
        case StepKind::number:
        case StepKind::numberThenOp:
            return now.kind == StepKind::number && now.isReal == step.isReal &&
                   std::bit_cast<std::uint64_t>(now.number) == std::bit_cast<std::uint64_t>(step.number);
        case StepKind::procedureThenOp:
        case StepKind::proceduresThenOp:
            return e.IsProcedure();
        case StepKind::element:
            return now.kind == StepKind::element;
        default:
            return now.kind == step.kind && now.name == step.name;
    }
}
