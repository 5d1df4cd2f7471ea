// Pieces that may stay as they are.
#pragma once

#include "orva/types.hpp"
#include "tidy/point_table.hpp"
#include "tidy/surface.hpp"

#include <span>

namespace orva::tidy {

/// Whether the pieces of a face divide what its edges surround, with no corner but those of the edges: then nothing is
/// gained by dividing it anew, and what is tidy already stays as it is, bit for bit.
class Fit {
public:
    /// `edges` are all those of the face. Memory is kept from one call to the next.
    bool test(const Surface& surface, const types::Mesh<double>& soup, const Face& face,
              std::span<const std::uint32_t> edges);

    // What the last test found, three to a piece. Of sides, one of the two is there.
    std::vector<std::uint32_t> point; ///< the surface's, of each corner
    std::vector<std::uint32_t> edge;  ///< that the side behind the corner is, or NONE
    std::vector<std::uint32_t> twin;  ///< the place of the opposite side, or NONE

private:
    struct Side {
        std::uint64_t points;
        std::uint32_t number;

        bool operator<(const Side& other) const {
            return points != other.points ? points < other.points : number < other.number;
        }
    };

    bool findPoints(const Surface& surface, const types::Mesh<double>& soup, const Face& face,
                    std::span<const std::uint32_t> edges);
    bool findBorder(const Surface& surface, std::span<const std::uint32_t> edges);
    bool matchInside();
    std::uint32_t endOf(std::size_t corner) const { return point[corner % 3 == 2 ? corner - 2 : corner + 1]; }

    PointTable table;
    std::vector<std::uint32_t> pointOf; ///< by number in the table
    std::vector<Side> sides;
    std::vector<Side> borders;
};

} // namespace orva::tidy
