// Memory and time. The answers are the same on every run: what a program draws may not hang on the machine it runs on.
#include "complete/SystemOperators.h"

#include <limits>

#include "complete/CompleteDialect.h"
#include "interp/Operands.h"

namespace {

// -  vmstatus  level used maximum
int OpVmstatus(CFilterEPS& m) {
    constexpr std::int32_t used = 1 << 20;  // bytes; programs want the difference, and whether a file fits in it
    m.PushInt(g_nSaveLevel);
    m.PushInt(used);
    m.PushInt(std::numeric_limits<std::int32_t>::max());
    return 1;
}

/// int  name  -                               STACKUNDERFLOW TYPECHECK RANGE
template <std::int32_t Least, std::int32_t Greatest>
int OpDiscardInt(CFilterEPS& m) {
    Operands in(m);
    const CNumberElement* n = in.Number(0);
    in.Require(!n || !n->IsReal(), PSERR_TYPECHECK);
    in.Require(!n || (n->GetInt() >= Least && n->GetInt() <= Greatest), PSERR_RANGE);
    if (!in) return -1;
    m.Drop(1);
    return 1;
}

// -  usertime  int
// -  realtime  int
int OpTime(CFilterEPS& m) {
    m.PushInt(CCompleteDialect::Of(m).NextMillisecond());
    return 1;
}

constexpr std::int32_t kGreatest = std::numeric_limits<std::int32_t>::max();

constexpr OpRow kRows[] = {
    {"vmstatus", OpVmstatus},
    {"vmreclaim", OpDiscardInt<-2, 2>},
    {"setvmthreshold", OpDiscardInt<-1, kGreatest>},
    {"usertime", OpTime},
    {"realtime", OpTime},
};

}  // namespace

constinit const OpTable kCompleteSystemOperators{kRows};
