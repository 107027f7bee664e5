#pragma once

#include <cstdint>
#include <functional>

namespace orvalo::bench {

/// A repeating timer of so many milliseconds that calls tick() on the calling thread until tick()
/// answers false.
using TimerWay = void (*)(int milliseconds, const std::function<bool()>& tick);

/// Our own.
void runTimer(int milliseconds, const std::function<bool()>& tick);
/// g_timeout_add, on a main context of the thread.
void runTimeout(int milliseconds, const std::function<bool()>& tick);
/// A precise QTimer; null where the benchmark was built without Qt.
TimerWay qtTimerWay();

}  // namespace orvalo::bench
