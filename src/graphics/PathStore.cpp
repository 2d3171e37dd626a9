// The records of a path, and the path operations of the graphics state over them.
#include "graphics/PathStore.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "graphics/GraphState.h"
#include "objects/Limits.h"
#include "objects/Work.h"

namespace {

constexpr size_t FIRST_ROOM = UsualOrTiny<size_t>(32, 1);  // records: most paths of most files fit

}  // namespace

CPath::CPath(const CPath& other) noexcept
    : m_nCount(other.m_nCount),
      m_nLimit(other.m_nLimit),
      m_nDropped(other.m_nDropped),
      m_nSubpathRecords(other.m_nSubpathRecords),
      m_nLastMove(other.m_nLastMove),
      m_nFlattened(other.m_nFlattened) {
    if (m_nCount > 0) m_pBlock = other.m_pBlock;
}

CPath& CPath::operator=(CPath other) noexcept {
    m_pBlock = std::move(other.m_pBlock);
    m_nCount = other.m_nCount;
    m_nLimit = other.m_nLimit;
    m_nDropped = other.m_nDropped;
    m_nSubpathRecords = other.m_nSubpathRecords;
    m_nLastMove = other.m_nLastMove;
    m_nFlattened = other.m_nFlattened;
    return *this;
}

void CPath::Clear() noexcept {
    if (m_pBlock.IsShared()) m_pBlock = {};
    m_nCount = 0;
    m_nDropped = 0;
    m_nSubpathRecords = 0;
    m_nLastMove = -1;
    m_nFlattened = 0;
}

void CPath::Append(const point_2d& point, std::uint16_t letter) {
    if (!m_pBlock || m_pBlock.IsShared()) {
        CSharedRef<Block> own(new Block);
        const auto count = static_cast<size_t>(m_nCount);
        own->records.reserve(std::max(FIRST_ROOM, count * 2));
        CountWork(m_nCount);
        if (m_pBlock) own->records.assign(m_pBlock->records.begin(), m_pBlock->records.begin() + m_nCount);
        m_pBlock = std::move(own);
    }
    std::vector<tagPLPoint>& records = m_pBlock->records;
    const auto at = static_cast<size_t>(m_nCount);
    if (at == records.size()) {
        records.push_back({point, letter});
    } else {
        records[at] = {point, letter};
    }
    ++m_nCount;
}

void CPath::Refuse(int points) noexcept {
    if (m_nDropped <= std::numeric_limits<std::int32_t>::max() - points) m_nDropped += points;
}

void CPath::Add(const point_2d* points, std::uint16_t letter) {
    const std::int32_t room = m_nLimit - m_nCount;
    switch (letter) {
        case PATH_MOVE:
            if (room < 1) return Refuse(1);
            if (m_nLastMove >= 0 && m_nLastMove == m_nCount - 1) --m_nCount;
            Append(*points, letter);
            m_nLastMove = m_nCount - 1;
            m_nSubpathRecords = 1;
            return;
        case PATH_LINE:
            if (room < 1) return Refuse(1);
            Append(*points, letter);
            ++m_nSubpathRecords;
            return;
        case PATH_CLOSE:
            if (room < 1) return Refuse(1);
            Append(*points, letter);
            m_nSubpathRecords = 0;
            return;
        case PATH_CURVE:
            if (room < 3) return Refuse(3);
            for (int i = 0; i < 3; ++i) Append(points[i], letter);
            m_nSubpathRecords += 3;
            return;
        default:
            return;
    }
}

bool CPath::GetSubpathStart(point_2d& point) const noexcept {
    if (m_nLastMove < 0) return false;
    point = At(m_nLastMove).pt;
    return true;
}

// The graphics state

void CGraphState::AddPathPoint(const point_2d* points, std::uint16_t nOp) { m_Path.Add(points, nOp); }

void CGraphState::ClearPath() noexcept { m_Path.Clear(); }

std::int32_t CGraphState::GetPathCount() const noexcept { return m_Path.GetCount(); }

int CGraphState::GetPathRecord(std::int32_t index, tagPLPoint& record) const noexcept {
    if (index < 0 || index >= m_Path.GetCount()) return 0;
    record = m_Path.At(index);
    return 1;
}

int CGraphState::GetLastPoint(point_2d& point) const noexcept {
    if (m_Path.GetCount() == 0) return 0;
    point = m_Path.At(m_Path.GetCount() - 1).pt;
    return 1;
}

int CGraphState::GetSubpathStart(point_2d& point) const noexcept { return m_Path.GetSubpathStart(point) ? 1 : 0; }

std::int32_t CGraphState::CountSubpathRecords() const noexcept { return m_Path.CountSubpathRecords(); }

int CGraphState::GetPathBounds(point_2d box[2]) const noexcept {
    const std::int32_t count = m_Path.GetCount();
    if (count < 2) return 0;
    CountWork(count);
    box[0] = box[1] = m_Path.At(0).pt;
    for (std::int32_t i = 1; i < count; ++i) {
        const point_2d point = m_Path.At(i).pt;
        box[0] = {std::min(box[0].x, point.x), std::min(box[0].y, point.y)};
        box[1] = {std::max(box[1].x, point.x), std::max(box[1].y, point.y)};
    }
    return 1;
}
