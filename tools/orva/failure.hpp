/// @file
/// How the program fails: an exit code, and one line that says what was wrong and what to do.
#ifndef ORVA_PROGRAM_FAILURE_HPP
#define ORVA_PROGRAM_FAILURE_HPP

#include <exception>
#include <stdexcept>
#include <string>

namespace orva::program {

/// What the shell sees. Scripts rely on the numbers.
enum class ExitCode {
    Done = 0,
    Internal = 1,
    Usage = 2,       ///< options, verbs, and file names whose extension names no format
    CannotRead = 3,  ///< a file that is missing, unreadable, or not the mesh that it claims to be
    Unfit = 4,       ///< a mesh that no boolean should be done with: found by `check`, refused with --strict; or an open result
    OutOfMemory = 5, ///< or a mesh beyond what can be counted
    CannotWrite = 6,
    Interrupted = 130, ///< by Ctrl-C, or by the system on its way down; what a shell says of a program that SIGINT ended
};

/// In a word or two, for --json.
const char* nameOf(ExitCode code);

/// Ends the run. `what()` is the line without the leading "orva: ", as "FILE: what was wrong, where; what to do".
struct Failure : std::runtime_error {
    Failure(ExitCode exitCode, const std::string& line) : std::runtime_error(line), code(exitCode) {}
    ExitCode code;
};

/// A mesh that a format cannot read or write: "what was wrong, where; what to do". Formats know bytes, not files;
/// whoever knows the file makes a Failure of it.
struct MeshError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Called in a catch block: says on stderr in one line what the exception was, and gives the exit code for it.
int reportException();

/// Called in a catch block: the same as a Failure, for those who report elsewhere. Takes memory, unlike the above.
Failure describeException();

} // namespace orva::program

#endif
