#include "platform/audio/bridge/host/PendingRequests.h"

#include <utility>

namespace orvalo {

namespace {

/// The activity of a request that may load samples or code; "" for other requests.
std::string slowActivity(const bridge::HostMessage& message) {
    if (std::holds_alternative<bridge::Instantiate>(message)) {
        return " while it was instantiated";
    }
    if (std::holds_alternative<bridge::Prepare>(message)) {
        return " while it was prepared to play";
    }
    if (std::holds_alternative<bridge::LoadPreset>(message)) {
        return " while it loaded a preset";
    }
    const bool concernsUI = std::holds_alternative<bridge::OpenPluginUI>(message) ||
                            std::holds_alternative<bridge::LoadPluginUI>(message);
    return concernsUI ? " while it opened its UI" : "";
}

}  // namespace

void PendingRequests::add(ServiceCommand command, std::uint32_t number, Time now) {
    requests_.push_back({std::move(command), number, now});
}

std::optional<ServiceCommand> PendingRequests::take(std::uint32_t number, Time now) {
    if (requests_.empty() || requests_.front().number != number) {
        return std::nullopt;
    }
    auto command = std::move(requests_.front().command);
    requests_.pop_front();
    if (!requests_.empty()) {
        requests_.front().since = now;
    }
    return command;
}

std::deque<ServiceCommand> PendingRequests::takeAll() {
    std::deque<ServiceCommand> commands;
    for (auto& request : std::exchange(requests_, {})) {
        commands.push_back(std::move(request.command));
    }
    return commands;
}

std::uint32_t PendingRequests::firstNumber() const {
    return requests_.empty() ? 0 : requests_.front().number;
}

const bridge::HostMessage* PendingRequests::firstMessage() const {
    return requests_.empty() ? nullptr : &requests_.front().command.message;
}

std::string PendingRequests::overdue(Time now, const BridgeLimits& limits) const {
    if (requests_.empty()) {
        return "";
    }
    const auto limit = activity().empty() ? limits.hang : limits.request;
    return now - requests_.front().since > limit ? "did not answer for " + durationText(limit) : "";
}

std::string PendingRequests::activity() const {
    return requests_.empty() ? "" : slowActivity(requests_.front().command.message);
}

}  // namespace orvalo
