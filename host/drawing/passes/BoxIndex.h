// A spatial index of boxes in any number of dimensions: Boost.Geometry's R-tree, which finds what meets a box in
// logarithmic time, as long as few do.
#pragma once

#include <array>
#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "drawing/Work.h"

template <std::size_t dimensions>
struct IndexBox {
    std::array<double, dimensions> min{};
    std::array<double, dimensions> max{};
};

/// Tells Boost how corners are read.
template <std::size_t dimensions>
struct IndexCorner {
    std::array<double, dimensions> at{};
};

namespace boost::geometry::traits {

template <std::size_t n>
struct tag<IndexCorner<n>> {
    using type = point_tag;
};
template <std::size_t n>
struct coordinate_type<IndexCorner<n>> {
    using type = double;
};
template <std::size_t n>
struct coordinate_system<IndexCorner<n>> {
    using type = cs::cartesian;
};
template <std::size_t n>
struct dimension<IndexCorner<n>> : std::integral_constant<std::size_t, n> {};
template <std::size_t n, std::size_t i>
struct access<IndexCorner<n>, i> {
    static double get(const IndexCorner<n>& corner) { return corner.at[i]; }
    static void set(IndexCorner<n>& corner, double value) { corner.at[i] = value; }
};

}  // namespace boost::geometry::traits

/// Holds a number for each box. Where boxes are inserted one by one, none should be flat: the tree is laid out by their
/// contents.
template <std::size_t dimensions>
class CBoxIndex {
public:
    using Box = IndexBox<dimensions>;

    CBoxIndex() = default;
    /// Holds these at once: faster, and good for points that all lie on one line, too.
    explicit CBoxIndex(const std::vector<std::pair<Box, std::uint32_t>>& boxes) : m_Tree(Entries(boxes)) {}

    void Insert(const Box& box, std::uint32_t number) { m_Tree.insert({ToBoost(box), number}); }
    void Remove(const Box& box, std::uint32_t number) { m_Tree.remove({ToBoost(box), number}); }

    /// Replaces `found` by the numbers of all boxes that meet this one.
    void Find(const Box& box, std::vector<std::uint32_t>& found) const {
        found.clear();
        const auto keep = [&found](const Entry& entry) { found.push_back(entry.second); };
        m_Tree.query(boost::geometry::index::intersects(ToBoost(box)), boost::make_function_output_iterator(keep));
        CWorkLimit::Count(1 + found.size());
    }

    /// Calls `visit` with the number of each box that meets this one, until it answers false.
    template <class Visit>
    void FindUntil(const Box& box, Visit visit) const {
        auto at = m_Tree.qbegin(boost::geometry::index::intersects(ToBoost(box)));
        CWorkLimit::Count();
        for (; at != m_Tree.qend() && visit(at->second); ++at) CWorkLimit::Count();
    }

private:
    using Corner = IndexCorner<dimensions>;
    using TreeBox = boost::geometry::model::box<Corner>;
    using Entry = std::pair<TreeBox, std::uint32_t>;

    static std::vector<Entry> Entries(const std::vector<std::pair<Box, std::uint32_t>>& boxes) {
        std::vector<Entry> entries;
        entries.reserve(boxes.size());
        for (const auto& [box, number] : boxes) entries.emplace_back(ToBoost(box), number);
        return entries;
    }
    static TreeBox ToBoost(const Box& box) { return {Corner{box.min}, Corner{box.max}}; }

    boost::geometry::index::rtree<Entry, boost::geometry::index::quadratic<16>> m_Tree;
};
