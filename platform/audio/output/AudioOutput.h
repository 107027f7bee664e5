#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// What an output pulls its audio from.
class AudioOutputSource {
  public:
    virtual ~AudioOutputSource() = default;

    /// Fills block, of any frame count, in the output's format. The output's render thread, which
    /// is inside a RealTimeScope with denormals flushed to zero.
    virtual void renderOutput(const AudioBlock& block) noexcept = 0;

    /// The output has changed its format (another device took over, or the one that start() opened
    /// is not the one that format() had seen). A control thread of the output's, while nothing
    /// renders; rendering goes on when it returns. stop() waits for it, so it takes no lock that
    /// the caller of stop() holds.
    virtual void outputFormatChanged(const AVAudioFormat& format) = 0;
};

/// Where sound goes: a device, or a clock that discards it.
class AudioOutput {
  public:
    virtual ~AudioOutput() = default;

    /// The output that ORVALO_AUDIO_OUTPUT asks for: jack, pulse, alsa, null, or auto (also when
    /// unset): the first of JACK, PulseAudio and ALSA that works, else null. Takes no device yet.
    /// An unknown word counts as auto, said once on standard error.
    static std::unique_ptr<AudioOutput> system();

    /// The format that the output wants; a control thread at a time. Before start() the best that
    /// is known without holding the device.
    virtual AVAudioFormat format() = 0;

    /// Opens the device and pulls from source until stop(). One line on standard error says which
    /// output plays. A device that goes away later is reopened, or replaced by the null output,
    /// without the caller's help. Throws NSError when there is no output to be had.
    virtual void start(AudioOutputSource& source) = 0;

    /// Ends pulling; no call to the source is under way when it returns. Not from the source.
    virtual void stop() = 0;

    /// How often the device has run dry since start().
    virtual std::uint64_t xrunCount() const = 0;
};

}  // namespace orvalo
