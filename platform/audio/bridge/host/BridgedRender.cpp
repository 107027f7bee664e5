#include "platform/audio/bridge/host/BridgedRender.h"

#include <sched.h>

#include <algorithm>
#include <utility>

#include "platform/audio/bridge/wire/SharedEvents.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

namespace {

// The render thread never locks.
static_assert(std::atomic<double>::is_always_lock_free &&
              std::atomic<std::uint64_t>::is_always_lock_free);

// An hour at 192 kHz. The service's value is not trusted beyond it.
constexpr std::uint32_t kLongestLatency = 691200000;

/// Requests that the service's audio thread runs one step below the calling thread, so that an
/// effect that never returns cannot keep the render thread from its deadline. Offline: without a
/// real-time priority.
void requestScheduling(SharedAudio::Control& control, bool isOffline) noexcept {
    const int policy = isOffline ? SCHED_OTHER : sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
    sched_param own{};
    const bool isRealTime =
        (policy == SCHED_FIFO || policy == SCHED_RR) && sched_getparam(0, &own) == 0;
    control.schedulingPolicy.store(isRealTime ? policy : SCHED_OTHER, std::memory_order_relaxed);
    control.schedulingPriority.store(isRealTime ? std::max(own.sched_priority - 1, 1) : 0,
                                     std::memory_order_relaxed);
}

}  // namespace

void BridgedRender::connect(std::unique_ptr<RenderSession> session) {
    session_.exchange(std::move(session));
    sessionNumber_.fetch_add(1, std::memory_order_release);
    Futex::wake(sessionNumber_);
}

std::unique_ptr<RenderSession> BridgedRender::disconnect() {
    auto* session = session_.current();
    if (session == nullptr) {
        return nullptr;
    }
    session->end();
    return session_.exchange(nullptr);
}

void BridgedRender::setGivenUp(bool isGivenUp) {
    hasGivenUp_.store(isGivenUp, std::memory_order_release);
    sessionNumber_.fetch_add(1, std::memory_order_release);
    Futex::wake(sessionNumber_);
}

void BridgedRender::setSampleRate(double sampleRate) {
    sampleRate_.store(sampleRate, std::memory_order_relaxed);
}

void BridgedRender::render(const AudioBlock& input, const AudioBlock& output) noexcept {
    const RealTimeScope scope;
    setLatency(0, latency());
    for (std::uint32_t done = 0; done < output.frameCount;) {
        const auto rest = output.frameCount - done;
        span_ = done / kMaximumFramesToRender;
        const auto count = renderFirst({input, AudioBlockPart(input, done, rest).block(),
                                        AudioBlockPart(output, done, rest).block(), done});
        sampleTime_ += count;
        done += count;
    }
    delayed_.keep(input, latency());
}

std::uint32_t BridgedRender::renderFirst(const Rest& rest) noexcept {
    if (isOffline()) {
        awaitSession();
    }
    const RenderSlot<RenderSession>::Access session(session_);
    const bool isReady = session && isPrepared_.load(std::memory_order_acquire);
    const auto wet = isReady ? process(*session, rest) : 0;
    const auto dry = std::min(rest.output.frameCount - wet, kMaximumFramesToRender);
    if (dry > 0) {
        writeDry(rest, wet, dry);
    }
    return wet + dry;
}

void BridgedRender::awaitSession() noexcept {
    const auto limit = std::chrono::steady_clock::now() + limits_.request + limits_.offlineWait;
    for (;;) {
        const auto number = sessionNumber_.load(std::memory_order_acquire);
        if (hasLiveSession() || hasGivenUp_.load(std::memory_order_acquire) ||
            std::chrono::steady_clock::now() >= limit) {
            return;
        }
        Futex::wait(sessionNumber_, number, limit);
    }
}

bool BridgedRender::hasLiveSession() noexcept {
    const RenderSlot<RenderSession>::Access session(session_);
    return session && !session->hasEnded.load(std::memory_order_acquire);
}

std::uint32_t BridgedRender::process(RenderSession& session, const Rest& rest) noexcept {
    const auto& input = rest.input;
    const auto until = deadline(input.frameCount);
    const auto hasAnswer = [this, &session, until](bool waits) {
        const bool isAnswered = waits ? session.awaitAnswer(until) : session.isAnswered();
        if (!isAnswered && !session.hasEnded.load(std::memory_order_acquire)) {
            late_.fetch_add(1, std::memory_order_relaxed);
        }
        return isAnswered;
    };
    if (session.isOutstanding) {
        // The service is still busy with an earlier quantum.
        if (!hasAnswer(isOffline())) {
            return 0;
        }
        readAnswer(session);
    }
    handOver(session, input);
    if (!hasAnswer(true)) {
        if (!isOffline() || !session.hasEnded.load(std::memory_order_acquire)) {
            return 0;
        }
        // Whole spans only: the service is not trusted.
        session.frameCount =
            std::min(session.audio.control().rendered.load(std::memory_order_acquire),
                     input.frameCount - 1) /
            kMaximumFramesToRender * kMaximumFramesToRender;
        if (session.frameCount == 0) {
            return 0;
        }
    }
    const auto count = session.frameCount;
    // The next service does not know the input before its start: its output begins with silence, as
    // long as its latency.
    const auto silent = session.start == 0 ? 0 : session.start + latency() - sampleTime_;
    const auto dry = static_cast<std::uint32_t>(std::clamp<std::int64_t>(silent, 0, count));
    for (std::uint32_t done = 0; done < dry; done += kMaximumFramesToRender) {
        writeDry(rest, done, std::min(dry - done, kMaximumFramesToRender));
    }
    if (dry < count) {
        writeWet(session, rest, dry, count - dry);
    }
    readAnswer(session);
    return count;
}

void BridgedRender::writeDry(const Rest& rest, std::uint32_t from,
                             std::uint32_t frameCount) noexcept {
    fader_.writeDry(delayed_.read(rest.whole, rest.from + from, frameCount, latency()).block(),
                    AudioBlockPart(rest.output, from, frameCount).block());
}

void BridgedRender::writeWet(const RenderSession& session, const Rest& rest, std::uint32_t from,
                             std::uint32_t frameCount) noexcept {
    const auto faded = std::min(frameCount, WetDryFader::kFadeFrames);
    fader_.writeWet(
        delayed_.read(rest.whole, rest.from + from, faded, latency()).block(),
        AudioBlockPart(session.audio.output(session.frameCount), from, frameCount).block(),
        AudioBlockPart(rest.output, from, frameCount).block());
}

void BridgedRender::handOver(RenderSession& session, const AudioBlock& input) const noexcept {
    auto& control = session.audio.control();
    const auto shared = session.audio.input(input.frameCount);
    for (std::uint32_t channel = 0; channel < shared.channelCount; ++channel) {
        std::copy_n(input.channels[channel], input.frameCount, shared.channels[channel]);
    }
    requestScheduling(control, isOffline());
    control.frameCount.store(input.frameCount, std::memory_order_relaxed);
    control.rendered.store(0, std::memory_order_relaxed);
    session.isOutstanding = true;
    if (session.handedOver.load(std::memory_order_relaxed) == 0) {
        session.start = sampleTime_;
    }
    session.sampleTime = sampleTime_;
    session.frameCount = input.frameCount;
    const auto number = session.handedOver.load(std::memory_order_relaxed) + 1;
    session.handedOver.store(number, std::memory_order_relaxed);
    control.request.store(number, std::memory_order_release);
    Futex::wake(control.request);
}

void BridgedRender::readAnswer(RenderSession& session) noexcept {
    session.isOutstanding = false;
    const auto& control = session.audio.control();
    for (std::uint32_t span = 0; span * kMaximumFramesToRender < session.frameCount; ++span) {
        const auto latency = control.latencies[span].load(std::memory_order_relaxed);
        setLatency(span_ + span, latency <= kLongestLatency ? latency : 0);
    }
    const RenderSlot<AUMIDIOutputEventBlock>::Access block(midiBlock_);
    if (!block || !*block) {
        return;
    }
    SharedEventReader reader(session.audio.events(),
                             control.eventBytes.load(std::memory_order_relaxed), session.frameCount,
                             session.eventCopy);
    for (SharedEvent event; reader.read(event);) {
        if (event.cable < midiOutputCount_) {
            (*block)(session.sampleTime + event.frame, event.cable,
                     static_cast<std::int64_t>(event.bytes.size()),
                     reinterpret_cast<const std::uint8_t*>(event.bytes.data()));
        }
    }
}

void BridgedRender::setLatency(std::uint32_t span, std::uint32_t latency) noexcept {
    latency_.store(latency, std::memory_order_relaxed);
    // An answer that comes late may have more spans than are left.
    for (std::size_t later = span; later < latencies_.size(); ++later) {
        latencies_[later] = latency;
    }
}

Futex::Deadline BridgedRender::deadline(std::uint32_t frameCount) const noexcept {
    const auto now = std::chrono::steady_clock::now();
    if (isOffline()) {
        const auto spans = (frameCount + kMaximumFramesToRender - 1) / kMaximumFramesToRender;
        return now + spans * limits_.offlineWait;
    }
    const std::chrono::duration<double> quantum(frameCount /
                                                sampleRate_.load(std::memory_order_relaxed));
    return now + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                     quantum * limits_.waitFraction);
}

}  // namespace orvalo
