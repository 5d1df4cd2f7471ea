// Points that a line does not need.
#pragma once

#include "tidy/surface.hpp"

#include <cstddef>
#include <utility>

namespace orva::tidy {

class Straightener {
public:
    /// Takes points out of runs of edges: `next[e]` is the edge behind e in its run, or NONE where the point between
    /// has to stay. Points stay as far as the line through those that stay would be farther than `radius` from one that
    /// goes (D. H. Douglas, T. K. Peucker, Algorithms for the Reduction of the Number of Points Required to Represent a
    /// Digitized Line or its Caricature, 1973). An edge that has a twin takes the twin along; `next` then names one of
    /// the two directions only. Gives the most that a point that went was off the line. Memory is kept from one call to
    /// the next.
    double straighten(Surface& surface, const std::vector<std::uint32_t>& next, double radius);

private:
    void follow(const std::vector<std::uint32_t>& next, std::size_t from);
    void straightenRun(Surface& surface);
    void straightenLoop(Surface& surface);
    const Vec3& pointAt(const Surface& surface, std::size_t i) const;
    void markKept(const Surface& surface);
    void join(Surface& surface, std::size_t first, std::size_t last);

    double limit = 0.0;             ///< squared
    double worst = 0.0;             ///< squared
    std::vector<std::uint32_t> run; ///< edges, one behind the other
    std::vector<bool> hasBefore;    ///< by edge: whether another leads to it
    std::vector<bool> isDone;       ///< by edge
    std::vector<bool> isKept;       ///< by place in the run, and one more for its end
    std::vector<std::pair<std::size_t, std::size_t>> spans;
};

} // namespace orva::tidy
