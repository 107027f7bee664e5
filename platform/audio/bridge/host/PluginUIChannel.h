#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <variant>

#include "platform/audio/bridge/host/ServiceCommand.h"
#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// The service can open the UI: for the first time, or after a restart.
struct ServiceReady {
    std::uint32_t process = 0;  ///< The number of the service's process, from 1.
    /// For the control values; may be null.
    std::shared_ptr<const SharedAudio> audio{};
};
/// The service ended, and its windows with it; the next service is starting.
struct ServiceLost {};
/// The service ended and is not restarted.
struct ServiceGivenUp {};
/// The service cannot open the UI.
struct PluginUIRefused {
    std::string error;  ///< A line for the user.
};

/// An event of a UI in an effect service, or of that service. Texts are plain text, sizes 1 to
/// 16,384.
using PluginUIEvent =
    std::variant<ServiceReady, ServiceLost, ServiceGivenUp, PluginUIRefused, bridge::PluginUIOpened,
                 bridge::PluginUIResizeRequest, bridge::PluginUIClosed, bridge::PluginUIOutdated>;

/// The host's connection to the UI in an effect service. A service cannot flood the main thread:
/// consecutive resize requests coalesce, and at most 256 events wait. Held by std::shared_ptr; used
/// no longer than its unit lives. Main thread, except for post().
class PluginUIChannel : public NSObject {
  public:
    using Listener = std::function<void(const PluginUIEvent&)>;
    /// Sends a command to the service.
    using Send = std::function<void(ServiceCommand)>;

    explicit PluginUIChannel(Send send) : send_(std::move(send)) {}

    /// Replaces the listener, which gets all further events on the main thread, in order; an empty
    /// one drops them. The listener first gets the service's condition: ServiceReady within this
    /// call, ServiceGivenUp soon, nothing while the service starts.
    void setListener(const Listener& listener);

    // Commands for the service whose ServiceReady the listener got last. They are dropped before
    // the first ServiceReady and when that service has ended.

    /// Creates the UI, hidden, as a child of an X11 window of that display. The listener gets
    /// PluginUIOpened, PluginUIRefused or ServiceLost. scaleFactor: of the screen, above 0. One UI
    /// at a time.
    void open(const std::string& display, std::uint64_t window, double scaleFactor);
    /// The window has a new size, in pixels.
    void resize(std::int32_t width, std::int32_t height);
    void show(bool isVisible);
    /// Sets a control input, for a UI in this process.
    void setControl(std::uint32_t port, float value);
    /// Closes the UI, and drops its events from now on. held: released, on any thread, when the UI
    /// or its service has ended: the window that the UI cleans up in.
    void close(std::shared_ptr<const void> held);

    /// Queues an event for the listener. Any thread.
    void post(PluginUIEvent event);

  private:
    void send(bridge::HostMessage message,
              std::function<void(const ServiceAnswer&)> completion = {});
    bool isCurrent(std::uint32_t process) const;
    void scheduleDelivery();
    void deliver();

    const Send send_;
    std::uint32_t heardProcess_ = 0;  // Of the last ServiceReady; 0 when its service has ended.

    std::mutex mutex_;  // Guards the members below.
    Listener listener_;
    std::deque<PluginUIEvent> events_;
    bool isScheduled_ = false;
    PluginUIEvent condition_ = ServiceLost{};  // The last event of the service itself.
    std::uint32_t closings_ = 0;               // Unanswered ClosePluginUI of the current service.
};

}  // namespace orvalo
