#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <mutex>
#include <string>
#include <vector>

#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/foundation/NSError.h"

namespace orvalo::testing {

/// An effect that multiplies each channel by a gain and records how it is used.
class TestUnit : public AUAudioUnit {
  public:
    struct Shape {
        std::uint32_t inputs = 2;
        std::uint32_t outputs = 2;
        float gain = 1.0F;
        std::uint32_t maximumFrames = kMaximumFramesToRender;
        std::string refusal = {};  ///< The error of allocateRenderResources(); none when empty.
    };

    explicit TestUnit(Shape shape) : shape_(std::move(shape)) {}

    /// The rates it was prepared for, in order.
    std::vector<double> rates() const {
        const std::lock_guard lock(mutex_);
        return rates_;
    }
    /// How many starts of the engine it was told of.
    int starts() const { return starts_; }
    /// The frame counts of the render calls, in order.
    const std::vector<std::uint32_t>& frameCounts() const { return frameCounts_; }
    /// The largest absolute sample of an input channel.
    float peak(std::size_t channel) const { return peaks_.at(channel); }
    /// Whether it was prepared while it rendered.
    bool hasOverlapped() const { return overlapped_; }

    AudioComponentDescription componentDescription() const override { return {}; }
    std::string contextName() const override { return {}; }
    void setContextName(const std::string& /*name*/) override {}
    std::vector<std::shared_ptr<AUAudioUnitPreset>> factoryPresets() const override { return {}; }
    std::shared_ptr<AUAudioUnitPreset> currentPreset() const override { return nullptr; }
    void setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& /*preset*/) override {}
    std::vector<std::string> MIDIOutputNames() const override { return {}; }
    AUMIDIOutputEventBlock MIDIOutputEventBlock() const override { return {}; }
    void setMIDIOutputEventBlock(AUMIDIOutputEventBlock /*block*/) override {}
    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override {
        completion(nullptr);
    }
    std::uint32_t inputChannelCount() const override { return shape_.inputs; }
    std::uint32_t outputChannelCount() const override { return shape_.outputs; }
    std::uint32_t latency() const override { return 0; }

    void playbackStarts() override {
        overlapped_ = overlapped_ || isRendering_;
        ++starts_;
    }

    std::uint32_t maximumFramesToRender() const override { return shape_.maximumFrames; }
    void allocateRenderResources(double sampleRate) override {
        overlapped_ = overlapped_ || isRendering_;
        if (!shape_.refusal.empty()) {
            throw NSError("TestUnit", 1, shape_.refusal);
        }
        const std::lock_guard lock(mutex_);
        rates_.push_back(sampleRate);
    }

    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        isRendering_ = true;
        frameCounts_.push_back(output.frameCount);
        for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
            for (std::uint32_t frame = 0; frame < output.frameCount; ++frame) {
                const float sample =
                    channel < input.channelCount ? input.channels[channel][frame] : 0.0F;
                peaks_.at(channel) = std::max(peaks_.at(channel), std::abs(sample));
                output.channels[channel][frame] = shape_.gain * sample;
            }
        }
        isRendering_ = false;
    }

  private:
    const Shape shape_;
    mutable std::mutex mutex_;
    std::vector<double> rates_;
    std::atomic<int> starts_{0};
    std::vector<std::uint32_t> frameCounts_;
    std::array<float, kMaximumChannels> peaks_{};
    std::atomic<bool> isRendering_ = false;
    std::atomic<bool> overlapped_ = false;
};

}  // namespace orvalo::testing
