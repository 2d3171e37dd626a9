// Every operator of the start-up table with too few, foreign and random operands: whatever the answer, it is an orderly
// one. Operators that are added to the table are walked, too.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>

#include "complete/CompleteDialect.h"
#include "interp/FilterEPS.h"
#include "interp/OperatorNames.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

// One object of each type, hostile ones among them. Files are left out of the random stacks below only as far as they
// are made here: none of these touches the file system.
constexpr const char* OBJECTS[] = {
    "7",
    "-3",
    "2.5",
    "1e300",
    "-2147483648",
    "/name",
    "/name cvx",
    "[1 2 3]",
    "[]",
    "[1 0 0 1 0 0]",
    "{1 2}",
    "{}",
    "(string)",
    "()",
    "<< /a 1 >>",
    "true",
    "mark",
    "/add load",
    "null",
    "currentfile",
    "save",
    "(abc) /ASCIIHexDecode filter",
    "gstate",
    "/A 3 packedarray",
    "{raw 1} 0 get",
    "{raw} 0 get cvx",
    "nan",
    "10 array 0 4 getinterval",
    "<< /FontType 3 /FontMatrix [1 0 0 1 0 0] /Encoding [/a] /BuildGlyph {pop pop} >>",
    "<< /PatternType 1 /PaintType 2 /Matrix [1 0 0 1 0 0] /PaintProc {pop} /Width 8 /Height 1 /BitsPerComponent 8 >>",
    "save [1] exch restore",
};

std::string Make(const char* object) {
    const std::string text = object;
    if (text == "currentfile") return "(%lineedit) (r) file";
    if (text == "nan") return "-1 sqrt";
    if (text == "/A 3 packedarray") return "/A /B /C 3 packedarray";
    return text;
}

/// A machine that many programs run in, one behind the other: what one leaves, the next has to live with.
class Walk {
public:
    explicit Walk(std::unique_ptr<CDialect> dialect) : m_Machine(5, std::move(dialect)) {
        m_Frame.m_bAllowsFiles = false;
        m_Machine.m_pGroup = &m_Group;
    }
    ~Walk() { m_Group.DeleteChildren(); }
    void Run(const std::string& program) {
        SCOPED_TRACE(program);
        m_Machine.m_OperandStack.Clear();
        m_Machine.m_nError = PSERR_NONE;
        m_Machine.Dialect().ForgetError(m_Machine);
        const int result = m_Machine.ScanBuffer(program);
        EXPECT_TRUE(result == 1 || result == -1);
        EXPECT_GE(m_Machine.m_nError, PSERR_NONE);
        EXPECT_LE(m_Machine.m_nError, PSERR_UNSUPPORTED);
        EXPECT_GE(m_Machine.m_GStateStack.GetCount(), 1);
        EXPECT_GE(m_Machine.m_DictStack.GetCount(), 3);
        EXPECT_NE(m_Machine.GetCurrentGState(), nullptr);
    }

private:
    TestFrame m_Frame;
    CEntGroup m_Group;
    CFilterEPS m_Machine;
};

class OperatorWalkTest : public testing::TestWithParam<std::unique_ptr<CDialect> (*)()> {};
INSTANTIATE_TEST_SUITE_P(Dialects, OperatorWalkTest,
                         testing::Values(MakeDialect<CDialect>, MakeDialect<CCompleteDialect>));

/// The operators of the start-up table, and those that the dialect has beside it.
std::vector<std::string> Names(const CDialect& dialect) {
    std::vector<std::string> names(std::begin(g_OperatorNames), std::end(g_OperatorNames));
    for (const OpTable* table : dialect.OperatorTables()) {
        for (const OpRow& row : *table) {
            if (std::find(names.begin(), names.end(), row.name) == names.end()) names.emplace_back(row.name);
        }
    }
    return names;
}

/// Operators that would never come back with these operands are run inside something that ends them.
std::string Call(const std::string& name) { return name == "loop" ? "pop {exit} loop" : name; }

TEST_P(OperatorWalkTest, EmptyStack) {
    for (const std::string& name : Names(*GetParam()())) Walk(GetParam()()).Run(Call(name));
}

TEST_P(OperatorWalkTest, EachTypeInEachPlace) {
    for (const std::string& name : Names(*GetParam()())) {
        Walk walk(GetParam()());
        for (const char* object : OBJECTS) {
            std::string above;
            for (int place = 0; place < 6; ++place, above += "1 ") walk.Run(Make(object) + " " + above + Call(name));
        }
    }
}

TEST_P(OperatorWalkTest, RandomStacks) {
    std::mt19937 random(20261122);
    for (const std::string& name : Names(*GetParam()())) {
        Walk walk(GetParam()());
        for (int round = 0; round < 20; ++round) {
            std::string program;
            for (auto n = random() % 12; n > 0; --n) program += Make(OBJECTS[random() % std::size(OBJECTS)]) + " ";
            walk.Run(program + Call(name));
        }
    }
}

}  // namespace
