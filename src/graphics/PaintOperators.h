// The painting operators, and the forms that they share with other operators of this room.
#pragma once

#include "interp/OperatorTable.h"

class CArrayElement;
class CFilterEPS;

extern constinit const OpTable kPaintCoreOperators;  ///< fill, stroke
extern constinit const OpTable kPaintOperators;      ///< erasepage, the other fills and strokes, shfill, rectangles

/// A copy of the current state that is on top for a scope.
class CGStateScope {
public:
    explicit CGStateScope(CFilterEPS& machine);
    CGStateScope(const CGStateScope&) = delete;
    CGStateScope& operator=(const CGStateScope&) = delete;
    ~CGStateScope();

private:
    CFilterEPS& m_Machine;
    int m_nDepth;
};

/// Pops the operands of a rectangle operator without drawing: four numbers, or one array or string.
/// PSERR_TYPECHECK.
[[nodiscard]] int DropRectangles(CFilterEPS& m);
