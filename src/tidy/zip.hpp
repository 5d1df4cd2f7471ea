// T-junctions, and seams whose two sides are divided differently.
#pragma once

#include "tidy/open_edges.hpp"

namespace orva::tidy {

/// Where at a point an open edge u -> v and an open edge v -> w fold back on one another, the nearer of u and w is put
/// into the longer edge, and what then runs back and forth is matched. That needs no search in space: a seam without
/// width has a point at which it turns back, and each step moves that point along until the seam is gone.
class Zipper {
public:
    /// Closes all seams of the surface that are no wider than `radius`: two edges fold back on one another when the
    /// nearer end is within it of the longer edge. Gives the most that an edge was bent by it. Memory is kept from one
    /// call to the next.
    double zip(Surface& surface, double radius);

private:
    struct Fold {
        double distance; ///< squared, of the nearer end from the longer edge
        bool sameFace;
        std::uint32_t in;
        std::uint32_t out;

        bool operator<(const Fold& other) const;
    };

    void zipAt(Surface& surface, std::uint32_t point);
    void collectFolds(const Surface& surface);
    void collectNeighbouringFolds(const Surface& surface);
    void tryFold(const Surface& surface, std::uint32_t in, std::uint32_t out);
    void close(Surface& surface, const Fold& fold);
    void visit(std::uint32_t point);

    double limit = 0.0; ///< squared
    double worst = 0.0; ///< squared
    OpenEdges open;
    std::vector<std::uint32_t> waiting;
    std::vector<bool> isWaiting;
    std::vector<std::uint32_t> ins;
    std::vector<std::uint32_t> outs;
    std::vector<Fold> folds;
};

} // namespace orva::tidy
