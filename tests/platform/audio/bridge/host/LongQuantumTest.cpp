#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr std::uint32_t kSpan = kMaximumFramesToRender;

/// Renders frameCount frames of one value in one call. Returns the first channel's output.
std::vector<float> render(FakeEffect& effect, std::uint32_t frameCount) {
    std::vector<float> input(frameCount, 0.5F);
    std::vector<float> left(frameCount, -7.0F);
    std::vector<float> right(frameCount, -7.0F);
    const std::array inputs{input.data(), input.data()};
    const std::array outputs{left.data(), right.data()};
    effect.bridgedRender().render({inputs.data(), 2, frameCount}, {outputs.data(), 2, frameCount});
    EXPECT_EQ(left, right);
    return left;
}

/// Whether each span's second half, which no fade reaches, is wet.
std::vector<bool> wetSpans(const std::vector<float>& output) {
    std::vector<bool> result;
    for (std::size_t start = 0; start < output.size(); start += kSpan) {
        const auto from = output.begin() + static_cast<std::ptrdiff_t>(start + kSpan / 2);
        const float value = *from;
        EXPECT_TRUE(std::all_of(from, from + kSpan / 2, [&](float each) { return each == value; }));
        EXPECT_TRUE(value == 0.25F || value == 0.5F) << value;
        result.push_back(value == 0.25F);
    }
    return result;
}

TEST(LongQuantum, IsHandedOverAtOnceOffline) {
    FakeEffect effect("half:0");
    EXPECT_EQ(effect.bridgedRender().maximumFrames(), kMaximumOfflineFrames);
    for (int quantum = 0; quantum < 3; ++quantum) {
        EXPECT_EQ(render(effect, kMaximumOfflineFrames),
                  std::vector<float>(kMaximumOfflineFrames, 0.25F));
    }
    // The service sends one event for each quantum that it gets.
    EXPECT_EQ(effect.events(),
              (std::vector<FakeEffect::Event>{{1, 0, {0x90, 60, 1}},
                                              {kMaximumOfflineFrames + 1, 0, {0x90, 60, 2}},
                                              {2 * kMaximumOfflineFrames + 1, 0, {0x90, 60, 3}}}));
}

TEST(LongQuantum, IsNotAcceptedLive) {
    FakeEffect effect("half:0");
    effect.bridgedRender().setOffline(false);
    EXPECT_EQ(effect.bridgedRender().maximumFrames(), kMaximumFramesToRender);
}

TEST(LongQuantum, OnlyTheSpanInWhichTheServiceEndsIsDry) {
    const CapturedOutput error(2);
    FakeEffect effect("third-span:2");
    EXPECT_THAT(wetSpans(render(effect, 2 * kSpan)), ElementsAre(true, true));
    EXPECT_THAT(wetSpans(render(effect, 5 * kSpan)), ElementsAre(true, true, false, true, true));
    EXPECT_THAT(wetSpans(render(effect, 2 * kSpan)), ElementsAre(true, true));
    // The first service's second event; then those of the second service.
    EXPECT_EQ(effect.events(), (std::vector<FakeEffect::Event>{{1, 0, {0x90, 60, 1}},
                                                               {2 * kSpan + 1, 0, {0x90, 60, 2}},
                                                               {5 * kSpan + 1, 0, {0x90, 60, 1}},
                                                               {7 * kSpan + 1, 0, {0x90, 60, 2}}}));
    EXPECT_THAT(error.text(), HasSubstr("was killed by signal 11 (Segmentation fault) while "
                                        "playing; it is started again with its last state."));
}

TEST(LongQuantum, AServiceThatClaimsTooManyFramesIsNotBelieved) {
    const CapturedOutput error(2);
    FakeEffect effect("far-span:1");
    EXPECT_THAT(wetSpans(render(effect, 4 * kSpan)), ElementsAre(true, true, true, false));
    EXPECT_THAT(wetSpans(render(effect, kSpan)), ElementsAre(true));
}

TEST(LongQuantum, EachSpanHasTheTimeOfAQuantum) {
    const CapturedOutput error(2);
    auto limits = patientLimits();
    limits.hang = std::chrono::milliseconds(2500);
    limits.tick = std::chrono::milliseconds(20);
    FakeEffect effect("slow-spans:1", limits);
    EXPECT_EQ(render(effect, kMaximumOfflineFrames),
              std::vector<float>(kMaximumOfflineFrames, 0.25F));
    EXPECT_EQ(error.text().find("did not finish"), std::string::npos) << error.text();
}

}  // namespace
