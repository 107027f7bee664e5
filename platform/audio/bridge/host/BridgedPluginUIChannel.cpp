#include "platform/audio/bridge/host/BridgedPluginUIChannel.h"

#include <utility>

namespace orvalo {

void BridgedPluginUIChannel::open(const std::string& display, std::uint64_t window,
                                  double scaleFactor) {
    send(
        bridge::OpenPluginUI{
            .number = 0, .display = display, .window = window, .scaleFactor = scaleFactor},
        [mailbox = mailbox_](const std::string& error) {
            if (!error.empty()) {
                mailbox->post({.kind = PluginUIEvent::Kind::refused, .text = error});
            }
        });
}

void BridgedPluginUIChannel::resize(std::int32_t width, std::int32_t height) {
    send(bridge::ResizePluginUI{.width = width, .height = height}, {});
}

void BridgedPluginUIChannel::show(bool isVisible) {
    send(bridge::ShowPluginUI{.isVisible = isVisible}, {});
}

void BridgedPluginUIChannel::close(std::shared_ptr<const void> held) {
    const auto process = mailbox_->heardProcess();
    mailbox_->beginClosing(process);
    send(bridge::ClosePluginUI{},
         [mailbox = mailbox_, process, held = std::move(held)](const std::string& /*error*/) {
             mailbox->endClosing(process);
         });
}

void BridgedPluginUIChannel::send(bridge::HostMessage message, Completion completion) {
    if (const auto process = mailbox_->heardProcess(); process != 0) {
        send_(process, std::move(message), std::move(completion));
    }
}

}  // namespace orvalo
