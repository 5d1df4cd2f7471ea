#include "orva/tidy.hpp"

namespace orva::tidy {

Report tidySoup(Solid& output, const types::Mesh<double>& /*soup*/, const std::vector<Origin>& /*origins*/,
                const Options& /*options*/) {
    output = {};
    return {};
}

} // namespace orva::tidy
