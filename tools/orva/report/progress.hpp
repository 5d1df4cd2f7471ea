/// @file
/// What the program is doing, on the terminal, while it takes long.
#ifndef ORVA_PROGRAM_REPORT_PROGRESS_HPP
#define ORVA_PROGRAM_REPORT_PROGRESS_HPP

#include <cstddef>
#include <string>

namespace orva::program {

/// Silent until it is started.
class Progress {
public:
    /// `doing` is what begins now, "reading a.off". Where there is a true fraction, `done` of `all` are behind us.
    void show(const std::string& doing, std::size_t done = 0, std::size_t all = 0);
};

} // namespace orva::program

#endif
