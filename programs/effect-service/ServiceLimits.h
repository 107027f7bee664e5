#pragma once

#include <sys/types.h>

namespace orvalo {

/// Has the kernel end this process when the host does, however that comes about: when the host's
/// thread that started it ends. False when the host is gone already.
bool bindToHost(pid_t host);

/// Sets the limits of what this process can take from the machine: no core file, 256 descriptors, 4
/// GiB of memory of its own, 2 s of computing in one go at a real-time priority; and has it, and
/// what it starts, gain no privileges ever. What is refused is logged.
void applyServiceLimits();

}  // namespace orvalo
