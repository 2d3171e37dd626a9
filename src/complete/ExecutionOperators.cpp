// What a program can know of its execution; an import is one job, without a user at a console.
#include "complete/ExecutionOperators.h"

#include <utility>
#include <vector>

#include "interp/Keys.h"
#include "interp/Operands.h"
#include "operators/DictionaryOperators.h"

namespace {

// proc  bind  proc                           stackunderflow typecheck
int OpBind(CFilterEPS& m) { return BindProcedure(m, BoundNames::all); }

// mark key value ...  >>  dict               unmatchedmark rangecheck typecheck
int OpDictEnd(CFilterEPS& m) {
    const int count = m.m_OperandStack.CountToMark();
    if (count < 0) return m.Fail(PSERR_UNMATCHEDMARK);
    if (count % 2 != 0) return m.Fail(PSERR_RANGE);
    const CElement* value = m.m_OperandStack.Top();
    for (int i = 0; i < count; i += 2) {
        const CElement& key = *value->m_pPrev;
        if (key.m_nType == ET_NULL) return m.Fail(PSERR_TYPECHECK);
        if (!CKey(key).IsValid()) return m.Fail(PSERR_RANGE, "limitcheck");
        value = key.m_pPrev;
    }
    std::vector<ElementPtr> elements(static_cast<std::size_t>(count));
    for (std::size_t i = elements.size(); i-- > 0;) elements[i] = m.Pop();
    m.Drop(1);
    auto dict = MakeElement<CDictionary>(count / 2);
    for (std::size_t i = 0; i < elements.size(); i += 2) CKey(*elements[i]).PutIn(*dict, std::move(elements[i + 1]));
    m.Push(std::move(dict));
    return 1;
}

// -  countexecstack  int
// Departure: of what is running, the current file alone is told.
int OpCountexecstack(CFilterEPS& m) {
    m.PushInt(1);
    return 1;
}

// array  execstack  subarray                 stackunderflow typecheck rangecheck
int OpExecstack(CFilterEPS& m) {
    Operands in(m);
    const auto* array = in.Array(0);
    in.Require(!array || array->GetLength() >= 1, PSERR_RANGE);
    if (!in) return -1;
    ElementPtr file = m.m_pCurrentFile ? m.m_pCurrentFile->Clone() : MakeElement<CFileElement>();
    file->m_bExec = true;
    array->SetAt(0, std::move(file));
    TypedPtr<CArrayElement> part = array->GetInterval(0, 1);
    m.Drop(1);
    m.Push(std::move(part));
    return 1;
}

// index  execuserobject  -                   stackunderflow typecheck undefined rangecheck
int OpExecuserobject(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t index = in.Int(0);
    if (!in) return -1;
    const auto* objects = As<CArrayElement>(m.LookUp(InternName("UserObjects")));
    if (!objects) return m.Fail(PSERR_UNDEFINED);
    if (index < 0 || index >= objects->GetLength()) return m.Fail(PSERR_RANGE);
    ElementPtr object = objects->GetAt(index)->Clone();
    m.Drop(1);
    const int result = m.ExecuteObject(*object);
    if (result == 0) m.Push(std::move(object));
    return result == 0 ? 1 : result;
}

// bool password  startjob  bool              stackunderflow typecheck
// No password lets a program out of its job.
int OpStartjob(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_NUMBER, ET_STRING});
    in.Bool(1);
    if (!in) return -1;
    m.Drop(2);
    m.PushBool(false);
    return 1;
}

constexpr OpRow kRows[] = {
    {"bind", OpBind},
    {">>", OpDictEnd},
    {"countexecstack", OpCountexecstack},
    {"execstack", OpExecstack},
    {"execuserobject", OpExecuserobject},
    {"startjob", OpStartjob},
};

}  // namespace

constinit const OpTable kCompleteExecutionOperators{kRows};
