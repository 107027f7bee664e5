#pragma once

#include <functional>
#include <span>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/MessageChannel.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The service's end of the socket, served by the main run loop. Main thread.
class ServiceConnection {
  public:
    using Result = MessageChannel::Result;

    explicit ServiceConnection(FileDescriptor socket);
    ~ServiceConnection();
    ServiceConnection(const ServiceConnection&) = delete;
    ServiceConnection& operator=(const ServiceConnection&) = delete;

    void send(const bridge::ServiceMessage& message);
    /// Whether the host has not yet taken all that was sent.
    bool isWaiting() const { return channel_.isWaiting(); }
    /// As MessageChannel::takePassed().
    FileDescriptor takePassed() { return channel_.takePassed(); }

    /// A message has come. Must be set before the run loop runs.
    std::function<void(const bridge::HostMessage&)> onMessage;
    /// Nothing more will come: the host is gone, or (isBroken) has sent what is no message. Called
    /// once. Must be set before the run loop runs.
    std::function<void(bool isBroken)> onEnd;

  private:
    struct Source;

    void serve();
    void watch();

    MessageChannel channel_;
    GSourcePointer source_;
};

}  // namespace orvalo
