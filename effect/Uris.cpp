#include "effect/Uris.h"

#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>
#include <lv2/time/time.h>

#include "effect/DetectorEvents.h"

namespace orvalo::effect {

Uris::Uris(const LV2_URID_Map* map) {
    if (map == nullptr) {
        return;
    }
    const auto urid = [map](const char* uri) { return map->map(map->handle, uri); };
    atomBlank = urid(LV2_ATOM__Blank);
    atomDouble = urid(LV2_ATOM__Double);
    atomFloat = urid(LV2_ATOM__Float);
    atomInt = urid(LV2_ATOM__Int);
    atomLong = urid(LV2_ATOM__Long);
    atomObject = urid(LV2_ATOM__Object);
    atomSequence = urid(LV2_ATOM__Sequence);
    atomString = urid(LV2_ATOM__String);
    atomVector = urid(LV2_ATOM__Vector);
    watchDetector = urid(watchDetectorUri);
    detectorSpectrum = urid(detectorSpectrumUri);
    bandLevels = urid(bandLevelsUri);
    midiEvent = urid(LV2_MIDI__MidiEvent);
    timePosition = urid(LV2_TIME__Position);
    timeBar = urid(LV2_TIME__bar);
    timeBarBeat = urid(LV2_TIME__barBeat);
    timeBeat = urid(LV2_TIME__beat);
    timeBeatUnit = urid(LV2_TIME__beatUnit);
    timeBeatsPerBar = urid(LV2_TIME__beatsPerBar);
    timeBeatsPerMinute = urid(LV2_TIME__beatsPerMinute);
    timeSpeed = urid(LV2_TIME__speed);
    contextName = urid(contextNameUri);
}

}  // namespace orvalo::effect
