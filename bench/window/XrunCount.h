#pragma once

#include <jack/jack.h>

#include <atomic>
#include <cstdint>

namespace orvalo::bench {

/// Counts all xruns of the JACK server during the object's life.
class XrunCount {
  public:
    /// Throws std::runtime_error when there is no server.
    XrunCount();
    ~XrunCount();
    XrunCount(const XrunCount&) = delete;
    XrunCount& operator=(const XrunCount&) = delete;

    std::uint64_t value() const { return value_; }
    /// Whether a client's port is connected to the server's playback.
    bool isPlaybackConnected() const;

  private:
    jack_client_t* client_;
    std::atomic<std::uint64_t> value_ = 0;
};

}  // namespace orvalo::bench
