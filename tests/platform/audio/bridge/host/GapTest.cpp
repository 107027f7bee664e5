#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Transcript.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using enum Transcript::Kind;

BridgeLimits quickLimits() {
    auto limits = patientLimits();
    limits.hang = std::chrono::milliseconds(200) * BridgeLimits::kSlowness;
    limits.request = std::chrono::milliseconds(900) * BridgeLimits::kSlowness;
    limits.tick = std::chrono::milliseconds(20);
    limits.memory = std::uint64_t{4} << 30U;
    return limits;
}

/// Renders until the next service is wet. It may start between two quanta, so that none is dry.
void renderUntilStartedAgain(FakeEffect& effect, const CapturedOutput& error,
                             Transcript& transcript) {
    do {
        transcript.add(effect.render());
        ASSERT_TRUE(transcript.isSound());
    } while (error.text().find("started again") == std::string::npos ||
             transcript.kinds().back() != wet);
}

struct Way {
    std::string how;
    std::string line;
};

void PrintTo(const Way& way, std::ostream* stream) {
    *stream << way.how;
}

class GapTest : public ::testing::TestWithParam<Way> {};

TEST_P(GapTest, TheUnansweredQuantumIsDryAndTheNextOneWet) {
    const CapturedOutput error(2);
    FakeEffect effect(GetParam().how + ":4", quickLimits());
    Transcript transcript;
    for (int quantum = 0; quantum < 7; ++quantum) {
        transcript.add(effect.render());
    }
    EXPECT_THAT(transcript.kinds(), ElementsAre(wet, wet, wet, toDry, toWet, wet, wet));
    EXPECT_THAT(error.text(),
                HasSubstr("The effect <urn:fake:" + GetParam().how + ":4> " + GetParam().line +
                          "; it is started again with its last state."));
}

std::string limitInWords() {
    return durationText(quickLimits().hang);
}

INSTANTIATE_TEST_SUITE_P(
    Ways, GapTest,
    ::testing::Values(
        Way{"segv", "was killed by signal 11 (Segmentation fault) while playing"},
        Way{"abort", "was killed by signal 6 (Aborted) while playing"},
        Way{"exit", "ended with status 3 while playing"},
        Way{"hang", "did not finish a quantum within " + limitInWords() + " while playing"},
        Way{"far-answer", "did not finish a quantum within " + limitInWords() + " while playing"},
        Way{"deaf-hang", "closed its connection while playing"}),
    [](const auto& way) {
        auto name = way.param.how;
        std::erase(name, '-');
        return name;
    });

/// Faults outside rendering: the current quantum may still be answered.
class BesideTest : public ::testing::TestWithParam<Way> {};

TEST_P(BesideTest, TheServiceIsReplacedAndAtMostOneQuantumFadesToDry) {
    const CapturedOutput error(2);
    FakeEffect effect(GetParam().how + ":4", quickLimits());
    Transcript transcript;
    renderUntilStartedAgain(effect, error, transcript);
    EXPECT_LE(transcript.count(toDry), 1U);
    EXPECT_EQ(transcript.count(dry), 0U);
    EXPECT_THAT(error.text(), HasSubstr(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(Ways, BesideTest,
                         ::testing::Values(Way{"garbage", "sent an invalid message"},
                                           Way{"huge-length", "sent an invalid message"},
                                           Way{"unknown-type", "sent an invalid message"},
                                           Way{"other-version", "sent an invalid message"},
                                           Way{"unasked-done", "sent an invalid message"},
                                           Way{"unasked-opened", "sent an invalid message"},
                                           Way{"unasked-closed", "sent an invalid message"},
                                           Way{"unasked-outdated", "sent an invalid message"},
                                           Way{"deaf", "closed its connection"},
                                           Way{"mute", "did not answer for " +
                                                           durationText(quickLimits().request)}),
                         [](const auto& way) {
                             auto name = way.param.how;
                             std::erase(name, '-');
                             return name;
                         });

TEST(Gap, AServiceThatExceedsItsMemoryLimitIsReplaced) {
    const CapturedOutput error(2);
    auto limits = unhurriedLimits();
    limits.ping = std::chrono::milliseconds(20);
    limits.tick = std::chrono::milliseconds(20);
    limits.memory = std::uint64_t{128} << 20U;
    FakeEffect effect("leak:4", limits);
    Transcript transcript;
    renderUntilStartedAgain(effect, error, transcript);
    EXPECT_THAT(error.text(), HasSubstr("> used "));
    EXPECT_THAT(error.text(), HasSubstr(" MiB of memory, more than the limit of "));
}

TEST(Gap, AfterTheThirdDeathTheOutputStaysDry) {
    const CapturedOutput error(2);
    FakeEffect effect("segv:2:always", quickLimits());
    Transcript transcript;
    for (int quantum = 0; quantum < 10; ++quantum) {
        transcript.add(effect.render());
    }
    EXPECT_THAT(transcript.kinds(),
                ElementsAre(wet, toDry, toWet, toDry, toWet, toDry, dry, dry, dry, dry));
    EXPECT_TRUE(effect.supervisor().hasGivenUp());
    EXPECT_THAT(error.text(),
                HasSubstr("The effect <urn:fake:segv:2:always> was killed by signal 11 "
                          "(Segmentation fault) while playing. It last said: made at"));
    EXPECT_THAT(error.text(),
                HasSubstr("The effect <urn:fake:segv:2:always> died 3 times within 60 s and "
                          "is not started again until playback starts or its UI is "
                          "shown; playback goes on dry."));
    EXPECT_EQ(effect.supervisor().perform(bridge::Prepare{.number = 0, .sampleRate = 1.0}).kind,
              ServiceAnswer::Kind::noService);
}

}  // namespace
