// The arithmetic operators. Both kinds of numbers are doubles; the result overwrites the operand that stays
// on the stack, so that nothing here allocates but `rand` and `rrand`.
//
// Departure: an integer result that 32 bits can't hold stays an integer and becomes -2147483648.
// Departure: no function tests its domain; infinities and not-a-numbers are values like any other.
#include "operators/ArithmeticOperators.h"

#include <cmath>
#include <functional>

#include "objects/Angles.h"
#include "operators/TwoNumbers.h"

namespace {

// num1 num2  add sub mul  result             STACKUNDERFLOW TYPECHECK
// num1 num2  div atan exp  real
template <class Function>
void Combine(CNumberElement& a, double b, bool isReal) {
    const double result = Function{}(a.GetReal(), b);
    if (a.IsReal() || isReal) {
        a.SetReal(result);
    } else {
        a.SetInt(TruncateToInt(result));
    }
}

template <double (*Function)(double, double)>
void CombineReal(CNumberElement& a, double b, bool) {
    a.SetReal(Function(a.GetReal(), b));
}

// In 64 bits, -2147483648 by -1 has a result, which then goes the way of every other that is too large.
template <std::int64_t (*Function)(std::int64_t, std::int64_t)>
void Divide(CNumberElement& dividend, std::int32_t divisor) {
    dividend.SetInt(TruncateToInt(static_cast<double>(Function(dividend.GetInt(), divisor))));
}

// num1 num2  idiv mod  int                   STACKUNDERFLOW TYPECHECK; RANGE for a zero divisor
// Departure: real operands are truncated.
template <std::int64_t (*Function)(std::int64_t, std::int64_t)>
int OpDivision(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t divisor = in.Int(0);
    CNumberElement* dividend = in.Number(1);
    in.Require(divisor != 0, PSERR_RANGE);
    if (!in) return -1;
    Divide<Function>(*dividend, divisor);
    m.Drop(1);
    return 1;
}

template <std::int64_t (*Function)(std::int64_t, std::int64_t)>
int OnDivision(CFilterEPS& m, double b, bool) {
    auto* dividend = As<CNumberElement>(m.m_OperandStack.Top());
    const std::int32_t divisor = TruncateToInt(b);
    if (!dividend || divisor == 0) return 0;
    Divide<Function>(*dividend, divisor);
    return 1;
}

// num  abs neg  num                          STACKUNDERFLOW TYPECHECK
template <double (*OfReal)(double), std::int32_t (*OfInt)(std::int32_t)>
int OpSign(CFilterEPS& m) {
    Operands in(m);
    CNumberElement* n = in.Number(0);
    if (!in) return -1;
    if (n->IsReal()) {
        n->SetReal(OfReal(n->GetReal()));
    } else {
        n->SetInt(OfInt(n->GetInt()));
    }
    return 1;
}

// num  ceiling floor round truncate  num     STACKUNDERFLOW TYPECHECK
// The kind stays: an integer is left alone.
template <double (*Function)(double)>
int OpToWhole(CFilterEPS& m) {
    Operands in(m);
    CNumberElement* n = in.Number(0);
    if (!in) return -1;
    if (n->IsReal()) n->SetReal(Function(n->GetReal()));
    return 1;
}

// num  sqrt cos sin ln log  real             STACKUNDERFLOW TYPECHECK
template <double (*Function)(double)>
int OpReal(CFilterEPS& m) {
    Operands in(m);
    CNumberElement* n = in.Number(0);
    if (!in) return -1;
    n->SetReal(Function(n->GetReal()));
    return 1;
}

double RealQuotient(double a, double b) { return a / b; }
double Power(double base, double exponent) { return std::pow(base, exponent); }

/// The angle of the vector (den, num) in degrees, 0 up to but not including 360.
/// Departure: (0, 0) has the angle 0.
double Angle(double num, double den) {
    double degrees = std::atan2(num, den) * 180.0 / SINGLE_PI;  // Departure: 1 1 atan is a little less than 45
    if (degrees < 0.0) degrees += 360.0;
    return degrees >= 360.0 ? 0.0 : degrees;  // a tiny negative angle rounds up to a full turn
}

std::int64_t Quotient(std::int64_t a, std::int64_t b) { return a / b; }
std::int64_t Remainder(std::int64_t a, std::int64_t b) { return a % b; }

/// The 32-bit negation, which leaves -2147483648 as it is.
std::int32_t NegateInt(std::int32_t n) { return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(n)); }
std::int32_t AbsInt(std::int32_t n) { return n < 0 ? NegateInt(n) : n; }
double NegateReal(double f) { return -f; }
double AbsReal(double f) { return std::fabs(f); }

double Ceiling(double f) { return std::ceil(f); }
double Floor(double f) { return std::floor(f); }
double Truncated(double f) { return std::trunc(f); }

/// Rounds in single precision, ties towards positive infinity.
/// Departure: what lies within about 1e-6 of a tie is one.
double Rounded(double f) {
    const auto x = static_cast<float>(f);
    // From here on a single-precision value has no fraction that could be rounded.
    if (!(std::fabs(x) < 2147483648.0f)) return f;
    const std::int32_t toZero = TruncateToInt(static_cast<double>(x));
    const std::int32_t next = x > 0.0f ? toZero + 1 : toZero - 1;
    const float fromZero = std::fabs(x - static_cast<float>(toZero));
    const float fromNext = std::fabs(x - static_cast<float>(next));
    if (std::fabs(static_cast<double>(fromNext - fromZero)) <= 1e-6) return x > 0.0f ? next : toZero;
    return fromNext > fromZero ? toZero : next;
}

double SquareRoot(double f) { return std::sqrt(f); }
double Cosine(double degrees) { return std::cos(degrees * RADIANS_PER_DEGREE_5); }
double Sine(double degrees) { return std::sin(degrees * RADIANS_PER_DEGREE_5); }
double NaturalLog(double f) { return std::log(f); }
double CommonLog(double f) { return std::log10(f); }

// -  rand  int
int OpRand(CFilterEPS& m) {
    m.PushInt(static_cast<std::int32_t>(m.m_Random()));
    return 1;
}

// seed  srand  -                             STACKUNDERFLOW TYPECHECK
int OpSrand(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t seed = in.Int(0);
    if (!in) return -1;
    m.m_Random.seed(static_cast<std::uint32_t>(seed));
    m.m_nRandSeed = seed;
    m.Drop(1);
    return 1;
}

// -  rrand  int
// Departure: the last seed, not the state that the generator has come to.
int OpRrand(CFilterEPS& m) {
    m.PushInt(m.m_nRandSeed);
    return 1;
}

// Place 2 of the chain, compared after kStackCoreOperators.
constexpr OpRow kCoreRows[] = {
    {"add", OpTwoNumbers<Combine<std::plus<>>>, OnSecondNumber<Combine<std::plus<>>>},
    {"sub", OpTwoNumbers<Combine<std::minus<>>>, OnSecondNumber<Combine<std::minus<>>>},
    {"mul", OpTwoNumbers<Combine<std::multiplies<>>>, OnSecondNumber<Combine<std::multiplies<>>>},
    {"div", OpTwoNumbers<CombineReal<RealQuotient>>, OnSecondNumber<CombineReal<RealQuotient>>},
};

// Place 11 of the chain.
constexpr OpRow kMathRows[] = {
    {"idiv", OpDivision<Quotient>, OnDivision<Quotient>},
    {"mod", OpDivision<Remainder>, OnDivision<Remainder>},
    {"abs", OpSign<AbsReal, AbsInt>},
    {"neg", OpSign<NegateReal, NegateInt>},
    {"ceiling", OpToWhole<Ceiling>},
    {"floor", OpToWhole<Floor>},
    {"round", OpToWhole<Rounded>},
    {"truncate", OpToWhole<Truncated>},
    {"sqrt", OpReal<SquareRoot>},
    {"atan", OpTwoNumbers<CombineReal<Angle>>},
    {"cos", OpReal<Cosine>},
    {"sin", OpReal<Sine>},
    {"exp", OpTwoNumbers<CombineReal<Power>>},
    {"ln", OpReal<NaturalLog>},
    {"log", OpReal<CommonLog>},
    {"rand", OpRand},
    {"srand", OpSrand},
    {"rrand", OpRrand},
};

}  // namespace

constinit const OpTable kArithmeticCoreOperators{kCoreRows};
constinit const OpTable kMathOperators{kMathRows};
