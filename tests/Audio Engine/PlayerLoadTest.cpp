#include <thread>

#include "platform/foundation/NSError.h"
#include "tests/Audio Engine/PlayerFixture.h"

namespace orvalo::testing {
namespace {

using PlayerLoad = PlayerFixture;

Lines loadedWithoutEffect(const URL& url, const std::string& thread = "main") {
    return {"AUEnginePlayer: Audio file at '" + url.path() +
                "' was selected for loading into the player.",
            "[" + thread + "] onFileSelect(file: " + url.path() + ")",
            "AUEnginePlayer: The player was connected to the mainMixerNode."};
}

Lines loadedWithEffect(const URL& url, const std::string& channels) {
    return {"AUEnginePlayer: Audio file at '" + url.path() +
                "' was selected for loading into the player.",
            "[main] onFileSelect(file: " + url.path() + ")",
            "AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.",
            "AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.",
            channels,
            "AUEnginePlayer: Audio unit re-connecting to the player.",
            "AUEnginePlayer: Audio unit re-connectingto the main mixer."};
}

std::string reasonOf(const URL& url) {
    try {
        AVAudioFile::forReading(url);
    } catch (const NSError& error) {
        return error.description();
    }
    return "none";
}

std::string cannotOpen(const URL& url) {
    return "AUEnginePlayer::ERROR: Could not create AVAudioFile instance for URL 'Optional(" +
           url.absoluteString() + ")'. error: " + reasonOf(url) + ".";
}

TEST_F(PlayerLoad, StartsIdleAndUnconnected) {
    EXPECT_FALSE(peer.isPlaying());
    EXPECT_EQ(peer.loopCount(), 0);
    EXPECT_EQ(peer.file(), nullptr);
    EXPECT_EQ(peer.fileURL(), std::nullopt);
    EXPECT_EQ(peer.activeAVAudioUnit(), nullptr);
    EXPECT_EQ(peer.node()->engine(), peer.engine());
    EXPECT_EQ(peer.queue()->label(), "com.Tessaly.AUEnginePlayer.stateQueue");
    EXPECT_EQ(newLines(), Lines());
}

TEST_F(PlayerLoad, WithoutEffectWiresThePlayerToTheMixer) {
    const auto url = constantFile("a b.wav");
    player->load(url);
    EXPECT_EQ(newLines(), loadedWithoutEffect(url));
    EXPECT_EQ(peer.fileURL(), url);
    ASSERT_NE(peer.file(), nullptr);
    EXPECT_EQ(peer.file()->url(), url);

    peer.scheduleEffectLoop();
    peer.engine()->start();
    peer.node()->play();
    EXPECT_EQ(render(0.1), kFileValue);
}

TEST_F(PlayerLoad, WithEffectWiresThroughItAndPrintsTheChannelCount) {
    player->connect(unit(0.25F), [] {});
    newLines();

    const auto stereo = constantFile("stereo.wav");
    player->load(stereo);
    EXPECT_EQ(newLines(), loadedWithEffect(stereo, "2"));
    const auto mono = constantFile("mono.wav", 1.0, 1);
    player->load(mono);
    EXPECT_EQ(newLines(), loadedWithEffect(mono, "1"));

    peer.scheduleEffectLoop();
    peer.engine()->start();
    peer.node()->play();
    EXPECT_EQ(render(0.1), 0.25F);
}

TEST_F(PlayerLoad, NotifiesTheDelegateOnTheCallersThread) {
    const auto url = constantFile("a.wav");
    std::thread([&] {
        PrintingDelegate::nameThisThread("caller");
        player->load(url);
    }).join();
    EXPECT_EQ(newLines(), loadedWithoutEffect(url, "caller"));
}

TEST_F(PlayerLoad, WithoutDelegateLoadsSilently) {
    player->delegate = nullptr;
    const auto url = constantFile("a.wav");
    player->load(url);
    auto expected = loadedWithoutEffect(url);
    expected.erase(expected.begin() + 1);
    EXPECT_EQ(newLines(), expected);
}

TEST_F(PlayerLoad, ResetsTheLoopCountWhetherItSucceedsOrNot) {
    peer.loopCount() = 5;
    player->load(constantFile("a.wav"));
    EXPECT_EQ(peer.loopCount(), 0);
    peer.loopCount() = 5;
    player->load(damagedFile("b.wav"));
    EXPECT_EQ(peer.loopCount(), 0);
}

TEST_F(PlayerLoad, AFileThatCannotBeOpenedKeepsThePreviousOne) {
    const auto good = constantFile("good.wav");
    player->load(good);
    const auto goodFile = peer.file();
    for (const auto& bad : {damagedFile("bad ü.wav"),
                            URL::fileURLWithPath((folder.path() / "missing.m4a").string())}) {
        newLines();
        player->load(bad);
        EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio file at '" + bad.path() +
                                         "' was selected for loading into the player.",
                                     cannotOpen(bad)}));
        EXPECT_EQ(peer.file(), goodFile);
        EXPECT_EQ(peer.fileURL(), bad);
    }
}

TEST_F(PlayerLoad, WhilePlayingContinuesWithTheNewFile) {
    player->start();
    settle();
    newLines();

    const auto url = constantFile("new.wav");
    player->load(url);
    settle();
    auto expected = loadedWithoutEffect(url);
    expected.insert(expected.end(),
                    {"[main] onLoop(count: 0)",
                     "AUEnginePlayer: Current audio file '" + url.path() + "' looped: 1."});
    EXPECT_EQ(newLines(), expected);
    EXPECT_TRUE(peer.isPlaying());
    EXPECT_TRUE(peer.node()->isPlaying());
    EXPECT_EQ(render(0.1), kFileValue);
}

TEST_F(PlayerLoad, AFileThatCannotBeOpenedWhilePlayingIsNamedByTheNextPass) {
    player->start();
    settle();
    newLines();

    const auto bad = damagedFile("bad.wav");
    player->load(bad);
    render(0.9);
    const auto looped = "AUEnginePlayer: Current audio file '" + bad.path() + "' looped: 1.";
    serveMainQueueUntilPrinted(output, looped);
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio file at '" + bad.path() +
                                     "' was selected for loading into the player.",
                                 cannotOpen(bad), "[main] onLoop(count: 0)", looped}));
}

}  // namespace
}  // namespace orvalo::testing
