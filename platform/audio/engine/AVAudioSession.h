#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

namespace orvalo {

enum class AVAudioSessionCategory { playback };
enum class AVAudioSessionMode { default_ };
/// Option sets; only the empty set is used.
enum class AVAudioSessionCategoryOptions : std::uint64_t { none = 0 };
enum class AVAudioSessionSetActiveOptions : std::uint64_t { none = 0 };

/// The application's claim on the system's audio. Linux needs none, so the shared session grants
/// everything. Any thread.
class AVAudioSession : public NSObject {
  public:
    static std::shared_ptr<AVAudioSession> sharedInstance();
    /// Replaces the shared session, for tests with a session that refuses.
    static void setSharedInstance(std::shared_ptr<AVAudioSession> session);

    /// Throws NSError when the system refuses.
    virtual void setCategory(AVAudioSessionCategory category, AVAudioSessionMode mode,
                             AVAudioSessionCategoryOptions options);
    /// Throws NSError when the system refuses.
    virtual void setActive(bool active, AVAudioSessionSetActiveOptions options);

    /// handler: called on the main queue with true when an engine plays without a device, silently,
    /// and with false when a device plays again or the engine stops. Main thread.
    void setRouteChangeHandler(std::function<void(bool isOutputMissing)> handler);

  private:
    friend class AVAudioEngine;

    /// Any thread.
    void setOutputMissing(bool isMissing);

    std::atomic<bool> isOutputMissing_{false};
    std::function<void(bool)> routeChangeHandler_;
};

}  // namespace orvalo
