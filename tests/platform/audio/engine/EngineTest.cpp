#include "platform/audio/engine/AVAudioEngine.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include "platform/audio/engine/AVAudioUnit.h"
#include "tests/platform/audio/engine/EngineFixture.h"
#include "tests/platform/audio/engine/TestUnit.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {

namespace {

class EngineTest : public EngineFixture {
  protected:
    std::shared_ptr<AVAudioUnit> effect(const TestUnit::Shape& shape) {
        unit = std::make_shared<TestUnit>(shape);
        auto node = std::make_shared<AVAudioUnit>(unit);
        engine->attach(node);
        return node;
    }
    void schedule(const std::filesystem::path& path, int passes = 1) {
        const auto file = open(path);
        for (int count = 0; count < passes; ++count) {
            player->scheduleFile(file, {}, {});
        }
        player->play();
    }

    std::shared_ptr<TestUnit> unit;
};

using EngineDeathTest = EngineTest;
using Node = std::shared_ptr<AVAudioNode>;

TEST_F(EngineTest, AnEngineWithoutSourcesRendersSilence) {
    start({44100, 2});
    EXPECT_EQ(render(5000), silence(2, 5000));
}

/// Renders two passes of 90,000 frames in one call, through an effect of other channels than the
/// file's. The second pass is scheduled by the first one's completion.
class LongSlicesTest : public EngineTest {
  protected:
    std::vector<std::uint32_t> frameCounts(std::uint32_t maximumFrames) {
        constexpr std::uint32_t kPass = 90000;
        start({48000, 2});
        const auto node = effect({.inputs = 1, .outputs = 1, .maximumFrames = maximumFrames});
        engine->connect(player, node, AVAudioFormat{48000, 2});
        engine->connect(node, engine->mainMixerNode(), {});
        const auto mono = noise(1, kPass, 1);
        const auto pass = Signal{mono[0], mono[0]};
        const auto file = open(wav("pass.wav", 48000, pass));
        player->scheduleFile(file, {}, [this, file] { player->scheduleFile(file, {}, {}); });
        player->play();
        AVAudioPCMBuffer buffer({48000, 2}, 2 * kPass);
        engine->renderOffline(2 * kPass, buffer);
        const auto* samples = buffer.floatChannelData()[0];
        EXPECT_EQ(std::vector<float>(samples, samples + buffer.frameLength), repeated(pass, 2)[0]);
        return unit->frameCounts();
    }
};

TEST_F(LongSlicesTest, AnEffectRendersAsManyFramesAsItAllowsAndPassesStillJoin) {
    // Whole spans up to the completion of the first pass, then the longest slices again.
    EXPECT_EQ(frameCounts(kMaximumOfflineFrames),
              (std::vector<std::uint32_t>{32768, 32768, 20480, 32768, 32768, 28448}));
}

TEST_F(LongSlicesTest, AnEffectRendersNoMoreFramesThanItAllows) {
    std::vector<std::uint32_t> expected(43, 4096);
    expected.push_back(3872);
    EXPECT_EQ(frameCounts(kMaximumFramesToRender), expected);
}

TEST_F(EngineTest, TheEffectStandsBetweenPlayerAndMixer) {
    start({48000, 2});
    const auto node = effect({.inputs = 2, .outputs = 2, .gain = 0.5F});
    engine->connect(player, node, AVAudioFormat{48000, 2});
    engine->connect(node, engine->mainMixerNode(), AVAudioFormat{48000, 2});
    const auto pass = noise(2, 20000, 1);
    schedule(wav("pass.wav", 48000, pass));
    auto expected = pass;
    for (auto& channel : expected) {
        for (auto& sample : channel) {
            sample *= 0.5F;
        }
    }
    EXPECT_EQ(render(20000), expected);
    EXPECT_EQ(unit->rates(), std::vector<double>{48000});
}

TEST_F(EngineTest, TellsTheEffectOfEachStart) {
    start({48000, 2});
    engine->stop();
    const auto node = effect({.inputs = 2, .outputs = 2});
    engine->connect(player, node, AVAudioFormat{48000, 2});
    engine->connect(node, engine->mainMixerNode(), AVAudioFormat{48000, 2});
    EXPECT_EQ(unit->starts(), 0);
    engine->start();
    EXPECT_EQ(unit->starts(), 1);
    engine->start();
    EXPECT_EQ(unit->starts(), 1);
    engine->stop();
    engine->start();
    EXPECT_EQ(unit->starts(), 2);
    EXPECT_EQ(unit->rates(), std::vector<double>{48000});
}

TEST_F(EngineTest, DerivedFormatsAreTheFilesRateAndTheEffectsChannels) {
    start({48000, 2});
    const auto node = effect({.inputs = 2, .outputs = 2});
    engine->connect(player, node, {});
    engine->connect(node, engine->mainMixerNode(), {});
    schedule(wav("mono.wav", 22050, {std::vector<float>(2205, 0.5F)}));
    render(4800);
    EXPECT_EQ(unit->rates().back(), 22050);
    EXPECT_EQ(unit->peak(0), 0.5F);
    EXPECT_EQ(unit->peak(1), 0.5F);
}

TEST_F(EngineTest, ChannelsAreMappedToTheEffectAndBack) {
    start({48000, 2});
    const auto node = effect({.inputs = 1, .outputs = 1});
    engine->connect(player, node, {});
    engine->connect(node, engine->mainMixerNode(), {});
    schedule(wav("stereo.wav", 48000,
                 {std::vector<float>(1000, 0.5F), std::vector<float>(1000, 0.25F)}));
    const auto rendered = render(1000);
    EXPECT_EQ(rendered[0][500], 0.375F);
    EXPECT_EQ(rendered[1][500], 0.375F);
}

TEST_F(EngineTest, RewiringWhileRenderingLosesAndRepeatsNoFrame) {
    start({48000, 2});
    const auto pass = noise(2, 100000, 2);
    const AVAudioFormat format{48000, 2};
    engine->connect(player, engine->mainMixerNode(), format);
    schedule(wav("pass.wav", 48000, pass));
    Signal heard = render(10000);
    const auto node = effect({.inputs = 2, .outputs = 2});
    const auto append = [&](const Signal& more) {
        for (std::size_t channel = 0; channel < 2; ++channel) {
            heard[channel].insert(heard[channel].end(), more[channel].begin(), more[channel].end());
        }
    };
    for (int turn = 0; turn < 10; ++turn) {
        engine->disconnectNodeInput(engine->mainMixerNode());
        EXPECT_EQ(render(777), silence(2, 777));
        engine->connect(player, node, format);
        EXPECT_EQ(render(55), silence(2, 55));
        engine->connect(node, engine->mainMixerNode(), format);
        append(render(4001));
        engine->disconnectNodeInput(node);
        engine->connect(player, engine->mainMixerNode(), format);
        append(render(3999));
    }
    EXPECT_EQ(heard, part(pass, 0, heard[0].size()));
}

TEST_F(EngineTest, RewiringKeepsTheFramesInTheMixersConverter) {
    const auto pass = noise(1, 60000, 3);
    const auto play = [&](bool rewire) {
        start({48000, 1});
        const AVAudioFormat format{44100, 1};
        engine->connect(player, engine->mainMixerNode(), format);
        schedule(wav("pass.wav", 44100, pass));
        Signal heard = render(10000);
        if (rewire) {
            engine->disconnectNodeInput(engine->mainMixerNode());
            render(500);
            engine->connect(player, engine->mainMixerNode(), format);
        }
        const auto more = render(10000);
        heard[0].insert(heard[0].end(), more[0].begin(), more[0].end());
        reset();
        return heard;
    };
    EXPECT_EQ(play(true), play(false));
}

TEST_F(EngineTest, RewiringPreparesNoEffectWhileItRenders) {
    startLive({48000, 2});
    schedule(wav("pass.wav", 48000, noise(2, 200000, 4)));
    const auto node = effect({.inputs = 2, .outputs = 2});
    std::atomic<bool> done = false;
    std::jthread device([&] {
        while (!done) {
            output->pull(64);
        }
    });
    for (int turn = 0; turn < 200; ++turn) {
        const double rate = turn % 2 == 0 ? 48000 : 44100;
        engine->connect(player, node, AVAudioFormat{rate, 2});
        engine->connect(node, engine->mainMixerNode(), {});
        engine->disconnectNodeInput(engine->mainMixerNode());
        engine->connect(player, engine->mainMixerNode(), {});
        engine->detach(node);
        engine->attach(node);
    }
    done = true;
    device.join();
    EXPECT_FALSE(unit->hasOverlapped());
    EXPECT_EQ(unit->rates().size(), 200U);
}

TEST_F(EngineTest, SeveralInputsOfTheMixerAddUp) {
    start({48000, 1});
    const auto second = std::make_shared<AVAudioPlayerNode>();
    engine->attach(second);
    engine->connect(player, engine->mainMixerNode(), {});
    engine->connect(second, engine->mainMixerNode(), {});
    schedule(wav("a.wav", 48000, {std::vector<float>(1000, 0.25F)}));
    second->scheduleFile(open(wav("b.wav", 48000, {std::vector<float>(1000, 0.5F)})), {}, {});
    second->play();
    EXPECT_EQ(render(1000)[0][999], 0.75F);
    engine->disconnectNodeInput(engine->mainMixerNode());
    EXPECT_EQ(render(1000), silence(1, 1000));
}

TEST_F(EngineTest, AnEffectThatCannotPrepareStaysSilentWithAWarning) {
    start({48000, 2});
    const auto node = effect({.inputs = 2, .outputs = 2, .refusal = "no such rate"});
    schedule(wav("pass.wav", 48000, noise(2, 1000, 5)));
    engine->connect(player, node, {});
    CapturedOutput standardError(2);
    engine->connect(node, engine->mainMixerNode(), {});
    EXPECT_NE(standardError.text().find("no such rate"), std::string::npos);
    EXPECT_EQ(render(500), silence(2, 500));
}

TEST_F(EngineTest, RatesTooFarApartStaySilentWithAWarning) {
    start({8000, 1});
    schedule(wav("far.wav", 768000, noise(1, 1000, 7)));
    CapturedOutput standardError(2);
    engine->connect(player, engine->mainMixerNode(), {});
    EXPECT_NE(standardError.text().find("768000.000000 Hz and 8000.000000 Hz are too far apart"),
              std::string::npos);
    EXPECT_EQ(render(500), silence(1, 500));
}

TEST_F(EngineTest, AMixerInputKeepsItsConverterWhenAnEarlierInputIsRemoved) {
    const auto play = [&](bool withAnother) {
        start({48000, 1});
        const auto another = std::make_shared<AVAudioPlayerNode>();
        engine->attach(another);
        if (withAnother) {
            engine->connect(another, engine->mainMixerNode(), AVAudioFormat{44100, 1});
        }
        engine->connect(player, engine->mainMixerNode(), AVAudioFormat{44100, 1});
        schedule(wav("pass.wav", 44100, noise(1, 30000, 8)));
        Signal heard = render(5000);
        engine->detach(another);
        const auto more = render(5000);
        heard[0].insert(heard[0].end(), more[0].begin(), more[0].end());
        reset();
        return heard;
    };
    EXPECT_EQ(play(true), play(false));
}

TEST_F(EngineTest, TheGraphFollowsADeviceOfAnotherFormat) {
    startLive({48000, 2});
    engine->connect(player, engine->mainMixerNode(), {});
    schedule(wav("pass.wav", 48000, {std::vector<float>(96000, 0.5F)}));
    EXPECT_EQ(output->pull(512).size(), 2U);
    output->changeFormat({44100, 1});
    EXPECT_EQ(engine->outputNode()->outputFormat(0), (AVAudioFormat{44100, 1}));
    EXPECT_EQ(output->pull(512).size(), 1U);
    engine->stop();
    EXPECT_FALSE(output->isStarted());
    EXPECT_FALSE(engine->isRunning());
}

TEST_F(EngineTest, AStartAfterAStopContinuesAtThePlayersPosition) {
    start({48000, 1});
    engine->connect(player, engine->mainMixerNode(), {});
    const auto pass = noise(1, 20000, 6);
    schedule(wav("pass.wav", 48000, pass));
    EXPECT_EQ(render(5000), part(pass, 0, 5000));
    engine->stop();
    engine->stop();
    engine->start();
    engine->start();
    EXPECT_EQ(render(5000), part(pass, 5000, 5000));
}

TEST_F(EngineTest, RenderingNoFramesLeavesTheBufferEmpty) {
    start({48000, 2});
    AVAudioPCMBuffer buffer({48000, 2}, 10);
    engine->renderOffline(10, buffer);
    engine->renderOffline(0, buffer);
    EXPECT_EQ(buffer.frameLength, 0U);
}

TEST_F(EngineDeathTest, BrokenPreconditionsEndTheProgram) {
    start({48000, 2});
    const auto stranger = std::make_shared<AVAudioPlayerNode>();
    EXPECT_DEATH(engine->connect(stranger, engine->mainMixerNode(), {}),
                 "Fatal error: A node must be attached to the engine before it is connected.");
    const auto one = effect({});
    EXPECT_DEATH(engine->connect(one, player, {}),
                 "Fatal error: A node without an input cannot be connected to.");
    for (const auto& [from, to] : std::vector<std::pair<Node, Node>>{{engine->mainMixerNode(), one},
                                                                     {one, engine->outputNode()},
                                                                     {engine->outputNode(), one}}) {
        EXPECT_DEATH(engine->connect(from, to, {}),
                     "Fatal error: The main mixer feeds the output node, and nothing else does.");
    }
    const auto two = effect({});
    engine->connect(one, two, {});
    EXPECT_DEATH(engine->connect(two, one, {}),
                 "Fatal error: A connection must not close a circle.");
    EXPECT_DEATH(engine->enableManualRenderingMode({48000, 2}),
                 "Fatal error: Manual rendering mode can be enabled only while the engine is "
                 "stopped.");
    AVAudioPCMBuffer mono({48000, 1}, 10);
    EXPECT_DEATH(engine->renderOffline(1, mono),
                 "Fatal error: The buffer has other channels than the manual rendering format.");
    AVAudioPCMBuffer small({48000, 2}, 10);
    EXPECT_DEATH(engine->renderOffline(11, small),
                 "Fatal error: The buffer has no room for the frames to render.");
    engine->stop();
    EXPECT_DEATH(engine->renderOffline(1, small),
                 "Fatal error: Offline rendering needs a started engine in manual rendering mode.");
}

}  // namespace

}  // namespace orvalo::testing
