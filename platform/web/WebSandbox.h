#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// Why this machine cannot create the web engine's sandbox, in bubblewrap's words; absent when it
/// can. Without a sandbox the engine would end the whole program. Also absent when the engine's
/// environment variable WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS, meant for tests, turns the
/// sandbox off. Waits for the trial. Main thread.
std::optional<std::string> sandboxProblem();

/// Starts the trial on another thread, unless it was started before. Main thread.
void tryOutSandbox();

}  // namespace orvalo
