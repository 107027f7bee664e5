#include "tests/platform/audio/output/SignalCapture.h"

#include <algorithm>
#include <cmath>

#include "tests/platform/audio/output/RecordingSource.h"

namespace orvalo::testing {

void SignalCapture::append(const float* left, const float* right, std::size_t frameCount,
                           std::size_t stride) {
    const std::lock_guard lock(mutex_);
    for (std::size_t frame = 0; frame < frameCount; ++frame) {
        left_.push_back(left[frame * stride]);
        right_.push_back(right[frame * stride]);
    }
}

std::size_t SignalCapture::longestExactStretch() const {
    const std::lock_guard lock(mutex_);
    std::size_t longest = 0;
    std::size_t length = 0;
    std::uint64_t expected = 0;
    for (std::size_t frame = 0; frame < left_.size(); ++frame) {
        const float value = left_[frame];
        if (length == 0 || value != RecordingSource::sample(expected)) {
            // The signal's frame with this value.
            expected = static_cast<std::uint64_t>(
                std::clamp(std::lround(value * 65536.0F) - 1, 0L, 32767L));
            length = 0;
        }
        if (value == RecordingSource::sample(expected) && right_[frame] == -value) {
            longest = std::max(longest, ++length);
            ++expected;
        } else {
            length = 0;
        }
    }
    return longest;
}

}  // namespace orvalo::testing
