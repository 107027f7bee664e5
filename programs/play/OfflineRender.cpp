#include "programs/play/OfflineRender.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <csignal>
#include <limits>
#include <random>
#include <stdexcept>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/engine/EffectLoading.h"
#include "platform/audio/output/NullOutput.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/NSObject.h"
#include "programs/play/ProgressLine.h"

namespace orvalo {

namespace {

/// The frames to render next, of those that are left: as many as possible, in whole spans of the
/// effect, so that the last span is like the others.
std::uint32_t nextQuantum(std::int64_t left) {
    constexpr std::int64_t kSpan = kMaximumFramesToRender;
    const auto frames = std::min<std::int64_t>(left, kMaximumOfflineFrames);
    return static_cast<std::uint32_t>((frames + kSpan - 1) / kSpan * kSpan);
}

/// Seconds. Effects that load their data when they are first run know their latency only then.
constexpr double kTimeToKnowLatency = 1.0;

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
            throw std::runtime_error("--seconds: a file of that length cannot be written.");
        }
        frames = static_cast<std::int64_t>(wanted);
    }
    if (options.passes || !options.seconds) {
        std::int64_t inPasses = 0;
        if (__builtin_mul_overflow(options.passes.value_or(1), file.length(), &inPasses)) {
            throw std::runtime_error("--passes: a file of that length cannot be written.");
        }
        frames = std::min(frames, inPasses);
    }
    return frames;
}

AVAudioFormat renderFormat(const AVAudioFile& file) {
    return {file.processingFormat().sampleRate, 2};
}

/// Writes what is rendered without the effect's latency, so that the file is aligned with the
/// effect's input.
class AlignedWriter {
  public:
    AlignedWriter(WaveFileWriter& writer, const AVAudioFormat& format, std::int64_t frames)
        : writer_(writer),
          frames_(frames),
          held_(static_cast<std::int64_t>(kTimeToKnowLatency * format.sampleRate)),
          beginning_(format, static_cast<std::uint32_t>(held_) + kMaximumFramesToRender),
          silence_(format, kMaximumFramesToRender) {}

    /// Writes the next span; latency: after it.
    void write(const AudioBlock& span, std::uint32_t latency) {
        if (rendered_ >= held_) {
            place(span, rendered_ - latency);
            rendered_ += span.frameCount;
            return;
        }
        const auto rendered = static_cast<std::uint32_t>(rendered_);
        const auto copy = beginning_.block(rendered, span.frameCount, channels_);
        for (std::uint32_t channel = 0; channel < span.channelCount; ++channel) {
            std::copy_n(span.channels[channel], span.frameCount, copy.channels[channel]);
        }
        rendered_ += span.frameCount;
        if (rendered_ >= held_) {
            place(beginning_.block(0, rendered + span.frameCount, channels_),
                  -std::int64_t{latency});
        }
    }
    /// The frames in the file.
    std::int64_t written() const { return written_; }

  private:
    /// Writes the frames of which the first answers the input's frame `start`, which is negative
    /// while the latency lasts. Where a longer latency repeats frames, they are cut; where a
    /// shorter one leaves frames out, silence takes their place.
    void place(const AudioBlock& frames, std::int64_t start) {
        while (written_ < std::min(start, frames_)) {
            const auto silence = silence_.block(silence_.frameCapacity());
            append(silence, 0, std::min<std::int64_t>(start - written_, silence.frameCount));
        }
        const auto from = written_ - start;
        if (from < frames.frameCount) {
            append(frames, from, frames.frameCount - from);
        }
    }

    void append(const AudioBlock& frames, std::int64_t from, std::int64_t wanted) {
        const auto count = std::min(wanted, frames_ - written_);
        writer_.write(AudioBlockPart(frames, static_cast<std::uint32_t>(from),
                                     static_cast<std::uint32_t>(count))
                          .block());
        written_ += count;
    }

    WaveFileWriter& writer_;
    const std::int64_t frames_;  // The length of the file.
    const std::int64_t held_;    // Kept until the latency is known.
    AVAudioPCMBuffer beginning_;
    AVAudioPCMBuffer silence_;
    std::int64_t rendered_ = 0;
    std::int64_t written_ = 0;
    std::array<float*, kMaximumChannels> channels_{};
};

/// For the handler of signals. Never destroyed, because the handler stays.
constinit std::atomic<const std::string*> unfinishedFile = nullptr;

/// From here on signals that end the program remove the file first.
void removeOnSignals(const std::string& file) {
    unfinishedFile = new std::string(file);
    struct sigaction removal {};
    removal.sa_handler = [](int number) {
        unlink(unfinishedFile.load()->c_str());
        // The handler is reset, so this ends the program.
        std::raise(number);
    };
    removal.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        sigaction(number, nullptr, &before);
        // As for a program behind nohup.
        if (before.sa_handler != SIG_IGN) {
            sigaction(number, &removal, nullptr);
        }
    }
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

void OfflineRender::run(const EffectChoice& choice) {
    if (!writer_.unfinishedFile().empty()) {
        removeOnSignals(writer_.unfinishedFile());
    }
    setExpectedRendering({file_->processingFormat().sampleRate, kMaximumFramesToRender});
    const auto effect = AVAudioUnit::instantiate(orvaloComponentDescription,
                                                 AudioComponentInstantiationOptions::none);
    effect->auAudioUnit()->setContextName(orvaloContextName);
    choice.apply(*effect->auAudioUnit());

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

    AlignedWriter aligned(writer_, format, frames_);
    AVAudioPCMBuffer buffer(format, kMaximumOfflineFrames);
    std::array<float*, kMaximumChannels> channels{};
    const auto& unit = *effect->auAudioUnit();
    ProgressLine progress;
    while (aligned.written() < frames_) {
        const auto count = engine->renderOfflineSlice(
            nextQuantum(frames_ - aligned.written() + unit.latency()), buffer);
        const auto slice = buffer.block(0, count, channels);
        for (std::uint32_t span = 0; span * kMaximumFramesToRender < count; ++span) {
            const auto from = span * kMaximumFramesToRender;
            const AudioBlockPart frames(slice, from,
                                        std::min(count - from, kMaximumFramesToRender));
            aligned.write(frames.block(), unit.latencyAfterSpan(span));
        }
        progress.show(std::to_string(aligned.written() * 100 / frames_) + " %");
    }
    passes->end();
    player->stop();
    writer_.finish();
}

}  // namespace orvalo
