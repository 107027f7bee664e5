#pragma once

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// A file with the seccomp filter of effect services, at its beginning: a program for the kernel as
/// bubblewrap reads it. The filter forbids what no effect needs and namespaces do not cover:
/// sockets other than Unix sockets, new namespaces, other processes' memory, and changes to the
/// system. Throws NSError.
FileDescriptor makeCallFilter();

}  // namespace orvalo
