#pragma once

#include <memory>
#include <string>

#include "bench/measuring/Child.h"

namespace orvalo::bench {

/// A JACK server of this program's own with its dummy driver: 48 kHz, quanta of 64 frames. While it
/// lives, it is the server of this process and of its children. One at a time.
class JackServer {
  public:
    /// Returns when the server answers. Throws std::runtime_error when it does not.
    JackServer();

  private:
    std::unique_ptr<Child> process_;
};

}  // namespace orvalo::bench
