#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/bridge/host/Transcript.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using Kind = ServiceAnswer::Kind;

std::string errorOf(const std::string& role, const BridgeLimits& limits = patientLimits()) {
    try {
        const FakeEffect effect(role, limits);
    } catch (const NSError& error) {
        return error.localizedDescription();
    }
    return "none";
}

TEST(Supervisor, RestartsWithTheLastKnownState) {
    const CapturedOutput error(2);
    FakeEffect effect("segv:2");
    auto& supervisor = effect.supervisor();
    EXPECT_EQ(supervisor.perform(bridge::Prepare{.number = 0, .sampleRate = 44100.0}).kind,
              Kind::done);
    EXPECT_EQ(supervisor.perform(bridge::SetContextName{.number = 0, .name = "the name"}).kind,
              Kind::done);
    EXPECT_EQ(supervisor.perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:a"}).kind,
              Kind::done);
    effect.render(3);
    EXPECT_THAT(error.text(), HasSubstr("made at 48000 in '' with ''"));
    EXPECT_THAT(error.text(), HasSubstr("made at 44100 in 'the name' with 'urn:preset:a' 0=0.25 "
                                        "1=0.5 2=0.75"));
}

TEST(Supervisor, RestartsWithoutImpossibleControlValues) {
    const CapturedOutput error(2);
    FakeEffect effect("odd-controls:2");
    effect.render(3);
    EXPECT_THAT(error.text(), HasSubstr("with 'first' 2=0.75\n"));
}

TEST(Supervisor, PassesAStateOnUnchanged) {
    const CapturedOutput error(2);
    FakeEffect effect("bad-state:2");
    effect.render(2);
    const auto state =
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    EXPECT_EQ(state.kind, Kind::died);
    effect.render(1);
    EXPECT_THAT(error.text(), ContainsRegex("with '.+ garbage'"));
}

TEST(Supervisor, IgnoresAStateAboveTheLimit) {
    const CapturedOutput error(2);
    auto limits = patientLimits();
    limits.state = std::size_t{1} << 20U;
    FakeEffect effect("huge-state:2", limits);
    effect.render(2);
    effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    effect.render(1);
    EXPECT_THAT(error.text(), HasSubstr("The state of the effect <urn:fake:huge-state:2> has 2 "
                                        "MiB, more than the limit of 1 MiB"));
    EXPECT_THAT(error.text(), HasSubstr("with 'first'"));
}

// The service's last line is not taken for it.
TEST(Supervisor, SaysOnceThatTheSystemRefusesAPriority) {
    const CapturedOutput error(2);
    FakeEffect effect("unscheduled:1:always");
    effect.render(3);
    kill(onlyService(), SIGKILL);
    effect.supervisor().perform(bridge::SetContextName{});
    EXPECT_THAT(error.lines(),
                Contains(EndsWith("The audio thread of the effect <urn:fake:unscheduled:1:always> "
                                  "is refused real-time priority 0 (Operation not permitted); "
                                  "under load its output may be late."))
                    .Times(1));
    EXPECT_THAT(error.text(), HasSubstr("It last said: made at 48000"));
}

TEST(Supervisor, ReturnsTheErrorOfARefusedRequest) {
    FakeEffect effect("half:0");
    const auto rate = effect.supervisor().perform(bridge::Prepare{.number = 0, .sampleRate = 1.0});
    EXPECT_EQ(rate.kind, Kind::refused);
    EXPECT_EQ(rate.error, "no such rate");
    const auto preset =
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:none"});
    EXPECT_EQ(preset.kind, Kind::refused);
    EXPECT_EQ(preset.error, "no such preset");
    EXPECT_TRUE(FakeEffect::isWet(effect.render()));
}

TEST(Supervisor, DoesNotRepeatAPresetThatKilledTheService) {
    const CapturedOutput error(2);
    FakeEffect effect("half:0");
    const auto answer =
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    EXPECT_EQ(answer.kind, Kind::died);
    EXPECT_EQ(effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "b"}).kind,
              Kind::done);
    EXPECT_FALSE(effect.supervisor().hasGivenUp());
    EXPECT_THAT(error.text(),
                HasSubstr("was killed by signal 9 (Killed) while it loaded a preset; it is"));
}

TEST(Supervisor, RepeatsARateThatKilledTheServiceOnce) {
    FakeEffect effect("other:9999");
    const auto answer =
        effect.supervisor().perform(bridge::Prepare{.number = 0, .sampleRate = 22050.0});
    EXPECT_EQ(answer.kind, Kind::done);
}

TEST(Supervisor, AnswersNoServiceAfterARateThatKillsEveryService) {
    const CapturedOutput error(2);
    FakeEffect effect("other:9999:always");
    const auto answer =
        effect.supervisor().perform(bridge::Prepare{.number = 0, .sampleRate = 22050.0});
    EXPECT_EQ(answer.kind, Kind::noService);
    EXPECT_TRUE(effect.supervisor().hasGivenUp());
    EXPECT_THAT(error.text(), HasSubstr("while it was prepared to play"));
}

TEST(Supervisor, AnUnansweredRequestEndsTheService) {
    const CapturedOutput error(2);
    auto limits = patientLimits();
    limits.request = std::chrono::milliseconds(300);
    // This shorter limit is for quanta.
    limits.hang = std::chrono::milliseconds(50);
    limits.ping = std::chrono::milliseconds(10);
    limits.tick = std::chrono::milliseconds(10);
    FakeEffect effect("half:0", limits);
    EXPECT_EQ(effect.supervisor()
                  .perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:stuck"})
                  .kind,
              Kind::died);
    EXPECT_THAT(error.text(), HasSubstr("did not answer for 300 ms while it loaded a preset"));
}

TEST(Supervisor, BytesThatArriveCountAsASignOfLife) {
    const CapturedOutput error(2);
    auto limits = patientLimits();
    // The state arrives within two seconds.
    limits.request = std::chrono::seconds(1);
    limits.tick = std::chrono::milliseconds(10);
    FakeEffect effect("half:0", limits);
    EXPECT_EQ(
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:slow"}).kind,
        Kind::done);
    EXPECT_THAT(error.text(), Not(HasSubstr("did not answer")));
}

TEST(Supervisor, StartsAnEffectThatWasGivenUpAgainWithItsLastState) {
    const CapturedOutput error(2);
    FakeEffect effect("half:0");
    auto& supervisor = effect.supervisor();
    const auto die = [&supervisor] {
        return supervisor.perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"}).kind;
    };
    for (int round = 0; round < 2; ++round) {
        supervisor.perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:a"});
        for (int death = 0; death < 3; ++death) {
            EXPECT_FALSE(supervisor.hasGivenUp());
            EXPECT_EQ(die(), Kind::died);
        }
        EXPECT_TRUE(supervisor.hasGivenUp());
        EXPECT_EQ(die(), Kind::noService);
        supervisor.restart();
        // Offline rendering waits for the service.
        effect.render();
        EXPECT_TRUE(FakeEffect::isWet(effect.render()));
    }
    EXPECT_THAT(error.text(), HasSubstr("with 'urn:preset:a++' "));
}

TEST(Supervisor, AnswersAllRequestsOfManyThreadsWhileServicesDie) {
    auto limits = patientLimits();
    limits.deaths = 1000;
    FakeEffect effect("half:0", limits);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&effect, number] {
            for (int round = 0; round < 10; ++round) {
                const bool isDeadly = number == 0;
                const auto preset = effect.supervisor().perform(bridge::LoadPreset{
                    .number = 0, .uri = isDeadly ? "urn:preset:deadly" : "urn:preset:a"});
                EXPECT_TRUE(preset.kind == Kind::died || (preset.kind == Kind::done && !isDeadly));
                EXPECT_EQ(effect.supervisor()
                              .perform(bridge::SetContextName{.number = 0, .name = "n"})
                              .kind,
                          Kind::done);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(effect.renderUntilWet());
}

TEST(Supervisor, RetriesAFailedRestartAfterAPause) {
    const CapturedOutput error(2);
    const TemporaryFolder folder;
    const auto program = folder.path() / "service";
    const auto elsewhere = folder.path() / "elsewhere";
    std::filesystem::copy(fakeServicePath(), program);
    auto limits = patientLimits();
    limits.retryDelay = std::chrono::seconds(2);
    FakeEffect effect("half:0", limits, program);
    std::filesystem::rename(program, elsewhere);
    kill(onlyService(), SIGKILL);
    while (error.text().find("could not be started again") == std::string::npos) {
        sched_yield();
    }
    std::filesystem::rename(elsewhere, program);
    EXPECT_EQ(effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"}).kind,
              Kind::done);
}

TEST(Supervisor, ThrowsTheErrorOfTheFirstService) {
    const CapturedOutput error(2);
    EXPECT_EQ(errorOf("refuse:0"), "The plug-in <urn:fake:refuse:0> says no.");
    EXPECT_THAT(error.text(), Not(HasSubstr("WARNING")));
}

TEST(Supervisor, RetriesAnEffectThatDiesDuringInstantiation) {
    const CapturedOutput error(2);
    EXPECT_EQ(errorOf("abort:0:always"),
              "The plug-in <urn:fake:abort:0:always> cannot be used: it died 3 times within 60 s; "
              "at last it was killed by signal 6 (Aborted) while it was instantiated. It last "
              "said: assertion 'x > 0' failed");
    EXPECT_THAT(error.text(),
                AllOf(HasSubstr("was killed by signal 6 (Aborted) while it was instantiated; it is "
                                "started again. It last said: assertion 'x > 0' failed"),
                      Not(HasSubstr("goes on dry"))));
}

TEST(Supervisor, RetriesAnEffectThatHangsDuringInstantiation) {
    auto limits = patientLimits();
    limits.request = std::chrono::milliseconds(100);
    limits.tick = std::chrono::milliseconds(10);
    EXPECT_THAT(errorOf("hang:0:always", limits),
                HasSubstr("at last it did not answer for 100 ms while it was instantiated."));
}

TEST(Supervisor, NamesAMissingProgramAtOnce) {
    const CapturedOutput error(2);
    RenderSlot<AUMIDIOutputEventBlock> midiBlock;
    BridgedRender render(midiBlock, 0, 2, patientLimits());
    const auto pluginUI = std::make_shared<PluginUIChannel>(PluginUIChannel::Send());
    ServiceSupervisor supervisor({.program = "/nowhere/effect-service",
                                  .uri = "urn:a",
                                  .places = {},
                                  .layout = {},
                                  .ports = {}},
                                 patientLimits(), render, *pluginUI);
    try {
        supervisor.start();
        FAIL() << "It has been started.";
    } catch (const NSError& failure) {
        EXPECT_EQ(failure.localizedDescription(),
                  "The plug-in <urn:a> cannot be used: The program /nowhere/effect-service: No "
                  "such file or directory.");
    }
    EXPECT_EQ(error.text(), "");
}

}  // namespace
