#include "platform/audio/bridge/host/BridgedRender.h"

#include <sched.h>

#include <algorithm>
#include <utility>

#include "platform/audio/bridge/wire/SharedEvents.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

namespace {

// An hour at 192 kHz. The service's value is not trusted beyond it.
constexpr std::uint32_t kLongestLatency = 691200000;

/// The service's audio thread runs one step below the calling thread, so that an effect that never
/// returns cannot keep the render thread from its deadline. Offline: without a real-time priority.
Scheduling wantedScheduling(bool isOffline) noexcept {
    const int policy = isOffline ? SCHED_OTHER : sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
    sched_param own{};
    const bool isRealTime =
        (policy == SCHED_FIFO || policy == SCHED_RR) && sched_getparam(0, &own) == 0;
    return isRealTime ? Scheduling{policy, std::max(own.sched_priority - 1, 1)} : Scheduling{};
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

void BridgedRender::giveUp() {
    hasGivenUp_.store(true, std::memory_order_release);
    sessionNumber_.fetch_add(1, std::memory_order_release);
    Futex::wake(sessionNumber_);
}

void BridgedRender::setSampleRate(double sampleRate) {
    sampleRate_.store(sampleRate, std::memory_order_relaxed);
}

void BridgedRender::render(const AudioBlock& input, const AudioBlock& output) noexcept {
    const RealTimeScope scope;
    if (output.frameCount == 0) {
        return;
    }
    if (isOffline()) {
        awaitSession();
    }
    {
        const RenderSlot<RenderSession>::Access session(session_);
        if (!session || !process(*session, input, output)) {
            fader_.writeDry(input, output);
        }
    }
    sampleTime_ += output.frameCount;
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

bool BridgedRender::process(RenderSession& session, const AudioBlock& input,
                            const AudioBlock& output) noexcept {
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
            return false;
        }
        readAnswer(session);
    }
    handOver(session, input);
    if (!hasAnswer(true)) {
        return false;
    }
    fader_.writeWet(input, session.audio.output(output.frameCount), output);
    readAnswer(session);
    return true;
}

void BridgedRender::handOver(RenderSession& session, const AudioBlock& input) noexcept {
    auto& control = session.audio.control();
    const auto shared = session.audio.input(input.frameCount);
    for (std::uint32_t channel = 0; channel < shared.channelCount; ++channel) {
        std::copy_n(input.channels[channel], input.frameCount, shared.channels[channel]);
    }
    session.scheduling.store(wantedScheduling(isOffline()), std::memory_order_relaxed);
    control.frameCount.store(input.frameCount, std::memory_order_relaxed);
    session.isOutstanding = true;
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
    const auto latency = control.latency.load(std::memory_order_relaxed);
    latency_.store(latency <= kLongestLatency ? latency : 0, std::memory_order_relaxed);
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

Futex::Deadline BridgedRender::deadline(std::uint32_t frameCount) const noexcept {
    const auto now = std::chrono::steady_clock::now();
    if (isOffline()) {
        return now + limits_.offlineWait;
    }
    const std::chrono::duration<double> quantum(frameCount /
                                                sampleRate_.load(std::memory_order_relaxed));
    return now + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                     quantum * limits_.waitFraction);
}

}  // namespace orvalo
