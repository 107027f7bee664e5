#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/output/OutputDevice.h"
#include "platform/audio/output/WakeSignal.h"

namespace orvalo {

/// An output over devices that may disappear and return. A control thread watches the stream that
/// plays. When the stream ends or stops rendering, the thread opens the same device again, else
/// another one, else a silent clock, which it replaces as soon as a device renders. A device whose
/// streams render nothing or die soon is tried again after pauses that grow.
class SupervisedOutput final : public AudioOutput {
  public:
    struct Timing {
        /// A stream that has not rendered for this long is dead. Sound servers take up to two
        /// seconds to wake a device.
        std::chrono::milliseconds silence{3000};
        /// How often the render count is read, for streams that do not report their end.
        std::chrono::milliseconds watch{250};
        /// How often a device is probed while the clock plays. A stream that was opened in the
        /// place of a dead one and dies sooner than this is replaced by the clock, and its device
        /// is tried again after a pause of this length, which doubles each time.
        std::chrono::milliseconds retry{3000};
        /// The longest pause.
        std::chrono::milliseconds longestPause{60000};
    };
    /// What start() does when no device opens: throw, or play the silent clock. The clock also
    /// stands in for a device that was there and went away before it was open.
    enum class Absence { fail, standIn };

    /// devices: in the order of preference; none to play the silent clock only.
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

    struct Playing {
        OutputDevice* device = nullptr;  ///< Null for the silent clock.
        std::shared_ptr<StreamFeed> feed;
        std::unique_ptr<OutputStream> stream;
    };

    OutputFacts probe(OutputDevice& device);
    /// How long a device is left alone whose last stream failed.
    struct Pause {
        std::chrono::milliseconds length{0};
        Clock::time_point end;
    };

    bool open(OutputDevice& device);
    bool openAny(const OutputDevice* except);
    bool openOneThatRenders();
    bool isPaused(const OutputDevice& device) const;
    void pause(const OutputDevice& device);
    void openClock(const OutputFacts& facts);
    void setPlaying(Playing playing);
    void endPlaying();

    void supervise();
    void connectSource();
    void noteRendering();
    bool isDead() const;
    void replaceStream();
    void returnToDevice();

    const std::vector<std::unique_ptr<OutputDevice>> devices_;
    const Absence absence_;
    const Timing timing_;
    const std::shared_ptr<WakeSignal> wakeSignal_;

    // The control thread's while it runs, else the caller's of start() and stop().
    AudioOutputSource* source_ = nullptr;
    Playing playing_;
    Clock::time_point openedAt_;
    Clock::time_point lastRenderAt_;
    std::uint64_t lastRenderCount_ = 0;
    OutputDevice* lost_ = nullptr;  ///< Went away between a probe and the end of its opening.
    Clock::time_point retryAt_;     ///< When the clock is to be replaced.
    std::map<const OutputDevice*, Pause> pauses_;
    bool reportedMissing_ = false;
    bool replacedAtOnce_ = false;  ///< The stream was opened in the place of a dead one.
    std::string lastFailure_;      ///< Why the last opening failed, as the end of a sentence.

    std::thread thread_;
    std::atomic<bool> stopping_{false};

    std::atomic<OutputDevice*> seen_{nullptr};  ///< Was there at a probe since the last stream.

    mutable std::mutex facts_;  ///< Guards the members below; never held during a device's calls.
    std::optional<AVAudioFormat> reportedFormat_;
    std::shared_ptr<StreamFeed> countedFeed_;
    std::uint64_t earlierXruns_ = 0;  ///< Of the streams since start() that have ended.
};

}  // namespace orvalo
