#pragma once

#include <functional>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/MessageChannel.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The service's end of the socket, on the main run loop. Main thread.
class ServiceConnection {
  public:
    using Result = MessageChannel::Result;

    explicit ServiceConnection(FileDescriptor socket);
    ~ServiceConnection() = default;
    ServiceConnection(const ServiceConnection&) = delete;
    ServiceConnection& operator=(const ServiceConnection&) = delete;

    void send(const bridge::ServiceMessage& message);
    /// Whether sent messages wait until the socket accepts them.
    bool isWaiting() const { return channel_.isWaiting(); }
    /// MessageChannel::takePassed().
    FileDescriptor takePassed() { return channel_.takePassed(); }

    /// Gets each message. Set before the run loop runs.
    std::function<void(const bridge::HostMessage&)> onMessage;
    /// Called once, when the host has closed the connection or (isBroken) sent an invalid or
    /// incomplete message. Set before the run loop runs.
    std::function<void(bool isBroken)> onEnd;

  private:
    struct Source;

    void serve();
    void updateConditions();

    MessageChannel channel_;
    GSourcePointer source_;
};

}  // namespace orvalo
