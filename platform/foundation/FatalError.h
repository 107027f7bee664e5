#pragma once

#include <string_view>

namespace orvalo {

/// Flushes standard output, writes "Fatal error: " + message and a line feed to standard error and
/// ends the program with SIGABRT. Any thread.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace orvalo
