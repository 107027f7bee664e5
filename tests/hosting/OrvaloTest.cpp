#include <gmock/gmock.h>

#include <typeinfo>

#include "platform/audio/engine/EffectLoading.h"
#include "tests/Audio Engine/PlayerLines.h"
#include "tests/hosting/ManagerFixture.h"

// This program's registry has the Orvalo effect, as the application has it.
namespace orvalo::testing {
namespace {

class Orvalo : public ::testing::Test {
  protected:
    Orvalo() {
        // No other thread reads the environment.
        setenv("LV2_PATH", ORVALO_PLAYER_LV2_PATH, 1);
        setenv("ORVALO_AUDIO_OUTPUT", "null", 1);
    }
};

TEST_F(Orvalo, IsFoundReportedConnectedPlayedAndStopped) {
    const CapturedOutput output;
    const auto delegate = std::make_shared<PrintingDelegate>();
    const auto manager = AUExtensionManager::init(delegate);
    manager->auEngine->delegate = delegate;
    serveMainQueueUntilPrinted(output, "[global] onEngineInitialized()");

    const auto& unit = *delegate->found()->auAudioUnit();
    const std::string kind = typeid(unit).name();
    EXPECT_THAT(kind, ::testing::HasSubstr(platformEffectLoading() == EffectLoading::inProcess
                                               ? "LV2LocalAudioUnit"
                                               : "BridgedAudioUnit"));
    EXPECT_TRUE(manager->togglePlayback());
    const AUEnginePlayerPeer peer{*manager->auEngine};
    const auto path = peer.fileURL()->path();
    const auto looped = [&path](std::size_t count) {
        return Lines({"[main] onLoop(count: " + std::to_string(count - 1) + ")",
                      "AUEnginePlayer: Current audio file '" + path +
                          "' looped: " + std::to_string(count) + "."});
    };
    serveMainQueueUntilPrinted(output, looped(2).back());
    EXPECT_FALSE(manager->togglePlayback());
    peer.queue()->sync([] {});
    drainMainQueue();

    // The order of the effect's MIDI and the ends of passes is not defined.
    Lines loops;
    Lines others;
    for (const auto& line : output.lines()) {
        if (line.find("MIDI event from") != std::string::npos) {
            continue;
        }
        const bool isLoop = line.find("onLoop") != std::string::npos ||
                            line.find("' looped: ") != std::string::npos;
        (isLoop ? loops : others).push_back(line);
    }
    EXPECT_EQ(
        others,
        Lines({kNote, "AUExtensionManager: Loaded component has following properties."}) +
            report() +
            Lines({"AUExtensionManager: Audio unit was found, making connections now ...",
                   "AUEnginePlayer: A new audio unit will be connected.",
                   kAssignsHandler,
                   "AUEnginePlayer: Audio unit was attached.",
                   kNoFormatToWire,
                   "AUExtensionManager: Performed audio unit connection.",
                   "[global] onFoundComponent(unit: present)",
                   "WARNING: Audio unit is nil (yet?).",
                   "[global] onEngineInitialized()",
                   "AUEnginePlayer: Audio file at '" + path +
                       "' was selected for loading into the player.",
                   "[main] onFileSelect(file: " + path + ")",
                   "AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.",
                   "AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.",
                   "2",
                   "AUEnginePlayer: Audio unit re-connecting to the player.",
                   "AUEnginePlayer: Audio unit re-connectingto the main mixer.",
                   path,
                   "AUEnginePlayer: Audio session was set active.",
                   "AUEnginePlayer: Audio engine starting.",
                   "[main] onPlayerStateChanged(playing: true)",
                   "AUEnginePlayer: Audio session was set active.",
                   "AUEnginePlayer: Audio engine stopping.",
                   "[main] onPlayerStateChanged(playing: false)"}));
    Lines expected;
    for (std::size_t count = 1; expected.size() < loops.size(); ++count) {
        expected = expected + looped(count);
    }
    EXPECT_EQ(loops, expected);
}

}  // namespace
}  // namespace orvalo::testing
