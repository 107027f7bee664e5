#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo::testing {

/// A stereo effect whose output is a constant, so that tests see whether the signal is wired
/// through it.
class ConstantUnit : public AUAudioUnit {
  public:
    explicit ConstantUnit(float value, std::vector<std::string> midiOutputNames = {})
        : value_(value), midiOutputNames_(std::move(midiOutputNames)) {}

    AudioComponentDescription componentDescription() const override { return {}; }
    std::string contextName() const override { return contextName_; }
    void setContextName(const std::string& name) override { contextName_ = name; }
    std::vector<std::shared_ptr<AUAudioUnitPreset>> factoryPresets() const override {
        return presets;
    }
    std::shared_ptr<AUAudioUnitPreset> currentPreset() const override { return current; }
    void setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) override {
        current = preset;
    }
    std::vector<std::string> MIDIOutputNames() const override {
        onMIDIOutputNames();
        return midiOutputNames_;
    }
    AUMIDIOutputEventBlock MIDIOutputEventBlock() const override { return block_; }
    void setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) override {
        block_ = std::move(block);
    }
    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override {
        completion(nullptr);
    }
    std::uint32_t inputChannelCount() const override { return 2; }
    std::uint32_t outputChannelCount() const override { return 2; }
    std::uint32_t latency() const override { return 0; }
    void allocateRenderResources(double /*sampleRate*/) override {}
    void render(const AudioBlock& /*input*/, const AudioBlock& output) noexcept override {
        for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
            std::fill_n(output.channels[channel], output.frameCount, value_);
        }
    }

    /// Called by MIDIOutputNames(), which the player calls while it connects the effect.
    std::function<void()> onMIDIOutputNames = [] {};
    std::vector<std::shared_ptr<AUAudioUnitPreset>> presets;
    std::shared_ptr<AUAudioUnitPreset> current;

  private:
    const float value_;
    const std::vector<std::string> midiOutputNames_;
    std::string contextName_;
    AUMIDIOutputEventBlock block_;
};

}  // namespace orvalo::testing
