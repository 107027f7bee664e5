#include "tests/platform/audio/output/RecordingSource.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "platform/foundation/RealTimeScope.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

/// Volatile operands keep the compiler from computing this.
bool computesDenormals() {
    volatile float small = std::numeric_limits<float>::min();
    const float product = small * 0.25F;
    volatile float denormal = std::numeric_limits<float>::denorm_min();
    const float sum = denormal * 16777216.0F;
    return product != 0.0F || sum != 0.0F;
}

}  // namespace

void RecordingSource::renderOutput(const AudioBlock& block) noexcept {
    if (busy_.exchange(true)) {
        ++overlaps_;
    }
    ordinaryCalls_ += RealTimeScope::isActive() ? 0 : 1;
    denormals_ += computesDenormals() ? 1 : 0;
    for (std::uint32_t frame = 0; frame < block.frameCount; ++frame) {
        const float value = sample(frames_ + frame);
        for (std::uint32_t channel = 0; channel < block.channelCount; ++channel) {
            block.channels[channel][frame] = channel == 0 ? value : -value;
        }
    }
    std::array<char, 16> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(name);
    threadName_[0] = halves[0];
    threadName_[1] = halves[1];
    lastFrameCount_ = block.frameCount;
    lastChannelCount_ = block.channelCount;
    smallestFrameCount_ = std::min(smallestFrameCount_.load(), block.frameCount);
    largestFrameCount_ = std::max(largestFrameCount_.load(), block.frameCount);
    frames_ += block.frameCount;
    if (whileRendering) {
        whileRendering();
    }
    ++blocks_;
    busy_ = false;
}

void RecordingSource::outputFormatChanged(const AVAudioFormat& format) {
    if (busy_.exchange(true)) {
        ++overlaps_;
    }
    if (whileFormatChanges) {
        whileFormatChanges();
    }
    {
        const std::lock_guard lock(mutex_);
        formatChanges_.push_back(format);
    }
    busy_ = false;
}

void RecordingSource::outputDeviceMissing(bool isMissing) {
    const std::lock_guard lock(mutex_);
    missingReports_.push_back(isMissing);
}

bool RecordingSource::waitForBlocks(std::uint64_t count) {
    const auto target = blocks_ + count;
    return pollUntil([&] { return blocks_ >= target; });
}

std::string RecordingSource::threadName() const {
    const std::array<std::uint64_t, 2> halves{threadName_[0], threadName_[1]};
    return std::bit_cast<std::array<char, 16>>(halves).data();
}

std::vector<AVAudioFormat> RecordingSource::formatChanges() const {
    const std::lock_guard lock(mutex_);
    return formatChanges_;
}

std::vector<bool> RecordingSource::missingReports() const {
    const std::lock_guard lock(mutex_);
    return missingReports_;
}

}  // namespace orvalo::testing
