#include "demos/playing/Pattern.h"
#include "demos/playing/Players.h"

namespace orvalo {

void playOstinato(const Session& session) {
    const int size = session.scale.size();
    // Place the tonic in the lower middle of the range.
    int base = 0;
    while (session.scale.keyOf(base) < session.low + 10) {
        base += size;
    }
    while (session.scale.keyOf(base) > session.low + 21) {
        base -= size;
    }
    base += size * session.layer.octave;
    for (const Hit& hit : spread(session.pattern, session.cells, session.metre, session.bars)) {
        if (!session.plays(hit.tick)) {
            continue;
        }
        const int degree = hit.sign >= 'a' ? hit.sign - 'a' - size : hit.sign - '1';
        int key = session.scale.keyOf(base + degree);
        while (key > session.high) {
            key -= 12;
        }
        while (key < session.low) {
            key += 12;
        }
        session.write(key, hit.tick, hit.length, strengthOf('x'));
    }
}

}  // namespace orvalo
