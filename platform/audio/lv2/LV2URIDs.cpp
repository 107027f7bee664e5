#include "platform/audio/lv2/LV2URIDs.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/log/log.h>
#include <lv2/midi/midi.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>

#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

const LV2URIDs& LV2URIDs::shared() {
    static const LV2URIDs urids = [] {
        auto& map = URIDMap::shared();
        LV2URIDs result{};
        result.atomBlank = map.map(LV2_ATOM__Blank);
        result.atomBool = map.map(LV2_ATOM__Bool);
        result.atomChunk = map.map(LV2_ATOM__Chunk);
        result.atomDouble = map.map(LV2_ATOM__Double);
        result.atomFloat = map.map(LV2_ATOM__Float);
        result.atomInt = map.map(LV2_ATOM__Int);
        result.atomLong = map.map(LV2_ATOM__Long);
        result.atomObject = map.map(LV2_ATOM__Object);
        result.atomResource = map.map(LV2_ATOM__Resource);
        result.atomSequence = map.map(LV2_ATOM__Sequence);
        result.atomString = map.map(LV2_ATOM__String);
        result.atomBeatTime = map.map(LV2_ATOM__beatTime);
        result.logError = map.map(LV2_LOG__Error);
        result.logTrace = map.map(LV2_LOG__Trace);
        result.logWarning = map.map(LV2_LOG__Warning);
        result.maxBlockLength = map.map(LV2_BUF_SIZE__maxBlockLength);
        result.minBlockLength = map.map(LV2_BUF_SIZE__minBlockLength);
        result.sequenceSize = map.map(LV2_BUF_SIZE__sequenceSize);
        result.sampleRate = map.map(LV2_PARAMETERS__sampleRate);
        result.contextName = map.map("urn:tessaly:audio-component#contextName");
        result.midiEvent = map.map(LV2_MIDI__MidiEvent);
        result.stateChanged = map.map(LV2_STATE__StateChanged);
        result.timePosition = map.map(LV2_TIME__Position);
        result.timeFrame = map.map(LV2_TIME__frame);
        result.timeSpeed = map.map(LV2_TIME__speed);
        return result;
    }();
    return urids;
}

}  // namespace orvalo
