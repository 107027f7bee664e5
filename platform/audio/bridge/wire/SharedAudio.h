#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/audio/signal/AudioBlock.h"
#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// The memory that the host and an effect service share: the effect's audio input and output, its
/// MIDI output, the values of its control ports, and the two words by which the processes hand over
/// a quantum. The host creates it with a fixed size. Each side uses its own copy of the layout.
class SharedAudio {
  public:
    /// Equal on both sides.
    struct Layout {
        std::uint32_t inputChannelCount = 0;
        std::uint32_t outputChannelCount = 0;
        std::uint32_t portCount = 0;

        friend bool operator==(const Layout&, const Layout&) = default;
    };

    /// request and response count quanta: the host increments request when it has written the
    /// input, the service sets response to request when it has written the output.
    struct Control {
        alignas(64) std::atomic<std::uint32_t> request{0};
        // Written by the host before request.
        /// 1 to kMaximumOfflineFrames. The service renders them in spans of kMaximumFramesToRender.
        std::atomic<std::uint32_t> frameCount{0};
        /// The wanted scheduling of the service's audio thread, as for sched_setscheduler().
        std::atomic<std::int32_t> schedulingPolicy{0};
        std::atomic<std::int32_t> schedulingPriority{0};
        alignas(64) std::atomic<std::uint32_t> response{0};
        // Written by the service after each span, rendered last; set to 0 by the host before
        // request.
        /// The frames of the quantum that have been rendered.
        std::atomic<std::uint32_t> rendered{0};
        /// AUAudioUnit::latency() after each span.
        std::array<std::atomic<std::uint32_t>, kMaximumOfflineFrames / kMaximumFramesToRender>
            latencies{};
        /// The bytes used in events().
        std::atomic<std::uint32_t> eventBytes{0};
        /// Whether samples that were NaN or infinite have been set to 0.
        std::atomic<std::uint32_t> isSilenced{0};
        /// Why the system refused the wanted scheduling: a value of errno; 0 when it did not.
        std::atomic<std::int32_t> schedulingError{0};
    };

    /// The capacity of events(), in bytes: 64 KiB for each span.
    static constexpr std::size_t kEventAreaSize =
        std::size_t{65536} * (kMaximumOfflineFrames / kMaximumFramesToRender);

    /// Creates the memory, all 0. Host. Throws NSError.
    static SharedAudio make(const Layout& layout);
    /// Maps the host's memory. Service. Throws NSError when its size is not that of the layout.
    static SharedAudio map(FileDescriptor descriptor, const Layout& layout);

    SharedAudio(SharedAudio&& other) noexcept;
    SharedAudio& operator=(SharedAudio&&) = delete;
    ~SharedAudio();

    const Layout& layout() const { return layout_; }
    /// For Instantiate.
    int descriptor() const { return descriptor_.get(); }

    Control& control() const { return *reinterpret_cast<Control*>(memory_); }
    /// The channels; frameCount: as many frames of them.
    AudioBlock input(std::uint32_t frameCount) const {
        return {inputs_.data(), layout_.inputChannelCount, frameCount};
    }
    AudioBlock output(std::uint32_t frameCount) const {
        return {outputs_.data(), layout_.outputChannelCount, frameCount};
    }
    std::span<std::byte> events() const { return {events_, kEventAreaSize}; }
    /// The values of the control ports by port index, written by the service.
    std::span<std::atomic<float>> controlValues() const { return {values_, layout_.portCount}; }

  private:
    SharedAudio(FileDescriptor descriptor, const Layout& layout);

    FileDescriptor descriptor_;
    Layout layout_;
    std::size_t size_;
    std::byte* memory_ = nullptr;
    std::vector<float*> inputs_;
    std::vector<float*> outputs_;
    std::byte* events_ = nullptr;
    std::atomic<float>* values_ = nullptr;
};

}  // namespace orvalo
