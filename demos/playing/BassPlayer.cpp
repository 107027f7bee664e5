#include <algorithm>
#include <cstdlib>

#include "demos/playing/Pattern.h"
#include "demos/playing/Players.h"

namespace orvalo {

namespace {

constexpr int muted = 46;

/// The key of the pitch class within the range that is nearest to `to`.
int nearestKey(int pitchClass, int to, int low, int high) {
    int best = low;
    int bestDistance = 1000;
    for (int key = low; key <= high; ++key) {
        if (key % 12 == pitchClass % 12 && std::abs(key - to) < bestDistance) {
            best = key;
            bestDistance = std::abs(key - to);
        }
    }
    return best;
}

/// The next note of a walking line: a chord note within a fourth, or a scale note within a tone.
int walk(const Session& session, const Chord& chord, int from) {
    int key = from;
    for (int tries = 0; tries < 12; ++tries) {
        const int candidate = from + session.random.between(-5, 5);
        const bool fits = chord.contains(candidate) ||
                          (std::abs(candidate - from) <= 2 && session.scale.contains(candidate));
        if (candidate != from && candidate >= session.low && candidate <= session.high && fits) {
            key = candidate;
            break;
        }
    }
    return key;
}

}  // namespace

void playBass(const Session& session) {
    // Roots lie in the lowest octave and a half of the instrument, so that octaves above them fit.
    const int high = std::min(session.low + 17, session.high);
    int previous = nearestKey(session.harmony.at(0).root, session.low + 8, session.low, high);
    for (const Hit& hit : spread(session.pattern, session.cells, session.metre, session.bars)) {
        const Chord& chord = session.harmony.at(hit.tick);
        const int root = nearestKey(chord.root, session.low + 8, session.low, high);
        if (!session.plays(hit.tick)) {
            continue;
        }
        int key = root;
        int strength = strengthOf('x');
        switch (hit.sign) {
            case 'R':
                strength = strengthOf('X');
                break;
            case '3':
                key = root + chord.third();
                break;
            case '5':
                key = root + chord.fifth();
                break;
            case '7':
                key = root + chord.seventh();
                break;
            case 'O':
                strength = strengthOf('X');
                key = root + 12;
                break;
            case 'o':
                key = root + 12;
                break;
            case '4':
                key = root + chord.fifth() - 12 >= session.low ? root + chord.fifth() - 12
                                                               : root + chord.fifth();
                break;
            case 'a': {
                const int next = nearestKey(session.harmony.after(hit.tick).root, session.low + 8,
                                            session.low, high);
                key = next + (session.random.chance(50) && next > session.low ? -1 : 1);
                key = session.scale.contains(key) || session.random.chance(60) ? key : next + 2;
                break;
            }
            case 'w':
                key = walk(session, chord, previous);
                break;
            case 'x':
                strength = muted;
                break;
            default:
                break;
        }
        key = std::clamp(key, session.low, session.high);
        session.write(key, hit.tick, hit.length, strength);
        previous = key;
    }
}

}  // namespace orvalo
