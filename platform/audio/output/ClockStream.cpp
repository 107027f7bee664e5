#include "platform/audio/output/ClockStream.h"

#include <pthread.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <utility>

#include "platform/audio/output/RealTimePriority.h"

namespace orvalo {

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
// As on a device of three buffers: when one is due, two are still to be played.
constexpr double kPeriodsInHand = 2;

std::int64_t monotonicNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * kNanoseconds + now.tv_nsec;
}

void sleepUntil(std::int64_t time) {
    const timespec until{time / kNanoseconds, time % kNanoseconds};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

}  // namespace

ClockStream::ClockStream(const OutputFacts& facts, std::shared_ptr<StreamFeed> feed)
    : facts_(facts),
      feed_(std::move(feed)),
      discarded_(facts.format, facts.frameCount),
      thread_([this] { run(); }) {}

ClockStream::~ClockStream() {
    stopping_.store(true, std::memory_order_release);
    thread_.join();
}

void ClockStream::run() {
    pthread_setname_np(pthread_self(), "orvalo-null");
    requestRealTimePriority();
    const double period =
        static_cast<double>(kNanoseconds) * facts_.frameCount / facts_.format.sampleRate;
    const auto block = discarded_.block(facts_.frameCount);
    const std::int64_t begin = monotonicNow();
    // Counts periods; a double is exact up to 2^53.
    double due = 0;
    while (!stopping_.load(std::memory_order_acquire)) {
        feed_->render(block);
        due += 1;
        const auto time = begin + static_cast<std::int64_t>(due * period);
        const auto late = static_cast<double>(monotonicNow() - time);
        if (late >= kPeriodsInHand * period) {
            const auto missed = static_cast<std::uint64_t>(late / period);
            feed_->countXruns(missed);
            due += static_cast<double>(missed);
        } else if (late < 0) {
            sleepUntil(time);
        }
    }
}

}  // namespace orvalo
