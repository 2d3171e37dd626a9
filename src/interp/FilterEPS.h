// CFilterEPS, the PostScript machine: the stacks, the well-known dictionaries, the input file and the settings of
// one import. It derives from the entity writer, so that a painting operator reaches the writer on the same object.
#pragma once

#include <cstdint>
#include <random>
#include <string_view>
#include <unordered_set>

#include "hostout/DataFilter.h"
#include "interp/Dialect.h"
#include "interp/DictStack.h"
#include "interp/ElementStack.h"
#include "interp/ErrorCodes.h"
#include "objects/Array.h"
#include "objects/Body.h"
#include "objects/Dictionary.h"
#include "objects/File.h"
#include "objects/Filter.h"
#include "objects/Number.h"
#include "objects/SimpleElements.h"
#include "objects/String.h"
#include "objects/Work.h"
#include "platform/Window.h"

class CGraphState;
class CGStateElement;
enum class Lexeme;

// Set by `exit` and `stop`, read behind each name or operator of a procedure. Process-wide, like the save level
// and the global mode: one machine at a time. Reset by its destructor.
extern bool g_bExitFlag;
extern bool g_bStopFlag;

/// The machine. One object serves one import: OpenInputFile, RunFile once, CloseInputFile.
/// Operations answer 1 done or -1 failed, with the reason in m_nError; -1 without a reason ends the run in silence.
class CFilterEPS final : public CDataFilter {
    /// What lives outside the machine and serves one at a time: number pool, registries, names, flags. The first
    /// member, so that it comes before and goes after everything that stands on it.
    class CProcessState {
    public:
        CProcessState();
        CProcessState(const CProcessState&) = delete;
        CProcessState& operator=(const CProcessState&) = delete;
        ~CProcessState();
    };
    CProcessState m_ProcessState;
    std::unique_ptr<CDialect> m_pDialect;  ///< may hold elements: it goes before the pool, and behind all stacks

public:
    /// A machine of the library's own dialect, or of another one (not null).
    explicit CFilterEPS(std::int32_t nHostVersion, std::unique_ptr<CDialect> dialect = MakeLibraryDialect());
    ~CFilterEPS() override;

    // What the import driver calls.
    void SetMergeTolerance(float millimetres) { m_fMergeTolerance = millimetres; }
    void SetFillOutline(std::int32_t on) { m_bFillOutline = on != 0; }
    /// Opens the file for block-buffered input. 1, or 0 when it can't be opened for reading and writing.
    [[nodiscard]] int OpenInputFile(const char* path, std::int32_t blockSize = CFileBody::BLOCK_SIZE);
    /// The same of a source in place of a disk file; it should have places, as the binary header asks for them.
    void OpenInputSource(std::unique_ptr<CByteSource> source, std::int32_t blockSize = CFileBody::BLOCK_SIZE);
    void CloseInputFile();
    /// Runs the whole input; entities go to the group, which stays the caller's. Shows the message box of a failed
    /// run. Answers -1 when the run failed, else 0 or 1. Exhausted memory ends the run in order, too.
    int RunFile(CEntGroup* group);
    int SetTarget(CEntGroup* group) override { return RunFile(group); }
    /// Shows the message box of m_nError; nothing when it is PSERR_NONE.
    void ReportError();

    // Execution.
    /// Looks the name up on the dictionary stack and acts by what it finds.
    [[nodiscard]] int ExecuteName(const CName* name);
    [[nodiscard]] int ExecuteName(std::string_view name) { return ExecuteName(InternName(name)); }
    /// Runs the elements of a procedure, by its code from the second entry on. The array element stays the caller's and
    /// may be gone before the run ends.
    [[nodiscard]] int ExecuteProcedure(const CArrayElement* array);
    /// Runs the operator of that name; 0 with PSERR_UNSUPPORTED when no group of the chain claims it.
    [[nodiscard]] int ExecuteOperator(const CName* name) {
        if (!name->m_pfnOperator) return RefuseOperator(name);
        return name->m_pfnOperator(*this) == 1 ? 1 : RaiseError(name);
    }
    [[nodiscard]] int ExecuteOperator(std::string_view name) { return ExecuteOperator(InternName(name)); }
    /// Runs an executable name, raw token, procedure, string or operator, as `exec` does. Answers 0, having done
    /// nothing, for an object of any other type and for a literal one. e may be dropped by what it runs: it is not
    /// touched afterwards.
    [[nodiscard]] int ExecuteObject(const CElement& e);
    /// Runs the bytes of an executable string.
    [[nodiscard]] int ExecuteString(const CStringElement& string);

    // Scanning.
    /// Scans a file from where it stands to its end as a program; it is the current file meanwhile. PSERR_RANGE when
    /// calls nest too deep.
    [[nodiscard]] int ExecuteFile(const CFileElement& file);
    /// Puts into m_Report what of the input didn't run, by what a lexer tells at its end (see CLexer). Nothing while
    /// another file is the current one.
    void ReportTail(Lexeme open, std::string_view text, std::int64_t lastComment);
    // These four are the dialect's.
    /// Executes a text.
    [[nodiscard]] int ScanBuffer(std::string_view text) { return m_pDialect->ScanBuffer(*this, text); }
    /// Takes the first object out of a string. 1 with or without an object (null), 0 for an empty source, -1 with
    /// PSERR_SYNTAX; consumed tells how many bytes belong to it.
    [[nodiscard]] int ScanToken(const CStringElement& source, ElementPtr& object, std::int32_t& consumed) {
        return m_pDialect->ScanToken(*this, source, object, consumed);
    }
    /// Makes the procedure of the text between two braces.
    [[nodiscard]] int ParseProcedure(std::string_view text, ElementPtr& procedure) {
        return m_pDialect->ParseProcedure(*this, text, procedure);
    }
    /// What a token of a program means: a number is pushed, a name executed.
    [[nodiscard]] int ExecuteToken(std::string_view text);
    /// Pushes the number of a token; 0 for a token that is none. PSERR_SYNTAX for a number without a value.
    [[nodiscard]] int PushNumberToken(std::string_view text);
    /// Pushes the value of an immediately evaluated name. PSERR_UNDEFINED.
    [[nodiscard]] int PushImmediate(std::string_view text);
    /// Takes the elements above the topmost mark into a new literal array; the mark stays. Null without a mark.
    [[nodiscard]] ElementPtr BuildArray();
    /// Takes the pairs above the topmost mark into a new dictionary; the mark, and an odd element above it, stay.
    /// Null without a mark, or with a key that is neither name nor string; elements taken by then are gone.
    [[nodiscard]] ElementPtr BuildDictionary();
    /// BuildArray or BuildDictionary as `]` and `>>` use them: one more element, the mark when the count was even,
    /// is dropped and the object pushed. PSERR_UNMATCHEDMARK.
    [[nodiscard]] int CloseArray();
    [[nodiscard]] int CloseDictionary();

    /// Where in the input file the scanner found what runs now, for a message. Reads the file from its start, so it
    /// is not for every day. Line 1, offset 0 without an input file.
    [[nodiscard]] tagInputPlace InputPlace() const;

    // Errors. Who meets one stores its code and answers -1. Where an operator or name is done, or the scanner has met
    // it by itself, RaiseError decides what it comes to; from there on a -1 is only passed up.
    /// Stores the code and answers -1. name is the language's name of the error, where ErrorName has another one for
    /// the code.
    int Fail(ErrorCode code, const char* name = nullptr) {
        m_nError = code;
        m_pErrorName = name;
        return -1;
    }
    /// What a failure of `running` comes to; null is the scanner. Of an error that has just been met, m_Report.failure
    /// takes what and where, and the dialect decides: 1 to go on, or -1. An error that somebody further in has raised,
    /// and a silent end, stay -1.
    [[nodiscard, gnu::cold]] int RaiseError(const CName* running);
    /// Fills m_Report.failure but for the place, which is looked up when the run ends.
    void RecordFailure(const CName* running);
    /// Makes an error that is not passed up as if it had not been.
    void ForgetError();
    [[nodiscard]] CDialect& Dialect() const noexcept { return *m_pDialect; }

    // Small change of the operators.
    void Push(ElementPtr e) { m_OperandStack.Push(std::move(e)); }
    void PushCopy(const CElement& e) { m_OperandStack.Push(CopyOf(e)); }
    void PushInt(std::int32_t n) { m_OperandStack.Push(NewInt(n)); }
    void PushReal(double f) { m_OperandStack.Push(NewReal(f)); }
    void PushBool(bool b) { m_OperandStack.Push(MakeElement<CBoolElement>(b)); }
    [[nodiscard]] ElementPtr Pop() { return m_OperandStack.Pop(); }
    /// Pops and drops that many elements.
    void Drop(int count) {
        while (count-- > 0) DropElement(m_OperandStack.Pop());
    }
    /// Whether a flag of `exit` or `stop` is up; clears both. What a loop asks after each pass.
    static bool TakeLoopFlags() {
        const bool set = g_bExitFlag || g_bStopFlag;
        g_bExitFlag = g_bStopFlag = false;
        return set;
    }
    /// Asks the host now and then whether the user wants out, by the work that has been done (objects/Work.h). True
    /// when the run has to end.
    [[nodiscard]] bool IsInterrupted(std::int64_t steps = 1) { return (g_nWorkLeft -= steps) <= 0 && PollHost(); }
    /// The value of a name on the dictionary stack, from the top; null when no dictionary has it.
    [[nodiscard]] const CElement* LookUp(const CName* name) const {
        const CDictNode* node = m_DictStack.Find(name);
        return node ? node->GetValue() : nullptr;
    }
    [[nodiscard]] CDictionary* TopDict() const { return static_cast<CDictionary*>(m_DictStack.Top()); }

    /// Reads over the encoded data of a filter, to behind its end mark. PSERR_IO, PSERR_UNSUPPORTED.
    [[nodiscard]] int SkipFilterData(const CFilterElement* filter);

    // Graphics; defined in graphics/.
    [[nodiscard]] CGraphState* GetCurrentGState() const;
    /// Pushes a copy of the current state on m_GStateStack, as gsave does.
    void PushGState();
    /// Pops the top state; the last one stays. A state that no program can reach is destroyed.
    void PopGState();
    /// What the constructor calls: pushes the first state, with every default.
    void CreateFirstGState();
    /// g1 g2  copy  g2: gives the upper of two state objects on the operand stack a new body with the contents of the
    /// lower. The types have been tested.
    [[nodiscard]] int CopyGState();
    /// Pops n pairs into out, in the order in which they were pushed. PSERR_STACKUNDERFLOW, PSERR_TYPECHECK with
    /// nothing popped.
    [[nodiscard]] int PopCoords(int n, double* out);
    void NewPath();
    /// The last point of the path in host units; 0 on an empty path.
    [[nodiscard]] int GetLastPointHost(point_2d& point) const;
    /// The current point in user space; 0 on an empty path, with point at (0, 0) in user space.
    [[nodiscard]] int GetCurrentPoint(point_2d& point) const;
    /// Maps points from host units to user space, in place.
    void HostToUser(int n, point_2d* points) const;
    /// Adds a curve of n points in host units to the path, joined by a line where it starts farther from the last
    /// point than the join tolerance.
    void AppendCurve(const point_2d* points, int n);
    /// Hands the path to the writer and empties it.
    void PaintPath();
    void UpdateColor();
    void AddRectPath(float x, float y, float width, float height);

    std::int32_t m_nHostVersion;
    point_2d m_ptScratch[3];  ///< points on their way to the path store
    double m_dCoord[6] = {};  ///< popped coordinates
    float m_fCharWX = 0;      ///< advance of the last glyph, glyph space
    float m_fCharWY = 0;
    float m_fCacheArgs[8] = {};  ///< operands of the glyph metric operators; nothing reads them
    std::int32_t m_nCacheSize = 500000;
    std::int32_t m_nCacheLower = 500;
    std::int32_t m_nCacheUpper = 5000;
    CElementStack m_OperandStack;
    CDictStack m_DictStack;       ///< systemdict, globaldict, userdict at the start; never below these
    CElementStack m_GStateStack;  ///< CGStateElements; never empty once constructed
    TypedPtr<CDictionary> m_pFontDirectory;
    TypedPtr<CDictionary> m_pSharedFontDirectory;
    TypedPtr<CDictionary> m_pDefaultFont;
    TypedPtr<CDictionary> m_pCMapDirectory;
    TypedPtr<CFileElement> m_pCurrentFile;
    TypedPtr<CDictionary> m_pInternalDict;
    TypedPtr<CDictionary> m_pPageDevice;
    std::minstd_rand m_Random{1};  ///< what `rand` draws from, so that a file draws the same on every run
    tagRunReport m_Report;         ///< what the main window is told when the run ends
    std::unordered_set<const CName*> m_FontsLeftOut;  ///< those that the report names
    std::int64_t m_nSectionStart = 0;                 ///< of the PostScript section in the input file
    bool m_bPacking = false;                          ///< procedures are built as packed arrays
    std::int32_t m_nRandSeed = 0;
    std::int32_t m_nObjectFormat = 2;
    float m_fMergeTolerance = 0.01f;   ///< shortest straight segment, millimetres
    float m_fCloseTolerance = 0.001f;  ///< shortest closing segment, millimetres
    bool m_bFillOutline = true;
    std::int32_t m_nError = PSERR_NONE;
    /// At which entry the code of a procedure is made; 0 for never. Nothing comes out differently.
    int m_nCompileAtEntry = 2;
    /// A call found no room on the thread's stack. How deep that is depends on the build, and so may what comes out.
    bool m_bStackUsedUp = false;

private:
    class CurrentFileScope;

    void BuildDefaultFont();
    void BuildSystemDict();
    void BuildInternalDict();
    static void BuildErrorDict(CDictionary& dict);
    static void BuildErrorInfoDict(CDictionary& dict);

    [[nodiscard, gnu::cold]] int RefuseOperator(const CName* name);
    [[nodiscard]] bool IsProgramNext();
    [[nodiscard]] int ExecuteToken(const CName* name);
    /// Runs one element of a procedure. ran tells whether the flags of `exit` and `stop` are looked at behind it.
    [[nodiscard]] int RunElement(const CElement& e, bool& ran);
    /// Acts by what a name means: the node that it was found in, or null.
    [[nodiscard]] int ExecuteFound(const CName* name, const CDictNode* node);
    /// Runs the code of a body from `at` to `end`, or until it goes. 1 to go on at `at`, `end` when all has run;
    /// 0 when `exit` or `stop` ended the procedure; -1.
    [[nodiscard]] int RunCode(const CArrayBody& body, size_t& at, size_t end);
    /// What comes behind each name or operator: 1 to go on, 0 when a flag of `exit` or `stop` is up, -1.
    [[nodiscard]] int AfterStep();
    /// Tries procedures of a body and the operator behind them, before `end`, in one: 1 done, 0 nothing done, -1.
    [[nodiscard]] int RunTogether(const CArrayBody& body, size_t at, size_t end);
    /// What an element comes to by itself.
    [[nodiscard]] Step StepOf(const CElement& e) const;
    /// Makes the code of a body; without memory for it there is none.
    void Compile(CArrayBody& body) const;
    /// The name of the operator that a step runs; null for any other step.
    [[nodiscard]] const CName* OperatorOf(const Step& step) const {
        if (step.kind == StepKind::op) return step.name;
        if (step.kind != StepKind::name && step.kind != StepKind::nameObject) return nullptr;
        const CDictNode* node = m_DictStack.Find(step.name);
        const auto* op = node ? As<COperatorElement>(&node->Peek()) : nullptr;
        return op ? op->m_pName : nullptr;
    }
    /// Whether a step of a body's code is what its element comes to, as it must be.
    [[nodiscard]] bool IsStepOf(const Step& step, const CElement& e) const;
    [[nodiscard]] bool PollHost();
    /// Whether the thread's stack has room for one more nested call.
    [[nodiscard]] bool HasRoomForCall() noexcept {
        return static_cast<const char*>(__builtin_frame_address(0)) > m_pStackFloor || RefuseCall();
    }
    [[nodiscard, gnu::cold]] bool RefuseCall() noexcept {
        m_bStackUsedUp = true;
        return false;
    }
    void HandleExhaustedMemory();

    const CName* m_pFontDirectoryName;
    CBodyRef<CFileBody> m_Input;  ///< of the import, whatever the current file is
    bool m_bUserBreak = false;
    const char* m_pErrorName = nullptr;   ///< of the last failure, where it isn't that of the code
    const char* m_pStackFloor = nullptr;  ///< lowest address that nested calls may reach
};
