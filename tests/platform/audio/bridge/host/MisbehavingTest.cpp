#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <optional>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/bridge/RealTimeThread.h"
#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/bridge/host/Transcript.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;
using ::testing::Not;
using enum Transcript::Kind;

struct Way {
    std::string how;
    std::string line;
};

void PrintTo(const Way& way, std::ostream* stream) {
    *stream << way.how;
}

BridgeLimits zooLimits() {
    auto limits = patientLimits();
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
    auto limits = patientLimits();
    limits.waitFraction = 50.0;
    limits.hang = std::chrono::seconds(10) * BridgeLimits::kSlowness;
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:loop", limits);
    const auto process = onlyService();
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

TEST(Misbehaving, AStateOf47MebibytesSurvivesARestart) {
    const CapturedOutput error(2);
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:large", {});
    // An effect that has not run has no state to keep.
    auto fed = feed(*unit);
    fed.next();
    // The service answers after it has sent the state.
    unit->setContextName("large");
    ASSERT_EQ(children().size(), 1U);
    kill(onlyChild(), SIGKILL);
    ASSERT_TRUE(
        pollUntil([&error] { return error.text().find("started again") != std::string::npos; }));
    unit->setContextName("larger");
    EXPECT_THAT(error.text(), HasSubstr("The large state is back."));
    EXPECT_THAT(error.text(), Not(HasSubstr("did not answer")));
}

/// Kills a unit's services until it is given up.
void killUntilGivenUp(const CapturedOutput& error) {
    for (int death = 0; death < 3; ++death) {
        ASSERT_TRUE(pollUntil([] { return children().size() == 1; }));
        const auto process = onlyChild();
        kill(process, SIGKILL);
        ASSERT_TRUE(pollUntil([process] { return !children().contains(process); }));
    }
    ASSERT_TRUE(pollUntil(
        [&error] { return error.text().find("is not started again") != std::string::npos; }));
}

TEST(Misbehaving, AnEffectThatWasGivenUpReturnsWhenPlaybackStarts) {
    const CapturedOutput error(2);
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv");
    unit->allocateRenderResources(48000.0);
    auto fed = feed(*unit);
    Transcript transcript;
    EXPECT_EQ(transcript.add(fed.next()), wet);
    ASSERT_NO_FATAL_FAILURE(killUntilGivenUp(error));
    EXPECT_EQ(transcript.add(fed.next()), toDry);
    EXPECT_EQ(transcript.add(fed.next()), dry);
    unit->playbackStarts();
    EXPECT_EQ(transcript.add(fed.next()), toWet);
    EXPECT_EQ(transcript.add(fed.next()), wet);
}

TEST(Misbehaving, AnEffectThatWasGivenUpReturnsAtANewRate) {
    const CapturedOutput error(2);
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv");
    unit->allocateRenderResources(48000.0);
    auto fed = feed(*unit);
    fed.next();
    ASSERT_NO_FATAL_FAILURE(killUntilGivenUp(error));
    unit->allocateRenderResources(44100.0);
    fed.next();
    Transcript transcript;
    EXPECT_EQ(transcript.add(fed.next()), wet);
}

TEST(Misbehaving, APreparationThatHangsLeavesPlaybackDry) {
    const CapturedOutput error(2);
    auto limits = patientLimits();
    limits.prepare = std::chrono::milliseconds(50);
    limits.request = std::chrono::hours(1);
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:remade-loop", limits);
    unit->setRenderingOffline(false);
    unit->allocateRenderResources(48000.0);
    auto fed = feed(*unit);
    Transcript transcript;
    EXPECT_EQ(transcript.add(fed.next()), wet);
    unit->allocateRenderResources(44100.0);
    EXPECT_THAT(error.text(), HasSubstr("The effect <urn:orvalo:misbehaving:remade-loop> is not "
                                        "ready for 44100 Hz after 50 ms; playback is dry until "
                                        "it is.\n"));
    EXPECT_EQ(transcript.add(fed.next()), toDry);
    EXPECT_EQ(transcript.add(fed.next()), dry);
    EXPECT_EQ(unit->lateQuantumCount(), 0U);
}

/// A unit in the fake service, which answers for 8000 Hz, or refuses 8001 Hz, after it has received
/// another message.
class LatePreparation : public ::testing::Test {
  protected:
    LatePreparation() {
        auto limits = patientLimits();
        limits.prepare = std::chrono::milliseconds(50);
        unit = std::make_shared<BridgedAudioUnit>(misbehavingWorld(), "urn:orvalo:misbehaving:segv",
                                                  AudioComponentDescription{}, fakeServicePath(),
                                                  limits);
        fed.emplace(feed(*unit));
        unit->allocateRenderResources(48000.0);
        EXPECT_EQ(transcript.add(fed->next()), wet);
    }

    const CapturedOutput error{2};
    std::shared_ptr<BridgedAudioUnit> unit;
    std::optional<QuantumFeed> fed;
    Transcript transcript;
};

TEST_F(LatePreparation, MakesPlaybackWetWhenItIsDone) {
    unit->allocateRenderResources(8000.0);
    EXPECT_EQ(transcript.add(fed->next()), toDry);
    unit->setContextName("go on");
    EXPECT_EQ(transcript.add(fed->next()), toWet);
    EXPECT_EQ(transcript.add(fed->next()), wet);
}

TEST_F(LatePreparation, LeavesPlaybackDryWhenItIsRefused) {
    unit->allocateRenderResources(8001.0);
    EXPECT_EQ(transcript.add(fed->next()), toDry);
    unit->setContextName("go on");
    EXPECT_EQ(transcript.add(fed->next()), dry);
    EXPECT_THAT(error.text(), HasSubstr("no such rate"));
    unit->allocateRenderResources(48000.0);
    EXPECT_EQ(transcript.add(fed->next()), toWet);
}

TEST_F(LatePreparation, LeavesPlaybackDryWhileALaterOneIsUnderWay) {
    unit->allocateRenderResources(8000.0);
    // The request for 8001 Hz lets the service answer for 8000 Hz.
    unit->allocateRenderResources(8001.0);
    EXPECT_EQ(transcript.add(fed->next()), toDry);
    unit->setContextName("go on");
    EXPECT_EQ(transcript.add(fed->next()), dry);
}

TEST_F(LatePreparation, IsReplacedByTheNextOne) {
    unit->allocateRenderResources(8000.0);
    unit->allocateRenderResources(48000.0);
    unit->setContextName("go on");
    EXPECT_EQ(transcript.add(fed->next()), wet);
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
        const auto process = onlyService();
        kill(process, GetParam());
        // The next service may start between two quanta, so that no quantum is dry.
        // A stopped one is noticed soonest by a quantum that it does not finish.
        while (transcript.add(fed.next()) != wet ||
               error.text().find("started again") == std::string::npos) {
            ASSERT_TRUE(transcript.isSound());
        }
        EXPECT_LE(transcript.count(toDry), 1U);
        EXPECT_EQ(transcript.count(dry), 0U) << error.text();
        EXPECT_EQ(services().size(), 1U);
        EXPECT_NE(onlyService(), process);
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

INSTANTIATE_TEST_SUITE_P(Signals, SignalTest,
                         ::testing::Values(SIGKILL, SIGSEGV, SIGSTOP, SIGTERM, SIGABRT));

}  // namespace
