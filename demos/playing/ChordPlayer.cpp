#include <algorithm>
#include <cstddef>
#include <vector>

#include "demos/playing/Pattern.h"
#include "demos/playing/Players.h"
#include "demos/theory/Voicing.h"

namespace orvalo {

namespace {

/// The nth voice of a chord, counted from the lowest; above the top it continues an octave higher.
int voiceOf(const std::vector<int>& keys, int index, int high) {
    const int count = static_cast<int>(keys.size());
    int key = keys[static_cast<std::size_t>(index % count)] + 12 * (index / count);
    while (key > high) {
        key -= 12;
    }
    return key;
}

}  // namespace

void playChords(const Session& session) {
    const int shift = 12 * session.layer.octave;
    const int low = std::clamp(session.low + shift, session.low, session.high - 24);
    const int middleHigh = std::clamp(low + 31, low + 24, session.high);
    const VoicingRange range{low, middleHigh, session.layer.voices, session.layer.open};
    std::vector<int> keys;
    const Chord* sounding = nullptr;
    bool upwards = true;
    for (const Hit& hit : spread(session.pattern, session.cells, session.metre, session.bars)) {
        const Chord& chord = session.harmony.at(hit.tick);
        if (&chord != sounding) {
            keys = voice(chord, range, keys);
            sounding = &chord;
        }
        if (!session.plays(hit.tick)) {
            continue;
        }
        if (hit.sign >= '1' && hit.sign <= '9') {
            const int key = voiceOf(keys, hit.sign - '1', session.high);
            session.write(key, hit.tick, hit.length, strengthOf('x'));
            continue;
        }
        const int length = std::min(hit.length, session.harmony.ticksToChange(hit.tick));
        const int last = static_cast<int>(keys.size()) - 1;
        for (int index = 0; index <= last; ++index) {
            const int late = session.layer.strum * (upwards ? index : last - index);
            session.write(keys[static_cast<std::size_t>(index)], hit.tick, length,
                          strengthOf(hit.sign), late);
        }
        upwards = !upwards;
    }
}

}  // namespace orvalo
