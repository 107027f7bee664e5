#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// Why this machine cannot make the sandbox in which the web engine runs pages, in bubblewrap's
/// words; absent where it can. The engine would end the whole program there. It can be told to do
/// without by its own environment variable, WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS, which only
/// tests should set; then there is no problem either. Waits for the trial. Main thread.
std::optional<std::string> sandboxProblem();

/// Begins the trial on another thread, so that its result is there when it is needed. Any number of
/// times; without it the first question begins it. Main thread.
void tryOutSandbox();

}  // namespace orvalo
