#pragma once

namespace orvalo {

/// Forbids all threads of this process, irrevocably, the system calls that no effect needs: sockets
/// other than Unix sockets, access to other processes, and changes to the system. They fail with
/// EPERM or EAFNOSUPPORT. Logs when the kernel refuses the filter.
void confineCalls();

}  // namespace orvalo
