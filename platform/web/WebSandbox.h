#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// Why this machine cannot create the web engine's sandbox: bubblewrap's message; absent when it
/// can. Without a sandbox the engine would end the whole program. Also absent when the engine's
/// environment variable WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS, meant for tests, turns the
/// sandbox off. Waits for the trial that tryOutSandbox() starts. Main thread.
std::optional<std::string> sandboxProblem();

/// Starts the trial of the sandbox on another thread, unless it was started before. Main thread.
void tryOutSandbox();

}  // namespace orvalo
