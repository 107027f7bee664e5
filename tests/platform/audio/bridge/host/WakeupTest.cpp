#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <thread>

#include "tests/platform/audio/bridge/host/FakeEffect.h"

/// The C library's, but it waits for a wake-up: the moment in which one could be lost comes every
/// time.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the library's are reserved.
extern "C" int eventfd_read(int descriptor, eventfd_t* value) {
    pollfd wakeup{descriptor, POLLIN, 0};
    poll(&wakeup, 1, -1);
    return read(descriptor, value, sizeof *value) == sizeof *value ? 0 : -1;
}

namespace {

using namespace orvalo::testing;

TEST(Wakeup, TheEndOfAnEffectThatDidNotStartIsNotMissed) {
    std::promise<void> ended;
    auto end = ended.get_future();
    // Detached, because a thread that missed its end cannot be joined.
    std::thread([ended = std::move(ended)]() mutable {
        EXPECT_ANY_THROW(FakeEffect("half:0", patientLimits(), "/nowhere/service"));
        ended.set_value();
    }).detach();
    EXPECT_EQ(end.wait_for(std::chrono::minutes(1)), std::future_status::ready);
}

}  // namespace
