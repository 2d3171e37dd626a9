// User paths (PLRM, User Paths). One that is a procedure runs with the operators of systemdict; one that is encoded
// runs them itself. The operand stays on the stack until its path is made.
#include "complete/UserPathOperators.h"

#include <algorithm>
#include <optional>

#include "complete/PaintOperators.h"
#include "complete/PathBridge.h"
#include "complete/PathOperators.h"
#include "complete/geometry/EncodedPath.h"
#include "complete/geometry/FilledArea.h"
#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "graphics/Matrix.h"
#include "graphics/MatrixOperators.h"
#include "graphics/PaintOperators.h"
#include "interp/Operands.h"

namespace {

using geometry::EncodedUserPath;
using geometry::FillRule;

/// Runs the operators of an encoded user path.
int RunEncoded(CFilterEPS& m, const CElement& data, const CStringElement& operators) {
    std::vector<double> numbers;
    if (const ErrorCode error = ReadNumbers(data, numbers); error != PSERR_NONE) return m.Fail(error);
    const std::string bytes = operators.GetText();
    EncodedUserPath path(numbers, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    while (const auto step = path.Next()) {
        if (m.IsInterrupted()) return -1;
        for (const double number : step->operands) m.PushReal(number);
        if (m.ExecuteOperator(step->op->name) != 1) return -1;
    }
    switch (path.Fault()) {
        case geometry::EncodingFault::None:
            return 1;
        case geometry::EncodingFault::TooFewNumbers:
            return m.Fail(PSERR_RANGE);
        default:
            return m.Fail(PSERR_TYPECHECK);
    }
}

/// Appends the user path at a depth of the operand stack to the current path. What it leaves on the stacks goes; what
/// stood there must stay. PSERR_STACKUNDERFLOW, PSERR_TYPECHECK, PSERR_RANGE.
int RunUserPath(CFilterEPS& m, int depth) {
    Operands in(m);
    const CArrayElement* operand = in.AnyArray(depth);
    if (!in) return -1;
    const ElementPtr kept = operand->Clone();
    const auto& path = static_cast<const CArrayElement&>(*kept);
    const int operands = m.m_OperandStack.GetCount();
    const int dicts = m.m_DictStack.GetCount();
    int result = -1;
    const CElement* data = path.GetAt(0);
    const auto* operators = path.GetLength() == 2 ? As<CStringElement>(path.GetAt(1)) : nullptr;
    if (operators && data && (data->IsArrayKind() || data->m_nType == ET_STRING)) {
        result = RunEncoded(m, *data, *operators);
    } else {
        m.m_DictStack.PushCopy(*m.m_DictStack.Bottom());
        result = m.ExecuteProcedure(&path);
        while (m.m_DictStack.GetCount() > dicts) m.m_DictStack.Pop();
    }
    if (result != 1) return -1;
    if (m.m_OperandStack.GetCount() < operands) return m.Fail(PSERR_STACKUNDERFLOW);
    m.Drop(m.m_OperandStack.GetCount() - operands);
    return 1;
}

/// A user path, and a matrix above it if there is one.
class UserPathOperands {
public:
    /// Reads the operands; they stay.
    explicit UserPathOperands(CFilterEPS& m) {
        const auto* top = As<CArrayElement>(m.m_OperandStack.Top());
        m_bMatrix = top && top->GetLength() == 6 && ReadMatrix(*top, m_Matrix) == PSERR_NONE;
        Operands in(m);
        in.AnyArray(Depth());
        m_bOk = static_cast<bool>(in);
    }
    [[nodiscard]] explicit operator bool() const noexcept { return m_bOk; }
    [[nodiscard]] int Depth() const noexcept { return m_bMatrix ? 1 : 0; }
    [[nodiscard]] int Count() const noexcept { return Depth() + 1; }
    /// Makes the path the current one, of a state of the caller's.
    [[nodiscard]] int MakePath(CFilterEPS& m) const {
        m.NewPath();
        return RunUserPath(m, Depth());
    }
    /// The map of user space to host units, with the matrix in front of the CTM: what the line is measured in.
    void LineToHost(const CFilterEPS& m, double map[9]) const {
        UserToHost(m, map);
        if (!m_bMatrix) return;
        double matrix[9];
        MatFromArray6(m_Matrix, matrix);
        MatConcat(map, matrix);
    }

private:
    double m_Matrix[6] = {};
    bool m_bMatrix = false;
    bool m_bOk = false;
};

// userpath  uappend  -                       stackunderflow typecheck rangecheck
int OpUappend(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    if (RunUserPath(m, 0) != 1) return -1;
    m.Drop(1);
    return 1;
}

/// Paints a user path in a copy of the graphics state.
template <int (*PaintPathOf)(CFilterEPS&)>
int OpPaintUserPath(CFilterEPS& m) {
    const UserPathOperands operands(m);
    if (!operands) return -1;
    const CGStateScope scope(m);
    if (operands.MakePath(m) != 1) return -1;
    m.Drop(operands.Count());
    return PaintPathOf(m);
}

// userpath [matrix]  ustrokepath  -          stackunderflow typecheck rangecheck limitcheck
int OpUstrokepath(CFilterEPS& m) {
    const UserPathOperands operands(m);
    if (!operands || operands.MakePath(m) != 1) return -1;
    double lineToHost[9];
    operands.LineToHost(m, lineToHost);
    if (StrokePath(m, lineToHost) != 1) return -1;
    m.Drop(operands.Count());
    return 1;
}

// bool  upath  userpath                      stackunderflow typecheck nocurrentpoint
int OpUpath(CFilterEPS& m) {
    Operands in(m);
    const bool cached = in.Bool(0);
    if (!in) return -1;
    const geometry::Path path = SeePath(m);
    float box[4];
    if (!FindUserBox(m, path, box)) return m.Fail(PSERR_NOCURRENTPOINT);
    m.Drop(1);
    std::vector<ElementPtr> body;
    const auto addName = [&body](std::string_view name) {
        auto element = MakeElement<CSimpElement>(name);
        element->m_bExec = true;
        body.push_back(std::move(element));
    };
    if (cached) addName("ucache");
    for (const float side : box) body.push_back(NewReal(side));
    addName("setbbox");
    path.Walk([&](const geometry::Segment& segment) {
        constexpr std::string_view names[] = {"moveto", "lineto", "curveto", "closepath"};
        for (std::size_t i = 0; i < geometry::CountPoints(segment.op); ++i) {
            point_2d point{static_cast<float>(segment.p[i].x), static_cast<float>(segment.p[i].y)};
            m.HostToUser(1, &point);
            body.push_back(NewReal(point.x));
            body.push_back(NewReal(point.y));
        }
        addName(names[static_cast<std::size_t>(segment.op)]);
    });
    auto userPath = MakeElement<CArrayElement>(std::move(body));
    userPath->m_bExec = true;
    m.Push(std::move(userPath));
    return 1;
}

// Insideness

/// x y or a user path: where an insideness test looks.
class ApertureOperands {
public:
    /// Reads the operands whose topmost one stands so deep; they stay.
    [[nodiscard]] int Read(CFilterEPS& m, int depth) {
        Operands in(m);
        const CElement* top = in.OneOf(depth, {ET_NUMBER, ET_ARRAY, ET_PACKEDARRAY});
        if (!in) return -1;
        m_nCount = top->m_nType == ET_NUMBER ? 2 : 1;
        if (m_nCount == 2) {
            double point[2] = {in.Real(depth + 1), in.Real(depth)};
            if (!in) return -1;
            double map[9];
            UserToHost(m, map);
            MatTransform(1, point, map);
            m_Point = {point[0], point[1]};
            return 1;
        }
        const CGStateScope scope(m);
        m.NewPath();
        if (RunUserPath(m, depth) != 1) return -1;
        m_Path = ToGeometry(m.GetCurrentGState()->m_Path);
        return 1;
    }
    [[nodiscard]] int Count() const noexcept { return m_nCount; }
    [[nodiscard]] bool IsWithin(const geometry::Path& path, FillRule rule, double tolerance) const {
        return m_Path ? IsInside(path, rule, *m_Path, tolerance) : IsInside(path, rule, m_Point, tolerance);
    }

private:
    int m_nCount = 0;
    geometry::Point m_Point;
    std::optional<geometry::Path> m_Path;
};

int PushInside(CFilterEPS& m, int operands, const ApertureOperands& aperture, FillRule rule) {
    const bool inside = aperture.IsWithin(ToGeometry(m.GetCurrentGState()->m_Path), rule, Flatness(m));
    m.Drop(operands);
    m.PushBool(inside);
    return 1;
}

// x y | userpath  infill  bool               stackunderflow typecheck rangecheck
// x y | userpath  ineofill  bool
template <FillRule Rule>
int OpInfill(CFilterEPS& m) {
    ApertureOperands aperture;
    if (aperture.Read(m, 0) != 1) return -1;
    return PushInside(m, aperture.Count(), aperture, Rule);
}

// x y | userpath1 userpath2  inufill  bool   stackunderflow typecheck rangecheck
// x y | userpath1 userpath2  inueofill  bool
template <FillRule Rule>
int OpInufill(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    ApertureOperands aperture;
    if (aperture.Read(m, 1) != 1) return -1;
    const CGStateScope scope(m);
    m.NewPath();
    if (RunUserPath(m, 0) != 1) return -1;
    return PushInside(m, aperture.Count() + 1, aperture, Rule);
}

// x y | userpath  instroke  bool             stackunderflow typecheck rangecheck limitcheck
int OpInstroke(CFilterEPS& m) {
    ApertureOperands aperture;
    if (aperture.Read(m, 0) != 1) return -1;
    const CGStateScope scope(m);
    if (m.ExecuteOperator("strokepath") != 1) return -1;
    return PushInside(m, aperture.Count(), aperture, FillRule::NonZero);
}

// x y | userpath1 userpath2 [matrix]  inustroke  bool     stackunderflow typecheck rangecheck limitcheck
int OpInustroke(CFilterEPS& m) {
    const UserPathOperands operands(m);
    if (!operands) return -1;
    ApertureOperands aperture;
    if (aperture.Read(m, operands.Count()) != 1) return -1;
    const CGStateScope scope(m);
    if (operands.MakePath(m) != 1) return -1;
    double lineToHost[9];
    operands.LineToHost(m, lineToHost);
    if (StrokePath(m, lineToHost) != 1) return -1;
    return PushInside(m, operands.Count() + aperture.Count(), aperture, FillRule::NonZero);
}

constexpr OpRow kRows[] = {
    {"uappend", OpUappend},
    {"upath", OpUpath},
    {"ucache", OpNothing},
    {"ufill", OpPaintUserPath<PaintArea>},
    {"ueofill", OpPaintUserPath<PaintArea>},
    {"ustroke", OpPaintUserPath<PaintLines>},
    {"ustrokepath", OpUstrokepath},
    {"infill", OpInfill<FillRule::NonZero>},
    {"ineofill", OpInfill<FillRule::EvenOdd>},
    {"inufill", OpInufill<FillRule::NonZero>},
    {"inueofill", OpInufill<FillRule::EvenOdd>},
    {"instroke", OpInstroke},
    {"inustroke", OpInustroke},
};

}  // namespace

constinit const OpTable kUserPathOperators{kRows};
