#include "tests/Audio Engine/FatalEnd.h"
#include "tests/Audio Engine/PlayerLines.h"
#include "tests/hosting/ManagerFixture.h"

// This program's registry has two matching effects; the first by its URI sends MIDI.
namespace orvalo::testing {
namespace {

class TwoEffects : public ManagerFixture {
  protected:
    TwoEffects() : ManagerFixture(ORVALO_PLAYER_LV2_PATH) {}

    static Lines found() {
        return Lines({kNote, "AUExtensionManager: Loaded component has following properties."}) +
               report() +
               Lines({"AUExtensionManager: Audio unit was found, making connections now ...",
                      "AUEnginePlayer: A new audio unit will be connected.", kAssignsHandler,
                      "AUEnginePlayer: Audio unit was attached.", kNoFormatToWire,
                      "AUExtensionManager: Performed audio unit connection.",
                      "[global] onFoundComponent(unit: present)",
                      "WARNING: Audio unit is nil (yet?).", "[global] onEngineInitialized()"});
    }
};

TEST_F(TwoEffects, TheFirstIsFoundInstantiatedAndConnected) {
    makeManager();
    settle();
    EXPECT_EQ(newLines(), found());

    ASSERT_NE(delegate->found(), nullptr);
    EXPECT_EQ(peer.activeAVAudioUnit(), delegate->found());
    EXPECT_EQ(delegate->found()->auAudioUnit()->MIDIOutputNames(), Lines({"Notes"}));
    EXPECT_EQ(delegate->found()->auAudioUnit()->contextName(), "running in distribution host");
}

TEST_F(TwoEffects, BothAreAvailable) {
    makeManager();
    Lines uris;
    for (const auto& component : AUExtensionManagerPeer{*manager}.availableAudioUnits()) {
        uris.push_back(component->uri);
    }
    EXPECT_EQ(uris, Lines({"urn:orvalo-test:first", "urn:orvalo-test:second"}));
}

TEST_F(TwoEffects, NothingIsAssignedToTheManager) {
    makeManager();
    EXPECT_TRUE(manager->presets().empty());
    EXPECT_FALSE(manager->currentPreset());
    EXPECT_EQ(manager->viewController, nullptr);
}

TEST_F(TwoEffects, AMissingDelegateIsFatal) {
    delegate = nullptr;
    EXPECT_FATAL_ERROR(makeManager(), kFoundNil);
}

TEST_F(TwoEffects, PlaysThroughTheEffectAndPrintsItsMIDI) {
    makeManager();
    newLines();
    EXPECT_TRUE(manager->togglePlayback());
    const auto path = peer.fileURL()->path();
    settle();
    const auto looped = [&path](const char* count) {
        return "AUEnginePlayer: Current audio file '" + path + "' looped: " + count + ".";
    };
    render(1.0);
    serveMainQueueUntilPrinted(output, looped("1"));
    settle();
    render(1.0);
    serveMainQueueUntilPrinted(output, looped("2"));
    settle();
    EXPECT_FALSE(manager->togglePlayback());
    settle();

    // MIDI comes from the render thread and ends of passes from the player's thread: their order is
    // not defined.
    Lines midi;
    Lines others;
    for (const auto& line : newLines()) {
        (line.find("MIDI") == std::string::npos ? others : midi).push_back(line);
    }
    EXPECT_EQ(midi,
              Lines({"AUEnginePlayer: MIDI event from audio unit at: 512, data: 144, 60, 100",
                     "AUEnginePlayer::WARNING: The MIDI data length is not as expected.",
                     "AUEnginePlayer: MIDI event from audio unit at: 1024, data: 192, 5, 0"}));
    EXPECT_EQ(others,
              Lines({"AUEnginePlayer: Audio file at '" + path +
                         "' was selected for loading into the player.",
                     "[main] onFileSelect(file: " + path + ")",
                     "AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.",
                     "AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.",
                     "2", "AUEnginePlayer: Audio unit re-connecting to the player.",
                     "AUEnginePlayer: Audio unit re-connectingto the main mixer.", path,
                     "AUEnginePlayer: Audio session was set active.",
                     "AUEnginePlayer: Audio engine starting.",
                     "[main] onPlayerStateChanged(playing: true)", "[main] onLoop(count: 0)",
                     looped("1"), "[main] onLoop(count: 1)", looped("2"),
                     "AUEnginePlayer: Audio session was set active.",
                     "AUEnginePlayer: Audio engine stopping.",
                     "[main] onPlayerStateChanged(playing: false)"}));
}

TEST_F(TwoEffects, TheSignalPassesThroughTheEffect) {
    makeManager();
    manager->togglePlayback();
    player->load(constantFile("a.wav"));
    settle();
    EXPECT_EQ(render(0.1), kFileValue / 2);
    manager->cleanup();
    EXPECT_EQ(peer.activeAVAudioUnit(), nullptr);
}

}  // namespace
}  // namespace orvalo::testing
