/// @file
/// What happens on Ctrl-C, and when the system asks the program to end.
#ifndef ORVA_PROGRAM_INTERRUPTION_HPP
#define ORVA_PROGRAM_INTERRUPTION_HPP

namespace orva::program {

/// From now on an interruption ends the process at once, whatever it is doing, with ExitCode::Interrupted: no temporary
/// file stays, and the terminal is clean. Called first thing: threads made before would not know of it.
void watchForInterruption();

} // namespace orva::program

#endif
