#pragma once

#include "platform/foundation/FileDescriptor.h"

namespace orvalo::bench {

/// Keeps the processors from sleeping when they have nothing to do, as machines for playing are set
/// up, by the kernel's /dev/cpu_dma_latency. As long as the object lives.
class Awake {
  public:
    /// Throws std::system_error where this user may not.
    Awake();

  private:
    FileDescriptor request_;
};

}  // namespace orvalo::bench
