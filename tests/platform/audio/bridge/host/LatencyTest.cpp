#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <vector>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::AnyOf;
using ::testing::HasSubstr;

constexpr std::size_t kLatency = 5000;
constexpr std::size_t kFade = WetDryFader::kFadeFrames;

/// An effect that halves its input and delays it by kLatency, and what it was given and returned.
class Latency : public ::testing::Test {
  protected:
    void render(std::uint32_t frameCount) {
        std::vector<float> samples(frameCount);
        for (auto& sample : samples) {
            sample = static_cast<float>(input.size()) / 1024.0F;
            input.push_back(sample);
        }
        std::vector<float> left(frameCount, -7.0F);
        std::vector<float> right(frameCount, -7.0F);
        const std::array inputs{samples.data(), samples.data()};
        const std::array outputs{left.data(), right.data()};
        effect.bridgedRender().render({inputs.data(), 2, frameCount},
                                      {outputs.data(), 2, frameCount});
        EXPECT_EQ(left, right);
        output.insert(output.end(), left.begin(), left.end());
    }

    static void endService() {
        const auto process = onlyService();
        kill(process, SIGKILL);
        ASSERT_TRUE(pollUntil([process] { return !isAlive(process); }));
    }

    /// The delayed input.
    float dryAt(std::size_t frame) const {
        return frame < kLatency ? 0.0F : input[frame - kLatency];
    }

    /// Expects wet output until death, dry output from there on, and wet output again when the next
    /// service, which gets its input from death on or quantum frames later, has filled its latency.
    void expectOneGap(std::size_t death, std::size_t quantum) const {
        std::size_t frame = 0;
        for (; frame < death; ++frame) {
            ASSERT_EQ(output[frame], 0.5F * dryAt(frame)) << frame;
        }
        for (frame += kFade; frame < output.size() && output[frame] == dryAt(frame); ++frame) {
        }
        // A fade starts with the dry signal.
        const auto wet = frame - 1;
        EXPECT_THAT(wet, AnyOf(death + kLatency, death + quantum + kLatency));
        for (frame = wet + kFade; frame < output.size(); ++frame) {
            ASSERT_EQ(output[frame], 0.5F * dryAt(frame)) << frame;
        }
    }

    const CapturedOutput error{2};
    FakeEffect effect{"delay:1:always"};
    std::vector<float> input;
    std::vector<float> output;
};

TEST_F(Latency, DelaysTheDrySpanUntilTheNextServiceIsHeard) {
    render(3 * kMaximumFramesToRender);
    endService();
    const auto death = output.size();
    render(kMaximumOfflineFrames);
    expectOneGap(death, kMaximumFramesToRender);
    EXPECT_THAT(error.text(), HasSubstr("it is started again"));
}

TEST_F(Latency, DelaysDryQuantaOfLivePlayback) {
    constexpr std::uint32_t kQuantum = 128;
    effect.bridgedRender().setOffline(false);
    for (int quantum = 0; quantum < 100; ++quantum) {
        render(kQuantum);
    }
    endService();
    const auto death = output.size();
    render(kQuantum);
    // The next service answers.
    effect.supervisor().perform(bridge::SetContextName{});
    for (int quantum = 0; quantum < 100; ++quantum) {
        render(kQuantum);
    }
    expectOneGap(death, kQuantum);
}

}  // namespace
