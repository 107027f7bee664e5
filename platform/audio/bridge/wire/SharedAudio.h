#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/audio/signal/AudioBlock.h"
#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// The memory that the host and the process of an effect share: the effect's audio in and out, the
/// MIDI that it sends, the values of its control ports, and the two words by which the processes
/// hand each other a quantum. The host makes it, and its extent can change no more. Each side reads
/// its own idea of the layout, never the other's.
class SharedAudio {
  public:
    /// What both sides have to agree on.
    struct Layout {
        std::uint32_t inputChannelCount = 0;
        std::uint32_t outputChannelCount = 0;
        std::uint32_t portCount = 0;

        friend bool operator==(const Layout&, const Layout&) = default;
    };

    /// The plain part. The words count quanta: the host raises request after it has written the
    /// quantum, the service sets response to request's number after it has answered.
    struct Control {
        std::uint32_t version = 0;
        alignas(64) std::atomic<std::uint32_t> request{0};
        /// By the host, before request: the quantum's frames, 1 to kMaximumFramesToRender.
        std::atomic<std::uint32_t> frameCount{0};
        /// By the host, before request: how the service's audio thread is to be scheduled where the
        /// system grants it (sched_setscheduler's policy and priority).
        std::atomic<std::int32_t> schedulingPolicy{0};
        std::atomic<std::int32_t> schedulingPriority{0};
        alignas(64) std::atomic<std::uint32_t> response{0};
        /// By the service, before response: frames, as AUAudioUnit::latency().
        std::atomic<std::uint32_t> latency{0};
        /// By the service, before response: the bytes of the quantum's events.
        std::atomic<std::uint32_t> eventBytes{0};
    };

    /// Room for a quantum's events, in bytes.
    static constexpr std::size_t kEventAreaSize = 65536;

    /// The host's: new memory, all 0. Throws NSError.
    static SharedAudio make(const Layout& layout);
    /// The service's: maps what the host made; takes the descriptor. Throws NSError when its extent
    /// or version is not that of the layout.
    static SharedAudio map(FileDescriptor descriptor, const Layout& layout);

    SharedAudio(SharedAudio&& other) noexcept;
    SharedAudio& operator=(SharedAudio&&) = delete;
    ~SharedAudio();

    const Layout& layout() const { return layout_; }
    /// For the message that hands the memory over.
    int descriptor() const { return descriptor_.get(); }

    Control& control() const { return *reinterpret_cast<Control*>(memory_); }
    /// The channels, for frameCount frames.
    AudioBlock input(std::uint32_t frameCount) const {
        return {inputs_.data(), layout_.inputChannelCount, frameCount};
    }
    AudioBlock output(std::uint32_t frameCount) const {
        return {outputs_.data(), layout_.outputChannelCount, frameCount};
    }
    std::span<std::byte> events() const { return {events_, kEventAreaSize}; }
    /// The values of the control inputs by port index, as the service has them last.
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
