#pragma once

#include <sys/types.h>

namespace orvalo {

/// Makes the kernel kill this process when the host's thread that started it ends. False when the
/// host has ended already.
bool bindToHost(pid_t host);

/// Limits the resources of this process: no core file, 256 descriptors, 4 GiB of memory, 2 s of
/// uninterrupted computing at a real-time priority. It and its children cannot gain privileges.
/// Logs what the system refuses.
void applyServiceLimits();

}  // namespace orvalo
