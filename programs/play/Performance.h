#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Audio Engine/AUEnginePlayerDelegate.h"
#include "hosting/AUExtensionManager.h"
#include "hosting/AUExtensionManagerDelegate.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/Timer.h"
#include "programs/play/EffectChoice.h"
#include "programs/play/PlayOptions.h"
#include "programs/play/ProgressLine.h"

namespace orvalo {

/// Plays on the main run loop: waits for the effect, starts, and stops after the requested passes
/// or seconds or at a signal. Main thread, except the manager's notifications.
class Performance : public NSObject,
                    public AUExtensionManagerDelegate,
                    public AUEnginePlayerDelegate {
  public:
    /// Plays and returns after the stop. options.file must be readable.
    static void run(const PlayOptions& options, const EffectChoice& choice);

    void onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) override;
    void onEngineInitialized() override;
    void onPlayerStateChanged(bool playing) override;
    void onFileSelect(const std::string& file) override;
    void onLoop(std::int64_t count) override;

  private:
    Performance(PlayOptions options, const EffectChoice& choice)
        : options_(std::move(options)), choice_(choice) {}

    void begin();
    /// reason: a clause. Does nothing once playback has started.
    void playWithoutEffect(const std::string& reason);
    void pressPlay();
    void pressStop();
    void showProgress();
    /// Calls action once, on the main thread, after seconds.
    void after(double seconds, const std::function<void()>& action);

    const PlayOptions options_;
    const EffectChoice& choice_;
    std::shared_ptr<AUExtensionManager> manager_;
    ProgressLine progress_;
    std::string fileName_;
    std::int64_t passesDone_ = 0;
    std::optional<std::chrono::steady_clock::time_point> startedAt_;
    std::vector<std::shared_ptr<Timer>> timers_;
    std::vector<unsigned> signals_;  ///< Ids of GLib sources.
    bool hasPressedPlay_ = false;
    bool isStopping_ = false;
};

}  // namespace orvalo
