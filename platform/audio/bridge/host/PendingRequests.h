#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "platform/audio/bridge/host/ServiceCommand.h"

namespace orvalo {

/// The requests that a service has not answered yet, in the order of its answers. One thread.
class PendingRequests {
  public:
    using Time = std::chrono::steady_clock::time_point;

    void add(ServiceCommand command, std::uint32_t number, Time now);
    /// Removes and returns the first request if it has that number; absent otherwise.
    std::optional<ServiceCommand> take(std::uint32_t number, Time now);
    /// Removes all requests.
    std::deque<ServiceCommand> takeAll();

    bool isEmpty() const { return requests_.empty(); }
    /// Whether there are requests that open, load or close the UI.
    bool concernPluginUI() const;
    /// Whether there are requests to the effect itself: neither to its UI nor a ping.
    bool concernEffect() const;
    /// The number and the message of the first request; 0 and null without one.
    std::uint32_t firstNumber() const;
    const bridge::HostMessage* firstMessage() const;

    /// How long the service has worked on the first request without a sign of life; 0 without one.
    std::chrono::steady_clock::duration waited(Time now) const;
    /// Bytes have arrived or have been read: the service lives.
    void noteLife(Time now);
    /// Answers the requests to load the UI with an error. Requests to open it get no answer. The
    /// service may still answer all of them.
    void refusePluginUI(const std::string& error);
    /// What the first request makes the service do, such as " while it loaded a preset"; "" for a
    /// short request.
    std::string activity() const;

  private:
    struct Request {
        ServiceCommand command;
        std::uint32_t number;
        Time since;  ///< Of the first: when it became that, or of the last sign of life.
    };

    std::deque<Request> requests_;
};

}  // namespace orvalo
