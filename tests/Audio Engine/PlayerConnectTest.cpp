#include <array>
#include <chrono>
#include <future>
#include <thread>

#include "platform/foundation/Print.h"
#include "tests/Audio Engine/PlayerFixture.h"
#include "tests/Audio Engine/PlayerLines.h"

namespace orvalo::testing {
namespace {

class PlayerConnect : public PlayerFixture {
  protected:
    void connect(const std::shared_ptr<AVAudioUnit>& effect) {
        player->connect(effect, [] { print("completion"); });
    }

    /// The graph's output for the loaded file.
    float sound() {
        peer.scheduleEffectLoop();
        peer.engine()->start();
        peer.node()->play();
        return render(0.1);
    }
};

TEST_F(PlayerConnect, AnEffectBeforeAnyFileIsOnlyAttached) {
    const auto effect = unit(0.25F);
    connect(effect);
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: A new audio unit will be connected.",
                     "AUEnginePlayer: Audio unit was attached.", kNoFormatToWire, "completion"}));
    EXPECT_EQ(peer.activeAVAudioUnit(), effect);
    EXPECT_EQ(effect->engine(), peer.engine());
    peer.engine()->start();
    EXPECT_EQ(render(0.1), 0.0F);
}

TEST_F(PlayerConnect, AnEffectIsWiredBetweenPlayerAndMixer) {
    player->load(constantFile("a.wav"));
    newLines();
    const auto effect = unit(0.25F);
    connect(effect);
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: A new audio unit will be connected.",
                     "AUEnginePlayer: Audio unit was attached.",
                     "AUEnginePlayer: Audio Unit was connected to the player.",
                     "AUEnginePlayer: Audio Unit was connected to the main mixer.", "completion"}));
    EXPECT_EQ(sound(), 0.25F);
}

TEST_F(PlayerConnect, AnEffectWithMIDIOutputsGetsTheHandler) {
    const auto effect = unit(0.25F, {"Notes"});
    connect(effect);
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: A new audio unit will be connected.", kAssignsHandler,
                     "AUEnginePlayer: Audio unit was attached.", kNoFormatToWire, "completion"}));

    const auto handler = effect->auAudioUnit()->MIDIOutputEventBlock();
    ASSERT_TRUE(handler);
    const std::array<std::uint8_t, 3> bytes{0x90, 60, 100};
    EXPECT_EQ(handler(512, 0, 3, bytes.data()), 0);
    drainMainQueue();
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: MIDI event from audio unit at: 512, data: 144, 60, 100"}));
}

TEST_F(PlayerConnect, AnEffectWithoutMIDIOutputsGetsNoHandler) {
    const auto effect = unit(0.25F);
    connect(effect);
    EXPECT_FALSE(effect->auAudioUnit()->MIDIOutputEventBlock());
}

TEST_F(PlayerConnect, ANewEffectReplacesTheFormerOne) {
    player->load(constantFile("a.wav"));
    const auto first = unit(0.25F);
    const auto second = unit(0.75F);
    connect(first);
    newLines();
    connect(second);
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: A new audio unit will be connected.",
                     "AUEnginePlayer: Audio unit was disconnecting and detaching.",
                     "AUEnginePlayer: Audio unit was attached.",
                     "AUEnginePlayer: Audio Unit was connected to the player.",
                     "AUEnginePlayer: Audio Unit was connected to the main mixer.", "completion"}));
    EXPECT_EQ(peer.activeAVAudioUnit(), second);
    EXPECT_EQ(first->engine(), nullptr);
    EXPECT_EQ(sound(), 0.75F);
}

TEST_F(PlayerConnect, ANewEffectReplacesAnUnwiredOneWithoutAFile) {
    connect(unit(0.25F));
    newLines();
    connect(unit(0.75F));
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: A new audio unit will be connected.", kNoFormatToReset,
                     "AUEnginePlayer: Audio unit was disconnecting and detaching.",
                     "AUEnginePlayer: Audio unit was attached.", kNoFormatToWire, "completion"}));
}

TEST_F(PlayerConnect, NullWithoutAnEffectConnectsThePlayerToTheMixer) {
    player->load(constantFile("a.wav"));
    newLines();
    connect(nullptr);
    EXPECT_EQ(newLines(), Lines({kDisconnects, "completion",
                                 "AUEnginePlayer: The audio unit was set to 'nil'."}));
    EXPECT_EQ(sound(), kFileValue);
}

TEST_F(PlayerConnect, NullWithoutAnEffectAndAFileIsReportedOnce) {
    connect(nullptr);
    EXPECT_EQ(newLines(), Lines({kDisconnects, kNoFormatToReset, "completion",
                                 "AUEnginePlayer: The audio unit was set to 'nil'."}));
}

TEST_F(PlayerConnect, NullRemovesTheEffectAndResetsOnce) {
    player->load(constantFile("a.wav"));
    const auto effect = unit(0.25F);
    connect(effect);
    newLines();
    connect(nullptr);
    EXPECT_EQ(newLines(),
              Lines({kDisconnects, "AUEnginePlayer: Audio unit was disconnecting and detaching.",
                     "completion", "AUEnginePlayer: The audio unit was set to 'nil'."}));
    EXPECT_EQ(peer.activeAVAudioUnit(), nullptr);
    EXPECT_EQ(effect->engine(), nullptr);
    EXPECT_EQ(sound(), kFileValue);
}

TEST_F(PlayerConnect, NullRemovesAnUnwiredEffect) {
    connect(unit(0.25F));
    newLines();
    connect(nullptr);
    EXPECT_EQ(newLines(),
              Lines({kDisconnects, kNoFormatToReset,
                     "AUEnginePlayer: Audio unit was disconnecting and detaching.", "completion",
                     "AUEnginePlayer: The audio unit was set to 'nil'."}));
}

TEST_F(PlayerConnect, DisconnectPrintsItsLines) {
    player->load(constantFile("a.wav"));
    connect(unit(0.25F));
    newLines();
    player->disconnect();
    EXPECT_EQ(newLines(),
              Lines({kDisconnects, "AUEnginePlayer: Audio unit was disconnecting and detaching.",
                     "AUEnginePlayer: Performed audio unit disconnection.",
                     "AUEnginePlayer: The audio unit was set to 'nil'."}));
}

TEST_F(PlayerConnect, RunsOnTheCallersThread) {
    std::thread::id completed;
    std::thread caller([&] {
        player->connect(unit(0.25F), [&] { completed = std::this_thread::get_id(); });
        EXPECT_EQ(completed, std::this_thread::get_id());
    });
    caller.join();
}

TEST_F(PlayerConnect, ResetWithoutAFileIsReported) {
    peer.resetAudioLoop();
    EXPECT_EQ(newLines(), Lines({kNoFormatToReset}));
}

TEST_F(PlayerConnect, ThePassContinuesWhilePlaying) {
    player->start();
    player->load(constantFile("a.wav"));
    settle();
    newLines();
    EXPECT_EQ(render(0.1), kFileValue);

    connect(unit(0.25F));
    EXPECT_TRUE(peer.node()->isPlaying());
    EXPECT_EQ(render(0.1), 0.25F);
    connect(nullptr);
    EXPECT_TRUE(peer.node()->isPlaying());
    EXPECT_EQ(render(0.1), kFileValue);
    settle();
    EXPECT_EQ(newLines(),
              Lines({"AUEnginePlayer: A new audio unit will be connected.",
                     "AUEnginePlayer: Audio unit was attached.",
                     "AUEnginePlayer: Audio Unit was connected to the player.",
                     "AUEnginePlayer: Audio Unit was connected to the main mixer.", "completion",
                     kDisconnects, "AUEnginePlayer: Audio unit was disconnecting and detaching.",
                     "completion", "AUEnginePlayer: The audio unit was set to 'nil'."}));
}

TEST_F(PlayerConnect, ThePlayerPausesWhileAnEffectIsWired) {
    player->start();
    settle();
    ASSERT_TRUE(peer.node()->isPlaying());
    const auto effect = std::make_shared<ConstantUnit>(0.25F);
    int calls = 0;
    effect->onMIDIOutputNames = [&] {
        ++calls;
        EXPECT_FALSE(peer.node()->isPlaying());
    };
    connect(std::make_shared<AVAudioUnit>(effect));
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(peer.node()->isPlaying());
}

// The search connects the effect on its thread while the user may press play.
TEST_F(PlayerConnect, LoadingAFileWaitsUntilTheEffectIsWired) {
    const auto url = constantFile("a.wav");
    const auto effect = std::make_shared<ConstantUnit>(0.25F);
    std::promise<void> connecting;
    std::promise<void> loaded;
    effect->onMIDIOutputNames = [&] {
        connecting.set_value();
        // The effect is not in the graph yet: connecting the player to it now would be fatal.
        EXPECT_EQ(loaded.get_future().wait_for(std::chrono::milliseconds(100)),
                  std::future_status::timeout);
    };
    std::thread connector([&] { player->connect(std::make_shared<AVAudioUnit>(effect), [] {}); });
    connecting.get_future().wait();
    player->load(url);
    loaded.set_value();
    connector.join();
    EXPECT_EQ(sound(), 0.25F);
}

TEST_F(PlayerConnect, FilesMayBeLoadedWhileEffectsAreConnected) {
    const auto url = constantFile("a.wav", 0.1);
    std::thread connector([this] {
        for (int round = 0; round < 25; ++round) {
            player->connect(unit(0.25F), [] {});
            player->connect(nullptr, [] {});
        }
        player->connect(unit(0.25F), [] {});
    });
    for (int round = 0; round < 50; ++round) {
        player->load(url);
    }
    connector.join();
    EXPECT_EQ(sound(), 0.25F);
}

}  // namespace
}  // namespace orvalo::testing
