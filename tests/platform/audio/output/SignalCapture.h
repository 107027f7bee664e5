#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

namespace orvalo::testing {

/// Stereo frames that a test has recorded from a sound server.
class SignalCapture {
  public:
    /// Appends recorded frames. Called on the recorder's thread.
    void append(const float* left, const float* right, std::size_t frameCount, std::size_t stride);

    /// The length of the longest stretch of the source's signal without a missing or changed frame.
    std::size_t longestExactStretch() const;

  private:
    mutable std::mutex mutex_;
    std::vector<float> left_;
    std::vector<float> right_;
};

}  // namespace orvalo::testing
