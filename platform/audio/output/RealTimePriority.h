#pragma once

namespace orvalo {

/// Asks the system for a real-time priority for the calling thread, which the application must have
/// created. A refusal is a debug message. Not inside a RealTimeScope.
void requestRealTimePriority() noexcept;

}  // namespace orvalo
