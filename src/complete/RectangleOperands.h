// The operands of rectfill, rectstroke and rectclip.
#pragma once

#include <vector>

class CFilterEPS;

/// x y width height | numarray | numstring: rectangles of user space, with no end to their number.
class RectangleOperands {
public:
    /// Reads the operands whose topmost one stands so deep; they stay. PSERR_STACKUNDERFLOW, PSERR_TYPECHECK,
    /// PSERR_RANGE for a number of numbers that is no multiple of four.
    [[nodiscard]] int Read(CFilterEPS& m, int depth);
    /// Operands that were read.
    [[nodiscard]] int Count() const noexcept { return m_nCount; }
    /// Adds the rectangles to the current path, as closed subpaths.
    void AddToPath(CFilterEPS& m) const;

private:
    std::vector<double> m_Numbers;
    int m_nCount = 0;
};
