#pragma once

namespace orvalo::testing {

/// From its construction on, the first allocation, release, lock or write inside a RealTimeScope
/// of this thread ends the program with a backtrace on standard error. Under the sanitizers, which
/// have replaced these functions, only allocations and releases do.
class RealTimeGuard {
  public:
    RealTimeGuard();
    ~RealTimeGuard();
    RealTimeGuard(const RealTimeGuard&) = delete;
    RealTimeGuard& operator=(const RealTimeGuard&) = delete;
};

}  // namespace orvalo::testing
