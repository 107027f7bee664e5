#include "effect/ui/HostLink.h"

namespace orvalo::effect::ui {

namespace {

/// The protocol of plain floats in write and port_event.
constexpr std::uint32_t floatProtocol = 0;

}  // namespace

HostLink::HostLink(const Features& features, LV2UI_Write_Function writeFunction,
                   LV2UI_Controller controller)
    : ports_(features.portMap),
      touch_(features.touch),
      subscribe_(features.portSubscribe),
      write_(writeFunction),
      controller_(controller) {
    if (subscribe_ == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < readingCount; ++i) {
        if (const auto port = ports_.of(static_cast<Reading>(i));
            port != LV2UI_INVALID_PORT_INDEX) {
            subscribe_->subscribe(subscribe_->handle, port, floatProtocol, nullptr);
        }
    }
}

HostLink::~HostLink() {
    if (subscribe_ == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < readingCount; ++i) {
        if (const auto port = ports_.of(static_cast<Reading>(i));
            port != LV2UI_INVALID_PORT_INDEX) {
            subscribe_->unsubscribe(subscribe_->handle, port, floatProtocol, nullptr);
        }
    }
}

void HostLink::write(Parameter parameter, float value) {
    const auto port = ports_.of(parameter);
    if (port != LV2UI_INVALID_PORT_INDEX && write_ != nullptr) {
        write_(controller_, port, sizeof value, floatProtocol, &value);
    }
}

void HostLink::grab(Parameter parameter, bool held) {
    const auto port = ports_.of(parameter);
    if (port != LV2UI_INVALID_PORT_INDEX && touch_ != nullptr) {
        touch_->touch(touch_->handle, port, held);
    }
}

}  // namespace orvalo::effect::ui
