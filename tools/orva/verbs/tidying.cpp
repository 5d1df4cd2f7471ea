#include "verbs/tidying.hpp"

#include "mesh/facet_normal.hpp"
#include "words.hpp"

#include <utility>

namespace orva::program {

std::vector<CLI::Option*> addTidying(CLI::App& verb, Tidying& tidying) {
    CLI::Option* merge =
        verb.add_option("--merge", tidying.merge,
                        "which coplanar triangles become one face of as few triangles as it needs: pieces of one face "
                        "of an input alone (none), those that were cut and their neighbours (cut), or any (all)")
            ->check(CLI::IsMember({"none", "cut", "all"}))
            ->capture_default_str();
    CLI::Option* tolerance =
        verb.add_option("--tolerance", tidying.tolerance,
                        "how far apart may lie what should be one, in the unit of the coordinates; "
                        "without, as far as the cuts leave it apart")
            ->check(mustBeAboveZero)
            ->type_name("LENGTH");
    CLI::Option* closeGaps = verb.add_option("--close-gaps", tidying.closeGaps,
                                             "close gaps up to this width; without, only what is closer "
                                             "than the tolerance becomes one")
                                 ->check(mustBeAboveZero)
                                 ->type_name("WIDTH");
    return {merge, tolerance, closeGaps};
}

tidy::Options optionsOf(const Tidying& tidying) {
    tidy::Options options;
    options.tolerance = tidying.tolerance;
    options.gapWidth = tidying.closeGaps;
    options.merge = tidying.merge == "none"  ? tidy::Merge::None
                    : tidying.merge == "all" ? tidy::Merge::All
                                             : tidy::Merge::Cut;
    return options;
}

Model modelOf(tidy::Solid& solid, bool hasNormals, bool hasTexture) {
    Model model;
    model.hasNormals = hasNormals;
    model.hasTexture = hasTexture;
    model.mesh = tidy::toSoup(solid);
    model.indices.reserve(3 * solid.faces.size());
    for (const auto& face : solid.faces) model.indices.insert(model.indices.end(), face.begin(), face.end());
    solid.vertices = {};
    solid.faces = {};
    solid.corners = {};

    std::vector<types::Vertex>& vertices = model.mesh.vertices;
    for (std::size_t i = 0; i + 2 < vertices.size() && !hasNormals; i += 3) {
        const types::Vec3 facet = facetNormal(vertices[i].pos, vertices[i + 1].pos, vertices[i + 2].pos);
        for (std::size_t k = 0; k < 3; ++k) vertices[i + k].normal = facet;
    }
    return model;
}

void requireClosed(const std::string& file, const tidy::Report& tidied, bool strict, Report& report) {
    if (tidied.closed) return;
    const std::string line =
        file + ": the result is not closed: " + counted(tidied.openEdges, "open edge", "open edges") +
        formatted(", the largest gap %.2g; check the inputs (orva check), or close wider gaps (--close-gaps)",
                  tidied.largestGap);
    if (strict) throw Failure(ExitCode::Unfit, line);
    report.warnings.push_back(line);
}

std::string textOf(const tidy::Report& tidied) {
    if (tidied.pieces == 0) return "";
    const std::string pieces = " in " + counted(tidied.pieces, "piece", "pieces");
    if (tidied.closed) return pieces + ", closed";
    return pieces + ", not closed: " + counted(tidied.openEdges, "open edge", "open edges") +
           formatted(", gaps up to %.2g", tidied.largestGap);
}

Json jsonOf(const tidy::Report& tidied) {
    return {{"closed", tidied.closed},
            {"pieces", tidied.pieces},
            {"open_edges", tidied.openEdges},
            {"largest_gap", tidied.largestGap},
            {"soup_triangles", tidied.soupTriangles},
            {"loops_removed", tidied.loopsRemoved},
            {"loop_area", tidied.loopArea},
            {"moved_by_weld", tidied.movedByWeld},
            {"moved_by_zip", tidied.movedByZip},
            {"moved_by_drop", tidied.movedByDrop},
            {"forced_ears", tidied.forcedEars},
            {"faces_left", tidied.facesLeft},
            {"scale", tidied.scale}};
}

} // namespace orva::program
