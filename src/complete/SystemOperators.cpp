// Memory and time. The answers are the same on every run: what a program draws may not hang on the machine it runs on.
#include "complete/SystemOperators.h"

#include <algorithm>
#include <iterator>
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

// mark int..  setcacheparams  -              unmatchedmark typecheck
// What is left out stays as it is, and more than three are ignored.
int OpSetcacheparams(CFilterEPS& m) {
    const int count = m.m_OperandStack.CountToMark();
    if (count < 0) return m.Fail(PSERR_UNMATCHEDMARK);
    std::int32_t* const parameters[] = {&m.m_nCacheUpper, &m.m_nCacheLower, &m.m_nCacheSize};
    const int known = std::min(count, static_cast<int>(std::size(parameters)));
    Operands in(m);
    for (int i = 0; i < known; ++i) in.Int(i);
    if (!in) return -1;
    for (int i = 0; i < known; ++i) *parameters[i] = in.Int(i);
    m.Drop(count + 1);
    return 1;
}

constexpr std::int32_t kGreatest = std::numeric_limits<std::int32_t>::max();

constexpr OpRow kRows[] = {
    {"vmstatus", OpVmstatus},
    {"vmreclaim", OpDiscardInt<-2, 2>},
    {"setvmthreshold", OpDiscardInt<-1, kGreatest>},
    {"usertime", OpTime},
    {"realtime", OpTime},
    {"setcacheparams", OpSetcacheparams},
};

}  // namespace

constinit const OpTable kCompleteSystemOperators{kRows};
