#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/bridge/RealTimeThread.h"
#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/bridge/host/Transcript.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;
using enum Transcript::Kind;

struct Way {
    std::string how;
    std::string line;
};

void PrintTo(const Way& way, std::ostream* stream) {
    *stream << way.how;
}

BridgeLimits zooLimits() {
    auto limits = strictLimits();
    limits.hang = std::chrono::milliseconds(500) * BridgeLimits::kSlowness;
    limits.tick = std::chrono::milliseconds(20);
    limits.ping = std::chrono::milliseconds(50);
    limits.memory = std::uint64_t{250} << 20U;
    if (BridgeLimits::kSlowness > 1) {
        limits.memory *= 2;
    }
    return limits;
}

class MisbehavingTest : public ::testing::TestWithParam<Way> {
  protected:
    static std::shared_ptr<BridgedAudioUnit> make() {
        auto limits = zooLimits();
        if (GetParam().how == "leak") {
            // Allocating that much memory takes long.
            limits.hang = std::chrono::seconds(10) * BridgeLimits::kSlowness;
        }
        return makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:" + GetParam().how, limits);
    }
};

TEST_P(MisbehavingTest, IsRestartedAndTheOutputFadesToDryAndBack) {
    const CapturedOutput error(2);
    const auto before = Leftovers::now();
    {
        const auto unit = make();
        auto fed = feed(*unit);
        Transcript transcript;
        for (int quantum = 0; quantum < 5; ++quantum) {
            EXPECT_EQ(transcript.add(fed.next()), wet);
        }
        ASSERT_TRUE(loadPreset(*unit, "Once"));
        while (transcript.count(toWet) == 0) {
            transcript.add(fed.next());
            ASSERT_TRUE(transcript.isSound());
        }
        EXPECT_EQ(transcript.count(toDry), 1U);
        for (int quantum = 0; quantum < 5; ++quantum) {
            EXPECT_EQ(transcript.add(fed.next()), wet);
        }
        EXPECT_THAT(error.text(), HasSubstr("The effect <urn:orvalo:misbehaving:" + GetParam().how +
                                            "> " + GetParam().line));
        EXPECT_THAT(error.text(), HasSubstr("it is started again with its last state."));
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST_P(MisbehavingTest, IsGivenUpAfterTheThirdDeath) {
    const CapturedOutput error(2);
    const auto unit = make();
    auto fed = feed(*unit);
    Transcript transcript;
    transcript.add(fed.next());
    loadPreset(*unit, "Always");
    while (error.text().find("is not started again") == std::string::npos) {
        transcript.add(fed.next());
        ASSERT_TRUE(transcript.isSound());
    }
    fed.next();
    for (int quantum = 0; quantum < 5; ++quantum) {
        const auto last = fed.next();
        EXPECT_EQ(last.input, last.output);
    }
    EXPECT_TRUE(services().empty());
    unit->setContextName("still there");
    unit->allocateRenderResources(44100.0);
    EXPECT_FALSE(loadPreset(*unit, "Once"));
}

const std::string kKilled = "was killed by signal 11 (Segmentation fault)";
#if defined(__SANITIZE_ADDRESS__)
const std::string kSegv = "ended with status";
const std::string kOverflow = kSegv;
#elif defined(__SANITIZE_THREAD__)
const std::string kSegv = "ended with status";
// The thread sanitizer reports no overflow: its handler has no separate stack to run on.
const std::string kOverflow = kKilled;
#else
const std::string kSegv = kKilled;
const std::string kOverflow = kKilled;
#endif

INSTANTIATE_TEST_SUITE_P(Zoo, MisbehavingTest,
                         ::testing::Values(Way{"segv", kSegv}, Way{"overflow", kOverflow},
                                           Way{"abort", "was killed by signal 6 (Aborted)"},
                                           Way{"exit", "ended with status 7"},
                                           Way{"loop", "did not finish a quantum within "},
                                           Way{"leak", "used "}),
                         [](const auto& way) { return way.param.how; });

TEST(MadeMisbehaving, ACrashDuringInstantiationThrows) {
    const CapturedOutput error(2);
    const auto before = Leftovers::now();
    try {
        makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:made-segv");
        FAIL() << "It has been made.";
    } catch (const NSError& failure) {
        EXPECT_THAT(failure.localizedDescription(),
                    HasSubstr("The plug-in <urn:orvalo:misbehaving:made-segv> cannot be used: it "
                              "died 3 times within 60 s; at last it " +
                              kSegv));
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(MadeMisbehaving, ALoopDuringInstantiationThrows) {
    const CapturedOutput error(2);
    auto limits = zooLimits();
    limits.request = std::chrono::milliseconds(500);
    const auto before = Leftovers::now();
    try {
        makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:made-loop", limits);
        FAIL() << "It has been made.";
    } catch (const NSError& failure) {
        EXPECT_THAT(failure.localizedDescription(),
                    HasSubstr("at last it did not answer for 500 ms while it was instantiated."));
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(Misbehaving, ALoopDoesNotKeepTheRenderThreadFromItsDeadline) {
    const CapturedOutput error(2);
    auto limits = strictLimits();
    limits.waitFraction = 50.0;
    limits.hang = std::chrono::seconds(10) * BridgeLimits::kSlowness;
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:loop", limits);
    const auto process = *services().begin();
    unit->setRenderingOffline(false);
    auto fed = feed(*unit);
    onRealTimeThread(5, [&] {
        Transcript transcript;
        EXPECT_EQ(transcript.add(fed.next()), wet);
        ASSERT_TRUE(loadPreset(*unit, "Once"));
        while (transcript.count(toDry) == 0) {
            transcript.add(fed.next());
            ASSERT_TRUE(transcript.isSound());
        }
        EXPECT_TRUE(isAlive(process)) << "still loops";
    });
}

/// A signal that another process sends to a service.
class SignalTest : public ::testing::TestWithParam<int> {};

TEST_P(SignalTest, EndsAServiceThatIsRestarted) {
    const CapturedOutput error(2);
    const auto before = Leftovers::now();
    {
        const auto unit =
            makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv", zooLimits());
        auto fed = feed(*unit);
        Transcript transcript;
        transcript.add(fed.next());
        const auto process = *services().begin();
        kill(process, GetParam());
        // The next service may start between two quanta, so that no quantum is dry.
        while (error.text().find("started again") == std::string::npos ||
               transcript.add(fed.next()) != wet) {
            ASSERT_TRUE(transcript.isSound());
        }
        EXPECT_LE(transcript.count(toDry), 1U);
        EXPECT_EQ(transcript.count(dry), 0U);
        EXPECT_EQ(services().size(), 1U);
        EXPECT_NE(*services().begin(), process);
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

INSTANTIATE_TEST_SUITE_P(Signals, SignalTest,
                         ::testing::Values(SIGKILL, SIGSEGV, SIGSTOP, SIGTERM, SIGABRT));

}  // namespace
