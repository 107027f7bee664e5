#pragma once

#include <string>

#include "bench/measuring/Child.h"
#include "bench/measuring/ScratchFolder.h"

namespace orvalo::bench {

/// A message bus of this program's own, as every desktop has one: without it programs look for one
/// at their start and begin one. While it lives, it is the bus of this process and of its children.
class SessionBus {
  public:
    /// Returns when it takes clients. Throws std::runtime_error when it does not.
    SessionBus();

  private:
    ScratchFolder folder_;
    std::string address_;
    Child daemon_;
};

}  // namespace orvalo::bench
