#include "effect/Uris.h"

#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>

namespace orvalo::effect {

Uris::Uris(const LV2_URID_Map* map) {
    if (map == nullptr) {
        return;
    }
    atomSequence = map->map(map->handle, LV2_ATOM__Sequence);
    atomString = map->map(map->handle, LV2_ATOM__String);
    midiEvent = map->map(map->handle, LV2_MIDI__MidiEvent);
    contextName = map->map(map->handle, contextNameUri);
}

}  // namespace orvalo::effect
