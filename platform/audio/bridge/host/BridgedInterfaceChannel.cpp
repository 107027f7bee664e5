#include "platform/audio/bridge/host/BridgedInterfaceChannel.h"

#include <utility>

namespace orvalo {

void BridgedInterfaceChannel::open(const std::string& display, std::uint64_t window,
                                   double scaleFactor) {
    send_(mailbox_->heardProcess(),
          bridge::OpenInterface{
              .number = 0, .display = display, .window = window, .scaleFactor = scaleFactor},
          [mailbox = mailbox_](const std::string& error) {
              if (!error.empty()) {
                  mailbox->post({.kind = InterfaceEvent::Kind::refused, .text = error});
              }
          });
}

void BridgedInterfaceChannel::resize(std::int32_t width, std::int32_t height) {
    send_(mailbox_->heardProcess(), bridge::ResizeInterface{.width = width, .height = height}, {});
}

void BridgedInterfaceChannel::show(bool isVisible) {
    send_(mailbox_->heardProcess(), bridge::ShowInterface{.isVisible = isVisible}, {});
}

void BridgedInterfaceChannel::close(std::shared_ptr<const void> held) {
    send_(mailbox_->heardProcess(), bridge::CloseInterface{},
          [held = std::move(held)](const std::string& /*error*/) {});
}

}  // namespace orvalo
