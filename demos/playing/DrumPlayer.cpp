#include <algorithm>
#include <vector>

#include "demos/playing/Pattern.h"
#include "demos/playing/Players.h"

namespace orvalo {

namespace {

constexpr int drumLength = ticksPerQuarter / 4;

void strike(const DrumSession& session, int key, int tick, int strength) {
    session.score.notes.push_back(
        {session.part, session.feel.place(tick, session.cells, session.random), drumLength, key,
         session.feel.velocity(strength, tick, session.random)});
}

void playLines(const DrumSession& session, const std::vector<DrumLine>& lines, bool fills) {
    const int barTicks = session.metre.barTicks();
    for (const DrumLine& line : lines) {
        for (const Hit& hit : spread(line.pattern, session.cells, session.metre, session.bars)) {
            const int bar = hit.tick / barTicks;
            const bool fillBar =
                !session.groove.fill.empty() && ((bar + 1) % 4 == 0 || bar + 1 == session.bars);
            if (fillBar != fills || (hit.sign == '?' && session.random.chance(50))) {
                continue;
            }
            if (hit.sign == 'r') {
                const int strokes = std::max(2, hit.length / (ticksPerQuarter / 8));
                for (int stroke = 0; stroke < strokes; ++stroke) {
                    const int strength = 52 + 44 * stroke / strokes;
                    strike(session, line.key, hit.tick + stroke * hit.length / strokes, strength);
                }
                continue;
            }
            strike(session, line.key, hit.tick, strengthOf(hit.sign));
        }
    }
}

}  // namespace

void playDrums(const DrumSession& session) {
    playLines(session, session.groove.lines, false);
    playLines(session, session.groove.fill, true);
}

}  // namespace orvalo
