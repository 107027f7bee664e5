#include "platform/audio/output/RenderGate.h"

#include <algorithm>
#include <utility>

#include "platform/audio/signal/DenormalGuard.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

struct RenderGate::Pull {
    AudioOutputSource& source;
};

RenderGate::RenderGate(std::shared_ptr<Wakeup> supervisor) : supervisor_(std::move(supervisor)) {}

RenderGate::~RenderGate() = default;

void RenderGate::open(AudioOutputSource& source) {
    slot_.exchange(std::make_unique<Pull>(Pull{source}));
}

void RenderGate::close() {
    slot_.exchange(nullptr);
}

void RenderGate::render(const AudioBlock& block) noexcept {
    const RealTimeScope realTime;
    const DenormalGuard denormals;
    const RenderSlot<Pull>::Access pull(slot_);
    if (pull) {
        pull->source.renderOutput(block);
    } else {
        for (std::uint32_t channel = 0; channel < block.channelCount; ++channel) {
            std::fill_n(block.channels[channel], block.frameCount, 0.0F);
        }
    }
    renders_.fetch_add(1, std::memory_order_relaxed);
}

void RenderGate::countXruns(std::uint64_t count) noexcept {
    xruns_.fetch_add(count, std::memory_order_relaxed);
}

void RenderGate::end() noexcept {
    // Whoever sees the end may take the gate away.
    const auto supervisor = supervisor_;
    ended_.store(true, std::memory_order_release);
    if (supervisor) {
        supervisor->signal();
    }
}

}  // namespace orvalo
