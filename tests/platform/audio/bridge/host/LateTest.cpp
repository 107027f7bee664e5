#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Transcript.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::Each;
using ::testing::IsSupersetOf;
using ::testing::ResultOf;
using enum Transcript::Kind;

/// Short limits for a quantum, long ones for an answer.
BridgeLimits impatientLimits() {
    BridgeLimits limits;
    // A quantum takes 2.7 ms.
    limits.waitFraction = 10.0;
    limits.hang = std::chrono::seconds(60);
    return limits;
}

TEST(Late, ALateQuantumIsDryAndCounted) {
    FakeEffect effect("late:4", impatientLimits());
    effect.bridgedRender().setOffline(false);
    Transcript transcript;
    // On a busy machine earlier quanta may be late too; they count as well.
    while (transcript.count(toWet) == 0 || transcript.kinds().back() != wet) {
        transcript.add(effect.render());
        ASSERT_TRUE(transcript.isSound());
    }
    EXPECT_GT(transcript.count(dry), 0U);
    EXPECT_EQ(effect.bridgedRender().lateQuantumCount(),
              transcript.count(toDry) + transcript.count(dry));
}

TEST(Late, EventsOfALateQuantumKeepTheirTimes) {
    FakeEffect effect("late:4", impatientLimits());
    effect.bridgedRender().setOffline(false);
    Transcript transcript;
    std::vector<std::int64_t> due;
    while (transcript.count(toWet) == 0) {
        const auto time = effect.sampleTime() + 1;
        // On a busy machine some dry quanta are answered late, too.
        if (transcript.add(effect.render()) != dry) {
            due.push_back(time);
        }
    }
    std::vector<std::int64_t> times;
    std::vector<FakeEffect::Event> expected;
    for (const auto& event : effect.events()) {
        times.push_back(event.time);
        const int number = static_cast<int>(times.size());
        expected.push_back({event.time, 0, {0x90, 60, number}});
    }
    EXPECT_EQ(effect.events(), expected);
    EXPECT_TRUE(std::ranges::is_sorted(times, std::less_equal()));
    EXPECT_THAT(times, IsSupersetOf(due));
    EXPECT_THAT(times, Each(ResultOf([](auto time) { return time % FakeEffect::kFrames; }, 1)));
}

TEST(Late, OfflineRenderingWaitsForALateQuantum) {
    FakeEffect effect("late:4");
    Transcript transcript;
    for (int quantum = 0; quantum < 6; ++quantum) {
        transcript.add(effect.render());
    }
    EXPECT_THAT(transcript.kinds(), Each(wet));
    EXPECT_EQ(effect.bridgedRender().lateQuantumCount(), 0U);
}

TEST(Late, AQuantumThatIsNeverAnsweredEndsTheService) {
    auto limits = impatientLimits();
    limits.hang = std::chrono::milliseconds(100) * BridgeLimits::kSlowness;
    limits.tick = std::chrono::milliseconds(20);
    FakeEffect effect("hang:4", limits);
    effect.bridgedRender().setOffline(false);
    Transcript transcript;
    while (transcript.count(toWet) == 0 || transcript.kinds().back() != wet) {
        transcript.add(effect.render());
        ASSERT_TRUE(transcript.isSound());
    }
    EXPECT_GT(effect.bridgedRender().lateQuantumCount(), 0U);
}

}  // namespace
