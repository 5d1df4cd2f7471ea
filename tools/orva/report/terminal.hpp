/// @file
/// One line at the bottom of the terminal behind stderr that is written again and again.
#ifndef ORVA_PROGRAM_REPORT_TERMINAL_HPP
#define ORVA_PROGRAM_REPORT_TERMINAL_HPP

#include <cstddef>
#include <functional>
#include <string>

namespace orva::program {

/// Our lines are UTF-8. On Windows the console is told so; `leaveTerminal` takes it back, since it belongs to the
/// shell.
void enterTerminal();

/// The line is gone, and whoever draws waits from then on, for ever.
void leaveTerminal() noexcept;

/// Whether stderr is a terminal at all.
bool hasTerminal();

/// Whether colours are welcome there: not with NO_COLOR, nor on a terminal that knows none.
bool hasColours();

/// In characters.
std::size_t widthOfTerminal();

/// Puts the line in place of the last one. `escapes` is how many of its bytes take no place on the screen.
void drawLine(const std::string& line, std::size_t escapes);

/// Takes it away, so that other lines can be written.
void eraseLine();

/// Takes it away while `print` writes something else; nothing of that is torn by an interruption.
void printPastLine(const std::function<void()>& print);

} // namespace orva::program

#endif
