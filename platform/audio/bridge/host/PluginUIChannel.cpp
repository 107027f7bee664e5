#include "platform/audio/bridge/host/PluginUIChannel.h"

#include <utility>

#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

constexpr std::size_t kMaximumEvents = 256;

bool isOfService(const PluginUIEvent& event) {
    return std::holds_alternative<ServiceReady>(event) ||
           std::holds_alternative<ServiceLost>(event) ||
           std::holds_alternative<ServiceGivenUp>(event);
}

/// The number of the process that the event makes the current one; 0 for none.
std::uint32_t readyProcess(const PluginUIEvent& event) {
    const auto* ready = std::get_if<ServiceReady>(&event);
    return ready == nullptr ? 0 : ready->process;
}

bool isResizeRequest(const PluginUIEvent& event) {
    return std::holds_alternative<bridge::PluginUIResizeRequest>(event);
}

}  // namespace

void PluginUIChannel::setListener(const Listener& listener) {
    PluginUIEvent condition;
    {
        const std::scoped_lock lock(mutex_);
        listener_ = listener;
        events_.clear();
        condition = condition_;
        if (std::holds_alternative<ServiceGivenUp>(condition)) {
            events_.push_back(condition);
            scheduleDelivery();
        }
    }
    heardProcess_ = readyProcess(condition);
    if (listener && heardProcess_ != 0) {
        listener(condition);
    }
}

void PluginUIChannel::open(const std::string& display, std::uint64_t window, double scaleFactor) {
    send(
        bridge::OpenPluginUI{
            .number = 0, .display = display, .window = window, .scaleFactor = scaleFactor},
        [self = shared(this)](const ServiceAnswer& answer) {
            if (answer.kind == ServiceAnswer::Kind::refused) {
                self->post(PluginUIRefused{answer.error});
            }
        });
}

void PluginUIChannel::resize(std::int32_t width, std::int32_t height) {
    send(bridge::ResizePluginUI{.width = width, .height = height});
}

void PluginUIChannel::show(bool isVisible) {
    send(bridge::ShowPluginUI{.isVisible = isVisible});
}

void PluginUIChannel::setControl(std::uint32_t port, float value) {
    send(bridge::SetControl{.control = {port, value}});
}

void PluginUIChannel::close(std::shared_ptr<const void> held) {
    const auto process = heardProcess_;
    {
        const std::scoped_lock lock(mutex_);
        if (isCurrent(process)) {
            ++closings_;
            std::erase_if(events_, [](const auto& event) { return !isOfService(event); });
        }
    }
    send(bridge::ClosePluginUI{},
         [self = shared(this), process, held = std::move(held)](const ServiceAnswer& /*answer*/) {
             const std::scoped_lock lock(self->mutex_);
             if (self->isCurrent(process)) {
                 --self->closings_;
             }
         });
}

void PluginUIChannel::send(bridge::HostMessage message,
                           std::function<void(const ServiceAnswer&)> completion) {
    if (heardProcess_ != 0) {
        send_({std::move(message), heardProcess_, std::move(completion)});
    }
}

bool PluginUIChannel::isCurrent(std::uint32_t process) const {
    return process != 0 && process == readyProcess(condition_);
}

void PluginUIChannel::post(PluginUIEvent event) {
    const std::scoped_lock lock(mutex_);
    const bool isCondition = isOfService(event);
    if (isCondition) {
        condition_ = event;
        closings_ = 0;
    }
    if (!listener_ || closings_ > 0) {
        return;
    }
    if (isResizeRequest(event) && !events_.empty() && isResizeRequest(events_.back())) {
        events_.back() = std::move(event);
    } else if (isCondition || events_.size() < kMaximumEvents) {
        events_.push_back(std::move(event));
    }
    scheduleDelivery();
}

void PluginUIChannel::scheduleDelivery() {
    if (!std::exchange(isScheduled_, true)) {
        DispatchQueue::main()->async([self = shared(this)] { self->deliver(); });
    }
}

void PluginUIChannel::deliver() {
    PluginUIEvent event;
    Listener listener;
    {
        const std::scoped_lock lock(mutex_);
        isScheduled_ = false;
        if (events_.empty()) {
            return;
        }
        event = std::move(events_.front());
        events_.pop_front();
        listener = listener_;
        // One event per turn of the main loop, so that events cannot starve its other work.
        if (!events_.empty()) {
            scheduleDelivery();
        }
    }
    if (isOfService(event)) {
        heardProcess_ = readyProcess(event);
    }
    if (listener) {
        listener(event);
    }
}

}  // namespace orvalo
