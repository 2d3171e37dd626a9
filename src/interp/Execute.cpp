// The execution engine: what a name means, and how the elements of a procedure run. There is no execution stack:
// everything here is recursion, bounded by the room left on the thread's stack.
#include <utility>

#include "hostout/HostCore.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "platform/Window.h"

bool g_bExitFlag = false;
bool g_bStopFlag = false;

bool CFilterEPS::PollHost() {
    if (m_bUserBreak) {
        g_nWorkLeft = 0;  // and so at every step from now on
        return true;
    }
    g_nWorkLeft = WORK_INTERVAL;
    tagImportProgress progress{};
    if (const CFileBody* input = m_Input.Get()) {
        input->GetPosition(progress.nBytesRead);
        input->GetLimit(progress.nBytesTotal);
    }
    progress.nEntities = m_pGroup ? m_pGroup->GetChildCount() : 0;
    progress.nPoints = m_Report.nPointsDrawn;
    CFrameWnd* frame = glbf_GetMainFrame();
    m_bUserBreak = frame && frame->OnProgress(progress);
    if (m_bUserBreak) g_nWorkLeft = 0;
    return m_bUserBreak;
}

[[gnu::always_inline]] inline int CFilterEPS::ExecuteFound(const CName* name, const CDictNode* node) {
    if (!node) {
        Fail(PSERR_UNDEFINED);
        return RaiseError(name);
    }
    if (const auto* op = As<COperatorElement>(&node->Peek())) return ExecuteOperator(op->m_pName) == 1 ? 1 : -1;
    const CElement* value = node->GetValue();
    // Departure: an executable raw token is pushed; only the operators that run an object run one.
    if (value->m_bExec && value->m_nType != ET_RAWTOKEN) {
        const int result = ExecuteObject(*value);
        if (result == 1) return 1;
        if (result != 0) return RaiseError(name);
    }
    PushCopy(*value);
    return 1;
}

int CFilterEPS::ExecuteName(const CName* name) {
    if (name != m_pFontDirectoryName) return ExecuteFound(name, m_DictStack.Find(name));
    // Departure: this name goes by the global mode, and no definition of a program can hide it.
    const auto* systemDict = static_cast<const CDictionary*>(m_DictStack.Bottom());
    return ExecuteFound(name, systemDict->Find(g_bGlobalMode ? InternName("GlobalFontDirectory") : name));
}

int CFilterEPS::ExecuteObject(const CElement& e) {
    if (!e.m_bExec) return 0;
    switch (e.m_nType) {
        case ET_NAME: {
            // A name that stands for itself would go round for ever.
            if (!HasRoomForCall()) return Fail(PSERR_RANGE, "execstackoverflow");
            return ExecuteName(static_cast<const CSimpElement&>(e).m_pName);
        }
        case ET_RAWTOKEN:
            return ExecuteToken(static_cast<const CSimpElement&>(e).m_pName);
        case ET_ARRAY:
        case ET_PACKEDARRAY:
            return ExecuteProcedure(static_cast<const CArrayElement*>(&e));
        case ET_STRING:
            return ExecuteString(static_cast<const CStringElement&>(e));
        case ET_OPERATOR:
            return ExecuteOperator(static_cast<const COperatorElement&>(e).m_pName) == 1 ? 1 : -1;
        default:
            return m_pDialect->ExecuteOther(*this, e);
    }
}

int CFilterEPS::ExecuteToken(const CName* name) {
    if (!name->IsNumber()) return ExecuteName(name);
    if (!name->m_bValidNumber) return Fail(PSERR_SYNTAX);
    if (name->m_nNumberClass == NumberClass::real) {
        PushReal(name->m_fNumber);
    } else {
        PushInt(static_cast<std::int32_t>(name->m_fNumber));
    }
    return 1;
}

int CFilterEPS::ExecuteString(const CStringElement& string) {
    if (!HasRoomForCall()) return Fail(PSERR_RANGE, "execstackoverflow");
    // A copy: the string may change, or go, while it runs.
    const std::string text = string.GetText();
    return ScanBuffer(text);
}

/// The current file from construction to destruction, when the one before comes back.
class CFilterEPS::CurrentFileScope {
public:
    CurrentFileScope(CFilterEPS& machine, const CFileElement& file)
        : m_Machine(machine), m_pBefore(std::exchange(machine.m_pCurrentFile, file.CloneFile())) {}
    CurrentFileScope(const CurrentFileScope&) = delete;
    CurrentFileScope& operator=(const CurrentFileScope&) = delete;
    ~CurrentFileScope() { m_Machine.m_pCurrentFile = std::move(m_pBefore); }

private:
    CFilterEPS& m_Machine;
    TypedPtr<CFileElement> m_pBefore;
};

int CFilterEPS::ExecuteFile(const CFileElement& file) {
    if (!HasRoomForCall()) return Fail(PSERR_RANGE, "execstackoverflow");
    const CurrentFileScope current(*this, file);
    return m_pDialect->ScanFile(*this);
}

int CFilterEPS::RunElement(const CElement& e, bool& ran) {
    switch (e.m_nType) {
        case ET_RAWTOKEN: {
            const CName* name = static_cast<const CSimpElement&>(e).m_pName;
            ran = !name->IsNumber();
            return ExecuteToken(name);
        }
        case ET_OPERATOR:
            ran = true;
            return ExecuteOperator(static_cast<const COperatorElement&>(e).m_pName);
        case ET_NAME:
        case ET_STRING:
            if (e.m_bExec) {
                ran = e.m_nType == ET_NAME;
                return ExecuteObject(e);
            }
            break;
        default:
            break;
    }
    PushCopy(e);
    return 1;
}

inline int CFilterEPS::AfterStep() {
    // Departure: the flags are looked at behind a name or an operator, not behind a string.
    if (g_bExitFlag || g_bStopFlag) return 0;
    return g_nWorkLeft <= 0 && PollHost() ? -1 : 1;  // what ran may have been much
}

inline int CFilterEPS::RunTogether(const CArrayBody& body, size_t at, size_t end) {
    const StepKind kind = body.Code()[at].kind;
    const size_t opAt = at + (kind == StepKind::proceduresThenOp ? 2 : 1);
    const CName* name = opAt < end ? OperatorOf(body.Code()[opAt]) : nullptr;
    if (!name || !name->m_pRow) return 0;
    const OpRow& op = *name->m_pRow;
    const auto& procedure = static_cast<const CArrayElement&>(body.Contents().At(at));
    int result = 0;
    if (kind == StepKind::procedureThenOp) {
        if (op.onProcedure) result = op.onProcedure(*this, procedure);
    } else if (op.onProcedures) {
        result = op.onProcedures(*this, procedure, static_cast<const CArrayElement&>(body.Contents().At(at + 1)));
    }
    return result == 0 || result == 1 ? result : RaiseError(name);
}

int CFilterEPS::RunCode(const CArrayBody& body, size_t& at, size_t end) {
    const Step* const code = body.Code();
    const Step* const last = code + end;
    const std::uint64_t epoch = g_nCodeEpoch;
    const Step* step = code + at;
    do {
        assert(body.Code() == code && IsStepOf(*step, body.Contents().At(static_cast<size_t>(step - code))));
        switch (step->kind) {
            case StepKind::number:
                Push(NewNumber(step->number, step->isReal));
                ++step;
                continue;
            case StepKind::nameLiteral:
                Push(MakeElement<CSimpElement>(step->name));
                ++step;
                continue;
            case StepKind::nameObject:
                if (!HasRoomForCall()) return Fail(PSERR_RANGE, "execstackoverflow");  // see ExecuteObject
                [[fallthrough]];
            case StepKind::name: {
                const CName* name = (step++)->name;
                if (ExecuteFound(name, m_DictStack.Find(name)) != 1) return -1;
                break;
            }
            case StepKind::op:
                if (ExecuteOperator((step++)->name) != 1) return -1;
                break;
            case StepKind::numberThenOp: {
                const Step& number = *step++;
                const CName* op = step != last ? OperatorOf(*step) : nullptr;
                const OnNumberFn onNumber = op && op->m_pRow ? op->m_pRow->onNumber : nullptr;
                const int result = onNumber ? onNumber(*this, number.number, number.isReal) : 0;
                if (result == 0) {
                    Push(NewNumber(number.number, number.isReal));
                    continue;
                }
                if (result != 1 && RaiseError(op) != 1) return -1;
                ++step;
                break;
            }
            case StepKind::procedureThenOp:
            case StepKind::proceduresThenOp: {
                const int operands = step->kind == StepKind::procedureThenOp ? 1 : 2;
                if (const int result = RunTogether(body, static_cast<size_t>(step - code), end); result != 0) {
                    if (result != 1) return -1;
                    step += operands + 1;
                    break;
                }
                [[fallthrough]];
            }
            case StepKind::element: {
                bool ran = false;
                const auto index = static_cast<size_t>(step++ - code);
                if (RunElement(body.Contents().At(index), ran) != 1) return -1;
                if (!ran) continue;
                break;
            }
        }
        if (const int result = AfterStep(); result != 1) return result;
    } while (step != last && g_nCodeEpoch == epoch);
    at = static_cast<size_t>(step - code);
    return 1;
}

int CFilterEPS::ExecuteProcedure(const CArrayElement* array) {
    if (IsInterrupted()) return -1;
    if (!HasRoomForCall()) return Fail(PSERR_RANGE, "execstackoverflow");
    // The element may be dropped by what runs, the body by a restore, and its code by a change to it, behind which the
    // run goes on at the same place.
    const CBodyRef<CArrayBody> ref = array->m_Body;
    CArrayBody* body = ref.Get();
    if (!body) return 1;
    size_t at = 0;
    size_t end = body->Contents().GetSize();
    if (array->m_bView) {
        at = static_cast<size_t>(array->m_nStart);
        end = at + static_cast<size_t>(array->m_nLength);
    }
    if (!body->Code() && body->IsToCompile(m_nCompileAtEntry)) Compile(*body);
    while (at < end) {
        int result = 1;
        if (body->Code()) {
            result = RunCode(*body, at, end);
        } else {
            bool ran = false;
            if (RunElement(body->Contents().At(at++), ran) != 1) return -1;
            if (ran) result = AfterStep();
        }
        if (result != 1) return result == 0 ? 1 : -1;
        if (at == end) break;
        body = ref.Get();
        if (!body) break;
    }
    return 1;
}
