#include "tests/platform/audio/lv2/Zoo.h"

#include <dlfcn.h>

#include <algorithm>
#include <stdexcept>

namespace orvalo::testing {

std::string zooFolder() {
    return ORVALO_ZOO;
}

LV2World& zooWorld() {
    static auto* world = new LV2World({{zooFolder()}, zooFolder() + "/none"});
    return *world;
}

std::shared_ptr<LV2LocalAudioUnit> makeZooUnit(const std::string& name) {
    return std::make_shared<LV2LocalAudioUnit>(zooWorld(), "urn:orvalo:zoo:" + name,
                                               AudioComponentDescription{});
}

zoo::ProbeRecord& probeRecord() {
    static const auto function = [] {
        void* library = dlopen((zooFolder() + "/probe.lv2/probe.so").c_str(), RTLD_NOW);
        if (library == nullptr) {
            throw std::runtime_error("The probe's library does not load.");
        }
        return reinterpret_cast<zoo::ProbeRecordFunction>(dlsym(library, "probeRecord"));
    }();
    return *function();
}

void setControl(LV2LocalAudioUnit& unit, const std::string& symbol, float value) {
    unit.controls().setValue(unit.controls().input(symbol)->index, value);
}

void collectEvents(AUAudioUnit& unit, std::vector<SentEvent>& events) {
    unit.setMIDIOutputEventBlock([&events](std::int64_t time, std::uint8_t cable,
                                           std::int64_t length, const std::uint8_t* bytes) {
        const auto count = std::max<std::int64_t>(length, 3);
        events.push_back({time, cable, std::vector<int>(bytes, bytes + count), length});
        return 0;
    });
}

}  // namespace orvalo::testing
