#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "platform/audio/bridge/wire/Futex.h"
#include "platform/audio/bridge/wire/SharedAudio.h"

namespace orvalo {

/// The render thread's connection to one service.
struct RenderSession {
    /// Writes to all of the memory, so that the render thread causes no page faults. Control values
    /// are NaN until the service writes them.
    explicit RenderSession(SharedAudio memory)
        : audio(std::move(memory)), eventCopy(SharedAudio::kEventAreaSize) {
        silence(audio.input(kMaximumOfflineFrames));
        silence(audio.output(kMaximumOfflineFrames));
        for (auto& value : audio.controlValues()) {
            value.store(std::numeric_limits<float>::quiet_NaN(), std::memory_order_relaxed);
        }
    }

    /// Whether the service has answered the last quantum.
    bool isAnswered() const noexcept {
        return audio.control().response.load(std::memory_order_acquire) ==
               handedOver.load(std::memory_order_relaxed);
    }

    /// Waits for the answer to the last quantum; false at the deadline and after end().
    bool awaitAnswer(Futex::Deadline deadline) const noexcept {
        const auto& response = audio.control().response;
        const auto wanted = handedOver.load(std::memory_order_relaxed);
        for (;;) {
            const auto seen = response.load(std::memory_order_acquire);
            if (hasEnded.load(std::memory_order_acquire)) {
                return false;
            }
            if (seen == wanted) {
                return true;
            }
            if (std::chrono::steady_clock::now() >= deadline) {
                return false;
            }
            Futex::wait(response, seen, deadline);
        }
    }

    /// Makes awaitAnswer() return at once from now on. The supervisor's thread.
    void end() noexcept {
        hasEnded.store(true, std::memory_order_release);
        auto& response = audio.control().response;
        // Changes the futex word so that a late waiter returns at once.
        constexpr std::uint32_t kNeverAnswered = 0x80000000;
        response.fetch_add(kNeverAnswered, std::memory_order_release);
        Futex::wake(response);
    }

    const SharedAudio audio;
    std::atomic<bool> hasEnded{false};
    /// The number of the last quantum.
    std::atomic<std::uint32_t> handedOver{0};

    // Used by the render thread alone.
    std::int64_t start = 0;        ///< The sample time of the first quantum.
    bool isOutstanding = false;    ///< The last quantum's answer has not been read.
    std::int64_t sampleTime = 0;   ///< Of that quantum.
    std::uint32_t frameCount = 0;  ///< Of that quantum.
    std::vector<std::byte> eventCopy;
};

}  // namespace orvalo
