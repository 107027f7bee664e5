#include "platform/audio/bridge/host/PluginUIMailbox.h"

#include <utility>

#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

using Kind = PluginUIEvent::Kind;

// No window falls so far behind with an effect that means well.
constexpr std::size_t kMostWaiting = 256;

bool isStanding(const PluginUIEvent& event) {
    return event.kind == Kind::ready || event.kind == Kind::lost || event.kind == Kind::givenUp;
}

void call(BridgedPluginUIListener& listener, const PluginUIEvent& event) {
    switch (event.kind) {
        case Kind::ready:
            return listener.processReady();
        case Kind::lost:
            return listener.processGone();
        case Kind::givenUp:
            return listener.processGivenUp();
        case Kind::opened:
            return listener.pluginUIOpened(event.window);
        case Kind::refused:
            return listener.pluginUIRefused(event.text);
        case Kind::wants:
            return listener.pluginUIWants(event.width, event.height);
        case Kind::closed:
            return listener.pluginUIClosed(event.text);
        case Kind::outdated:
            return listener.pluginUIOutdated();
    }
}

}  // namespace

void PluginUIMailbox::setListener(const std::weak_ptr<BridgedPluginUIListener>& listener) {
    bool isReady = false;
    {
        const std::scoped_lock lock(mutex_);
        listener_ = listener;
        waiting_.clear();
        isReady = standing_.kind == Kind::ready;
        heardProcess_.store(isReady ? standing_.process : 0, std::memory_order_relaxed);
        if (standing_.kind == Kind::givenUp) {
            waiting_.push_back(standing_);
            schedule();
        }
    }
    if (const auto held = listener.lock(); held && isReady) {
        held->processReady();
    }
}

void PluginUIMailbox::post(PluginUIEvent event) {
    const std::scoped_lock lock(mutex_);
    if (isStanding(event)) {
        standing_ = event;
        closings_ = 0;
    }
    if (listener_.expired() || closings_ > 0) {
        return;
    }
    if (event.kind == Kind::wants && !waiting_.empty() && waiting_.back().kind == Kind::wants) {
        waiting_.back() = std::move(event);
    } else if (isStanding(event) || waiting_.size() < kMostWaiting) {
        waiting_.push_back(std::move(event));
    }
    schedule();
}

void PluginUIMailbox::beginClosing(std::uint32_t process) {
    const std::scoped_lock lock(mutex_);
    if (process != 0 && process == standing_.process) {
        ++closings_;
        std::erase_if(waiting_, [](const auto& event) { return !isStanding(event); });
    }
}

void PluginUIMailbox::endClosing(std::uint32_t process) {
    const std::scoped_lock lock(mutex_);
    if (process == standing_.process && closings_ > 0) {
        --closings_;
    }
}

void PluginUIMailbox::schedule() {
    if (!std::exchange(isScheduled_, true)) {
        DispatchQueue::main()->async([self = shared(this)] { self->deliver(); });
    }
}

void PluginUIMailbox::deliver() {
    PluginUIEvent event;
    std::shared_ptr<BridgedPluginUIListener> listener;
    // What comes meanwhile takes its turn behind all else that waits for the main thread.
    for (auto count = beginDelivery(); count > 0 && take(event, listener); --count) {
        if (listener) {
            call(*listener, event);
        }
    }
    endDelivery();
}

std::size_t PluginUIMailbox::beginDelivery() {
    const std::scoped_lock lock(mutex_);
    return waiting_.size();
}

void PluginUIMailbox::endDelivery() {
    const std::scoped_lock lock(mutex_);
    isScheduled_ = false;
    if (!waiting_.empty()) {
        schedule();
    }
}

bool PluginUIMailbox::take(PluginUIEvent& event,
                           std::shared_ptr<BridgedPluginUIListener>& listener) {
    const std::scoped_lock lock(mutex_);
    if (waiting_.empty()) {
        return false;
    }
    event = std::move(waiting_.front());
    waiting_.pop_front();
    listener = listener_.lock();
    if (event.kind == Kind::ready) {
        heardProcess_.store(event.process, std::memory_order_relaxed);
    } else if (event.kind == Kind::lost || event.kind == Kind::givenUp) {
        heardProcess_.store(0, std::memory_order_relaxed);
    }
    return true;
}

}  // namespace orvalo
