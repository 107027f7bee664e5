#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// The audio that an output plays.
class AudioOutputSource {
  public:
    virtual ~AudioOutputSource() = default;

    /// Fills block, of any frame count, in the output's format. The output's render thread, inside
    /// a RealTimeScope and with denormals flushed to zero.
    virtual void renderOutput(const AudioBlock& block) noexcept = 0;

    /// The output's format has changed: another device has replaced the first, or start() opened a
    /// device other than format() had found. A control thread of the output; nothing renders until
    /// the call returns. stop() waits for the call, so it must not lock a mutex that the caller of
    /// stop() holds.
    virtual void outputFormatChanged(const AVAudioFormat& format) = 0;

    /// A silent clock plays because there is no device, or the device went away (true); a device
    /// plays again (false). Not called for the first device, or for the clock that was asked for.
    /// As for outputFormatChanged(), nothing renders until the call returns.
    virtual void outputDeviceMissing(bool isMissing) = 0;
};

/// A device, or a clock without one, that plays a source.
class AudioOutput {
  public:
    virtual ~AudioOutput() = default;

    /// The output that ORVALO_AUDIO_OUTPUT names: jack, pulse, alsa, null, or auto, which is the
    /// default: the first of JACK, PulseAudio and ALSA that works, else null. An unknown word is a
    /// warning and counts as auto. Opens no device yet.
    static std::unique_ptr<AudioOutput> system();

    /// The format that the source must render. Before start() this is the format that start() would
    /// most likely open. One control thread at a time.
    virtual AVAudioFormat format() = 0;

    /// Opens a device and plays source until stop(). A log line names the output. A device that
    /// dies later is reopened, or replaced by another device or a silent clock. Throws NSError when
    /// there is no output.
    virtual void start(AudioOutputSource& source) = 0;

    /// Ends playing; no call to the source is under way when it returns. Not from the source.
    virtual void stop() = 0;

    /// Periods that were not rendered in time since start(). Any thread.
    virtual std::uint64_t xrunCount() const = 0;
};

}  // namespace orvalo
