#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio/signal/AudioBlock.h"
#include "platform/audio/unit/AUAudioUnitPreset.h"
#include "platform/audio/unit/AudioComponentDescription.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class UIViewController;

/// Receives the MIDI events of a unit on the render thread, in time order. sampleTime: frames since
/// the unit's first; bytes: at least three may be read, until the handler returns. Returns 0 for no
/// error.
using AUMIDIOutputEventBlock = std::function<std::int32_t(
    std::int64_t sampleTime, std::uint8_t cable, std::int64_t length, const std::uint8_t* bytes)>;

/// One instance of an effect, in this process or in its service. Any thread may call the control
/// operations, also while the unit renders; they are serialised, never block the render thread, and
/// never overlap rendering where the effect does not allow that.
class AUAudioUnit : public NSObject {
  public:
    virtual AudioComponentDescription componentDescription() const = 0;

    /// The name of the context that the unit runs in; the setter passes it to the effect at once.
    virtual std::string contextName() const = 0;
    virtual void setContextName(const std::string& name) = 0;

    /// The effect's presets, numbered from 0 in the order of their names.
    virtual std::vector<std::shared_ptr<AUAudioUnitPreset>> factoryPresets() const = 0;
    /// The preset set last; null before.
    virtual std::shared_ptr<AUAudioUnitPreset> currentPreset() const = 0;
    /// Loads the factory preset of that number. A null preset or an unknown number only makes
    /// currentPreset() null.
    virtual void setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) = 0;

    /// The names of the MIDI outputs; an output's position is its cable.
    virtual std::vector<std::string> MIDIOutputNames() const = 0;
    /// The handler of MIDI output; an empty one discards it.
    virtual AUMIDIOutputEventBlock MIDIOutputEventBlock() const = 0;
    virtual void setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) = 0;

    /// Requests the plug-in UI. Calls completion with it, or with null without one.
    virtual void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) = 0;

    /// Audio channels in and out, fixed for the effect; either may be 0.
    virtual std::uint32_t inputChannelCount() const = 0;
    virtual std::uint32_t outputChannelCount() const = 0;
    /// Frames by which the output lags behind the input, as the effect reported last.
    virtual std::uint32_t latency() const = 0;
    /// The latency after a span of kMaximumFramesToRender frames of the last render(), counted from
    /// 0. Never while render() may be called.
    virtual std::uint32_t latencyAfterSpan(std::uint32_t /*span*/) const { return latency(); }

    /// The most frames that one render() may have; setRenderingOffline() may change it.
    virtual std::uint32_t maximumFramesToRender() const { return kMaximumFramesToRender; }

    /// Whether rendering is offline, so that rendering a quantum may take longer than its duration;
    /// false at first. Never while render() may be called.
    virtual void setRenderingOffline(bool /*isOffline*/) {}

    /// The engine starts: a unit that had stopped working may try again. Never while render() may
    /// be called.
    virtual void playbackStarts() {}

    /// Prepares the unit to render at a rate (Hz), in calls of up to maximumFramesToRender()
    /// frames. A new rate instantiates the effect again with the same state. Never while render()
    /// may be called. Throws NSError.
    virtual void allocateRenderResources(double sampleRate) = 0;

    /// Renders input.frameCount frames; input and output have the unit's channel counts and the
    /// same frame count, and do not overlap. Never allocates, locks, logs or blocks, apart from the
    /// effect itself. Render thread, after allocateRenderResources().
    virtual void render(const AudioBlock& input, const AudioBlock& output) noexcept = 0;
};

}  // namespace orvalo
