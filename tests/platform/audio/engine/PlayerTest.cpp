#include "platform/audio/engine/AVAudioPlayerNode.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>
#include <utility>
#include <vector>

#include "platform/audio/engine/AVAudioEngine.h"
#include "tests/platform/audio/engine/EngineFixture.h"

namespace orvalo::testing {

namespace {

class PlayerTest : public EngineFixture {};

TEST_F(PlayerTest, PassesOfOneFileJoinSampleExactly) {
    for (const std::uint32_t rate : {22050U, 44100U, 48000U, 96000U}) {
        for (const std::uint32_t channels : {1U, 2U}) {
            // A prime length, longer than the ring at some rates.
            const auto pass = noise(channels, 30011, rate + channels);
            const auto file = open(wav("pass.wav", rate, pass));
            start({static_cast<double>(rate), channels});
            for (int count = 0; count < 3; ++count) {
                player->scheduleFile(file, {}, {});
            }
            engine->connect(player, engine->mainMixerNode(), {});
            player->play();
            const auto rendered = render(3 * 30011 + 100);
            auto expected = repeated(pass, 3);
            for (auto& channel : expected) {
                channel.resize(3 * 30011 + 100, 0.0F);
            }
            EXPECT_EQ(rendered, expected) << rate << " Hz, " << channels << " channels";
            reset();
        }
    }
}

TEST_F(PlayerTest, OneSamplePassesJoinToo) {
    const auto file = open(wav("tiny.wav", 48000, {{0.25F}}));
    start({48000, 1});
    for (int count = 0; count < 50; ++count) {
        player->scheduleFile(file, {}, {});
    }
    engine->connect(player, engine->mainMixerNode(), {});
    player->play();
    const auto rendered = render(60);
    EXPECT_EQ(rendered.front()[49], 0.25F);
    EXPECT_EQ(rendered.front()[50], 0.0F);
}

TEST_F(PlayerTest, CompletionIsCalledOnThePlayersThreadAtTheLead) {
    const std::size_t length = 30000;
    const std::size_t lead = 9600;  // 200 ms at 48 kHz
    const auto file = open(wav("pass.wav", 48000, noise(1, length, 1)));
    start({48000, 1});
    player->scheduleFile(file, {}, completions.handler("one"));
    engine->connect(player, engine->mainMixerNode(), {});
    player->play();

    render(length - lead - 1);
    EXPECT_TRUE(completions.names().empty());
    render(1);
    completions.waitFor(1);
    EXPECT_EQ(completions.names(), std::vector<std::string>{"one"});
    EXPECT_NE(completions.thread(0), std::this_thread::get_id());
}

TEST_F(PlayerTest, APassQueuedByACompletionJoinsWithoutAGap) {
    const auto pass = noise(2, 12345, 2);
    const auto file = open(wav("pass.wav", 48000, pass));
    std::atomic<int> left = 5;
    std::function<void()> again = [&] {
        if (--left > 0) {
            player->scheduleFile(file, {}, again);
        }
    };
    start({48000, 2});
    player->scheduleFile(file, {}, again);
    engine->connect(player, engine->mainMixerNode(), {});
    player->play();
    EXPECT_EQ(render(std::size_t{5} * 12345), repeated(pass, 5));
    EXPECT_EQ(player->underrunCount(), 0U);
}

TEST_F(PlayerTest, StopCompletesEveryPendingPassInOrderOnTheCallersThread) {
    const auto file = open(wav("pass.wav", 48000, noise(1, 50000, 3)));
    start({48000, 1});
    for (const auto* name : {"one", "two", "three"}) {
        player->scheduleFile(file, {}, completions.handler(name));
    }
    engine->connect(player, engine->mainMixerNode(), {});
    player->play();
    render(100);
    player->stop();
    EXPECT_EQ(completions.names(), (std::vector<std::string>{"one", "two", "three"}));
    for (std::size_t index = 0; index < 3; ++index) {
        EXPECT_EQ(completions.thread(index), std::this_thread::get_id());
    }
    EXPECT_FALSE(player->isPlaying());
    player->stop();
    EXPECT_EQ(completions.names().size(), 3U);
}

TEST_F(PlayerTest, StopRemovesScheduledFiles) {
    const auto first = noise(1, 50000, 4);
    const auto second = noise(1, 20000, 5);
    start({48000, 1});
    player->scheduleFile(open(wav("first.wav", 48000, first)), {}, {});
    engine->connect(player, engine->mainMixerNode(), {});
    player->play();
    render(1000);
    player->stop();
    EXPECT_EQ(render(500), silence(1, 500));
    player->scheduleFile(open(wav("second.wav", 48000, second)), {}, {});
    player->play();
    EXPECT_EQ(render(20000), second);
}

TEST_F(PlayerTest, ACompletionMayScheduleAgainFromInsideStop) {
    const auto second = noise(1, 20000, 7);
    const auto next = open(wav("second.wav", 48000, second));
    start({48000, 1});
    player->scheduleFile(open(wav("first.wav", 48000, noise(1, 50000, 6))), {},
                         [&] { player->scheduleFile(next, {}, {}); });
    engine->connect(player, engine->mainMixerNode(), {});
    player->play();
    render(1000);
    player->stop();
    player->play();
    EXPECT_EQ(render(20000), second);
}

TEST_F(PlayerTest, PauseKeepsThePosition) {
    const auto pass = noise(1, 20000, 8);
    start({48000, 1});
    player->scheduleFile(open(wav("pass.wav", 48000, pass)), {}, {});
    engine->connect(player, engine->mainMixerNode(), {});
    EXPECT_EQ(render(100), silence(1, 100));
    player->play();
    EXPECT_EQ(render(1000), part(pass, 0, 1000));
    player->pause();
    EXPECT_FALSE(player->isPlaying());
    EXPECT_EQ(render(333), silence(1, 333));
    player->play();
    EXPECT_EQ(render(19000), part(pass, 1000, 19000));
}

TEST_F(PlayerTest, TheConnectionFollowsTheFilesFormatAndTheMixerConverts) {
    start({48000, 2});
    engine->connect(player, engine->mainMixerNode(), {});
    player->scheduleFile(open(wav("mono.wav", 24000, {std::vector<float>(24000, 0.5F)})), {}, {});
    player->play();
    const auto rendered = render(48000);
    // Apart from the ends, a constant stays constant in both channels.
    for (std::size_t frame = 2000; frame < 46000; ++frame) {
        ASSERT_NEAR(rendered[0][frame], 0.5F, 1e-4F) << frame;
        ASSERT_EQ(rendered[0][frame], rendered[1][frame]) << frame;
    }
    EXPECT_NEAR(render(2000)[0].back(), 0.0F, 1e-6F);
}

TEST_F(PlayerTest, AFileOfAnotherFormatPlaysBehindTheFirst) {
    start({48000, 1});
    engine->connect(player, engine->mainMixerNode(), {});
    player->scheduleFile(open(wav("a.wav", 48000, {std::vector<float>(10000, 0.25F)})), {},
                         completions.handler("a"));
    player->scheduleFile(open(wav("b.wav", 96000, {std::vector<float>(40000, 0.75F)})), {},
                         completions.handler("b"));
    player->play();
    const auto rendered = render(40000);
    EXPECT_EQ(rendered[0][9999], 0.25F);
    completions.waitFor(2);
    EXPECT_EQ(completions.names(), (std::vector<std::string>{"a", "b"}));
    std::size_t second = 0;
    for (const float sample : rendered[0]) {
        second += std::abs(sample - 0.75F) < 1e-3F ? 1 : 0;
    }
    EXPECT_NEAR(static_cast<double>(second), 20000.0, 200.0);
}

TEST_F(PlayerTest, AFileOfAnotherFormatWaitsForTheCompletionsBeforeIt) {
    start({48000, 1});
    engine->connect(player, engine->mainMixerNode(), {});
    const auto next = open(wav("b.wav", 44100, {std::vector<float>(22050, 0.75F)}));
    // Shorter than the lead, so that it completes before it sounds.
    const auto tail = open(wav("t.wav", 48000, {std::vector<float>(2400, 0.25F)}));
    player->scheduleFile(open(wav("a.wav", 48000, {std::vector<float>(48000, 0.5F)})), {},
                         [&] { player->scheduleFile(next, {}, completions.handler("next")); });
    player->scheduleFile(tail, {}, completions.handler("tail"));
    player->play();
    render(100000);
    completions.waitFor(2);
    EXPECT_EQ(completions.names(), (std::vector<std::string>{"tail", "next"}));
}

TEST_F(PlayerTest, AConvertingPlayerRendersLargeQuantaOffline) {
    for (const auto& [from, to] : std::vector<std::pair<std::uint32_t, double>>{
             {48000, 8000}, {32000, 8000}, {32000, 16000}, {192000, 8000}}) {
        start({to, 1});
        engine->connect(player, engine->mainMixerNode(), AVAudioFormat{to, 1});
        player->scheduleFile(
            open(wav("long.wav", from, {std::vector<float>(std::size_t{from} * 2, 0.5F)})), {}, {});
        player->play();
        const auto rendered = render(static_cast<std::size_t>(to));
        for (std::size_t frame = 200; frame < rendered[0].size(); ++frame) {
            ASSERT_NEAR(rendered[0][frame], 0.5F, 1e-3F) << from << " Hz, frame " << frame;
        }
        reset();
    }
}

TEST_F(PlayerTest, ThePlayerConvertsToTheConnectionsFormat) {
    start({48000, 1});
    engine->connect(player, engine->mainMixerNode(), AVAudioFormat{48000, 1});
    player->scheduleFile(
        open(wav("b.wav", 96000,
                 {std::vector<float>(96000, 0.5F), std::vector<float>(96000, 0.25F)})),
        {}, {});
    player->play();
    const auto rendered = render(48000);
    for (std::size_t frame = 2000; frame < 46000; ++frame) {
        ASSERT_NEAR(rendered[0][frame], 0.375F, 1e-4F) << frame;
    }
}

TEST_F(PlayerTest, ACompletionMayReleaseThePlayer) {
    const auto file = open(wav("pass.wav", 48000, noise(1, 100, 9)));
    auto lonely = std::make_shared<AVAudioPlayerNode>();
    const std::weak_ptr<AVAudioPlayerNode> watch = lonely;
    start({48000, 1});
    engine->attach(lonely);
    engine->connect(lonely, engine->mainMixerNode(), {});
    lonely->play();
    // Holds the last reference and releases it on the player's thread.
    auto holder = std::make_shared<std::shared_ptr<AVAudioPlayerNode>>();
    std::latch isFilled(1);
    lonely->scheduleFile(file, {}, [holder, &isFilled, done = completions.handler("done")] {
        isFilled.wait();
        holder->reset();
        done();
    });
    engine->detach(lonely);
    *holder = std::move(lonely);
    isFilled.count_down();
    completions.waitFor(1);
    EXPECT_TRUE(watch.expired());
}

TEST_F(PlayerTest, DestructionCallsPendingCompletions) {
    auto lonely = std::make_shared<AVAudioPlayerNode>();
    lonely->scheduleFile(open(wav("pass.wav", 48000, noise(1, 100000, 10))), {},
                         completions.handler("pending"));
    lonely.reset();
    EXPECT_EQ(completions.names(), std::vector<std::string>{"pending"});
}

}  // namespace

}  // namespace orvalo::testing
