#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>

#include "platform/foundation/NSError.h"
#include "platform/foundation/RunLoop.h"
#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;

const std::vector<std::uint32_t> kBlocks{64, 512, 4096, 100, 1};
constexpr std::size_t kFrames = 20000;

/// The same effect in a service and in this process.
class Twins {
  public:
    explicit Twins(const std::string& name)
        : bridged(makeBridged(zooWorld(), "urn:orvalo:zoo:" + name)), local(makeZooUnit(name)) {
        collectEvents(*bridged, bridgedEvents);
        collectEvents(*local, localEvents);
    }

    void both(const std::function<void(AUAudioUnit&)>& work) const {
        work(*bridged);
        work(*local);
    }
    /// Renders with both and compares output, latency and events.
    void expectSameOutput() { expectSameOutput(kBlocks, kBlocks, kFrames); }
    void expectSameOutput(const std::vector<std::uint32_t>& bridgedBlocks,
                          const std::vector<std::uint32_t>& localBlocks, std::size_t frames) {
        const auto input = noise(bridged->inputChannelCount(), frames);
        const auto expected = renderBlocks(*local, input, localBlocks, frames);
        const auto rendered = renderBlocks(*bridged, input, bridgedBlocks, frames);
        ASSERT_EQ(rendered.size(), expected.size());
        for (std::size_t channel = 0; channel < rendered.size(); ++channel) {
            ASSERT_EQ(rendered[channel], expected[channel]) << "channel " << channel;
        }
        EXPECT_EQ(bridged->latency(), local->latency());
        EXPECT_EQ(bridgedEvents, localEvents);
    }

    const std::shared_ptr<BridgedAudioUnit> bridged;
    const std::shared_ptr<LV2LocalAudioUnit> local;
    std::vector<SentEvent> bridgedEvents;
    std::vector<SentEvent> localEvents;
};

class TwinsTest : public ::testing::TestWithParam<std::string> {};

TEST_P(TwinsTest, RenderTheSameAtEveryRate) {
    Twins twins(GetParam());
    EXPECT_EQ(twins.bridged->inputChannelCount(), twins.local->inputChannelCount());
    EXPECT_EQ(twins.bridged->outputChannelCount(), twins.local->outputChannelCount());
    EXPECT_EQ(twins.bridged->MIDIOutputNames(), twins.local->MIDIOutputNames());
    for (const double rate : {48000.0, 44100.0, 96000.0, 44100.0}) {
        twins.both([rate](AUAudioUnit& unit) { unit.allocateRenderResources(rate); });
        twins.expectSameOutput();
    }
    EXPECT_EQ(twins.bridged->lateQuantumCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Zoo, TwinsTest, ::testing::Values("probe", "echo"),
                         [](const auto& name) { return name.param; });

TEST_P(TwinsTest, RenderTheSameInLongQuantaWithPresetsBetweenThem) {
    Twins twins(GetParam());
    ASSERT_EQ(twins.bridged->maximumFramesToRender(), kMaximumOfflineFrames);
    ASSERT_EQ(twins.local->maximumFramesToRender(), kMaximumFramesToRender);
    static constexpr std::uint32_t kSpan = kMaximumFramesToRender;
    const auto renderLong = [&twins] {
        twins.expectSameOutput({kMaximumOfflineFrames, kSpan + 904}, std::vector(9, kSpan),
                               kMaximumOfflineFrames + kSpan);
        twins.expectSameOutput({2 * kSpan + 100}, {kSpan, kSpan, 100}, 2 * kSpan + 100);
    };
    renderLong();
    for (const auto& preset : twins.local->factoryPresets()) {
        twins.both([&](AUAudioUnit& unit) { unit.setCurrentPreset(preset); });
        renderLong();
    }
    twins.bridged->setRenderingOffline(false);
    EXPECT_EQ(twins.bridged->maximumFramesToRender(), kMaximumFramesToRender);
}

TEST(BridgedUnit, RendersPresetsAsInTheHost) {
    Twins twins("probe");
    const auto presets = twins.local->factoryPresets();
    ASSERT_FALSE(presets.empty());
    ASSERT_EQ(twins.bridged->factoryPresets().size(), presets.size());
    for (const auto& preset : presets) {
        twins.both([&preset](AUAudioUnit& unit) { unit.setCurrentPreset(preset); });
        EXPECT_EQ(twins.bridged->currentPreset(), preset);
        twins.expectSameOutput();
    }
    twins.both([](AUAudioUnit& unit) {
        unit.setCurrentPreset(std::make_shared<AUAudioUnitPreset>(4711, "none"));
    });
    EXPECT_EQ(twins.bridged->currentPreset(), nullptr);
    twins.expectSameOutput();
}

TEST(BridgedUnit, ReturnsTheContextNameThatWasSet) {
    const auto unit = makeBridged(zooWorld(), "urn:orvalo:zoo:probe");
    EXPECT_EQ(unit->contextName(), "");
    unit->setContextName("Orvalo");
    EXPECT_EQ(unit->contextName(), "Orvalo");
}

TEST(BridgedUnit, SeveralUnitsRenderSideBySide) {
    const auto first = makeBridged(zooWorld(), "urn:orvalo:zoo:probe");
    const auto second = makeBridged(zooWorld(), "urn:orvalo:zoo:probe");
    const auto expected = makeZooUnit("probe");
    const auto input = noise(first->inputChannelCount(), kFrames);
    const auto output = renderBlocks(*expected, input, kBlocks, kFrames);
    std::thread other([&] { EXPECT_EQ(renderBlocks(*first, input, kBlocks, kFrames), output); });
    EXPECT_EQ(renderBlocks(*second, input, kBlocks, kFrames), output);
    other.join();
}

TEST(BridgedUnit, AnInvalidRateThrowsAndChangesNothing) {
    Twins twins("probe");
    twins.both([](AUAudioUnit& unit) {
        unit.allocateRenderResources(44100.0);
        EXPECT_THROW(unit.allocateRenderResources(0.0), NSError);
    });
    twins.expectSameOutput();
}

/// What the deferred effect, which takes up its state when it first runs, makes of 1.
float factor(AUAudioUnit& unit) {
    return renderBlocks(unit, {{1.0F}}, {1}, 1)[0][0];
}

/// Ends the service of the only unit, which starts another.
void endService(const CapturedOutput& error) {
    kill(onlyChild(), SIGKILL);
    ASSERT_TRUE(pollUntil([&error] {
        return error.text().find("started again") != std::string::npos && !children().empty();
    }));
}

TEST(BridgedUnit, KeepsADefaultStateThatIsTakenUpInTheFirstRun) {
    const CapturedOutput error(2);
    const auto unit = makeBridged(zooWorld(), "urn:orvalo:zoo:deferred");
    unit->allocateRenderResources(44100.0);
    endService(error);
    unit->allocateRenderResources(96000.0);
    EXPECT_EQ(factor(*unit), 0.5F);
}

TEST(BridgedUnit, KeepsAPresetThatIsTakenUpInTheFirstRun) {
    const CapturedOutput error(2);
    const auto unit = makeBridged(zooWorld(), "urn:orvalo:zoo:deferred");
    ASSERT_TRUE(loadPreset(*unit, "Quarter"));
    endService(error);
    unit->allocateRenderResources(44100.0);
    EXPECT_EQ(factor(*unit), 0.25F);
}

TEST(BridgedUnit, SilencesSamplesThatAreNoFiniteNumbersAndSaysSoOnce) {
    const CapturedOutput error(2);
    {
        const auto unit = makeBridged(zooWorld(), "urn:orvalo:zoo:numberless");
        const auto input = noise(1, kFrames);
        auto expected = input;
        for (std::size_t frame = 0; frame < kFrames; ++frame) {
            if ((frame + 1) % 7 == 0 || (frame + 1) % 11 == 0) {
                expected[0][frame] = 0.0F;
            }
        }
        EXPECT_EQ(renderBlocks(*unit, input, kBlocks, kFrames), expected);
        unit->allocateRenderResources(44100.0);
        EXPECT_EQ(renderBlocks(*unit, input, kBlocks, kFrames), expected);
    }
    const auto lines = error.lines();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) {
                                return line.ends_with(
                                    "<urn:orvalo:zoo:numberless>: it delivers samples that are no "
                                    "finite numbers; they are silenced");
                            }),
              1)
        << error.text();
}

/// Held by a completion; counts destructions outside the main thread.
class MainThreadOnly {
  public:
    explicit MainThreadOnly(std::atomic<int>& strays) : strays_(strays) {}
    MainThreadOnly(const MainThreadOnly&) = default;
    MainThreadOnly& operator=(const MainThreadOnly&) = delete;
    ~MainThreadOnly() { strays_ += RunLoop::isMainThread() ? 0 : 1; }

  private:
    std::atomic<int>& strays_;
};

/// With a UI provider, which these tests never reach.
class BridgedUnitPluginUI : public ::testing::Test {
  protected:
    BridgedUnitPluginUI() {
        LV2AudioUnit::setPluginUIProvider([this](const auto& /*unit*/) {
            ++provisions_;
            return nullptr;
        });
    }
    ~BridgedUnitPluginUI() override { LV2AudioUnit::setPluginUIProvider({}); }

    void request(AUAudioUnit& unit) {
        unit.requestViewController([this, held = MainThreadOnly(strays_)](const auto& controller) {
            EXPECT_TRUE(RunLoop::isMainThread());
            EXPECT_EQ(controller, nullptr);
            ++answers_;
        });
    }
    bool isAnswered() {
        return waitUntil([this] { return answers_ > 0; });
    }

    int provisions_ = 0;
    int answers_ = 0;
    std::atomic<int> strays_{0};
};

TEST_F(BridgedUnitPluginUI, AnswersAndDestroysTheCompletionOnTheMainThread) {
    const CapturedOutput error(2);
    auto unit = makeBridged(zooWorld(), "urn:orvalo:zoo:probe");
    request(*unit);
    EXPECT_TRUE(isAnswered());
    // Joins the supervisor's thread, which could have held the completion.
    unit = nullptr;
    EXPECT_EQ(answers_, 1);
    EXPECT_EQ(strays_, 0);
    EXPECT_EQ(provisions_, 0);
    EXPECT_THAT(error.text(), HasSubstr("urn:orvalo:zoo:probe"));
}

TEST_F(BridgedUnitPluginUI, AnswersAlsoWhenTheUnitEndsBeforeTheServiceAnswers) {
    const CapturedOutput error(2);
    for (int round = 1; round <= 10; ++round) {
        auto unit = makeBridged(zooWorld(), "urn:orvalo:zoo:probe");
        answers_ = 0;
        request(*unit);
        unit = nullptr;
        ASSERT_TRUE(isAnswered()) << "round " << round;
    }
    EXPECT_EQ(strays_, 0);
    EXPECT_EQ(provisions_, 0);
}

class BridgedRefusal : public ::testing::TestWithParam<std::string> {};

TEST_P(BridgedRefusal, ThrowsTheSameErrorAsInTheHost) {
    const auto refusal = [](const auto& make) -> std::string {
        try {
            make();
        } catch (const NSError& error) {
            return error.localizedDescription();
        }
        return "none";
    };
    const auto local = refusal([] { makeZooUnit(GetParam()); });
    EXPECT_NE(local, "none");
    EXPECT_EQ(refusal([] { makeBridged(zooWorld(), "urn:orvalo:zoo:" + GetParam()); }), local);
}

INSTANTIATE_TEST_SUITE_P(Zoo, BridgedRefusal,
                         ::testing::Values("failing", "missing-library", "no-descriptor",
                                           "no-ports", "nowhere", "unknown-feature",
                                           "broken-library"),
                         [](const auto& param) {
                             auto name = param.param;
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
