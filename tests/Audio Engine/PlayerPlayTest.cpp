#include <filesystem>
#include <set>
#include <string>

#include "platform/audio/engine/AVAudioSession.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Print.h"
#include "tests/Audio Engine/PlayerFixture.h"
#include "tests/Audio Engine/PlayerLines.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {
namespace {

class PlayerPlay : public PlayerFixture {
  protected:
    /// The length of each demonstration file of the tests, in seconds.
    static constexpr double kPass = 1.0;

    std::string demonstration() { return peer.fileURL()->path(); }

    static Lines started(const std::string& path) {
        return {"AUEnginePlayer: Audio file at '" + path +
                    "' was selected for loading into the player.",
                "[main] onFileSelect(file: " + path + ")",
                "AUEnginePlayer: The player was connected to the mainMixerNode.",
                path,
                "AUEnginePlayer: Audio session was set active.",
                "AUEnginePlayer: Audio engine starting.",
                "[main] onPlayerStateChanged(playing: true)"};
    }

    static Lines stopped() {
        return {"AUEnginePlayer: Audio session was set active.",
                "AUEnginePlayer: Audio engine stopping.",
                "[main] onPlayerStateChanged(playing: false)"};
    }

    static Lines looped(const std::string& path, int count) {
        return {"[main] onLoop(count: " + std::to_string(count - 1) + ")",
                "AUEnginePlayer: Current audio file '" + path +
                    "' looped: " + std::to_string(count) + "."};
    }

    /// Renders past the end of the pass and waits for its lines. count: the passes so far.
    void renderPass(int count) {
        render(kPass);
        serveMainQueueUntilPrinted(output, looped(demonstration(), count).back());
        settle();
    }
};

TEST_F(PlayerPlay, StartPrintsAndNotifiesInOrder) {
    player->start();
    EXPECT_TRUE(peer.isPlaying());
    EXPECT_TRUE(peer.engine()->isRunning());
    EXPECT_TRUE(peer.node()->isPlaying());
    auto expected = started(demonstration());
    const Lines atOnce(expected.begin(), expected.begin() + 5);
    EXPECT_EQ(output.lines(), atOnce) << "The rest waits for the main queue.";
    settle();
    EXPECT_EQ(newLines(), expected);
}

TEST_F(PlayerPlay, PassesAreCountedFromTheFirst) {
    player->start();
    settle();
    newLines();
    const auto path = demonstration();
    Lines expected;
    for (int count = 1; count <= 3; ++count) {
        renderPass(count);
        expected = expected + looped(path, count);
    }
    EXPECT_EQ(newLines(), expected);
    EXPECT_EQ(peer.loopCount(), 3);
}

TEST_F(PlayerPlay, StoppingDuringAPassEndsItSilently) {
    player->start();
    settle();
    render(0.1);
    newLines();
    player->stop();
    EXPECT_FALSE(peer.isPlaying());
    EXPECT_FALSE(peer.engine()->isRunning());
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio session was set active."}));
    settle();
    settle();
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio engine stopping.",
                                 "[main] onPlayerStateChanged(playing: false)"}));
    EXPECT_EQ(peer.loopCount(), 0);
}

TEST_F(PlayerPlay, StopWhileIdleDoesNothing) {
    player->stop();
    settle();
    EXPECT_EQ(newLines(), Lines());
}

TEST_F(PlayerPlay, ToggleReturnsTheNewState) {
    EXPECT_TRUE(player->toggle());
    const auto path = demonstration();
    settle();
    EXPECT_FALSE(player->toggle());
    settle();
    EXPECT_EQ(newLines(), started(path) + stopped());
}

TEST_F(PlayerPlay, StartsAgainAfterAStop) {
    EXPECT_TRUE(player->toggle());
    settle();
    renderPass(1);
    EXPECT_FALSE(player->toggle());
    settle();
    newLines();
    EXPECT_TRUE(player->toggle());
    settle();
    const auto path = demonstration();
    renderPass(1);
    EXPECT_EQ(newLines(), started(path) + looped(path, 1));
}

TEST_F(PlayerPlay, StartWhilePlayingContinuesWithAnotherFile) {
    player->start();
    settle();
    renderPass(1);
    renderPass(2);
    newLines();

    player->start();
    EXPECT_TRUE(peer.isPlaying());
    settle();
    const auto path = demonstration();
    // The interrupted pass counts as the first pass of the new file.
    const Lines expected{
        "AUEnginePlayer: Audio file at '" + path + "' was selected for loading into the player.",
        "[main] onFileSelect(file: " + path + ")",
        "AUEnginePlayer: The player was connected to the mainMixerNode.", path};
    EXPECT_EQ(newLines(), expected + looped(path, 1));
    renderPass(2);
    EXPECT_EQ(newLines(), looped(path, 2));
}

TEST_F(PlayerPlay, PlaysWithoutADelegate) {
    player->delegate = nullptr;
    player->start();
    settle();
    renderPass(1);
    player->stop();
    settle();
    const auto path = demonstration();
    auto expected = started(path) + looped(path, 1) + stopped();
    std::erase_if(expected, [](const std::string& line) { return line[0] == '['; });
    EXPECT_EQ(newLines(), expected);
}

TEST_F(PlayerPlay, FinalizeStopsThenDisconnects) {
    player->connect(unit(0.25F), [] {});
    player->start();
    settle();
    newLines();
    player->finalize();
    settle();
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio session was set active.", kDisconnects,
                                 "AUEnginePlayer: Audio unit was disconnecting and detaching.",
                                 "AUEnginePlayer: Performed audio unit disconnection.",
                                 "AUEnginePlayer: The audio unit was set to 'nil'.",
                                 "AUEnginePlayer: Audio engine stopping.",
                                 "[main] onPlayerStateChanged(playing: false)"}));
}

TEST_F(PlayerPlay, WithoutAFileNothingIsScheduled) {
    peer.scheduleEffectLoop();
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer::ERROR: `file` parameter must not be nil."}));
}

/// A bundle that records the requested resources and returns the same file for all.
class NotingBundle : public Bundle {
  public:
    explicit NotingBundle(const URL& file) : Bundle(file), file_(file) {}

    std::optional<URL> url(std::string_view forResource,
                           std::string_view withExtension) const override {
        asked.emplace(forResource);
        EXPECT_EQ(withExtension, "m4a");
        return file_;
    }

    mutable std::set<std::string> asked;

  private:
    const URL file_;
};

TEST_F(PlayerPlay, StartPicksEveryDemonstrationFileInTheLongRun) {
    const auto bundle = std::make_shared<NotingBundle>(constantFile("short.wav", 0.001));
    const auto drawing = std::make_shared<AUEnginePlayer>(engine, bundle);
    const AUEnginePlayerPeer drawingPeer{*drawing};
    // Enough that at most one in 100,000 runs misses one of the 80.
    for (int round = 0; round < 1300; ++round) {
        drawingPeer.randomizeFile();
    }
    std::set<std::string> all;
    for (int number = 1; number <= 80; ++number) {
        all.insert(std::to_string(number));
    }
    EXPECT_EQ(bundle->asked, all);
}

/// Prints when its format is read.
class PrintingOutput : public AudioOutput {
  public:
    AVAudioFormat format() override {
        print("format of the output");
        return {};
    }
    void start(AudioOutputSource& /*source*/) override {}
    void stop() override {}
    std::uint64_t xrunCount() const override { return 0; }
};

TEST_F(PlayerPlay, TheEngineIsPreparedAfterTheFileIsNamed) {
    const auto choosing = std::make_shared<AUEnginePlayer>(
        std::make_shared<AVAudioEngine>(std::make_unique<PrintingOutput>()));
    const AUEnginePlayerPeer choosingPeer{*choosing};
    choosingPeer.randomizeFile();
    const auto path = choosingPeer.fileURL()->path();
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio file at '" + path +
                                     "' was selected for loading into the player.",
                                 "AUEnginePlayer: The player was connected to the mainMixerNode.",
                                 path, "format of the output"}));
}

TEST_F(PlayerPlay, DemonstrationFilesComeFromTheProgramsBundle) {
    peer.randomizeFile();
    const std::filesystem::path path = demonstration();
    EXPECT_EQ(path.parent_path(), Bundle::main()->resourceURL()->path());
    EXPECT_EQ(path.extension(), ".m4a");
}

/// Prints its calls.
class PrintingSession : public AVAudioSession {
  public:
    void setCategory(AVAudioSessionCategory category, AVAudioSessionMode mode,
                     AVAudioSessionCategoryOptions options) override {
        print(category == AVAudioSessionCategory::playback &&
                      mode == AVAudioSessionMode::default_ &&
                      options == AVAudioSessionCategoryOptions::none
                  ? "setCategory(playback, mode: default, options: [])"
                  : "another category");
    }
    void setActive(bool active, AVAudioSessionSetActiveOptions options) override {
        print(std::string("setActive(") + (active ? "true" : "false") +
              (options == AVAudioSessionSetActiveOptions::none ? ", options: [])" : ", ?)"));
    }
};

TEST_F(PlayerPlay, TheSessionGetsItsCategoryThenItsState) {
    const auto granting = AVAudioSession::sharedInstance();
    AVAudioSession::setSharedInstance(std::make_shared<PrintingSession>());
    peer.setSessionActive(true);
    peer.setSessionActive(false);
    AVAudioSession::setSharedInstance(granting);
    EXPECT_EQ(
        newLines(),
        Lines({"setCategory(playback, mode: default, options: [])", "setActive(true, options: [])",
               "AUEnginePlayer: Audio session was set active.",
               "setCategory(playback, mode: default, options: [])", "setActive(false, options: [])",
               "AUEnginePlayer: Audio session was set active."}));
}

TEST_F(PlayerPlay, TheSessionIsActiveBeforeThePassIsScheduled) {
    // Without a file the scheduling prints its line.
    peer.startPlayingInternal();
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio session was set active.",
                                 "AUEnginePlayer::ERROR: `file` parameter must not be nil."}));
}

TEST_F(PlayerPlay, TheEngineStillRunsWhenThePlayerStops) {
    player->start();
    settle();
    // The player completes what is scheduled when it stops.
    std::optional<bool> wasRunning;
    peer.node()->scheduleFile(peer.file(), std::nullopt,
                              [&] { wasRunning = peer.engine()->isRunning(); });
    player->stop();
    EXPECT_EQ(wasRunning, true);
    EXPECT_FALSE(peer.engine()->isRunning());
}

// On the clocked null output, as in the application.
TEST_F(PlayerPlay, PlaysPassesInRealTime) {
    // No other thread reads the environment.
    setenv("ORVALO_AUDIO_OUTPUT", "null", 1);
    const auto live = std::make_shared<AUEnginePlayer>();
    const AUEnginePlayerPeer livePeer{*live};
    live->delegate = delegate;

    EXPECT_TRUE(live->toggle());
    const auto path = livePeer.fileURL()->path();
    serveMainQueueUntilPrinted(output, looped(path, 2).back());
    EXPECT_FALSE(live->toggle());
    livePeer.queue()->sync([] {});
    drainMainQueue();

    // On a slow machine one more pass may end before the stop.
    Lines loops;
    Lines others;
    for (const auto& line : newLines()) {
        const bool isLoop = line.find("onLoop") != std::string::npos ||
                            line.find("' looped: ") != std::string::npos;
        (isLoop ? loops : others).push_back(line);
    }
    EXPECT_EQ(others, started(path) + stopped());
    Lines expected;
    for (int count = 1; expected.size() < loops.size(); ++count) {
        expected = expected + looped(path, count);
    }
    EXPECT_EQ(loops, expected);
}

TEST_F(PlayerPlay, StaysAliveUntilStoppedWhenItsOwnerReleasesIt) {
    std::weak_ptr<AUEnginePlayer> kept;
    {
        const auto other = std::make_shared<AUEnginePlayer>(engine);
        other->start();
        kept = other;
    }
    ASSERT_FALSE(kept.expired());
    kept.lock()->stop();
    EXPECT_TRUE(pollUntil([&kept] { return kept.expired(); }));
}

}  // namespace
}  // namespace orvalo::testing
