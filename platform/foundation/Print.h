#pragma once

#include <string_view>

namespace orvalo {

/// Writes text and one line feed to standard output, unchanged and at once, with one system call.
/// Lines of several threads never mix. Ignores failures, also a closed pipe. Any thread but the
/// render thread.
void print(std::string_view text);

/// Writes text and a line feed to standard error. Any thread but the render thread.
void printToStandardError(std::string_view text);

/// From here on print() and printToStandardError() do not wait for the reader of a pipe or
/// terminal. Lines that it does not take at once wait in memory, up to 1 MiB for each of the two,
/// and follow in order; beyond that lines are lost, which one message on standard error says. At
/// the program's end they have half a second to be written. Call it once, before other threads
/// print.
void printWithoutWaiting();

/// Waits until the lines that wait in memory are written, at most for half a second.
void finishPrinting() noexcept;

/// Writes text and one line feed to a descriptor with one system call, or with several when
/// the descriptor accepts only a part. Ignores failures. A closed pipe raises no signal; the signal
/// settings of process and thread stay as they are. Any thread; lines of several threads may mix.
void writeLine(int descriptor, std::string_view text) noexcept;

}  // namespace orvalo
