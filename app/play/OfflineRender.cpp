#include "app/play/OfflineRender.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <future>
#include <random>

#include "app/play/ProgressLine.h"
#include "hosting/OrvaloComponent.h"
#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

/// Large enough that what a call costs is lost in what it renders.
constexpr std::uint32_t kQuantum = kMaximumFramesToRender;

std::shared_ptr<AVAudioUnit> makeEffect() {
    std::promise<std::shared_ptr<AVAudioUnit>> promise;
    AVAudioUnit::instantiate(
        orvaloComponentDescription, AudioComponentInstantiationOptions::none,
        [&](const std::shared_ptr<AVAudioUnit>& unit, const std::optional<NSError>& error) {
            if (unit) {
                promise.set_value(unit);
            } else {
                promise.set_exception(std::make_exception_ptr(*error));
            }
        });
    return promise.get_future().get();
}

std::shared_ptr<AVAudioFile> openFile(const PlayOptions& options) {
    if (options.file) {
        return AVAudioFile::forReading(URL::fileURLWithPath(*options.file));
    }
    std::random_device random;
    const auto name = std::to_string(std::uniform_int_distribution<int>(1, 80)(random));
    const auto url = Bundle::main()->url(name, "m4a");
    if (!url) {
        throw NSError("Orvalo", 1, "The demonstration file " + name + ".m4a is missing.");
    }
    return AVAudioFile::forReading(*url);
}

/// Frames to render: whole passes, cut at the seconds that are wanted.
std::int64_t wantedFrames(const PlayOptions& options, const AVAudioFile& file) {
    const auto rate = file.processingFormat().sampleRate;
    const auto inSeconds = std::llround(options.seconds.value_or(0.0) * rate);
    if (!options.seconds) {
        return options.passes.value_or(1) * file.length();
    }
    return options.passes ? std::min<std::int64_t>(inSeconds, *options.passes * file.length())
                          : inSeconds;
}

AVAudioFormat renderFormat(const AVAudioFile& file) {
    return {file.processingFormat().sampleRate, 2};
}

/// Schedules a pass behind each that the player consumes, so that there is always one.
class EndlessPasses {
  public:
    EndlessPasses(std::shared_ptr<AVAudioPlayerNode> player, std::shared_ptr<AVAudioFile> file)
        : player_(std::move(player)), file_(std::move(file)) {
        schedule();
    }
    ~EndlessPasses() {
        isOver_ = true;
        player_->stop();
    }
    EndlessPasses(const EndlessPasses&) = delete;
    EndlessPasses& operator=(const EndlessPasses&) = delete;

  private:
    void schedule() {
        player_->scheduleFile(file_, {}, [this] {
            if (!isOver_) {
                schedule();
            }
        });
    }

    const std::shared_ptr<AVAudioPlayerNode> player_;
    const std::shared_ptr<AVAudioFile> file_;
    std::atomic<bool> isOver_ = false;
};

}  // namespace

OfflineRender::OfflineRender(const PlayOptions& options)
    : file_(openFile(options)),
      frames_(wantedFrames(options, *file_)),
      writer_(*options.render, renderFormat(*file_)) {}

void OfflineRender::run() {
    const auto effect = makeEffect();
    effect->auAudioUnit()->setContextName(orvaloContextName);

    const auto format = renderFormat(*file_);
    const auto engine = std::make_shared<AVAudioEngine>();
    const auto player = std::make_shared<AVAudioPlayerNode>();
    engine->enableManualRenderingMode(format);
    engine->attach(player);
    engine->attach(effect);
    engine->connect(player, effect, file_->processingFormat());
    engine->connect(effect, engine->mainMixerNode(), {});
    engine->start();
    player->play();
    const EndlessPasses passes(player, file_);

    AVAudioPCMBuffer buffer(format, kQuantum);
    std::array<float*, kMaximumChannels> channels{};
    ProgressLine progress;
    std::int64_t toSkip = 0;
    for (std::int64_t rendered = 0, written = 0; written < frames_; rendered += kQuantum) {
        engine->renderOffline(kQuantum, buffer);
        if (rendered == 0) {
            toSkip = effect->auAudioUnit()->latency();
        }
        const auto from = std::min<std::int64_t>(toSkip, kQuantum);
        toSkip -= from;
        const auto count = std::min<std::int64_t>(kQuantum - from, frames_ - written);
        writer_.write(buffer.block(static_cast<std::uint32_t>(from),
                                   static_cast<std::uint32_t>(count), channels));
        written += count;
        progress.show(std::to_string(written * 100 / frames_) + " %");
    }
    writer_.finish();
}

}  // namespace orvalo
