#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Transcript.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Lt;
using ::testing::Not;
using ::testing::SizeIs;

/// The numbers of the quanta whose events arrived.
std::vector<int> numbers(const FakeEffect& effect) {
    std::vector<int> result;
    for (const auto& event : effect.events()) {
        EXPECT_EQ(event.cable, 0);
        EXPECT_THAT(event.bytes, SizeIs(3));
        EXPECT_EQ(event.time % FakeEffect::kFrames, 1);
        result.push_back(event.bytes.at(2));
    }
    return result;
}

class EventTest : public ::testing::TestWithParam<std::string> {};

TEST_P(EventTest, DropsInvalidEventsAndKeepsTheOthers) {
    FakeEffect effect(GetParam() + ":3");
    Transcript transcript;
    for (int quantum = 0; quantum < 5; ++quantum) {
        transcript.add(effect.render());
    }
    EXPECT_THAT(transcript.kinds(), Each(Transcript::Kind::wet));
    EXPECT_EQ(numbers(effect), (std::vector{1, 2, 4, 5}));
}

INSTANTIATE_TEST_SUITE_P(Ways, EventTest,
                         ::testing::Values("many-events", "odd-events", "far-cable"),
                         [](const auto& way) {
                             auto name = way.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(Hostile, ReportsNoLatencyForAnImpossibleValue) {
    FakeEffect possible("latency:1");
    possible.render(1);
    EXPECT_EQ(possible.bridgedRender().latency(), 7U);
    FakeEffect impossible("endless-latency:1");
    impossible.render(1);
    EXPECT_EQ(impossible.bridgedRender().latency(), 0U);
}

TEST(Hostile, LimitsAFloodOfLogLines) {
    const CapturedOutput error(2);
    {
        FakeEffect effect("flood:3");
        Transcript transcript;
        for (int quantum = 0; quantum < 5; ++quantum) {
            transcript.add(effect.render());
        }
        EXPECT_THAT(transcript.kinds(), Each(Transcript::Kind::wet));
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    }
    EXPECT_THAT(error.text(), AllOf(HasSubstr("flood 0\n"), HasSubstr(" lines are left out."),
                                    HasSubstr("It last said: flood 2999")));
    EXPECT_THAT(error.lines(), SizeIs(Lt(500U)));
}

TEST(Hostile, CutsLongLinesAndReplacesControlCharacters) {
    const CapturedOutput error(2);
    {
        FakeEffect effect("odd-line:2");
        effect.render(3);
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    }
    EXPECT_THAT(error.text(), ContainsRegex("<urn:fake:odd-line:2>: a .31m b[^\n]+c\n"));
    EXPECT_THAT(error.text(), Not(HasSubstr("\x1B")));
}

}  // namespace
