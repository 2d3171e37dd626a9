// The execution engine: what a name means, and how the elements of a procedure run. There is no execution stack:
// everything here is recursion, bounded by a count and by the room left on the thread's stack.
#include <utility>

#include "hostout/HostCore.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "platform/Window.h"

bool g_bExitFlag = false;
bool g_bStopFlag = false;

/// One level of nested execution, while it lasts.
class CFilterEPS::CallScope {
public:
    explicit CallScope(CFilterEPS& machine) noexcept : m_Machine(machine) { ++m_Machine.m_nCallDepth; }
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;
    ~CallScope() { --m_Machine.m_nCallDepth; }
    /// Whether there is room for the level.
    [[nodiscard]] bool Fits() const noexcept {
        return m_Machine.m_nCallDepth <= MAX_CALL_DEPTH &&
               static_cast<const char*>(__builtin_frame_address(0)) > m_Machine.m_pStackFloor;
    }

private:
    CFilterEPS& m_Machine;
};

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
    Push(value->Clone());
    return 1;
}

int CFilterEPS::ExecuteObject(const CElement& e) {
    if (!e.m_bExec) return 0;
    switch (e.m_nType) {
        case ET_NAME: {
            CallScope scope(*this);  // a name that stands for itself would go round for ever
            if (!scope.Fits()) return Fail(PSERR_RANGE, "execstackoverflow");
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
    CallScope scope(*this);
    if (!scope.Fits()) return Fail(PSERR_RANGE, "execstackoverflow");
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
    const CallScope scope(*this);
    if (!scope.Fits()) return Fail(PSERR_RANGE, "execstackoverflow");
    const CurrentFileScope current(*this, file);
    return m_pDialect->ScanFile(*this);
}

int CFilterEPS::ExecuteProcedure(const CArrayElement* array) {
    if (IsInterrupted()) return -1;
    CallScope scope(*this);
    if (!scope.Fits()) return Fail(PSERR_RANGE, "execstackoverflow");
    // The element may be dropped by what runs, and the body by a restore: the body is asked for anew at each step.
    const CBodyRef<CArrayBody> ref = array->m_Body;
    const std::int32_t first = array->m_bView ? array->m_nStart : 0;
    const std::int32_t length = array->GetLength();
    for (std::int32_t i = 0; i < length; ++i) {
        const CArrayBody* body = ref.Get();
        if (!body) return 1;
        const CElement& e = body->Contents().At(static_cast<size_t>(first + i));
        bool ran = false;  // Departure: the flags are looked at behind a name or an operator, not behind a string
        switch (e.m_nType) {
            case ET_RAWTOKEN: {
                const CName* name = static_cast<const CSimpElement&>(e).m_pName;
                if (ExecuteToken(name) != 1) return -1;
                ran = !name->IsNumber();
                break;
            }
            case ET_OPERATOR:
                if (ExecuteOperator(static_cast<const COperatorElement&>(e).m_pName) != 1) return -1;
                ran = true;
                break;
            case ET_NAME:
            case ET_STRING:
                if (e.m_bExec) {
                    ran = e.m_nType == ET_NAME;
                    if (ExecuteObject(e) != 1) return -1;
                } else {
                    Push(e.Clone());
                }
                break;
            default:
                Push(e.Clone());
                break;
        }
        if (ran && (g_bExitFlag || g_bStopFlag)) return 1;
    }
    return 1;
}
