#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <optional>

#include "Audio Engine/AUEnginePlayer.h"
#include "hosting/AUExtensionManager.h"
#include "platform/audio/output/NullOutput.h"
#include "platform/foundation/DispatchQueue.h"
#include "programs/play/OneFileBundle.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

namespace {

class Listener : public AUExtensionManagerDelegate, public AUEnginePlayerDelegate {
  public:
    void onFoundComponent(const std::shared_ptr<AVAudioUnit>& found) override { unit = found; }
    void onEngineInitialized() override {
        // On the main queue, which wakes the waiting loop.
        DispatchQueue::main()->async([this] { isReady = true; });
    }
    void onPlayerStateChanged(bool isPlaying) override { playing = isPlaying; }
    void onFileSelect(const std::string& /*file*/) override {}
    void onLoop(std::int64_t count) override { passes = count + 1; }

    std::shared_ptr<AVAudioUnit> unit;
    bool isReady = false;
    bool playing = false;
    std::int64_t passes = 0;
};

/// Beats that make the compressor cross its trigger level, so that it sends notes.
Signal beats() {
    Signal signal(2, std::vector<float>(44100));
    for (std::size_t frame = 0; frame < 44100; ++frame) {
        const bool isLoud = frame / 22050 % 2 == 0;
        const double phase = 2.0 * std::numbers::pi * 220.0 * static_cast<double>(frame) / 44100.0;
        const auto sample = static_cast<float>((isLoud ? 0.9 : 0.001) * std::sin(phase));
        signal[0][frame] = sample;
        signal[1][frame] = sample;
    }
    return signal;
}

/// Player, manager and effect at a quantum of 64 frames, with rate conversion and MIDI, while the
/// graph and the presets change and playback stops and starts. The guard ends the program at a
/// forbidden call of the render thread.
TEST(RenderThreadTest, PlaysRewiresAndStopsWithoutAForbiddenCall) {
    const TemporaryFolder folder;
    writeWav(folder.path() / "beats.wav", 44100, beats());
    const auto bundle = std::make_shared<OneFileBundle>(
        URL::fileURLWithPath((folder.path() / "beats.wav").string()));
    const auto engine =
        std::make_shared<AVAudioEngine>(std::make_unique<NullOutput>(AVAudioFormat{48000, 2}, 64));
    const auto player = std::make_shared<AUEnginePlayer>(engine, bundle);
    const auto listener = std::make_shared<Listener>();
    player->delegate = listener;

    std::optional<CapturedOutput> output(std::in_place);
    const auto manager = AUExtensionManager::init(listener, player);
    const auto midiLines = [&] {
        std::size_t count = 0;
        for (const auto& line : output->lines()) {
            count += line.starts_with("AUEnginePlayer: MIDI event from audio unit at: ") ? 1 : 0;
        }
        return count;
    };
    const auto await = [&](const std::function<bool()>& condition) {
        if (!waitUntil(condition)) {
            const auto transcript = output->text();
            output.reset();
            FAIL() << transcript;
        }
    };

    ASSERT_NO_FATAL_FAILURE(await([&] { return listener->isReady; }));
    const auto unit = listener->unit->auAudioUnit();
    const auto presets = unit->factoryPresets();
    ASSERT_FALSE(presets.empty());
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(manager->togglePlayback());
        const auto before = midiLines();
        ASSERT_NO_FATAL_FAILURE(
            await([&] { return listener->passes >= 1 && midiLines() >= before + 2; }));
        for (std::size_t turn = 0; turn < 10; ++turn) {
            player->connect(nullptr, [] {});
            player->connect(listener->unit, [] {});
            unit->setCurrentPreset(presets[turn % presets.size()]);
        }
        player->start();
        EXPECT_FALSE(manager->togglePlayback());
        ASSERT_NO_FATAL_FAILURE(await([&] { return !listener->playing; }));
        unit->setCurrentPreset(presets.front());
        listener->passes = 0;
    }
    player->delegate = nullptr;
}

}  // namespace

}  // namespace orvalo::testing
