#pragma once

#include <string_view>

namespace orvalo {

/// Writes text and one line feed to standard output, unchanged and at once, with one system call.
/// Lines of several threads never mix. Ignores failures, also a closed pipe. Any thread but the
/// render thread.
void print(std::string_view text);

/// Writes prefix, text and one line feed to a descriptor with one system call, or with several when
/// the descriptor accepts only a part. Ignores failures. A closed pipe raises no signal; the signal
/// settings of process and thread stay as they are. Any thread; lines of several threads may mix.
void writeLine(int descriptor, std::string_view prefix, std::string_view text) noexcept;

}  // namespace orvalo
