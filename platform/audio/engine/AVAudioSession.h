#pragma once

#include <cstdint>
#include <memory>

#include "platform/foundation/NSObject.h"

namespace orvalo {

enum class AVAudioSessionCategory { playback };
enum class AVAudioSessionMode { default_ };
/// Option sets of the two operations; only the empty set is used.
enum class AVAudioSessionCategoryOptions : std::uint64_t { none = 0 };
enum class AVAudioSessionSetActiveOptions : std::uint64_t { none = 0 };

/// The application's agreement with the system about sound. Linux asks for no such agreement, so
/// the shared session grants everything; a system that refuses stands behind the same operations.
/// Any thread.
class AVAudioSession : public NSObject {
  public:
    static std::shared_ptr<AVAudioSession> sharedInstance();
    /// Puts another session in the shared one's place, for platforms and tests that refuse.
    static void setSharedInstance(std::shared_ptr<AVAudioSession> session);

    /// Throws NSError when the system refuses.
    virtual void setCategory(AVAudioSessionCategory category, AVAudioSessionMode mode,
                             AVAudioSessionCategoryOptions options);
    /// Throws NSError when the system refuses.
    virtual void setActive(bool active, AVAudioSessionSetActiveOptions options);
};

}  // namespace orvalo
