#include "tests/platform/audio/bridge/host/BridgedEffect.h"

namespace orvalo::testing {

std::filesystem::path effectServicePath() {
    return ORVALO_EFFECT_SERVICE;
}

LV2World& misbehavingWorld() {
    static auto* world = new LV2World({{ORVALO_MISBEHAVING}, ORVALO_MISBEHAVING "/none", {}});
    return *world;
}

std::shared_ptr<BridgedAudioUnit> makeBridged(LV2World& world, const std::string& uri,
                                              const BridgeLimits& limits) {
    auto unit = std::make_shared<BridgedAudioUnit>(world, uri, AudioComponentDescription{},
                                                   effectServicePath(), limits);
    unit->setRenderingOffline(true);
    return unit;
}

bool loadPreset(AUAudioUnit& unit, const std::string& name) {
    for (const auto& preset : unit.factoryPresets()) {
        if (preset->name == name) {
            unit.setCurrentPreset(preset);
            return unit.currentPreset() == preset;
        }
    }
    return false;
}

QuantumFeed feed(AUAudioUnit& unit) {
    return QuantumFeed(
        [&unit](const AudioBlock& input, const AudioBlock& output) { unit.render(input, output); });
}

}  // namespace orvalo::testing
