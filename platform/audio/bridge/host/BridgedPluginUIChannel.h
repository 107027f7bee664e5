#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/audio/bridge/host/PluginUIMailbox.h"
#include "platform/audio/bridge/wire/BridgeMessages.h"

namespace orvalo {

/// How a window speaks with the UI of an effect in another process. The listener hears the
/// answers; after processReady() each open() is answered, in the end, by pluginUIOpened(),
/// pluginUIRefused() or processGone(). Any thread; what is said to a process that is gone is
/// dropped, as is what is said before the listener has heard of processReady(). Lives as long as
/// its unit.
class BridgedPluginUIChannel {
  public:
    /// Hands a message to the process of that number, and calls the completion, if there is one, on
    /// any thread: with the error's text, "" for none; or never, when that process is gone.
    using Completion = std::function<void(const std::string& error)>;
    using Send = std::function<void(std::uint32_t process, bridge::HostMessage message,
                                    Completion completion)>;

    BridgedPluginUIChannel(std::shared_ptr<PluginUIMailbox> mailbox, Send send)
        : mailbox_(std::move(mailbox)), send_(std::move(send)) {}

    /// Who hears from now on, on the main thread, in order; it is told first how things stand:
    /// processReady() before this returns, processGivenUp() soon, or nothing while a process is
    /// being made. Null for nobody. Main thread.
    void setListener(const std::weak_ptr<BridgedPluginUIListener>& listener) {
        mailbox_->setListener(listener);
    }

    /// Makes the UI as a child of an X11 window of that display, not shown yet. scaleFactor:
    /// of the screen, above 0. One UI at a time.
    void open(const std::string& display, std::uint64_t window, double scaleFactor);
    /// The window has another extent, in pixels.
    void resize(std::int32_t width, std::int32_t height);
    void show(bool isVisible);
    /// Ends the UI. held: let go of, on any thread, once it is gone, or its process is: the
    /// window that it is in, which it still cleans up in.
    void close(std::shared_ptr<const void> held);

  private:
    void send(bridge::HostMessage message, Completion completion);

    const std::shared_ptr<PluginUIMailbox> mailbox_;
    const Send send_;
};

}  // namespace orvalo
