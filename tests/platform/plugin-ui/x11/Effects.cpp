#include "tests/platform/plugin-ui/x11/Effects.h"

#include <dlfcn.h>

#include <array>
#include <stdexcept>

namespace orvalo::testing {

namespace {

const std::string kFolder = ORVALO_PLUGIN_UI_EFFECTS;

LV2World& world() {
    static auto* effects = new LV2World({{kFolder}, kFolder + "/none"});
    return *effects;
}

}  // namespace

std::shared_ptr<LV2LocalAudioUnit> makeUnit(const std::string& name) {
    return std::make_shared<LV2LocalAudioUnit>(world(), "urn:orvalo:ui:" + name,
                                               AudioComponentDescription{});
}

LV2PluginUIData readUIData(const LV2LocalAudioUnit& unit) {
    return LV2PluginUIData::read(unit.world(), unit.data());
}

zoo::UIRecord& uiRecord() {
    static const auto function = [] {
        void* library = dlopen((kFolder + "/plugin-ui.lv2/ui.so").c_str(), RTLD_NOW);
        if (library == nullptr) {
            throw std::runtime_error("The test UI's library does not load.");
        }
        return reinterpret_cast<zoo::UIRecordFunction>(dlsym(library, "uiRecord"));
    }();
    return *function();
}

void resetRecord() {
    uiRecord() = zoo::UIRecord();
}

void render(AUAudioUnit& unit, int blockCount) {
    std::array<std::array<float, 64>, 16> memory{};
    std::array<float*, 8> inputs{};
    std::array<float*, 8> outputs{};
    for (std::size_t channel = 0; channel < inputs.size(); ++channel) {
        inputs[channel] = memory[channel].data();
        outputs[channel] = memory[inputs.size() + channel].data();
    }
    for (int block = 0; block < blockCount; ++block) {
        unit.render({inputs.data(), unit.inputChannelCount(), 64},
                    {outputs.data(), unit.outputChannelCount(), 64});
    }
}

}  // namespace orvalo::testing
