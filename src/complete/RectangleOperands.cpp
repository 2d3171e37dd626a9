// Rectangles as operands.
#include "complete/RectangleOperands.h"

#include "complete/PathBridge.h"
#include "interp/Operands.h"

int RectangleOperands::Read(CFilterEPS& m, int depth) {
    Operands in(m);
    const CElement* top = in.OneOf(depth, {ET_NUMBER, ET_ARRAY, ET_PACKEDARRAY, ET_STRING});
    if (!in) return -1;
    if (top->m_nType == ET_NUMBER) {
        m_nCount = 4;
        for (int i = m_nCount; i-- > 0;) m_Numbers.push_back(in.Real(depth + i));
        return in ? 1 : -1;
    }
    m_nCount = 1;
    if (const ErrorCode error = ReadNumbers(*top, m_Numbers); error != PSERR_NONE) return m.Fail(error);
    return m_Numbers.size() % 4 == 0 ? 1 : m.Fail(PSERR_RANGE);
}

void RectangleOperands::AddToPath(CFilterEPS& m) const {
    for (std::size_t i = 0; i < m_Numbers.size(); i += 4) {
        const auto side = [&](std::size_t k) { return static_cast<float>(m_Numbers[i + k]); };
        m.AddRectPath(side(0), side(1), side(2), side(3));
    }
}
