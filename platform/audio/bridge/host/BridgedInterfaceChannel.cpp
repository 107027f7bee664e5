#include "platform/audio/bridge/host/BridgedInterfaceChannel.h"

#include <utility>

namespace orvalo {

void BridgedInterfaceChannel::open(const std::string& display, std::uint64_t window,
                                   double scaleFactor) {
    send(
        bridge::OpenInterface{
            .number = 0, .display = display, .window = window, .scaleFactor = scaleFactor},
        [mailbox = mailbox_](const std::string& error) {
            if (!error.empty()) {
                mailbox->post({.kind = InterfaceEvent::Kind::refused, .text = error});
            }
        });
}

void BridgedInterfaceChannel::resize(std::int32_t width, std::int32_t height) {
    send(bridge::ResizeInterface{.width = width, .height = height}, {});
}

void BridgedInterfaceChannel::show(bool isVisible) {
    send(bridge::ShowInterface{.isVisible = isVisible}, {});
}

void BridgedInterfaceChannel::close(std::shared_ptr<const void> held) {
    const auto process = mailbox_->heardProcess();
    mailbox_->beginClosing(process);
    send(bridge::CloseInterface{},
         [mailbox = mailbox_, process, held = std::move(held)](const std::string& /*error*/) {
             mailbox->endClosing(process);
         });
}

void BridgedInterfaceChannel::send(bridge::HostMessage message, Completion completion) {
    if (const auto process = mailbox_->heardProcess(); process != 0) {
        send_(process, std::move(message), std::move(completion));
    }
}

}  // namespace orvalo
