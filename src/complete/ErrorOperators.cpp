// How an error goes its way (PLRM, Errors): the operands are back, what failed is pushed, and the handler that
// errordict has for the error runs. The default handlers put what is known in $error and do a `stop`. A way out is a
// result of -1 that everybody passes up, with PSERR_NONE and the aim in the dialect, until it is taken.
#include "complete/ErrorOperators.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "complete/CompleteDialect.h"
#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

struct NamedError {
    std::string_view name;
    ErrorCode nearest;
};

/// The errors of the language. Every one has a handler in errordict.
constexpr NamedError kErrors[] = {
    {"configurationerror", PSERR_SYNTAX},
    {"dictfull", PSERR_RANGE},
    {"dictstackoverflow", PSERR_RANGE},
    {"dictstackunderflow", PSERR_STACKUNDERFLOW},
    {"execstackoverflow", PSERR_RANGE},
    {"interrupt", PSERR_SYNTAX},
    {"invalidaccess", PSERR_SYNTAX},
    {"invalidexit", PSERR_SYNTAX},
    {"invalidfileaccess", PSERR_IO},
    {"invalidfont", PSERR_UNDEFINED},
    {"invalidrestore", PSERR_SYNTAX},
    {"ioerror", PSERR_IO},
    {"limitcheck", PSERR_RANGE},
    {"nocurrentpoint", PSERR_NOCURRENTPOINT},
    {"rangecheck", PSERR_RANGE},
    {"stackoverflow", PSERR_RANGE},
    {"stackunderflow", PSERR_STACKUNDERFLOW},
    {"syntaxerror", PSERR_SYNTAX},
    {"timeout", PSERR_SYNTAX},
    {"typecheck", PSERR_TYPECHECK},
    {"undefined", PSERR_UNDEFINED},
    {"undefinedfilename", PSERR_IO},
    {"undefinedresource", PSERR_UNDEFINED},
    {"undefinedresult", PSERR_SYNTAX},
    {"unmatchedmark", PSERR_UNMATCHEDMARK},
    {"unregistered", PSERR_SYNTAX},
    {"VMerror", PSERR_VMOVERFLOW},
};

/// An object of the dictionary that systemdict has under a name; null when a program has put something else there.
TypedPtr<CDictionary> SystemEntry(const CFilterEPS& m, std::string_view name) {
    const auto* systemDict = static_cast<const CDictionary*>(m.m_DictStack.Bottom());
    const auto* entry = As<CDictionary>(systemDict->GetValue(name));
    return TypedPtr<CDictionary>(entry ? static_cast<CDictionary*>(entry->Clone().release()) : nullptr);
}

ElementPtr ArrayOf(const CElementStack& stack) {
    std::vector<ElementPtr> elements;
    CountWork(stack.GetCount());
    for (const CElement* e = stack.Bottom(); e; e = e->m_pNext) elements.push_back(e->Clone());
    return MakeElement<CArrayElement>(std::move(elements));
}

/// Whether $error says that an error has not been dealt with.
bool HasNewError(const CFilterEPS& m) {
    const auto info = SystemEntry(m, "$error");
    const auto* flag = info ? As<CBoolElement>(info->GetValue("newerror")) : nullptr;
    return flag && flag->GetValue();
}

/// The name of the error in $error; empty when there is none.
std::string NewErrorName(const CFilterEPS& m) {
    const auto info = SystemEntry(m, "$error");
    const auto* name = info ? As<CSimpElement>(info->GetValue("errorname")) : nullptr;
    return name ? name->GetName() : "";
}

/// What failed, as $error shows it: an operator, a name, or null for the scanner.
ElementPtr CommandOf(const CName* running) {
    if (!running) return MakeElement<CNullElement>();
    if (running->m_pfnOperator) return MakeElement<COperatorElement>(running);
    auto name = MakeElement<CSimpElement>(running);
    name->m_bExec = true;
    return name;
}

// command error  .raise  -
// What the default handlers do.
int OpRaise(CFilterEPS& m) {
    Operands in(m);
    in.Name(0);
    in.Any(1);
    if (!in) return -1;
    ElementPtr name = m.Pop();
    ElementPtr command = m.Pop();
    if (const auto info = SystemEntry(m, "$error")) {
        const auto* record = As<CBoolElement>(info->GetValue("recordstacks"));
        if (record && record->GetValue()) {
            info->Put("ostack", ArrayOf(m.m_OperandStack));
            info->Put("dstack", ArrayOf(m.m_DictStack.Elements()));
            info->Put("estack", MakeElement<CArrayElement>(0));
        }
        info->Put("newerror", MakeElement<CBoolElement>(true));
        info->Put("errorname", std::move(name));
        info->Put("command", std::move(command));
        info->Put("errorinfo", MakeElement<CNullElement>());
    }
    return CCompleteDialect::Leave(m, WayOut::stop);
}

// any  stopped  bool                         STACKUNDERFLOW
int OpStopped(CFilterEPS& m) {
    Operands in(m);
    in.Any(0);
    if (!in) return -1;
    ElementPtr object = m.Pop();
    int result = m.ExecuteObject(*object);
    if (result == 0) {
        m.Push(std::move(object));
        result = 1;
    }
    auto& dialect = CCompleteDialect::Of(m);
    if (result != 1 && dialect.TakeExit(m)) {
        // No loop stands between: an `exit` goes no further than here.
        m.Fail(PSERR_SYNTAX, "invalidexit");
        result = m.RaiseError(InternName("exit"));
    } else if (result != 1) {
        result = m.RaiseError(InternName("stopped"));  // what the object met before it ran
    }
    const bool stopped = result != 1 && dialect.Take(WayOut::stop);
    if (result != 1 && !stopped) return -1;
    m.PushBool(stopped);
    return 1;
}

template <WayOut Way>
int OpLeave(CFilterEPS& m) {
    return CCompleteDialect::Leave(m, Way);
}

// -  handleerror  -
int OpHandleerror(CFilterEPS& m) {
    const auto handlers = SystemEntry(m, "errordict");
    const CElement* handler = handlers ? handlers->GetValue("handleerror") : nullptr;
    if (!handler) return m.Fail(PSERR_UNDEFINED);
    const ElementPtr procedure = handler->Clone();
    return m.ExecuteObject(*procedure) < 0 ? -1 : 1;
}

// -  .handleerror  -
// There is nowhere to print to: the message box tells the error.
int OpDefaultHandleerror(CFilterEPS& m) {
    if (const auto info = SystemEntry(m, "$error")) info->Put("newerror", MakeElement<CBoolElement>(false));
    return 1;
}

constexpr OpRow kRows[] = {
    {"exit", OpLeave<WayOut::exit>},        {"stop", OpLeave<WayOut::stop>}, {"stopped", OpStopped},
    {"quit", OpLeave<WayOut::quit>},        {"handleerror", OpHandleerror},  {".raise", OpRaise},
    {".handleerror", OpDefaultHandleerror},
};

/// An executable procedure of two elements, or of one.
ElementPtr Procedure(ElementPtr first, ElementPtr second) {
    std::vector<ElementPtr> elements;
    if (first) elements.push_back(std::move(first));
    elements.push_back(std::move(second));
    auto procedure = MakeElement<CArrayElement>(std::move(elements));
    procedure->m_bExec = true;
    return procedure;
}

ElementPtr Operator(std::string_view name) { return MakeElement<COperatorElement>(name); }

}  // namespace

constinit const OpTable kCompleteErrorOperators{kRows};

ErrorCode NearestCode(std::string_view error) noexcept {
    const auto* known =
        std::find_if(std::begin(kErrors), std::end(kErrors), [&](const NamedError& row) { return row.name == error; });
    return known != std::end(kErrors) ? known->nearest : PSERR_SYNTAX;
}

void BuildErrorHandlers(CFilterEPS& m) {
    const auto handlers = SystemEntry(m, "errordict");
    for (const NamedError& error : kErrors) {
        handlers->Put(error.name, Procedure(MakeElement<CSimpElement>(error.name), Operator(".raise")));
    }
    handlers->Put("handleerror", Procedure(nullptr, Operator(".handleerror")));
    SystemEntry(m, "$error")->Put("recordstacks", MakeElement<CBoolElement>(true));
}

bool CCompleteDialect::Take(WayOut way) noexcept {
    if (m_WayOut != way) return false;
    m_WayOut = WayOut::none;
    return true;
}

int CCompleteDialect::OnError(CFilterEPS& m, const CName* running) {
    // What the plain system refuses and nobody has built is unknown here.
    tagRunFailure& failure = *m.m_Report.failure;
    if (failure.nError == PSERR_UNSUPPORTED) failure.strError = ErrorName(PSERR_UNDEFINED);
    const std::string error = failure.strError;
    m_Failure = std::move(m.m_Report.failure);
    m.m_Report.failure.reset();
    m.m_nError = PSERR_NONE;

    m.Push(CommandOf(running));
    const auto handlers = SystemEntry(m, "errordict");
    const CElement* handler = handlers ? handlers->GetValue(error) : nullptr;
    if (handler) {
        const ElementPtr procedure = handler->Clone();
        const int result = m.ExecuteObject(*procedure);
        if (result >= 0) return 1;
        if (m.m_nError == PSERR_NONE) return -1;
    }
    // There is no handler, or no room for it to run.
    m.m_nError = PSERR_NONE;
    m.Push(MakeElement<CSimpElement>(error));
    return OpRaise(m);
}

int CCompleteDialect::EndStoppedRun(CFilterEPS& m) {
    if (Take(WayOut::exit)) {
        m.Fail(PSERR_SYNTAX, "invalidexit");
        if (m.RaiseError(InternName("exit")) == 1) return 1;
    }
    if (!Take(WayOut::stop)) return -1;

    const std::string error = NewErrorName(m);
    bool isError = HasNewError(m);
    const auto handlers = SystemEntry(m, "errordict");
    const CElement* handler = handlers ? handlers->GetValue("handleerror") : nullptr;
    if (isError && handler) {
        // A program's own handler may say that the error is dealt with; the default one says so always.
        const auto* procedure = As<CArrayElement>(handler);
        const auto* first = procedure ? As<COperatorElement>(procedure->GetAt(0)) : nullptr;
        if (!first || first->m_pName != InternName(".handleerror")) {
            const ElementPtr run = handler->Clone();
            static_cast<void>(m.ExecuteObject(*run));
            m.ForgetError();
            isError = HasNewError(m);
        }
    }
    tagRunFailure failure;
    if (!isError) {
        // The program ended itself: no box, and what is known.
        failure.strError = failure.strOperator = "stop";
    } else {
        if (m_Failure && m_Failure->strError == error) failure = *m_Failure;
        failure.strError = error;
        failure.nError = NearestCode(error);
    }
    m.m_nError = failure.nError;
    m.m_Report.failure = std::move(failure);
    return -1;
}
