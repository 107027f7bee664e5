#include "platform/audio/output/StreamFeed.h"

#include <utility>

#include "platform/audio/signal/DenormalGuard.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

struct StreamFeed::Connection {
    AudioOutputSource& source;
};

StreamFeed::StreamFeed(std::shared_ptr<WakeSignal> supervisor)
    : supervisor_(std::move(supervisor)) {}

StreamFeed::~StreamFeed() = default;

void StreamFeed::connect(AudioOutputSource& source) {
    slot_.exchange(std::make_unique<Connection>(Connection{source}));
}

void StreamFeed::disconnect() {
    slot_.exchange(nullptr);
}

void StreamFeed::render(const AudioBlock& block) noexcept {
    const RealTimeScope realTime;
    const DenormalGuard denormals;
    const RenderSlot<Connection>::Access connection(slot_);
    if (connection) {
        connection->source.renderOutput(block);
    } else {
        silence(block);
    }
    renders_.fetch_add(1, std::memory_order_relaxed);
}

void StreamFeed::countXruns(std::uint64_t count) noexcept {
    xruns_.fetch_add(count, std::memory_order_relaxed);
}

void StreamFeed::markEnded() noexcept {
    // The supervisor may destroy this feed as soon as it sees the end.
    const auto supervisor = supervisor_;
    ended_.store(true, std::memory_order_release);
    if (supervisor) {
        supervisor->send();
    }
}

}  // namespace orvalo
