// The interpreter of Type 1 charstrings. Hints are passed over. OtherSubrs isn't run: flex and hint replacement, the
// numbers 0 to 3, do what they are published to do, and any other number gives its arguments back.
#include "complete/text/CharStrings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "complete/text/Encodings.h"
#include "complete/text/TypeOneCipher.h"

namespace text {

namespace {

using geometry::Point;

constexpr std::size_t MAX_OPERANDS = 24;  // Type 1 Font Format, 6.4
constexpr int MAX_CALL_DEPTH = 10;        // likewise
constexpr std::size_t MAX_GLYPH_BYTES = 500'000;
constexpr std::size_t MAX_GLYPH_POINTS = 100'000;
constexpr std::size_t MAX_SUBRS = 65536;  // of numbers that an implementation has room for (PLRM, B.1)
constexpr std::size_t FLEX_POINTS = 7;
constexpr double MAX_QUOTIENT = 0x1p32;  // more than any number of a charstring

/// The bytes of a charstring, decrypted as they are taken (Type 1 Font Format, 7.3).
class CharStringReader {
public:
    CharStringReader(std::string_view bytes, bool isEncrypted) noexcept : m_Bytes(bytes), m_bEncrypted(isEncrypted) {}

    [[nodiscard]] bool IsAtEnd() const noexcept { return m_nAt == m_Bytes.size(); }
    /// The next byte; 0 at the end.
    std::uint8_t Take() noexcept {
        if (IsAtEnd()) return 0;
        const auto cipher = static_cast<std::uint8_t>(m_Bytes[m_nAt++]);
        return m_bEncrypted ? m_Cipher.Decrypt(cipher) : cipher;
    }

private:
    std::string_view m_Bytes;
    std::size_t m_nAt = 0;
    TypeOneCipher m_Cipher{TypeOneCipher::CHARSTRING_KEY};
    bool m_bEncrypted;
};

/// One glyph, and the two that a composite glyph is made of.
class CharStringRun {
public:
    explicit CharStringRun(const Type1Program& program) noexcept : m_Program(program) {}

    /// False when the charstring is faulty.
    bool RunGlyph(std::string_view charString) {
        m_bEnded = false;
        m_nOperands = 0;
        m_Results.clear();
        m_bFlex = false;
        if (!Run(charString)) return false;
        EndContour();
        return true;
    }
    [[nodiscard]] Type1Glyph& Glyph() noexcept { return m_Glyph; }

private:
    /// A command: how many operands it needs, and what it does with them, which are at args. Commands with `keeps` see
    /// to the operand stack themselves; the others leave it empty.
    struct Row {
        std::uint8_t operands = 0;
        bool (CharStringRun::*run)(const double* args) = nullptr;
        bool keeps = false;
    };
    struct Tables {
        std::array<Row, 32> commands;
        std::array<Row, 34> escapes;  ///< behind the byte 12
    };
    static const Tables kTables;
    static constexpr std::uint8_t ESCAPE = 12;
    static constexpr std::uint8_t FIRST_NUMBER = 32;

    bool Run(std::string_view charString);
    bool RunCommand(const Row& row);
    [[nodiscard]] static double TakeNumber(std::uint8_t first, CharStringReader& bytes) noexcept;

    bool Push(double value) noexcept {
        if (m_nOperands == MAX_OPERANDS) return false;
        m_Operands[m_nOperands++] = value;
        return true;
    }
    /// Takes the topmost operand, which is there, as an index below a limit; nothing for another number.
    std::optional<std::size_t> TakeIndex(std::size_t limit) noexcept {
        const double value = m_Operands[--m_nOperands];
        if (!(value >= 0 && value < static_cast<double>(limit))) return std::nullopt;
        return static_cast<std::size_t>(value);
    }

    // The outline. A contour begins with its first line or curve.
    void CloseContour() {
        if (m_bOpen) m_Glyph.outline.Close();
        m_bOpen = false;
    }
    /// Ends a contour that the charstring has not closed.
    void EndContour() {
        if (m_Program.closesContours) CloseContour();
        m_bOpen = false;
    }
    bool OpenContour() {
        if (!m_bOpen) m_Glyph.outline.MoveTo(m_Current);
        m_bOpen = true;
        return m_Glyph.outline.Points().size() < MAX_GLYPH_POINTS;
    }
    bool MoveBy(Point by) {
        m_Current = m_Current + by;
        if (!m_bFlex) {
            EndContour();
            return true;
        }
        if (m_nFlexPoints == FLEX_POINTS) return false;
        m_FlexPoints[m_nFlexPoints++] = m_Current;
        return true;
    }
    bool LineBy(Point by) {
        if (!OpenContour()) return false;
        m_Glyph.outline.LineTo(m_Current = m_Current + by);
        return true;
    }
    bool CurveBy(Point first, Point second, Point end) {
        if (!OpenContour()) return false;
        const Point p1 = m_Current + first;
        const Point p2 = p1 + second;
        m_Current = p2 + end;
        m_Glyph.outline.CurveTo(p1, p2, m_Current);
        return true;
    }
    bool SetMetrics(Point bearing, Point width) noexcept {
        m_Current = m_Origin + bearing;
        if (!m_bPart) m_Glyph.metrics = {width, bearing};
        return true;
    }

    // Commands.
    bool Hint(const double*) noexcept { return true; }
    bool VMoveTo(const double* a) { return MoveBy({0, a[0]}); }
    bool RLineTo(const double* a) { return LineBy({a[0], a[1]}); }
    bool HLineTo(const double* a) { return LineBy({a[0], 0}); }
    bool VLineTo(const double* a) { return LineBy({0, a[0]}); }
    bool RRCurveTo(const double* a) { return CurveBy({a[0], a[1]}, {a[2], a[3]}, {a[4], a[5]}); }
    bool ClosePath(const double*) {
        CloseContour();
        return true;
    }
    bool CallSubr(const double*);
    bool Return(const double*) noexcept {
        m_bReturns = true;
        return true;
    }
    bool HSbw(const double* a) noexcept { return SetMetrics({a[0], 0}, {a[1], 0}); }
    bool EndChar(const double*) noexcept {
        m_bEnded = true;
        return true;
    }
    bool RMoveTo(const double* a) { return MoveBy({a[0], a[1]}); }
    bool HMoveTo(const double* a) { return MoveBy({a[0], 0}); }
    bool VHCurveTo(const double* a) { return CurveBy({0, a[0]}, {a[1], a[2]}, {a[3], 0}); }
    bool HVCurveTo(const double* a) { return CurveBy({a[0], 0}, {a[1], a[2]}, {0, a[3]}); }
    bool Seac(const double* a);
    bool Sbw(const double* a) noexcept { return SetMetrics({a[0], a[1]}, {a[2], a[3]}); }
    bool Div(const double*) noexcept;
    bool CallOtherSubr(const double*);
    bool EndFlex();
    bool Pop(const double*) noexcept {
        if (m_Results.empty()) return false;
        const double result = m_Results.back();
        m_Results.pop_back();
        return Push(result);
    }
    bool SetCurrentPoint(const double* a) noexcept {
        m_Current = m_Origin + Point{a[0], a[1]};
        return true;
    }

    const Type1Program& m_Program;
    Type1Glyph m_Glyph;
    std::array<double, MAX_OPERANDS> m_Operands{};
    std::size_t m_nOperands = 0;
    std::vector<double> m_Results;  ///< of callothersubr: what pop takes is last
    std::array<Point, FLEX_POINTS> m_FlexPoints{};
    std::size_t m_nFlexPoints = 0;
    Point m_Current;
    Point m_Origin;  ///< of the glyph that runs: of a composite's accent, where it is put
    std::size_t m_nBytes = 0;
    int m_nDepth = 0;
    bool m_bOpen = false;  ///< a contour has begun
    bool m_bFlex = false;
    bool m_bReturns = false;
    bool m_bEnded = false;
    bool m_bPart = false;  ///< the glyph that runs is part of a composite
};

constexpr CharStringRun::Tables CharStringRun::kTables = [] {
    using R = CharStringRun;
    Tables t;
    auto& c = t.commands;
    c[1] = {2, &R::Hint};  // hstem
    c[3] = {2, &R::Hint};  // vstem
    c[4] = {1, &R::VMoveTo};
    c[5] = {2, &R::RLineTo};
    c[6] = {1, &R::HLineTo};
    c[7] = {1, &R::VLineTo};
    c[8] = {6, &R::RRCurveTo};
    c[9] = {0, &R::ClosePath};
    c[10] = {1, &R::CallSubr, true};
    c[11] = {0, &R::Return, true};
    c[13] = {2, &R::HSbw};
    c[14] = {0, &R::EndChar};
    c[15] = {0, &R::Hint};  // of fonts older than the published format; it draws nothing
    c[21] = {2, &R::RMoveTo};
    c[22] = {1, &R::HMoveTo};
    c[30] = {4, &R::VHCurveTo};
    c[31] = {4, &R::HVCurveTo};
    auto& e = t.escapes;
    e[0] = {0, &R::Hint};  // dotsection
    e[1] = {6, &R::Hint};  // vstem3
    e[2] = {6, &R::Hint};  // hstem3
    e[6] = {5, &R::Seac};
    e[7] = {4, &R::Sbw};
    e[12] = {2, &R::Div, true};
    e[16] = {2, &R::CallOtherSubr, true};
    e[17] = {0, &R::Pop, true};
    e[33] = {2, &R::SetCurrentPoint};
    return t;
}();

/// Type 1 Font Format, 6.2.
double CharStringRun::TakeNumber(std::uint8_t first, CharStringReader& bytes) noexcept {
    if (first <= 246) return first - 139;
    if (first <= 250) return (first - 247) * 256 + bytes.Take() + 108;
    if (first <= 254) return -(first - 251) * 256 - bytes.Take() - 108;
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i) bits = bits << 8 | bytes.Take();
    return static_cast<std::int32_t>(bits);
}

/// Runs a charstring or subroutine to its end.
bool CharStringRun::Run(std::string_view charString) {
    m_nBytes += charString.size() + 1;
    if (m_nDepth == MAX_CALL_DEPTH || m_nBytes > MAX_GLYPH_BYTES) return false;
    ++m_nDepth;
    CharStringReader bytes(charString, m_Program.lenIV >= 0);
    for (int i = 0; i < m_Program.lenIV && !bytes.IsAtEnd(); ++i) bytes.Take();
    while (!bytes.IsAtEnd() && !m_bReturns && !m_bEnded) {
        const std::uint8_t byte = bytes.Take();
        if (byte >= FIRST_NUMBER) {
            if (!Push(TakeNumber(byte, bytes))) return false;
        } else if (byte != ESCAPE) {
            if (!RunCommand(kTables.commands[byte])) return false;
        } else {
            const std::uint8_t escape = bytes.Take();
            if (escape >= kTables.escapes.size() || !RunCommand(kTables.escapes[escape])) return false;
        }
    }
    m_bReturns = false;
    --m_nDepth;
    return true;
}

bool CharStringRun::RunCommand(const Row& row) {
    if (!row.run || m_nOperands < row.operands) return false;
    if (row.keeps) return (this->*row.run)(nullptr);
    const bool isDone = (this->*row.run)(m_Operands.data());
    m_nOperands = 0;
    return isDone;
}

bool CharStringRun::CallSubr(const double*) {
    const auto number = TakeIndex(MAX_SUBRS);
    if (!number || !m_Program.subr) return false;
    const auto subr = m_Program.subr(*number);
    return subr && Run(*subr);
}

bool CharStringRun::Div(const double*) noexcept {
    const double divisor = m_Operands[--m_nOperands];
    double& quotient = m_Operands[m_nOperands - 1];
    quotient /= divisor;
    return std::abs(quotient) <= MAX_QUOTIENT;
}

/// arg1 ... argn n number  callothersubr
bool CharStringRun::CallOtherSubr(const double*) {
    const double number = m_Operands[--m_nOperands];
    const auto count = TakeIndex(MAX_OPERANDS);
    if (!count || *count > m_nOperands) return false;
    m_Results.clear();
    for (std::size_t i = 0; i < *count; ++i) m_Results.push_back(m_Operands[--m_nOperands]);
    if (number == 0) return EndFlex();
    if (number == 1) {  // the moves up to number 0 are the points of a flex
        m_bFlex = true;
        m_nFlexPoints = 0;
        return OpenContour();
    }
    // The number 2 follows each of these moves. 3 gets the number of the subroutine with the new hints and gives it
    // back.
    return true;
}

/// Two curves through the points of the moves, the first of which is the reference point (Type 1 Font Format, 8.3).
bool CharStringRun::EndFlex() {
    if (!m_bFlex || m_nFlexPoints != FLEX_POINTS || !OpenContour()) return false;
    m_bFlex = false;
    const auto& p = m_FlexPoints;
    m_Glyph.outline.CurveTo(p[1], p[2], p[3]);
    m_Glyph.outline.CurveTo(p[4], p[5], p[6]);
    const Point end = p[6] - m_Origin;
    m_Results = {end.y, end.x};  // for `pop pop setcurrentpoint`
    return true;
}

/// asb adx ady bchar achar  seac: a base glyph, and an accent whose left side bearing asb comes to lie at adx ady from
/// the composite's own (Type 1 Font Format, 6.4).
bool CharStringRun::Seac(const double* a) {
    if (m_bPart) return false;
    m_Glyph.isComposite = true;
    const Point accent{m_Glyph.metrics.bearing.x + a[1] - a[0], a[2]};
    std::optional<std::string_view> parts[2];
    for (int i = 0; i < 2; ++i) {
        const double code = a[3 + i];
        if (!(code >= 0 && code < static_cast<double>(kStandardEncoding.size()))) return false;
        if (m_Program.charString) parts[i] = m_Program.charString(kStandardEncoding[static_cast<std::size_t>(code)]);
    }
    m_Glyph.lacksPart = !parts[0] || !parts[1];
    if (m_Glyph.lacksPart) {
        m_Glyph.outline.Clear();
        m_bOpen = false;
    } else {
        m_bPart = true;
        if (!RunGlyph(*parts[0])) return false;
        m_Origin = accent;
        if (!RunGlyph(*parts[1])) return false;
    }
    m_bEnded = true;
    return true;
}

}  // namespace

std::optional<Type1Glyph> MakeType1Glyph(const Type1Program& program, std::string_view charString) {
    CharStringRun run(program);
    if (!run.RunGlyph(charString)) return std::nullopt;
    return std::move(run.Glyph());
}

}  // namespace text
