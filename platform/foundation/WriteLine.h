#pragma once

#include <string_view>

namespace orvalo {

/// Writes prefix, text and one line feed to a descriptor with one system call, and with as many
/// more as a descriptor needs that takes less. Ignores failures, and a closed pipe raises no
/// signal; the process's and the thread's signal settings stay as they are. Any thread; not
/// atomic towards other writers beyond what the descriptor itself promises.
void writeLine(int descriptor, std::string_view prefix, std::string_view text) noexcept;

}  // namespace orvalo
