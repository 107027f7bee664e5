#pragma once

#include <array>
#include <vector>

#include "platform/audio/output/AudioOutput.h"
#include "platform/foundation/RealTimeScope.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

/// An output that renders when the test calls pull(), on the calling thread, and keeps the result.
class StepOutput : public AudioOutput {
  public:
    explicit StepOutput(const AVAudioFormat& format) : format_(format) {}

    AVAudioFormat format() override { return format_; }
    void start(AudioOutputSource& source) override { source_ = &source; }
    void stop() override { source_ = nullptr; }
    std::uint64_t xrunCount() const override { return 0; }

    bool isStarted() const { return source_ != nullptr; }

    /// Switches to a device of another format while playing.
    void changeFormat(const AVAudioFormat& format) {
        format_ = format;
        source_->outputFormatChanged(format);
    }

    /// Renders and returns one quantum.
    Signal pull(std::uint32_t frames) {
        Signal quantum(format_.channelCount, std::vector<float>(frames, 7.0F));
        std::array<float*, kMaximumChannels> channels{};
        for (std::size_t channel = 0; channel < quantum.size(); ++channel) {
            channels[channel] = quantum[channel].data();
        }
        {
            const RealTimeScope scope;
            source_->renderOutput({channels.data(), format_.channelCount, frames});
        }
        for (std::size_t channel = 0; channel < quantum.size(); ++channel) {
            played_.resize(quantum.size());
            played_[channel].insert(played_[channel].end(), quantum[channel].begin(),
                                    quantum[channel].end());
        }
        return quantum;
    }

    /// All quanta so far.
    const Signal& played() const { return played_; }

  private:
    AVAudioFormat format_;
    AudioOutputSource* source_ = nullptr;
    Signal played_;
};

}  // namespace orvalo::testing
