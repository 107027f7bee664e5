#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// What an AUEnginePlayer tells its owner.
class AUEnginePlayerDelegate {
  public:
    virtual ~AUEnginePlayerDelegate() = default;

    /// Playback has started (true) or stopped (false). Main queue.
    virtual void onPlayerStateChanged(bool playing) = 0;
    /// A file has been opened; file: its full path. The thread that loads the file.
    virtual void onFileSelect(const std::string& file) = 0;
    /// One more pass of the file has ended; count: how many had ended before it. Main queue.
    virtual void onLoop(std::int64_t count) = 0;
};

}  // namespace orvalo
