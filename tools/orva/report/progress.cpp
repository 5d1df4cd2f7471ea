#include "report/progress.hpp"

namespace orva::program {

void Progress::show(const std::string& /*doing*/, std::size_t /*done*/, std::size_t /*all*/) {}

} // namespace orva::program
