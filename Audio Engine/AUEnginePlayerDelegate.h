#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// Receives the events of an AUEnginePlayer.
class AUEnginePlayerDelegate {
  public:
    virtual ~AUEnginePlayerDelegate() = default;

    /// Playback has started (true) or stopped (false). Main queue.
    virtual void onPlayerStateChanged(bool playing) = 0;
    /// A file was opened. file: its full path. On the thread that loads the file.
    virtual void onFileSelect(const std::string& file) = 0;
    /// A pass of the file has ended. count: the number of earlier passes. Main queue.
    virtual void onLoop(std::int64_t count) = 0;
};

}  // namespace orvalo
