#include "programs/play/Performance.h"

#include <glib-unix.h>
#include <glib.h>

#include <csignal>
#include <filesystem>
#include <limits>

#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/RunLoop.h"
#include "programs/play/OneFileBundle.h"

namespace orvalo {

namespace {

/// Seconds to wait for the effect. A later effect is connected during playback.
constexpr int kEffectTimeout = 5;

/// Schedules only so many passes, so that none follows while the end of the last one is heard.
class CountedPasses : public AUEnginePlayer {
  public:
    CountedPasses(std::int64_t passes, const std::shared_ptr<Bundle>& resources)
        : AUEnginePlayer(std::make_shared<AVAudioEngine>(), resources), left_(passes) {}

  protected:
    void scheduleEffectLoop() override {
        if (left_ > 0) {
            --left_;
            AUEnginePlayer::scheduleEffectLoop();
        }
    }

  private:
    std::int64_t left_;
};

}  // namespace

void Performance::run(const PlayOptions& options, const EffectChoice& choice) {
    printWithoutWaiting();
    const std::shared_ptr<Performance> performance(new Performance(options, choice));
    performance->begin();
    RunLoop::main()->run();
    for (const auto source : performance->signals_) {
        g_source_remove(source);
    }
    for (const auto& timer : performance->timers_) {
        timer->invalidate();
    }
    performance->timers_.clear();
    // Breaks the cycle: the manager and its engine keep the performance alive.
    performance->manager_->auEngine->delegate.reset();
    performance->manager_.reset();
}

void Performance::begin() {
    const auto interrupted = [](void* performance) -> gboolean {
        static_cast<Performance*>(performance)->pressStop();
        return G_SOURCE_CONTINUE;
    };
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        signals_.push_back(g_unix_signal_add(number, interrupted, this));
    }

    std::shared_ptr<Bundle> resources = Bundle::main();
    if (options_.file) {
        resources = std::make_shared<OneFileBundle>(URL::fileURLWithPath(*options_.file));
    }
    const auto player = std::make_shared<CountedPasses>(
        options_.passes.value_or(std::numeric_limits<std::int64_t>::max()), resources);
    player->delegate = shared(this);
    manager_ = AUExtensionManager::init(shared(this), player, [self = shared(this)] {
        DispatchQueue::main()->async([self] { self->playWithoutEffect("cannot be used"); });
    });
    after(kEffectTimeout, [self = shared(this)] {
        self->playWithoutEffect("was not ready after " + std::to_string(kEffectTimeout) + " s");
    });
    if (progress_.isShown()) {
        timers_.push_back(Timer::scheduledTimer(
            0.5, [self = shared(this)](const auto&) { self->showProgress(); }));
    }
}

void Performance::onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) {
    choice_.apply(*unit->auAudioUnit());
}

void Performance::onEngineInitialized() {
    DispatchQueue::main()->async([self = shared(this)] { self->pressPlay(); });
}

void Performance::playWithoutEffect(const std::string& reason) {
    if (!hasPressedPlay_ && !isStopping_) {
        g_warning("The effect %s; playing without it.", reason.c_str());
        pressPlay();
    }
}

void Performance::pressPlay() {
    if (hasPressedPlay_ || isStopping_) {
        return;
    }
    hasPressedPlay_ = true;
    manager_->togglePlayback();
}

void Performance::pressStop() {
    if (isStopping_) {
        return;
    }
    isStopping_ = true;
    progress_.hide();
    if (hasPressedPlay_) {
        manager_->togglePlayback();
    } else {
        RunLoop::main()->stop();
    }
}

void Performance::onPlayerStateChanged(bool playing) {
    if (!playing) {
        RunLoop::main()->stop();
        return;
    }
    startedAt_ = std::chrono::steady_clock::now();
    if (options_.seconds) {
        after(*options_.seconds, [self = shared(this)] { self->pressStop(); });
    }
}

void Performance::onFileSelect(const std::string& file) {
    fileName_ = std::filesystem::path(file).filename().string();
}

void Performance::onLoop(std::int64_t count) {
    passesDone_ = count + 1;
    if (options_.passes && passesDone_ == *options_.passes) {
        // The pass was consumed, but its last frames are not audible yet.
        const std::chrono::duration<double> rest = AVAudioPlayerNode::consumptionLead;
        after(rest.count(), [self = shared(this)] { self->pressStop(); });
    }
}

void Performance::showProgress() {
    if (!startedAt_ || isStopping_) {
        return;
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(
                             std::chrono::steady_clock::now() - *startedAt_)
                             .count();
    const auto seconds = std::to_string(elapsed % 60);
    progress_.show(fileName_ + "  pass " + std::to_string(passesDone_ + 1) + "  " +
                   std::to_string(elapsed / 60) + (seconds.size() == 1 ? ":0" : ":") + seconds);
}

void Performance::after(double seconds, const std::function<void()>& action) {
    timers_.push_back(Timer::scheduledTimer(seconds, [action](const std::shared_ptr<Timer>& timer) {
        timer->invalidate();
        action();
    }));
}

}  // namespace orvalo
