#pragma once

#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

using pa_simple = struct pa_simple;

namespace orvalo::testing {

/// The left channel that a sound server has played so far.
class Recording {
  public:
    /// The server's thread.
    void append(const float* samples, std::size_t count, std::size_t stride);
    /// Whether it contains these consecutive samples. One thread, always with the same samples.
    bool holds(const std::vector<float>& wanted);

  private:
    std::mutex mutex_;
    std::vector<float> samples_;  // Since the last search.
    std::vector<float> heard_;
    std::size_t searched_ = 0;
};

/// Records a source of the PulseAudio server, 48000 Hz and 2 channels, from its construction to its
/// destruction. Waits until the server is there.
class PulseRecorder {
  public:
    explicit PulseRecorder(const char* source);
    ~PulseRecorder();
    PulseRecorder(const PulseRecorder&) = delete;
    PulseRecorder& operator=(const PulseRecorder&) = delete;

    Recording recording;

  private:
    pa_simple* source_ = nullptr;
    std::jthread thread_;
};

}  // namespace orvalo::testing
