#include "bench/live/Performance.h"

#include <chrono>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo::bench {

namespace {

/// Schedules passes until end().
class Passes : public std::enable_shared_from_this<Passes> {
  public:
    Passes(std::shared_ptr<AVAudioPlayerNode> player, std::shared_ptr<AVAudioFile> file)
        : player_(std::move(player)), file_(std::move(file)) {}

    void schedule() {
        player_->scheduleFile(file_, {}, [self = shared_from_this()] {
            self->queue_->async([self] {
                if (!self->isOver_) {
                    self->schedule();
                }
            });
        });
    }
    void end() {
        queue_->sync([this] { isOver_ = true; });
        player_->stop();
    }

  private:
    const std::shared_ptr<AVAudioPlayerNode> player_;
    const std::shared_ptr<AVAudioFile> file_;
    const std::shared_ptr<DispatchQueue> queue_ = DispatchQueue::serial("passes");
    bool isOver_ = false;
};

}  // namespace

Outcome perform(std::unique_ptr<AudioOutput> output, const std::shared_ptr<AVAudioFile>& file,
                int seconds) {
    std::uint64_t midiEvents = 0;
    const auto effect = AVAudioUnit::instantiate(orvaloComponentDescription,
                                                 AudioComponentInstantiationOptions::loadInProcess);
    effect->auAudioUnit()->setMIDIOutputEventBlock(
        [&midiEvents](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) {
            DispatchQueue::main()->async([&midiEvents] { ++midiEvents; });
            return 0;
        });
    const auto engine = std::make_shared<AVAudioEngine>(std::move(output));
    const auto player = std::make_shared<AVAudioPlayerNode>();
    engine->attach(player);
    engine->attach(effect);
    engine->connect(player, effect, {});
    engine->connect(effect, engine->mainMixerNode(), {});
    const auto passes = std::make_shared<Passes>(player, file);
    passes->schedule();
    engine->start();
    player->play();
    RunLoop::main()->run([] { return false; }, std::chrono::seconds(seconds));
    const Outcome outcome{engine->xrunCount(), player->underrunCount(), midiEvents};
    passes->end();
    engine->stop();
    // Counts the events that are still queued.
    RunLoop::main()->run([] { return false; }, std::chrono::milliseconds(100));
    return {outcome.xruns, outcome.underruns, midiEvents};
}

}  // namespace orvalo::bench
