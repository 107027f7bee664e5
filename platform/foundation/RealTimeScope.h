#pragma once

namespace orvalo {

/// Marks the calling thread, for the scope's life, as rendering audio: it must not allocate, free,
/// lock, log, touch files or throw. The main queue takes its wait-free path inside a scope; the
/// tests' interposer ends the program on the first forbidden call. Scopes nest.
class RealTimeScope {
  public:
    RealTimeScope() noexcept { ++depth; }
    ~RealTimeScope() { --depth; }
    RealTimeScope(const RealTimeScope&) = delete;
    RealTimeScope& operator=(const RealTimeScope&) = delete;

    /// Whether the calling thread is inside a scope.
    static bool isActive() noexcept { return depth > 0; }

  private:
    static inline constinit thread_local int depth = 0;
};

}  // namespace orvalo
