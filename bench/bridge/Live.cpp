#include "bench/bridge/Live.h"

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "platform/audio/output/AudioOutput.h"

namespace orvalo::bench {

namespace {

/// Feeds a tone to an effect and the effect's output to the audio output.
class UnitSource : public AudioOutputSource {
  public:
    explicit UnitSource(AUAudioUnit& unit) : unit_(unit), tone_(2, std::vector<float>(kFrames)) {
        for (auto& channel : tone_) {
            for (std::size_t frame = 0; frame < kFrames; ++frame) {
                channel[frame] = frame % 100 < 50 ? 0.25F : -0.25F;
            }
        }
    }

  private:
    static constexpr std::uint32_t kFrames = kMaximumFramesToRender;

    void renderOutput(const AudioBlock& block) noexcept override {
        const std::array<float*, 2> inputs{tone_[0].data(), tone_[1].data()};
        unit_.render({inputs.data(), unit_.inputChannelCount(), block.frameCount}, block);
    }
    void outputFormatChanged(const AVAudioFormat& /*format*/) override {}
    void outputDeviceMissing(bool /*isMissing*/) override {}

    AUAudioUnit& unit_;
    std::vector<std::vector<float>> tone_;
};

}  // namespace

std::uint64_t xrunsWhileBusy(AUAudioUnit& unit, int seconds) {
    std::atomic<bool> isOver{false};
    std::thread busy([&isOver] {
        while (!isOver.load(std::memory_order_relaxed)) {
        }
    });
    UnitSource source(unit);
    std::uint64_t xruns = 0;
    {
        const auto output = AudioOutput::system();
        output->start(source);
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        xruns = output->xrunCount();
        output->stop();
    }
    isOver = true;
    busy.join();
    return xruns;
}

}  // namespace orvalo::bench
