#pragma once

namespace orvalo {

/// Takes from this process, for good, the system calls that no effect needs: sockets but for those
/// within the machine, looking into other processes, and what changes the system itself. They fail
/// as if they were not there or not allowed; everything else goes on. What the kernel does not let
/// us forbid is logged. All threads.
void confineCalls();

}  // namespace orvalo
