#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/output/OutputDevice.h"
#include "platform/audio/output/Wakeup.h"

namespace orvalo {

/// An output over devices that come and go. A control thread watches the stream that plays; when
/// it ends or falls silent, the thread opens the same device again, else another one, else a
/// silent clock, from which it tries to return to a device.
class SupervisedOutput final : public AudioOutput {
  public:
    struct Timing {
        /// A stream that has not rendered for so long has died. Sound servers take up to two
        /// seconds to wake a device.
        std::chrono::milliseconds silence{3000};
        /// How often a stream is looked at that does not tell of its end by itself.
        std::chrono::milliseconds watch{250};
        /// How often a device is looked for while the clock stands in. A stream that replaced
        /// another at once and dies sooner than that is replaced by the clock.
        std::chrono::milliseconds retry{3000};
    };
    /// What to do when no device is there at start().
    enum class Absence { fail, standIn };

    /// devices: in the order of preference; none for the silent clock by choice.
    SupervisedOutput(std::vector<std::unique_ptr<OutputDevice>> devices, Absence absence,
                     const Timing& timing);
    SupervisedOutput(std::vector<std::unique_ptr<OutputDevice>> devices, Absence absence)
        : SupervisedOutput(std::move(devices), absence, Timing{}) {}
    ~SupervisedOutput() override;
    SupervisedOutput(const SupervisedOutput&) = delete;
    SupervisedOutput& operator=(const SupervisedOutput&) = delete;

    AVAudioFormat format() override;
    void start(AudioOutputSource& source) override;
    void stop() override;
    std::uint64_t xrunCount() const override;

  private:
    using Clock = std::chrono::steady_clock;

    /// A stream, its gate and where it comes from; no device: the silent clock.
    struct Playing {
        OutputDevice* device = nullptr;
        std::shared_ptr<RenderGate> gate;
        std::unique_ptr<OutputStream> stream;
    };

    std::optional<OutputFacts> lookAround();
    bool open(OutputDevice& device);
    bool openAny(const OutputDevice* except);
    void openClock(const OutputFacts& facts);
    void setPlaying(Playing playing);
    void endPlaying();

    void supervise();
    void letRender();
    bool hasDied();
    void replaceStream();
    void returnToDevice();

    const std::vector<std::unique_ptr<OutputDevice>> devices_;
    const Absence absence_;
    const Timing timing_;
    const std::shared_ptr<Wakeup> wakeup_;

    // start() and stop() use these while the control thread does not exist; else it does.
    AudioOutputSource* source_ = nullptr;
    Playing playing_;
    Clock::time_point openedAt_;
    Clock::time_point lastRenderAt_;
    std::uint64_t lastRenderCount_ = 0;
    bool replacedAtOnce_ = false;  ///< The stream was opened as soon as the one before had died.
    std::string lastFailure_;      ///< Why the last opening failed, as the end of a sentence.

    std::thread thread_;
    std::atomic<bool> stopping_{false};

    mutable std::mutex facts_;  ///< Guards what follows; never held over a call to others.
    std::optional<AVAudioFormat> toldFormat_;
    std::shared_ptr<RenderGate> countedGate_;
    std::uint64_t earlierXruns_ = 0;  ///< Of the streams since start() that play no more.
};

}  // namespace orvalo
