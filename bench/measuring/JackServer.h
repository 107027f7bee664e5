#pragma once

#include <memory>

#include "bench/measuring/Child.h"

namespace orvalo::bench {

/// A private JACK server with the dummy driver: 48 kHz, quanta of 64 frames. While it lives, it is
/// the default server of this process and its children. At most one at a time.
class JackServer {
  public:
    /// Waits until the server answers. Throws std::runtime_error when it does not.
    JackServer();

  private:
    std::unique_ptr<Child> process_;
};

}  // namespace orvalo::bench
