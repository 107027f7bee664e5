#pragma once

#include "platform/foundation/FileDescriptor.h"

namespace orvalo::bench {

/// Prevents the processors from entering sleep states while the object lives, like machines that
/// are set up for audio. Uses the kernel's /dev/cpu_dma_latency.
class Awake {
  public:
    /// Throws std::system_error without permission.
    Awake();

  private:
    FileDescriptor request_;
};

}  // namespace orvalo::bench
