#include "bench/animation/TimerWays.h"

namespace orvalo::bench {

TimerWay qtTimerWay() {
    return nullptr;
}

}  // namespace orvalo::bench
