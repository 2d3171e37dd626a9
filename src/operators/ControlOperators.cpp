// Control. There is no execution stack: operators run procedures by recursion (interp/Execute.cpp), and
// `exit` and `stop` raise flags that end procedures one after the other, up to the loop or the `stopped` that
// clears them.
//
// Departure: an error is no `stop`. It ends the run and passes through `stopped`.
#include "operators/ControlOperators.h"

#include <cmath>
#include <memory>
#include <optional>

#include "interp/Operands.h"

LoopPass RunLoopPass(CFilterEPS& m, const CArrayElement& procedure) {
    if (m.ExecuteProcedure(&procedure) != 1) return m.Dialect().TakeExit(m) ? LoopPass::ended : LoopPass::failed;
    return CFilterEPS::TakeLoopFlags() ? LoopPass::ended : LoopPass::goOn;
}

namespace {

/// What a loop operator answers once a pass was not the last thing to go on.
int LoopResult(LoopPass pass) { return pass == LoopPass::failed ? -1 : 1; }

// bool proc  if  -                           STACKUNDERFLOW TYPECHECK
int OpIf(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    const bool condition = in.Bool(1);
    if (!in) return -1;
    const auto procedure = Take<CArrayElement>(m);
    m.Drop(1);
    return condition ? m.ExecuteProcedure(procedure.get()) : 1;
}

// bool proc1 proc2  ifelse  -                STACKUNDERFLOW TYPECHECK
int OpIfelse(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    in.Procedure(1);
    const bool condition = in.Bool(2);
    if (!in) return -1;
    const auto otherwise = Take<CArrayElement>(m);
    const auto then = Take<CArrayElement>(m);
    m.Drop(1);
    return m.ExecuteProcedure(condition ? then.get() : otherwise.get());
}

/// Takes the condition off the stack; none for anything else there.
std::optional<bool> TakeCondition(CFilterEPS& m) {
    if (!As<CBoolElement>(m.m_OperandStack.Top())) return std::nullopt;
    const std::unique_ptr<CBoolElement> condition(Take<CBoolElement>(m).release());
    return condition->GetValue();
}

// The forms of if and ifelse for procedures that have not been pushed.
int OnIf(CFilterEPS& m, const CArrayElement& procedure) {
    const std::optional<bool> condition = TakeCondition(m);
    if (!condition) return 0;
    return *condition ? m.ExecuteProcedure(&procedure) : 1;
}

int OnIfelse(CFilterEPS& m, const CArrayElement& then, const CArrayElement& otherwise) {
    const std::optional<bool> condition = TakeCondition(m);
    if (!condition) return 0;
    return m.ExecuteProcedure(*condition ? &then : &otherwise);
}

/// How many passes of `for` come after the first; negative when not even that one runs. The count is settled
/// before the first pass. Departure: an increment of 0, and a count beyond 32 bits, run nothing.
std::int32_t LastPass(double initial, double increment, double limit) {
    if (increment == 0.0) return -1;
    if (increment > 0.0 ? initial > limit : limit > initial) return -1;
    return TruncateToInt(std::fabs((limit - initial) / increment));
}

// initial increment limit proc  for  -       STACKUNDERFLOW TYPECHECK
// Departure: a real limit alone makes the control variable a real. Its values are products and not running
// sums, so that 0 0.1 1 runs eleven times.
int OpFor(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    const CNumberElement* limit = in.Number(1);
    const CNumberElement* increment = in.Number(2);
    const CNumberElement* initial = in.Number(3);
    if (!in) return -1;
    const bool isReal = initial->IsReal() || increment->IsReal() || limit->IsReal();
    const double first = initial->GetReal();
    const double step = increment->GetReal();
    const std::int64_t last = LastPass(first, step, limit->GetReal());
    const auto procedure = Take<CArrayElement>(m);
    m.Drop(3);

    LoopPass pass = LoopPass::goOn;
    for (std::int64_t k = 0; k <= last && pass == LoopPass::goOn; ++k) {
        const double value = static_cast<double>(k) * step + first;
        if (isReal) {
            m.PushReal(value);
        } else {
            m.PushInt(TruncateToInt(value));
        }
        pass = RunLoopPass(m, *procedure);
    }
    return LoopResult(pass);
}

// n proc  repeat  -                          STACKUNDERFLOW TYPECHECK
// Departure: a negative n is no error.
int OpRepeat(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    const std::int32_t count = in.Int(1);
    if (!in) return -1;
    const auto procedure = Take<CArrayElement>(m);
    m.Drop(1);
    LoopPass pass = LoopPass::goOn;
    for (std::int32_t i = 0; i < count && pass == LoopPass::goOn; ++i) pass = RunLoopPass(m, *procedure);
    return LoopResult(pass);
}

// proc  loop  -                              STACKUNDERFLOW TYPECHECK
int OpLoop(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    if (!in) return -1;
    const auto procedure = Take<CArrayElement>(m);
    LoopPass pass = LoopPass::goOn;
    // A body that a `restore` took away will never reach its `exit`.
    while (pass == LoopPass::goOn && procedure->GetBody()) pass = RunLoopPass(m, *procedure);
    return LoopResult(pass);
}

// -  exit  -
// Departure: outside a loop it is no error; the next procedure then ends behind its first name or operator.
int OpExit(CFilterEPS&) {
    g_bExitFlag = true;
    return 1;
}

// -  stop  -
// Departure: the same outside `stopped`.
int OpStop(CFilterEPS&) {
    g_bStopFlag = true;
    return 1;
}

/// Runs the object on top, which is there. One that is literal, or of a type that doesn't run, stays.
/// UNSUPPORTED for an executable file or filter, nothing popped.
int RunTop(CFilterEPS& m) {
    const CElement& top = *m.m_OperandStack.Top();
    const bool isFile = top.m_bExec && (top.m_nType == ET_FILE || top.m_nType == ET_FILTER);
    if (isFile && !m.Dialect().RunsFiles()) return m.Fail(PSERR_UNSUPPORTED);
    ElementPtr object = m.Pop();
    const int result = m.ExecuteObject(*object);
    if (result != 0) return result;
    m.Push(std::move(object));
    return 1;
}

// any  stopped  bool                         STACKUNDERFLOW UNSUPPORTED
// any  stopped  any bool                     for an object that doesn't run
int OpStopped(CFilterEPS& m) {
    Operands in(m);
    const CElement* any = in.Any(0);
    if (!in) return -1;
    if (!any->m_bExec) {
        m.PushBool(false);
        return 1;
    }
    if (RunTop(m) != 1) return -1;
    m.PushBool(g_bStopFlag);
    g_bStopFlag = false;
    return 1;
}

// clang-format off
// Place 5 of the chain.
constexpr OpRow kCoreRows[] = {
    {"if", OpIf, nullptr, OnIf},
    {"ifelse", OpIfelse, nullptr, nullptr, OnIfelse},
    {"for", OpFor},
    {"repeat", OpRepeat},
    {"loop", OpLoop},
    {"exit", OpExit},
    {"stop", OpStop},
    {"stopped", OpStopped},
};
// clang-format on

// any  exec  -                               STACKUNDERFLOW UNSUPPORTED
// any  exec  any                             for an object that doesn't run
int OpExec(CFilterEPS& m) {
    Operands in(m);
    in.Any(0);
    return in ? RunTop(m) : -1;
}

// file  eexec  mark                          STACKUNDERFLOW TYPECHECK; IO for a file that is not open
// dict file  eexec  mark
// string  eexec  -
// Departure: nothing is decrypted. The file is read over up to and including 200 zeros, the first of those
// that follow an encrypted font (Adobe Type 1 Font Format, eexec encryption), and the mark is for the
// `cleartomark` behind them. A file that ends before is no error.
int OpEexec(CFilterEPS& m) {
    Operands in(m);
    const CElement* source = in.OneOf(0, {ET_FILE, ET_STRING});
    if (!in) return -1;
    if (source->m_nType == ET_STRING) {
        m.Drop(1);
        return 1;
    }
    const auto file = Take<CFileElement>(m);
    if (As<CDictionary>(m.m_OperandStack.Top())) m.Drop(1);
    m.Push(MakeElement<CSimpElement>("-mark-", ET_MARK));
    return file->SkipToZeros() == 0 ? m.Fail(PSERR_IO) : 1;
}

// clang-format off
// Place 16 of the chain.
constexpr OpRow kRows[] = {
    {"exec", OpExec},
    {"countexecstack", OpUnsupported},
    {"execstack", OpUnsupported},
    {"quit", OpUnsupported},
    {"start", OpUnsupported},
    {"eexec", OpEexec},
};
// clang-format on

}  // namespace

constinit const OpTable kControlCoreOperators{kCoreRows};
constinit const OpTable kControlOperators{kRows};
