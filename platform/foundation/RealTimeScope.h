#pragma once

namespace orvalo {

/// Marks the calling thread, for the scope's life, as rendering audio: what runs inside must not
/// allocate, free, lock, log, touch files or throw. Facilities that have two ways (the main queue)
/// take the wait-free one inside; the tests' interposer ends the program on the first forbidden
/// call inside. Scopes nest.
class RealTimeScope {
  public:
    RealTimeScope() noexcept;
    ~RealTimeScope();
    RealTimeScope(const RealTimeScope&) = delete;
    RealTimeScope& operator=(const RealTimeScope&) = delete;

    /// Whether the calling thread is inside a scope.
    static bool isActive() noexcept;
};

}  // namespace orvalo
