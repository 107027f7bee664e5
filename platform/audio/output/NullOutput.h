#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// An output that renders quanta of a fixed size by the monotonic clock and discards them. It logs
/// nothing.
class NullOutput : public AudioOutput {
  public:
    /// quantumFrames: above 0.
    explicit NullOutput(const AVAudioFormat& format = {48000.0, 2},
                        std::uint32_t quantumFrames = 512);
    ~NullOutput() override;
    NullOutput(const NullOutput&) = delete;
    NullOutput& operator=(const NullOutput&) = delete;

    AVAudioFormat format() override { return facts_.format; }
    void start(AudioOutputSource& source) override;
    void stop() override;
    std::uint64_t xrunCount() const override;

  private:
    OutputFacts facts_;
    const std::shared_ptr<StreamFeed> feed_;
    std::unique_ptr<OutputStream> stream_;
    std::atomic<std::uint64_t> earlierXruns_{0};  ///< The feed's, before the last start().
};

}  // namespace orvalo
