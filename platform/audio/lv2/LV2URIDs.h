#pragma once

#include <lv2/urid/urid.h>

namespace orvalo {

/// The numbers of the URIDs that the host itself speaks of.
struct LV2URIDs {
    LV2_URID atomBlank;
    LV2_URID atomBool;
    LV2_URID atomChunk;
    LV2_URID atomDouble;
    LV2_URID atomFloat;
    LV2_URID atomInt;
    LV2_URID atomLong;
    LV2_URID atomObject;
    LV2_URID atomResource;
    LV2_URID atomSequence;
    LV2_URID atomString;
    LV2_URID atomBeatTime;
    LV2_URID logError;
    LV2_URID logTrace;
    LV2_URID logWarning;
    LV2_URID maxBlockLength;
    LV2_URID minBlockLength;
    LV2_URID sequenceSize;
    LV2_URID sampleRate;
    LV2_URID contextName;
    LV2_URID midiEvent;
    LV2_URID stateChanged;
    LV2_URID timePosition;
    LV2_URID timeFrame;
    LV2_URID timeSpeed;

    static const LV2URIDs& shared();
};

}  // namespace orvalo
