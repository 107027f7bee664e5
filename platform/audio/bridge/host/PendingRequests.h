#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "platform/audio/bridge/host/BridgeLimits.h"
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
    /// The number and the message of the first request; 0 and null without one.
    std::uint32_t firstNumber() const;
    const bridge::HostMessage* firstMessage() const;

    /// "did not answer for 1 s" when the first request has waited too long; "" otherwise.
    std::string overdue(Time now, const BridgeLimits& limits) const;
    /// What the first request makes the service do, such as " while it loaded a preset"; "" for a
    /// short request.
    std::string activity() const;

  private:
    struct Request {
        ServiceCommand command;
        std::uint32_t number;
        Time since;  ///< When it became the first.
    };

    std::deque<Request> requests_;
};

}  // namespace orvalo
