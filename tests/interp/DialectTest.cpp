// Each question that a dialect is asked, with a dialect that answers otherwise than the plain one; and what a run
// reports of its failure.
#include "interp/Dialect.h"

#include "graphics/GraphState.h"
#include "interp/FilterEPS.h"
#include "operators/ResourceOperators.h"
#include "support/Program.h"

namespace {

int OpSeven(CFilterEPS& m) {
    m.PushInt(7);
    return 1;
}

int OpLeave(CFilterEPS&) { return -1; }

constexpr OpRow kFirstRows[] = {
    {"add", OpSeven}, {"vmstatus", OpSeven}, {"notintheplain", OpSeven}, {"leave", OpLeave}};
constexpr OpRow kSecondRows[] = {{"add", OpNothing}, {"findfont", OpSeven}};
constexpr OpTable kFirst{kFirstRows};
constexpr OpTable kSecond{kSecondRows};
constexpr const OpTable* kTables[] = {&kFirst, &kSecond};

int DefineShelf(CFilterEPS& m, const CName* key, const CElement& instance) {
    m.TopDict()->Put(key, instance.Clone());
    return 1;
}
constexpr ResourceCategory kShelf{"Shelf", DefineShelf, nullptr, nullptr, nullptr};

/// Answers every question otherwise than the plain dialect.
class TestDialect final : public CDialect {
public:
    std::span<const OpTable* const> OperatorTables() const override { return kTables; }
    void FinishStartup(CFilterEPS& m) override { m.TopDict()->Put("started", NewInt(1)); }
    int FindProgram(CFilterEPS& m) override { return m.m_pCurrentFile->SetPosition(3); }
    int ScanFile(CFilterEPS& m) override {
        const int result = CDialect::ScanFile(m);
        return result == 1 ? 1 : m.m_Report.failure ? -1 : 0;
    }
    int EndFailedRun(CFilterEPS& m) override {
        m.m_nError = PSERR_FORMAT;
        return -1;
    }
    int ScanBuffer(CFilterEPS& m, std::string_view text) override {
        return CDialect::ScanBuffer(m, text == "inner" ? "11" : text);
    }
    int ScanToken(CFilterEPS&, const CStringElement&, ElementPtr& object, std::int32_t& consumed) override {
        object = NewInt(5);
        consumed = 1;
        return 1;
    }
    int ParseProcedure(CFilterEPS& m, std::string_view text, ElementPtr& procedure) override {
        return CDialect::ParseProcedure(m, text == "empty" ? "" : text, procedure);
    }
    TokenNumber NumberOf(std::string_view token) const override {
        return token == "1-2" ? TokenNumber{NumberClass::integer, true, 9} : CDialect::NumberOf(token);
    }
    void Pack(CArrayElement& array) const override { array.SetAt(0, NewInt(3)); }
    int OnError(CFilterEPS& m, const CName* running) override {
        if (m.m_Report.failure->strError == "unmatchedmark") return -1;
        m.Push(MakeElement<CSimpElement>(running ? running->Text() : "the scanner"));
        m.m_Report.failure.reset();
        m.m_nError = PSERR_NONE;
        return 1;
    }
    bool TakeExit(CFilterEPS&) override { return true; }
    int ExecuteOther(CFilterEPS& m, const CElement& e) override {
        if (e.m_nType != ET_FILE) return 0;
        m.PushInt(6);
        return 1;
    }
    bool RunsFiles() const override { return true; }
    bool HasFilter(std::string_view name) const override { return name == "Sieve"; }
    ElementPtr MakeFilter(CFilterEPS&, std::string_view, ElementPtr source, TypedPtr<CDictionary>) override {
        return source;
    }
    int SetColorSpace(CFilterEPS& m, const CName* family, ElementPtr) override {
        m.Push(MakeElement<CSimpElement>(family->Text()));
        return 1;
    }
    ElementPtr FindUndefinedFont(CFilterEPS& m, const CName* key) override {
        auto font = m.m_pDefaultFont->DeepCopy();
        static_cast<CDictionary&>(*font).Put("FontName", MakeElement<CSimpElement>(key->Text()));
        return font;
    }
    const ResourceCategory* FindCategory(const CName*) const override { return &kShelf; }
    std::int32_t PathLimit() const override { return 3; }
    std::int32_t SaveLimit() const override { return 1; }
};

constexpr RunSettings kSettings{.dialect = MakeDialect<TestDialect>};

TEST(DialectTest, IsAskedForWhatOperatorsKnow) {
    struct Case {
        const char* name;
        const char* program;
        const char* stack;
    };
    for (const Case& c : {
             Case{"a row before the chain", "add vmstatus", "7 7"},
             Case{"a name of its own", "notintheplain systemdict /notintheplain known", "7 true"},
             Case{"in the place of an entry made by hand", "findfont", "7"},
             Case{"the chain behind it", "1 2 sub", "-1"},
             Case{"the start-up dictionaries", "userdict /started get", "1"},
             Case{"texts", "(inner) cvx exec", "11"},
             Case{"tokens", "(abc) token", "(bc) 5 true"},
             Case{"procedures", "{empty} {full}", "{} {full}"},
             Case{"numbers", "1-2 2-1 2 (1-2) cvi", "9 2 2 5"},
             Case{"errors of operators", "pop 1 (a) sub 2", "/pop 1 (a) /sub 2"},
             Case{"errors of names", "1 nosuch 2", "1 /nosuch 2"},
             Case{"errors in procedures", "{pop 1} exec {nosuch 2} stopped", "/pop 1 /nosuch 2 false"},
             Case{"errors of the scanner", "1 //nosuch 1#1 > 2", "1 /nosuch /the scanner /the scanner 2"},
             Case{"what leaves a loop", "3 {1 leave 2} repeat 8 [1 2] {leave} forall", "1 8 1"},
             Case{"what leaves pathforall", "0 0 moveto 9 9 lineto {leave} dup dup dup pathforall", "0.0 0.0"},
             Case{"objects that run", "(%lineedit) (r) file cvx dup /f exch def exec f", "6 6"},
             Case{"filters", "(data) /Sieve filter (data) /ASCIIHexDecode filter", "(data) (data) /filter"},
             Case{"colour spaces", "/DeviceGray setcolorspace [/Odd 1] setcolorspace", "/DeviceGray /Odd"},
             Case{"fonts found", "/Any .findfontop /FontName get", "/Any"},
             Case{"fonts selected", "/Other 1 selectfont currentfont /FontName get", "/Other"},
             Case{"resources", "/a 4 /Font defineresource a /b /Font findresource", "4 4 /findresource"},
             Case{"packed arrays", "7 1 packedarray 0 get true setpacking {8} 0 get", "3 3"},
             Case{"the number of saves", "save save exch pop", "/save"},
         }) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.program);
        const RunResult result = RunText(c.program, kSettings);
        EXPECT_EQ(result.stack, c.stack);
        EXPECT_EQ(result.error, PSERR_NONE);
    }
}

TEST(DialectTest, IsAskedForTheLimitOfPaths) {
    EXPECT_EQ(Drawn("0 0 moveto 72 0 lineto 144 0 lineto 216 0 lineto stroke", kSettings),
              "#000000 open L 0,0 25.4,0 L 25.4,0 50.8,0");
}

TEST(DialectTest, IsAskedForTheRunOfAFile) {
    const RunResult drawn = RunAsFile("abc 0 0 moveto 72 0 lineto stroke quit\n", kSettings);
    EXPECT_EQ(drawn.entities.size(), 1u);
    EXPECT_EQ(drawn.result, 1);
    const RunResult left = RunAsFile("abc leave\n", kSettings);
    EXPECT_EQ(left.result, 0);
    EXPECT_TRUE(left.boxes.empty());
    const RunResult failed = RunAsFile("abc ]\n", kSettings);
    EXPECT_EQ(failed.error, PSERR_FORMAT) << "of EndFailedRun";
    EXPECT_EQ(failed.boxes.size(), 1u);
}

TEST(DialectTest, FailureTellsWhatWasRunningAndWhere) {
    struct Case {
        const char* program;
        const char* error;
        const char* running;
        int line;
        int offset;
    };
    for (const Case& c : {
             Case{"%!PS\n1 (a) add\n", "typecheck", "add", 2, 11},
             Case{"%!PS\n\n/f {1 {pop pop} if}def true f\n", "typecheck", "if", 3, 34},
             Case{"%!PS\n{nosuch} exec\n", "undefined", "nosuch", 2, 14},
             Case{"%!PS\n/f {f} def f\n", "execstackoverflow", "f", 2, 16},
             Case{"%!PS\n]\n", "unmatchedmark", "]", 2, 5},
             Case{"%!PS\n//nosuch\n", "undefined", "nosuch", 2, 5},
             Case{"%!PS\n37#1\n", "syntaxerror", "", 2, 5},
             Case{"%!PS\nsave save save save save\n", "limitcheck", "save", 2, 25},
             Case{"%!PS\nquit\n", "unsupported", "quit", 2, 5},
             Case{"no header", "format", "", 1, 0},
         }) {
        SCOPED_TRACE(c.program);
        const RunResult result = RunAsFile(c.program);
        ASSERT_TRUE(result.report.failure);
        EXPECT_EQ(result.report.failure->nError, result.error);
        EXPECT_EQ(result.report.failure->strError, c.error);
        EXPECT_EQ(result.report.failure->strOperator, c.running);
        EXPECT_EQ(result.report.failure->nLine, c.line);
        EXPECT_EQ(result.report.failure->nOffset, c.offset);
    }
    EXPECT_FALSE(RunAsFile("%!PS\n/CIDInit /ProcSet findresource pop {stop} stopped\n").report.failure);
}

}  // namespace
