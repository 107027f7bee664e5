#include "programs/effect-service/LoadedEffect.h"

#include <glib.h>

#include <algorithm>

#include "platform/audio/lv2/LV2Error.h"
#include "programs/effect-service/PackedState.h"

namespace orvalo {

namespace {

LV2SearchPath bundlesOnly(const std::vector<std::string>& bundles) {
    return {.folders = {}, .ownFolder = {}, .bundles = {bundles.begin(), bundles.end()}};
}

SharedAudio::Layout layoutOf(const bridge::Instantiate& request) {
    return {request.inputChannelCount, request.outputChannelCount, request.portCount};
}

std::optional<LV2StateProperties> stateOf(const bridge::Instantiate& request) {
    if (request.state.empty()) {
        return std::nullopt;
    }
    auto state = unpackState(request.state);
    if (!state) {
        g_warning("The saved state cannot be read; the effect starts with its default.");
    }
    return state;
}

/// False after a warning when the preset cannot be read, and when there is none with that URI.
bool loadPreset(LV2LocalAudioUnit& unit, const std::string& uri) {
    const auto& presets = unit.presets();
    const auto found = std::find_if(presets.begin(), presets.end(),
                                    [&uri](const LV2Preset& preset) { return preset.uri == uri; });
    if (found == presets.end()) {
        return false;
    }
    unit.setCurrentPreset(
        std::make_shared<AUAudioUnitPreset>(found - presets.begin(), found->label));
    return unit.currentPreset() != nullptr;
}

std::shared_ptr<LV2LocalAudioUnit> makeUnit(LV2World& world, const bridge::Instantiate& request) {
    auto unit = std::make_shared<LV2LocalAudioUnit>(
        world, request.uri, AudioComponentDescription{},
        LV2UnitStart{.contextName = request.contextName,
                     .rendering = {request.sampleRate, request.quantum},
                     .filesFolder = request.stateFolder,
                     .state = stateOf(request)});
    const auto& data = unit->data();
    if (layoutOf(request) != SharedAudio::Layout{data.inputChannelCount, data.outputChannelCount,
                                                 static_cast<std::uint32_t>(data.ports.size())}) {
        throw lv2Error(LV2ErrorCode::badData, request.uri,
                       "its ports have changed since the host read them");
    }
    if (!request.preset.empty()) {
        loadPreset(*unit, request.preset);
    }
    for (const auto& control : request.controls) {
        if (control.port < data.ports.size()) {
            unit->controls().setValue(control.port, control.value);
        }
    }
    return unit;
}

}  // namespace

LoadedEffect::LoadedEffect(const bridge::Instantiate& request, FileDescriptor memory,
                           std::function<bool(const std::string&)> sendState)
    : world_(bundlesOnly(request.bundles)),
      audio_(SharedAudio::map(std::move(memory), layoutOf(request))),
      unit_(makeUnit(world_, request)),
      audioThread_(unit_, audio_),
      stateWatch_(unit_, std::move(sendState)) {}

void LoadedEffect::loadPreset(const std::string& uri) {
    if (!orvalo::loadPreset(*unit_, uri)) {
        throw lv2Error(LV2ErrorCode::stateFailed, unit_->data().uri,
                       "its preset <" + uri + "> cannot be loaded");
    }
}

void LoadedEffect::setControl(const bridge::ControlValue& control) {
    const auto& ports = unit_->data().ports;
    if (control.port < ports.size() && ports[control.port].kind == LV2PortKind::control &&
        ports[control.port].isInput) {
        unit_->controls().setValue(control.port, control.value);
        publishControls();
    }
}

void LoadedEffect::publish() {
    publishControls();
    stateWatch_.sendIfChanged();
    if (const auto lost = audioThread_.takeLostCount(); lost > 0) {
        g_warning("%u MIDI messages did not fit into their quantum and are lost.", lost);
    }
}

}  // namespace orvalo
