#include "orva/tidy.hpp"

namespace orva::tidy {

types::Mesh<double> toSoup(const Solid& /*solid*/) {
    return {};
}
Report unionSolid(Solid& output, const std::vector<types::Mesh<double>>& /*meshes*/, const Options& /*options*/) {
    output = {};
    return {};
}
Report intersectSolid(Solid& output, const std::vector<types::Mesh<double>>& /*meshes*/, const Options& /*options*/) {
    output = {};
    return {};
}
Report subtractSolid(Solid& output, const types::Mesh<double>& /*base*/,
                     const std::vector<types::Mesh<double>>& /*cutters*/, Cutting /*cutting*/,
                     const Options& /*options*/) {
    output = {};
    return {};
}
Report unionSolid(Solid& output, const std::vector<Solid>& /*meshes*/, const Options& /*options*/) {
    output = {};
    return {};
}
Report intersectSolid(Solid& output, const std::vector<Solid>& /*meshes*/, const Options& /*options*/) {
    output = {};
    return {};
}
Report subtractSolid(Solid& output, const Solid& /*base*/, const std::vector<Solid>& /*cutters*/, Cutting /*cutting*/,
                     const Options& /*options*/) {
    output = {};
    return {};
}

} // namespace orva::tidy
