// The edges that have no match yet, by the points at their ends.
#pragma once

#include "tidy/surface.hpp"

#include <cstdint>
#include <vector>

namespace orva::tidy {

/// Lists of edges, threaded through two arrays. An edge that gets a match leaves its lists when somebody comes by.
class OpenEdges {
public:
    /// The open edges of a surface. Memory is kept from one use to the next.
    void collect(const Surface& surface);

    /// Takes the open edges into a point, or out of it, off their lists and puts them into `list` instead of what it
    /// held.
    void takeInto(const Surface& surface, std::uint32_t point, std::vector<std::uint32_t>& list);
    void takeOutOf(const Surface& surface, std::uint32_t point, std::vector<std::uint32_t>& list);

    /// The one edge on the list of a point, which may have got a match; NONE where the list is empty, SEVERAL where it
    /// is longer.
    std::uint32_t onlyInto(std::uint32_t point) const;
    std::uint32_t onlyOutOf(std::uint32_t point) const;

    /// Puts an edge, which is on no such list, on the list of the point at its end, or at its beginning.
    void addInto(const Surface& surface, std::uint32_t edge);
    void addOutOf(const Surface& surface, std::uint32_t edge);

private:
    std::vector<std::uint32_t> firstIn;  ///< by point
    std::vector<std::uint32_t> firstOut; ///< by point
    std::vector<std::uint32_t> nextIn;   ///< by edge
    std::vector<std::uint32_t> nextOut;  ///< by edge
};

/// Matches each open edge with an open one in the opposite direction between the same points. Where there are several:
/// one of the same face first, so that what is inside a face is no border; then the one behind the smallest angle
/// through the solid, so that solids that touch along an edge stay apart.
class Matcher {
public:
    /// Memory is kept from one call to the next.
    void matchOpposite(Surface& surface);

private:
    struct Entry {
        std::uint32_t high; ///< of an edge's two points
        std::uint32_t edge;
    };

    void matchGroup(Surface& surface, const Entry* first, const Entry* last);
    void matchSameFace(Surface& surface);
    void matchByAngle(Surface& surface);

    std::vector<std::uint32_t> last; ///< by the lower of an edge's two points: where its entries end
    std::vector<Entry> entries;
    std::vector<std::uint32_t> forward; ///< of a group: edges from its lower point to its higher one
    std::vector<std::uint32_t> backward;
};

} // namespace orva::tidy
