#pragma once

namespace orvalo {

/// Names the calling thread (at most 15 characters) and gives it a real-time priority where the
/// system grants one; a refusal is a debug message. Not inside a RealTimeScope.
void becomeRenderThread(const char* name) noexcept;

}  // namespace orvalo
