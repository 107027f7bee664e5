#pragma once

#include <string>

#include "bench/measuring/Child.h"
#include "bench/measuring/ScratchFolder.h"

namespace orvalo::bench {

/// A message bus for this process and its children. Without one, programs start one themselves,
/// which takes time.
class SessionBus {
  public:
    /// Returns when the bus accepts clients. Throws std::runtime_error when it does not.
    SessionBus();

  private:
    ScratchFolder folder_;
    std::string address_;
    Child daemon_;
};

}  // namespace orvalo::bench
