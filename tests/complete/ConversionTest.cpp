// Numbers as texts in the complete dialect.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

TEST(CompleteConversionTest, RealsAsTexts) {
    CheckStacks(
        {
            {"whole", "2.0 9 string cvs", "(2.0)"},
            {"a part", "-0.25 9 string cvs", "(-0.25)"},
            {"six digits", "1 3 div 9 string cvs", "(0.333333)"},
            {"large", "1e10 9 string cvs", "(1e+10)"},
            {"integers stay", "2 9 string cvs", "(2)"},
            {"with a radix", "2.0 10 9 string cvrs 10.0 16 9 string cvrs", "(2.0) (A)"},
            {"no room", "{2.5 2 string cvs} stopped $error /errorname get 4 1 roll pop pop pop", "/rangecheck"},
            {"no number", "/abc 9 string cvs true 9 string cvs", "(abc) (true)"},
            {"no string", "{2.0 5 cvs} stopped", "2.0 5 true"},
            {"nothing", "{cvs} stopped", "true"},
        },
        kComplete);
}

}  // namespace
