#include "demos/playing/Session.h"

#include <algorithm>

#include "demos/playing/Pattern.h"

namespace orvalo {

bool Session::plays(int tick) const {
    return stretched(layer.where, tick, score.loopTicks) != '.';
}

void Session::write(int key, int tick, int length, int strength, int late) const {
    const int placed = std::min(feel.place(tick, cells, random) + late, score.loopTicks - 1);
    const int sounding = std::max(length * layer.held / 100, 24);
    score.notes.push_back({part, placed, sounding, key, feel.velocity(strength, tick, random)});
}

}  // namespace orvalo
