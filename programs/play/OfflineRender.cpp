#include "programs/play/OfflineRender.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <limits>
#include <random>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/output/NullOutput.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/NSObject.h"
#include "programs/play/ProgressLine.h"

namespace orvalo {

namespace {

/// The largest quantum: the cost per call is then negligible.
constexpr std::uint32_t kQuantum = kMaximumFramesToRender;

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

/// The frames to render: whole passes, limited to the requested seconds.
std::int64_t wantedFrames(const PlayOptions& options, const AVAudioFile& file) {
    auto frames = std::numeric_limits<std::int64_t>::max();
    if (options.seconds) {
        const auto wanted = std::ceil(*options.seconds * file.processingFormat().sampleRate);
        // A double has no exact integers above.
        if (wanted > 0x1p53) {
            throw BadOption("--seconds: a file of that length cannot be written.");
        }
        frames = static_cast<std::int64_t>(wanted);
    }
    if (options.passes || !options.seconds) {
        std::int64_t inPasses = 0;
        if (__builtin_mul_overflow(options.passes.value_or(1), file.length(), &inPasses)) {
            throw BadOption("--passes: a file of that length cannot be written.");
        }
        frames = std::min(frames, inPasses);
    }
    return frames;
}

AVAudioFormat renderFormat(const AVAudioFile& file) {
    return {file.processingFormat().sampleRate, 2};
}

/// Schedules another pass whenever the player has consumed one.
class EndlessPasses : public NSObject {
  public:
    EndlessPasses(std::weak_ptr<AVAudioPlayerNode> player, std::shared_ptr<AVAudioFile> file)
        : player_(std::move(player)), file_(std::move(file)) {}

    void schedule() {
        if (const auto player = player_.lock(); player && !isOver_) {
            player->scheduleFile(file_, {}, [self = shared(this)] { self->schedule(); });
        }
    }
    /// Schedules no more passes.
    void end() { isOver_ = true; }

  private:
    const std::weak_ptr<AVAudioPlayerNode> player_;
    const std::shared_ptr<AVAudioFile> file_;
    std::atomic<bool> isOver_ = false;
};

}  // namespace

OfflineRender::OfflineRender(const PlayOptions& options)
    : file_(openFile(options)),
      frames_(wantedFrames(options, *file_)),
      writer_(*options.render, renderFormat(*file_)) {
    writer_.checkLimit(frames_);
}

void OfflineRender::run() {
    const auto effect = AVAudioUnit::instantiate(orvaloComponentDescription,
                                                 AudioComponentInstantiationOptions::none);
    effect->auAudioUnit()->setContextName(orvaloContextName);

    const auto format = renderFormat(*file_);
    const auto engine = std::make_shared<AVAudioEngine>(std::make_unique<NullOutput>());
    const auto player = std::make_shared<AVAudioPlayerNode>();
    engine->enableManualRenderingMode(format);
    engine->attach(player);
    engine->attach(effect);
    engine->connect(player, effect, file_->processingFormat());
    engine->connect(effect, engine->mainMixerNode(), {});
    engine->start();
    player->play();
    const auto passes = std::make_shared<EndlessPasses>(player, file_);
    passes->schedule();

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
    passes->end();
    player->stop();
    writer_.finish();
}

}  // namespace orvalo
