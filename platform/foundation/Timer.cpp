#include "platform/foundation/Timer.h"

#include <glib.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo {

namespace {

constexpr double shortestInterval = 0.0001;
constexpr double longestInterval = 3.2e9;  // A century; longer ones would overflow.
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

std::int64_t nanoseconds(double interval) {
    const double seconds =
        interval > shortestInterval ? std::min(interval, longestInterval) : shortestInterval;
    return std::llround(seconds * static_cast<double>(nanosecondsPerSecond));
}

timespec time(std::int64_t nanoseconds) {
    return {nanoseconds / nanosecondsPerSecond, nanoseconds % nanosecondsPerSecond};
}

int startClock(std::int64_t period) {
    const int descriptor = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (descriptor < 0) {
        fatalError(std::string("A timer could not start: ") + g_strerror(errno));
    }
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const itimerspec times{
        .it_interval = time(period),
        .it_value = time(now.tv_sec * nanosecondsPerSecond + now.tv_nsec + period)};
    timerfd_settime(descriptor, TFD_TIMER_ABSTIME, &times, nullptr);
    return descriptor;
}

}  // namespace

/// The timer's source in the run loop. The source's callback data is a reference to the timer.
struct Timer::Source {
    GSource* source = nullptr;  ///< Null after invalidate().
    int descriptor = -1;
    std::function<void(const std::shared_ptr<Timer>&)> block;
    bool isFiring = false;

    void fire(const std::shared_ptr<Timer>& timer) noexcept {
        std::uint64_t missed = 0;
        if (read(descriptor, &missed, sizeof missed) != sizeof missed) {
            return;
        }
        isFiring = true;
        block(timer);
        isFiring = false;
        if (source == nullptr) {
            releaseBlock();
        }
    }

    void releaseBlock() {
        // Objects that the block held may call this timer in their destructors.
        const auto released = std::exchange(block, nullptr);
    }

    static gboolean dispatch(GSource* /*source*/, GSourceFunc callback, gpointer data) {
        return callback(data);
    }
};

Timer::Timer() : source_(std::make_unique<Source>()) {}

Timer::~Timer() {
    invalidate();
}

std::shared_ptr<Timer> Timer::scheduledTimer(
    double withTimeInterval, std::function<void(const std::shared_ptr<Timer>&)> block) {
    static GSourceFuncs functions{.prepare = nullptr,
                                  .check = nullptr,
                                  .dispatch = Source::dispatch,
                                  .finalize = nullptr,
                                  .closure_callback = nullptr,
                                  .closure_marshal = nullptr};
    std::shared_ptr<Timer> timer(new Timer);
    auto& own = *timer->source_;
    own.block = std::move(block);
    own.descriptor = startClock(nanoseconds(withTimeInterval));
    own.source = g_source_new(&functions, sizeof(GSource));
    g_source_set_static_name(own.source, "timer");
    g_source_add_unix_fd(own.source, own.descriptor, G_IO_IN);
    g_source_set_callback(
        own.source,
        [](gpointer data) -> gboolean {
            const auto fired = *static_cast<std::shared_ptr<Timer>*>(data);
            fired->source_->fire(fired);
            return G_SOURCE_CONTINUE;
        },
        new std::shared_ptr<Timer>(timer),
        [](gpointer data) {
            // Also called at the end of the thread, with its run loop.
            const std::unique_ptr<std::shared_ptr<Timer>> held(
                static_cast<std::shared_ptr<Timer>*>(data));
            (*held)->invalidate();
        });
    g_source_attach(own.source, RunLoop::current()->context());
    return timer;
}

void Timer::invalidate() {
    GSource* source = std::exchange(source_->source, nullptr);
    if (source == nullptr) {
        return;
    }
    const auto self = weak_from_this().lock();
    g_source_destroy(source);
    g_source_unref(source);
    close(std::exchange(source_->descriptor, -1));
    if (!source_->isFiring) {
        source_->releaseBlock();
    }
}

bool Timer::isValid() const {
    return source_->source != nullptr;
}

}  // namespace orvalo
