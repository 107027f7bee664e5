#pragma once

#include <lv2/urid/urid.h>

namespace orvalo::effect {

inline constexpr const char* pluginUri = "urn:tessaly:orvalo";
/// The plug-in with a side-chain input.
inline constexpr const char* sideChainPluginUri = "urn:tessaly:orvalo:sidechain";
inline constexpr const char* contextNameUri = "urn:tessaly:audio-component#contextName";

/// The URIDs that the plug-in uses; all 0 without a map.
struct Uris {
    explicit Uris(const LV2_URID_Map* map);

    LV2_URID atomBlank = 0;
    LV2_URID atomDouble = 0;
    LV2_URID atomFloat = 0;
    LV2_URID atomInt = 0;
    LV2_URID atomLong = 0;
    LV2_URID atomObject = 0;
    LV2_URID atomSequence = 0;
    LV2_URID atomString = 0;
    LV2_URID atomVector = 0;
    LV2_URID watchDetector = 0;
    LV2_URID detectorSpectrum = 0;
    LV2_URID bandLevels = 0;
    LV2_URID midiEvent = 0;
    LV2_URID timePosition = 0;
    LV2_URID timeBar = 0;
    LV2_URID timeBarBeat = 0;
    LV2_URID timeBeat = 0;
    LV2_URID timeBeatUnit = 0;
    LV2_URID timeBeatsPerBar = 0;
    LV2_URID timeBeatsPerMinute = 0;
    LV2_URID timeSpeed = 0;
    LV2_URID contextName = 0;
};

}  // namespace orvalo::effect
