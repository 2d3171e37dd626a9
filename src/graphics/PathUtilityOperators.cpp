// The rest of the path operators. Departure: nothing is clipped, flattened, reversed or outlined, so that the
// operators of these kinds take their operands and leave the path alone.
#include "graphics/PathUtilityOperators.h"

#include "graphics/GraphState.h"
#include "graphics/PaintOperators.h"
#include "interp/Operands.h"

namespace {

// userpath [matrix]  ustrokepath  -          STACKUNDERFLOW TYPECHECK
int OpUstrokepath(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    if (Take<CArrayElement>(m)->GetLength() != 6) return 1;
    in.AnyArray(0);
    if (!in) return -1;
    m.Drop(1);
    return 1;
}

// string bool  charpath  -                   STACKUNDERFLOW
int OpCharpath(CFilterEPS& m) {
    Operands in(m);
    in.Any(1);
    if (!in) return -1;
    m.Drop(2);
    return 1;
}

/// systemdict on top of the dictionary stack for a scope, which ends with as many dictionaries as it began
/// with.
class SystemDictScope {
public:
    explicit SystemDictScope(CDictStack& dicts) : m_Dicts(dicts), m_nDepth(dicts.GetCount()) {
        m_Dicts.PushCopy(*m_Dicts.Bottom());
    }
    SystemDictScope(const SystemDictScope&) = delete;
    SystemDictScope& operator=(const SystemDictScope&) = delete;
    ~SystemDictScope() {
        while (m_Dicts.GetCount() > m_nDepth) m_Dicts.Pop();
    }

private:
    CDictStack& m_Dicts;
    int m_nDepth;
};

// userpath  uappend  -                       STACKUNDERFLOW TYPECHECK; UNSUPPORTED for an encoded path
int OpUappend(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    const auto path = Take<CArrayElement>(m);
    if (path->GetLength() == 2) return m.Fail(PSERR_UNSUPPORTED);
    const SystemDictScope scope(m.m_DictStack);
    return m.ExecuteProcedure(path.get());
}

// -  pathbbox  llx lly urx ury               SYNTAX
// Departure: the corners of the box in host units are mapped back each by itself.
int OpPathbbox(CFilterEPS& m) {
    point_2d box[2];
    if (m.GetCurrentGState()->GetPathBounds(box) == 0) return m.Fail(PSERR_SYNTAX);
    m.HostToUser(2, box);
    for (const point_2d& corner : box) {
        m.PushReal(corner.x);
        m.PushReal(corner.y);
    }
    return 1;
}

/// Pushes the points of n records from an index on, in user space. False when they are not all curve records.
bool PushCurvePoints(CFilterEPS& m, std::int32_t index, int n) {
    point_2d points[3];
    for (int i = 0; i < n; ++i) {
        tagPLPoint record;
        if (m.GetCurrentGState()->GetPathRecord(index + i, record) == 0 || record.nOp != PATH_CURVE) return false;
        points[i] = record.pt;
    }
    m.HostToUser(n, points);
    for (int i = 0; i < n; ++i) {
        m.PushReal(points[i].x);
        m.PushReal(points[i].y);
    }
    return true;
}

// move line curve close  pathforall  -       STACKUNDERFLOW TYPECHECK; SYNTAX for a broken curve
int OpPathforall(CFilterEPS& m) {
    Operands in(m);
    for (int depth = 0; depth < 4; ++depth) in.Procedure(depth);
    if (!in) return -1;
    const auto close = Take<CArrayElement>(m);
    const auto curve = Take<CArrayElement>(m);
    const auto line = Take<CArrayElement>(m);
    const auto move = Take<CArrayElement>(m);
    const std::int32_t count = m.GetCurrentGState()->GetPathCount();
    for (std::int32_t i = 0; i < count; ++i) {
        tagPLPoint record;
        // A procedure may have shortened the path: records that are gone are not visited.
        if (m.GetCurrentGState()->GetPathRecord(i, record) == 0) break;
        const CArrayElement* run = close.get();
        if (record.nOp == PATH_CURVE) {
            if (!PushCurvePoints(m, i, 1) || !PushCurvePoints(m, i + 1, 2)) return m.Fail(PSERR_SYNTAX);
            run = curve.get();
            i += 2;
        } else if (record.nOp != PATH_CLOSE) {
            point_2d point = record.pt;
            m.HostToUser(1, &point);
            m.PushReal(point.x);
            m.PushReal(point.y);
            run = record.nOp == PATH_MOVE ? move.get() : line.get();
        }
        if (m.ExecuteProcedure(run) != 1) return m.Dialect().TakeExit(m) ? 1 : -1;
        if (g_bExitFlag) {
            g_bExitFlag = false;
            break;
        }
    }
    return 1;
}

// as rectfill  rectclip  -                   STACKUNDERFLOW TYPECHECK
int OpRectclip(CFilterEPS& m) {
    if (DropRectangles(m) != 1) return -1;
    m.NewPath();
    return 1;
}

// clang-format off
// Place 24 of the chain, compared after kPathCurveOperators.
constexpr OpRow kRows[] = {
    {"flattenpath", OpNothing},
    {"reversepath", OpNothing},
    {"strokepath", OpNothing},
    {"ustrokepath", OpUstrokepath},
    {"charpath", OpCharpath},
    {"uappend", OpUappend},
    {"clippath", OpNothing},
    {"setbbox", OpDiscard<&Operands::Any, &Operands::Any, &Operands::Any, &Operands::Any>},
    {"pathbbox", OpPathbbox},
    {"pathforall", OpPathforall},
    {"upath", OpUnsupported},
    {"initclip", OpNothing},
    {"clip", OpNothing},
    {"eoclip", OpNothing},
    {"rectclip", OpRectclip},
    {"ucache", OpNothing},
};
// clang-format on

}  // namespace

constinit const OpTable kPathUtilityOperators{kRows};
