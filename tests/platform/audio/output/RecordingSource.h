#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "platform/audio/output/AudioOutput.h"

namespace orvalo::testing {

/// A source that plays a known signal and records how an output calls it. The signal's frame n is
/// sample(n) on channel 0 and its negative on the others.
class RecordingSource : public AudioOutputSource {
  public:
    /// Repeats 1 to 32768, over 65536: exact in 32-bit floats and in 16-bit integers.
    static float sample(std::uint64_t frame) {
        return static_cast<float>(frame % 32768 + 1) / 65536.0F;
    }

    void renderOutput(const AudioBlock& block) noexcept override;
    void outputFormatChanged(const AVAudioFormat& format) override;
    void outputDeviceMissing(bool isMissing) override;

    /// Waits until count more blocks are rendered; false when they are not within a minute.
    bool waitForBlocks(std::uint64_t count);

    std::uint64_t blockCount() const { return blocks_; }
    std::uint64_t frameCount() const { return frames_; }
    std::uint32_t lastFrameCount() const { return lastFrameCount_; }
    std::uint32_t lastChannelCount() const { return lastChannelCount_; }
    std::uint32_t smallestFrameCount() const { return smallestFrameCount_; }
    std::uint32_t largestFrameCount() const { return largestFrameCount_; }
    /// Render calls and format changes that began during another one.
    std::uint64_t overlapCount() const { return overlaps_; }
    /// Render calls outside a RealTimeScope.
    std::uint64_t ordinaryCallCount() const { return ordinaryCalls_; }
    /// Render calls whose thread computes with denormals.
    std::uint64_t denormalCount() const { return denormals_; }
    /// The name of the thread of the last render call.
    std::string threadName() const;
    std::vector<AVAudioFormat> formatChanges() const;
    /// The arguments of outputDeviceMissing().
    std::vector<bool> missingReports() const;

    std::function<void()> whileRendering;  ///< Called in each render call; set it before start().
    std::function<void()>
        whileFormatChanges;  ///< Called in each format change; set it before start().

  private:
    std::atomic<bool> busy_{false};
    std::atomic<std::uint64_t> blocks_{0};
    std::atomic<std::uint64_t> frames_{0};
    std::atomic<std::uint32_t> lastFrameCount_{0};
    std::atomic<std::uint32_t> lastChannelCount_{0};
    std::atomic<std::uint32_t> smallestFrameCount_{UINT32_MAX};
    std::atomic<std::uint32_t> largestFrameCount_{0};
    std::atomic<std::uint64_t> overlaps_{0};
    std::atomic<std::uint64_t> ordinaryCalls_{0};
    std::atomic<std::uint64_t> denormals_{0};
    std::array<std::atomic<std::uint64_t>, 2> threadName_{};
    mutable std::mutex mutex_;
    std::vector<AVAudioFormat> formatChanges_;
    std::vector<bool> missingReports_;
};

}  // namespace orvalo::testing
