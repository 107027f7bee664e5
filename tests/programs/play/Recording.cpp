#include "tests/programs/play/Recording.h"

#include <pulse/simple.h>

#include <algorithm>
#include <array>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

void Recording::append(const float* samples, std::size_t count, std::size_t stride) {
    const std::lock_guard lock(mutex_);
    for (std::size_t index = 0; index < count; ++index) {
        samples_.push_back(samples[index * stride]);
    }
}

bool Recording::holds(const std::vector<float>& wanted) {
    {
        // Locked only for the copy: the server must not wait.
        const std::lock_guard lock(mutex_);
        heard_.insert(heard_.end(), samples_.begin(), samples_.end());
        samples_.clear();
    }
    const auto unsearched = static_cast<std::ptrdiff_t>(heard_.size() - searched_ + wanted.size());
    const auto begin = heard_.end() - std::min(std::ssize(heard_), unsearched);
    searched_ = heard_.size();
    return std::search(begin, heard_.end(), wanted.begin(), wanted.end()) != heard_.end();
}

PulseRecorder::PulseRecorder(const char* source) {
    const pa_sample_spec format{PA_SAMPLE_FLOAT32LE, 48000, 2};
    pollUntil([&] {
        source_ = pa_simple_new(nullptr, "recorder", PA_STREAM_RECORD, source, "record", &format,
                                nullptr, nullptr, nullptr);
        return source_ != nullptr;
    });
    thread_ = std::jthread([this](const std::stop_token& stopped) {
        std::array<float, 2048> frames{};
        while (source_ != nullptr && !stopped.stop_requested() &&
               pa_simple_read(source_, frames.data(), sizeof frames, nullptr) >= 0) {
            recording.append(frames.data(), frames.size() / 2, 2);
        }
    });
}

PulseRecorder::~PulseRecorder() {
    thread_.request_stop();
    thread_.join();
    if (source_ != nullptr) {
        pa_simple_free(source_);
    }
}

}  // namespace orvalo::testing
