#include "programs/effect-service/ServiceAudioThread.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/audio/bridge/wire/Futex.h"
#include "platform/audio/signal/DenormalGuard.h"

namespace orvalo {

namespace {

// Futex::wait() needs a deadline; the host or the destructor wakes the thread.
constexpr std::chrono::hours kLongestWait{1};

}  // namespace

ServiceAudioThread::ServiceAudioThread(std::shared_ptr<LV2LocalAudioUnit> unit,
                                       const SharedAudio& audio)
    : unit_(std::move(unit)), audio_(audio) {
    unit_->setMIDIOutputEventBlock([this](std::int64_t sampleTime, std::uint8_t cable,
                                          std::int64_t length, const std::uint8_t* bytes) {
        const SharedEvent event{
            .frame = static_cast<std::uint32_t>(sampleTime - start_),
            .cable = cable,
            .bytes = std::as_bytes(std::span(bytes, static_cast<std::size_t>(length))),
        };
        if (!events_->write(event)) {
            lost_.fetch_add(1, std::memory_order_relaxed);
        }
        return 0;
    });
    publishControls();
    thread_ = std::thread([this] { serve(); });
}

ServiceAudioThread::~ServiceAudioThread() {
    isEnding_.store(true, std::memory_order_release);
    // Repeats the wake-up, because one may precede the thread's wait.
    while (!hasEnded_.load(std::memory_order_acquire)) {
        Futex::wake(audio_.control().request);
        std::this_thread::yield();
    }
    thread_.join();
    unit_->setMIDIOutputEventBlock({});
}

void ServiceAudioThread::serve() noexcept {
    pthread_setname_np(pthread_self(), "effect-audio");
    const DenormalGuard denormals;
    auto& control = audio_.control();
    for (std::uint32_t answered = 0; !isEnding_.load(std::memory_order_acquire);) {
        const auto request = control.request.load(std::memory_order_acquire);
        if (request == answered) {
            Futex::wait(control.request, answered, std::chrono::steady_clock::now() + kLongestWait);
            continue;
        }
        applyScheduling();
        render();
        answered = request;
        control.response.store(answered, std::memory_order_release);
        Futex::wake(control.response);
    }
    hasEnded_.store(true, std::memory_order_release);
}

void ServiceAudioThread::applyScheduling() {
    auto& control = audio_.control();
    const int policy = control.schedulingPolicy.load(std::memory_order_relaxed);
    const int priority = control.schedulingPriority.load(std::memory_order_relaxed);
    if (policy == policy_ && priority == priority_) {
        return;
    }
    policy_ = policy;
    priority_ = priority;
    const sched_param parameters{.sched_priority = priority};
    // The host says it: the effect did not.
    control.schedulingError.store(pthread_setschedparam(pthread_self(), policy, &parameters),
                                  std::memory_order_relaxed);
}

void ServiceAudioThread::render() noexcept {
    auto& control = audio_.control();
    const auto frames =
        std::min(control.frameCount.load(std::memory_order_relaxed), kMaximumOfflineFrames);
    const auto input = audio_.input(frames);
    const auto output = audio_.output(frames);
    events_.emplace(audio_.events());
    std::size_t span = 0;
    for (std::uint32_t done = 0; done < frames;) {
        const auto count = std::min(frames - done, kMaximumFramesToRender);
        // The host says it: a line of this process might not be read before it is ended.
        if (unit_->renderAndSilence(AudioBlockPart(input, done, count).block(),
                                    AudioBlockPart(output, done, count).block())) {
            control.isSilenced.store(1, std::memory_order_relaxed);
        }
        done += count;
        control.latencies[span++].store(unit_->latency(), std::memory_order_relaxed);
        control.eventBytes.store(events_->used(), std::memory_order_relaxed);
        publishControls();
        control.rendered.store(done, std::memory_order_release);
    }
    start_ += frames;
}

void ServiceAudioThread::publishControls() noexcept {
    const auto& controls = unit_->controls();
    std::uint32_t port = 0;
    for (auto& value : audio_.controlValues()) {
        value.store(controls.value(port++), std::memory_order_relaxed);
    }
}

}  // namespace orvalo
