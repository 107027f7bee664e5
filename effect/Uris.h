#pragma once

#include <lv2/urid/urid.h>

namespace orvalo::effect {

inline constexpr const char* pluginUri = "urn:tessaly:orvalo";
inline constexpr const char* contextNameUri = "urn:tessaly:audio-component#contextName";

/// The URIDs that the plug-in uses; all 0 without a map.
struct Uris {
    explicit Uris(const LV2_URID_Map* map);

    LV2_URID atomSequence = 0;
    LV2_URID atomString = 0;
    LV2_URID midiEvent = 0;
    LV2_URID contextName = 0;
};

}  // namespace orvalo::effect
