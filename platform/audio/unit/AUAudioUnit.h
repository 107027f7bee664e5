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

/// Receives the MIDI that a unit sends, on the render thread, in time order: the sample time of the
/// event on the unit's time line, the cable, the length in bytes, and the bytes, of which at least
/// three may be read and which live until the handler returns. Returns 0 for no error.
using AUMIDIOutputEventBlock = std::function<std::int32_t(
    std::int64_t sampleTime, std::uint8_t cable, std::int64_t length, const std::uint8_t* bytes)>;

/// One instance of an effect, wherever it is loaded. The control operations may be called from any
/// thread, also while the unit renders; they are serialised, never block the render thread, and
/// never overlap its work on the same instance where the effect does not allow that.
class AUAudioUnit : public NSObject {
  public:
    virtual AudioComponentDescription componentDescription() const = 0;

    /// The name of the context that the unit runs in; told to the effect at once.
    virtual std::string contextName() const = 0;
    virtual void setContextName(const std::string& name) = 0;

    /// The effect's own presets, numbered from 0 in the order of their names.
    virtual std::vector<std::shared_ptr<AUAudioUnitPreset>> factoryPresets() const = 0;
    /// The preset set last; absent before that.
    virtual std::shared_ptr<AUAudioUnitPreset> currentPreset() const = 0;
    /// Loads the factory preset of that number. Absent, or a number that no preset has, changes
    /// only what currentPreset() gives: to absent.
    virtual void setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) = 0;

    /// The names of the MIDI outputs; an output's position is its cable.
    virtual std::vector<std::string> MIDIOutputNames() const = 0;
    /// The handler of MIDI output; an empty one discards it.
    virtual AUMIDIOutputEventBlock MIDIOutputEventBlock() const = 0;
    virtual void setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) = 0;

    /// Asks for the effect's UI. completion gets it, or an absent one when there is none.
    virtual void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) = 0;

    /// Audio channels in and out, fixed for the effect; either may be 0.
    virtual std::uint32_t inputChannelCount() const = 0;
    virtual std::uint32_t outputChannelCount() const = 0;
    /// By how many frames the output is behind the input, as last reported.
    virtual std::uint32_t latency() const = 0;

    /// Whether the unit is rendered as fast as it can be, so that it may take its time over a
    /// block. At first it is not. Never while render() may be called.
    virtual void setRenderingOffline(bool /*isOffline*/) {}

    /// Makes the unit ready to render at a rate (Hz), in calls of up to kMaximumFramesToRender
    /// frames. At another rate than before the effect is made anew and keeps its state. Never
    /// while render() may be called. Throws NSError.
    virtual void allocateRenderResources(double sampleRate) = 0;

    /// Processes input.frameCount frames; input and output have the unit's channel counts and the
    /// same frame count, and do not overlap. Keeps the render thread's promises as far as the
    /// effect does. Render thread, one at a time, after allocateRenderResources().
    virtual void render(const AudioBlock& input, const AudioBlock& output) noexcept = 0;
};

}  // namespace orvalo
