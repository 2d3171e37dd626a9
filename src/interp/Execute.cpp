// The execution engine: what a name means, and how the elements of a procedure run. There is no execution stack:
// everything here is recursion, bounded by the room left on the thread's stack.
#include <utility>

#include "hostout/HostCore.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "platform/Window.h"

bool g_bExitFlag = false;
bool g_bStopFlag = false;

bool CFilterEPS::HasRoomForCall() noexcept {
    if (static_cast<const char*>(__builtin_frame_address(0)) > m_pStackFloor) return true;
    m_bStackUsedUp = true;
    return false;
}

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
    CFrameWnd* frame = glbf_GetMainFrame();
    m_bUserBreak = frame && frame->OnProgress(progress);
    if (m_bUserBreak) g_nWorkLeft = 0;
    return m_bUserBreak;
}

int CFilterEPS::ExecuteName(const CName* name) {
    const CElement* value = nullptr;
    if (name == m_pFontDirectoryName) {
        // Departure: this name goes by the global mode, and no definition of a program can hide it.
        const auto* systemDict = static_cast<const CDictionary*>(m_DictStack.Bottom());
        value = systemDict->GetValue(g_bGlobalMode ? InternName("GlobalFontDirectory") : name);
    } else {
        value = LookUp(name);
    }
    if (!value) {
        Fail(PSERR_UNDEFINED);
        return RaiseError(name);
    }
    if (const auto* op = As<COperatorElement>(value)) return ExecuteOperator(op->m_pName) == 1 ? 1 : -1;
    // Departure: an executable raw token is pushed; only the operators that run an object run one.
    if (value->m_bExec && value->m_nType != ET_RAWTOKEN) {
        const int result = ExecuteObject(*value);
        if (result == 1) return 1;
        if (result != 0) return RaiseError(name);
    }
    PushCopy(*value);
    return 1;
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

int CFilterEPS::RunTogether(const CArrayBody& body, size_t at, size_t left) {
    const Step& step = body.Code()[at];
    const size_t operands = step.kind == StepKind::proceduresThenOp ? 2 : 1;
    if (left <= operands) return 0;  // of a view that ends here
    const OpRow* op = OperatorOf((&step)[operands]);
    if (!op) return 0;
    int result = 0;
    if (step.kind == StepKind::numberThenOp) {
        if (op->onNumber) result = op->onNumber(*this, step.number, step.isReal);
    } else {
        const auto& procedure = static_cast<const CArrayElement&>(body.Contents().At(at));
        if (step.kind == StepKind::procedureThenOp) {
            if (op->onProcedure) result = op->onProcedure(*this, procedure);
        } else if (op->onProcedures) {
            const auto& second = static_cast<const CArrayElement&>(body.Contents().At(at + 1));
            result = op->onProcedures(*this, procedure, second);
        }
    }
    if (result == 0) return 0;
    if (result != 1 && RaiseError(InternName(op->name)) != 1) return -1;
    return static_cast<int>(operands) + 1;
}

int CFilterEPS::ExecuteProcedure(const CArrayElement* array) {
    if (IsInterrupted()) return -1;
    if (!HasRoomForCall()) return Fail(PSERR_RANGE, "execstackoverflow");
    // The element may be dropped by what runs, the body by a restore, and its code by a change to it, behind which the
    // run goes on at the same place: body and code are asked for anew at each step.
    const CBodyRef<CArrayBody> ref = array->m_Body;
    const size_t first = array->m_bView ? static_cast<size_t>(array->m_nStart) : 0;
    const size_t end = first + static_cast<size_t>(array->GetLength());
    if (CArrayBody* body = ref.Get(); body && !body->Code() && body->IsToCompile(m_nCompileAtEntry)) Compile(*body);
    for (size_t at = first; at < end; ++at) {
        const CArrayBody* body = ref.Get();
        if (!body) return 1;
        const Step* code = body->Code();
        assert(!code || IsStepOf(code[at], body->Contents().At(at)));
        switch (code ? code[at].kind : StepKind::element) {
            case StepKind::number:
                Push(NewNumber(code[at].number, code[at].isReal));
                continue;
            case StepKind::name:
                if (ExecuteName(code[at].name) != 1) return -1;
                break;
            case StepKind::op:
                if (ExecuteOperator(code[at].name) != 1) return -1;
                break;
            case StepKind::numberThenOp:
            case StepKind::procedureThenOp:
            case StepKind::proceduresThenOp:
                if (const int taken = RunTogether(*body, at, end - at); taken != 0) {
                    if (taken < 0) return -1;
                    at += static_cast<size_t>(taken) - 1;
                    break;
                }
                [[fallthrough]];
            case StepKind::nameObject:
            case StepKind::element: {
                bool ran = false;
                if (RunElement(body->Contents().At(at), ran) != 1) return -1;
                if (!ran) continue;
                break;
            }
        }
        // Departure: the flags are looked at behind a name or an operator, not behind a string.
        if (g_bExitFlag || g_bStopFlag) return 1;
        if (g_nWorkLeft <= 0 && PollHost()) return -1;  // what ran may have been much
    }
    return 1;
}
