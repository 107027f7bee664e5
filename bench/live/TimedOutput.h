#pragma once

#include <memory>

#include "bench/live/QuantumTimes.h"
#include "bench/live/timed_effect/TimedEffect.h"
#include "platform/audio/output/AudioOutput.h"

namespace orvalo::bench {

/// An output that times each render call of another one.
class TimedOutput : public AudioOutput, private AudioOutputSource {
  public:
    /// times: must outlive this output.
    TimedOutput(std::unique_ptr<AudioOutput> output, RunNanoseconds effectTime, QuantumTimes& times)
        : output_(std::move(output)), effectTime_(effectTime), times_(times) {}

    AVAudioFormat format() override { return output_->format(); }
    void start(AudioOutputSource& source) override;
    void stop() override { output_->stop(); }
    std::uint64_t xrunCount() const override { return output_->xrunCount(); }

  private:
    void renderOutput(const AudioBlock& block) noexcept override;
    void outputFormatChanged(const AVAudioFormat& format) override;
    void outputDeviceMissing(bool isMissing) override;

    const std::unique_ptr<AudioOutput> output_;
    const RunNanoseconds effectTime_;
    QuantumTimes& times_;
    AudioOutputSource* source_ = nullptr;
};

}  // namespace orvalo::bench
