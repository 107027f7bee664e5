#include <utility>

#include "tests/Audio Engine/PlayerFixture.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {
namespace {

/// A stereo effect that copies its input, inverts the right channel and records its sample rate.
class TurningUnit : public ConstantUnit {
  public:
    TurningUnit() : ConstantUnit(0) {}
    void allocateRenderResources(double sampleRate) override { rate = sampleRate; }
    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        for (std::uint32_t frame = 0; frame < output.frameCount; ++frame) {
            output.channels[0][frame] = input.channels[0][frame];
            output.channels[1][frame] = -input.channels[1][frame];
        }
    }

    double rate = 0;
};

/// A stereo effect that copies its input and halves the right channel.
class HalvingUnit : public ConstantUnit {
  public:
    HalvingUnit() : ConstantUnit(0) {}
    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        for (std::uint32_t frame = 0; frame < output.frameCount; ++frame) {
            output.channels[0][frame] = input.channels[0][frame];
            output.channels[1][frame] = input.channels[1][frame] / 2;
        }
    }
};

/// With a loaded mono file of 44.1 kHz, a stereo effect and an output at 48 kHz.
class PlayerFormat : public PlayerFixture {
  protected:
    static constexpr std::uint32_t kOutputRate = 48000;

    PlayerFormat() {
        output48->enableManualRenderingMode({kOutputRate, 2});
        loaded = std::make_shared<AUEnginePlayer>(output48);
        loaded->connect(std::make_shared<AVAudioUnit>(effect), [] {});
        loaded->load(constantFile("mono.wav", 1.0, 1));
    }

    /// Plays a file through the graph of the loaded file. Returns both channels after 0.1 s.
    std::pair<float, float> sound(const std::shared_ptr<AVAudioFile>& file) {
        const auto node = AUEnginePlayerPeer{*loaded}.node();
        node->scheduleFile(file, std::nullopt, [] {});
        output48->start();
        node->play();
        AVAudioPCMBuffer buffer({kOutputRate, 2}, kOutputRate / 100);
        for (int round = 0; round < 10; ++round) {
            output48->renderOffline(buffer.frameCapacity(), buffer);
        }
        const auto* const* channels = buffer.floatChannelData();
        const auto last = buffer.frameLength - 1;
        return {channels[0][last], channels[1][last]};
    }

    static constexpr float kNear = 1e-3F;  // The tolerance for a resampled constant.

    std::shared_ptr<TurningUnit> effect = std::make_shared<TurningUnit>();
    std::shared_ptr<AVAudioEngine> output48 = std::make_shared<AVAudioEngine>();
    std::shared_ptr<AUEnginePlayer> loaded;
};

TEST_F(PlayerFormat, TheEffectsOutputHasItsChannelsAndTheFilesRate) {
    const auto [left, right] = sound(AUEnginePlayerPeer{*loaded}.file());
    EXPECT_NEAR(left, kFileValue, kNear);
    EXPECT_NEAR(right, -kFileValue, kNear);
    EXPECT_EQ(effect->rate, kRate);
}

TEST_F(PlayerFormat, TheEffectsInputHasThePlayersFormat) {
    const auto path = folder.path() / "stereo.wav";
    writeWav(path, kRate, Signal{std::vector(kRate, 0.5F), std::vector(kRate, 0.25F)});
    const auto [left, right] = sound(AVAudioFile::forReading(URL::fileURLWithPath(path.string())));
    EXPECT_NEAR(left, 0.5F, kNear);
    EXPECT_NEAR(right, -0.25F, kNear);
}

TEST_F(PlayerFormat, AnEffectConnectedAfterwardsHasTheLoadedFilesFormatOnBothSides) {
    loaded->connect(std::make_shared<AVAudioUnit>(std::make_shared<HalvingUnit>()), [] {});
    const auto path = folder.path() / "stereo.wav";
    writeWav(path, kRate, Signal{std::vector(kRate, 0.5F), std::vector(kRate, 0.25F)});
    const auto [left, right] = sound(AVAudioFile::forReading(URL::fileURLWithPath(path.string())));
    // Mono into the effect: the mean of the file's channels. Mono out of it: the mean of that and
    // of its half.
    const float mono = 0.375F * 0.75F;
    EXPECT_NEAR(left, mono, kNear);
    EXPECT_NEAR(right, mono, kNear);
}

}  // namespace
}  // namespace orvalo::testing
