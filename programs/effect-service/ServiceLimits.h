#pragma once

#include <sys/types.h>

namespace orvalo {

/// Makes the kernel kill this process when the thread that started it ends. False when the parent,
/// the host or the first process of the service's namespace, has ended already.
bool bindToParent(pid_t parent);

/// Limits the resources of this process: no core file, 256 descriptors, 4 GiB of memory, 2 s of
/// uninterrupted computing at a real-time priority, and, in namespaces of its own, 512 threads with
/// its children. It and its children cannot gain privileges. Logs what the system refuses.
void applyServiceLimits();

/// Loads the host's filter for system calls, which is irrevocable, from the file, where bubblewrap
/// has not. Logs when the kernel refuses it. While the process has one thread.
void loadCallFilter(int file);

}  // namespace orvalo
