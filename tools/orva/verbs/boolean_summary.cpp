#include "verbs/boolean_summary.hpp"

#include "measures/box_tree.hpp"
#include "measures/closedness.hpp"
#include "measures/volume.hpp"
#include "mesh/model.hpp"
#include "verbs/tidying.hpp"
#include "words.hpp"

#include <algorithm>
#include <limits>

namespace orva::program {

namespace {

using Mesh = Boolean::Mesh;

bool isEmpty(const Mesh& mesh) {
    return countTriangles(mesh) == 0;
}

// The sum of a measure over all the other meshes.
template <typename Measure> auto total(const std::vector<Mesh>& meshes, Measure measure) {
    decltype(measure(meshes.front())) sum = 0;
    for (const Mesh& mesh : meshes) sum += measure(mesh);
    return sum;
}

// Narrows `low` and `high` to what of it lies in the mesh's box.
void narrow(types::Vec3& low, types::Vec3& high, const Mesh& mesh) {
    constexpr double far = std::numeric_limits<double>::infinity();
    Box box{{far, far, far}, {-far, -far, -far}};
    for (const auto& [pos, normal, aux] : mesh.vertices) {
        box.low = {std::min(box.low.x, pos.x), std::min(box.low.y, pos.y), std::min(box.low.z, pos.z)};
        box.high = {std::max(box.high.x, pos.x), std::max(box.high.y, pos.y), std::max(box.high.z, pos.z)};
    }
    low = {std::max(low.x, box.low.x), std::max(low.y, box.low.y), std::max(low.z, box.low.z)};
    high = {std::min(high.x, box.high.x), std::min(high.y, box.high.y), std::min(high.z, box.high.z)};
}

// Whether no point lies in the boxes of all of them.
bool boxesAreApart(const Mesh& first, const std::vector<Mesh>& others) {
    constexpr double far = std::numeric_limits<double>::infinity();
    types::Vec3 low{-far, -far, -far};
    types::Vec3 high{far, far, far};
    narrow(low, high, first);
    for (const Mesh& mesh : others) narrow(low, high, mesh);
    return low.x > high.x || low.y > high.y || low.z > high.z;
}

// Why there is nothing in the result, as far as that is known; empty for a result that is not.
std::string whyEmpty(const Boolean& boolean, const Result& result) {
    if (!isEmpty(result.model.mesh)) return "";
    if (isEmpty(result.first) || std::any_of(result.others.begin(), result.others.end(), isEmpty)) {
        return "empty, as every result of an empty mesh";
    }
    if (boolean.emptyWhenApart && boxesAreApart(result.first, result.others)) {
        return "the result is empty: there is no place where all of the meshes are";
    }
    return "the result is empty";
}

std::string measure(const Result& result, Json& output) {
    const Closedness closedness = measureClosedness(result.model.mesh, CLOSING_TOLERANCE);
    const double volume = signedVolume(result.model.mesh);
    output["volume"] = volume;
    output["open_edges"] = closedness.openEdges;
    output["largest_gap"] = closedness.largestGap;
    std::string text = formatted(", volume %.10g + %.10g -> %.10g", signedVolume(result.first),
                                 total(result.others, signedVolume), volume);
    if (result.tidied) return text; // closed or not has been said
    if (closedness.openEdges == 0) return text + formatted(", closed within %g", CLOSING_TOLERANCE);
    return text + formatted(", not closed within %g: %zu open edges, gaps up to %.2g", CLOSING_TOLERANCE,
                            closedness.openEdges, closedness.largestGap);
}

} // namespace

void summarize(const Boolean& boolean, const Result& result, bool measured, Report& report) {
    Json& output = report.members["output"];
    std::string& text = report.summary;
    text = boolean.verb +
           formatted(": %zu + %zu triangles", countTriangles(result.first), total(result.others, countTriangles));
    if (result.others.size() > 1) text += formatted(" in %zu meshes", result.others.size());
    text += formatted(" -> %zu", countTriangles(result.model.mesh));
    if (result.tidied) {
        text += textOf(*result.tidied);
        output["tidied"] = jsonOf(*result.tidied);
    }
    const std::string reason = whyEmpty(boolean, result);
    if (!reason.empty()) {
        text += " (" + reason + ")";
        output["empty"] = reason;
    }
    if (measured) text += measure(result, output);
    text += formatted(", %.3f s", result.seconds);
    report.members["operation_seconds"] = result.seconds;
}

} // namespace orva::program
