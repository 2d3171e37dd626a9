// The path store: the current path as a flat list of lettered records in host units.
#pragma once

#include <cstdint>
#include <vector>

#include "graphics/StateCell.h"
#include "hostout/HostVector.h"

/// Letters of the records.
enum PathLetter : std::uint16_t {
    PATH_MOVE = 'm',   ///< start of a subpath
    PATH_LINE = 'L',   ///< end of a straight segment
    PATH_CURVE = 'C',  ///< three in a row: two control points and the end of a cubic Bézier curve
    PATH_CLOSE = 'c'   ///< the start of the subpath, to which a closing segment runs
};

/// One record.
struct tagPLPoint {
    point_2d pt;        ///< host units
    std::uint16_t nOp;  ///< PathLetter
};

/// Most records of a path, unless the dialect has another limit. Departure: what does not fit is dropped without an
/// error.
inline constexpr std::int32_t PATH_MAX_RECORDS = 10000;

/// A path. A copy shares the records until either side adds to its own, so that copying costs a reference; a
/// copy of an empty path shares nothing. A path that is emptied keeps its records' room for the next one.
class CPath {
public:
    CPath() noexcept = default;
    CPath(const CPath& other) noexcept;
    CPath(CPath&&) noexcept = default;
    CPath& operator=(CPath other) noexcept;
    ~CPath() = default;

    /// Appends one point, or three for 'C'. A new 'm' directly behind an 'm' takes its place; an unknown
    /// letter does nothing.
    void Add(const point_2d* points, std::uint16_t letter);
    void Clear() noexcept;
    [[nodiscard]] std::int32_t GetCount() const noexcept { return m_nCount; }
    /// The most records that the path and its copies take from now on.
    void SetLimit(std::int32_t records) noexcept { m_nLimit = records; }
    /// Says that the curves among the records so far count as flattened, until the path is emptied.
    void MarkFlattened() noexcept { m_nFlattened = m_nCount; }
    /// The records that are.
    [[nodiscard]] std::int32_t CountFlattened() const noexcept { return m_nFlattened; }
    /// Points that did not fit since the path was empty.
    [[nodiscard]] std::int32_t CountDropped() const noexcept { return m_nDropped; }
    /// The record at an index from 0 to below GetCount.
    [[nodiscard]] const tagPLPoint& At(std::int32_t index) const noexcept {
        return m_pBlock->records[static_cast<size_t>(index)];
    }
    /// Records behind the last 'c', or from the last 'm' on, that one included.
    [[nodiscard]] std::int32_t CountSubpathRecords() const noexcept { return m_nSubpathRecords; }
    /// The last 'm'. False, and point as it was, when there is none.
    [[nodiscard]] bool GetSubpathStart(point_2d& point) const noexcept;

private:
    struct Block final : CShared {
        std::vector<tagPLPoint> records;  ///< from m_nCount on left over from earlier paths
    };

    void Append(const point_2d& point, std::uint16_t letter);
    void Refuse(int points) noexcept;

    CSharedRef<Block> m_pBlock;  ///< null before the first record
    std::int32_t m_nCount = 0;
    std::int32_t m_nLimit = PATH_MAX_RECORDS;
    std::int32_t m_nDropped = 0;
    // Kept along, so that no closepath walks back over the path.
    std::int32_t m_nSubpathRecords = 0;
    std::int32_t m_nLastMove = -1;  ///< index of the last 'm'
    std::int32_t m_nFlattened = 0;  ///< records whose curves count as flattened
};
