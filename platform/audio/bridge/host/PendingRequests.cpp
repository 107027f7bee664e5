#include "platform/audio/bridge/host/PendingRequests.h"

#include <algorithm>
#include <utility>

namespace orvalo {

namespace {

bool concernsPluginUI(const bridge::HostMessage& message) {
    return std::holds_alternative<bridge::OpenPluginUI>(message) ||
           std::holds_alternative<bridge::LoadPluginUI>(message) ||
           std::holds_alternative<bridge::ClosePluginUI>(message);
}

bool isForEffect(const bridge::HostMessage& message) {
    return !concernsPluginUI(message) && !std::holds_alternative<bridge::Ping>(message);
}

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

bool PendingRequests::concernPluginUI() const {
    return std::any_of(requests_.begin(), requests_.end(), [](const Request& request) {
        return concernsPluginUI(request.command.message);
    });
}

bool PendingRequests::concernEffect() const {
    return std::any_of(requests_.begin(), requests_.end(),
                       [](const Request& request) { return isForEffect(request.command.message); });
}

std::chrono::steady_clock::duration PendingRequests::waited(Time now) const {
    return requests_.empty() ? std::chrono::steady_clock::duration(0)
                             : now - requests_.front().since;
}

void PendingRequests::noteLife(Time now) {
    if (!requests_.empty()) {
        requests_.front().since = now;
    }
}

void PendingRequests::refusePluginUI(const std::string& error) {
    for (auto& request : requests_) {
        auto& [message, process, completion] = request.command;
        if (std::holds_alternative<bridge::OpenPluginUI>(message)) {
            completion = {};
        } else if (std::holds_alternative<bridge::LoadPluginUI>(message)) {
            if (const auto refused = std::exchange(completion, {})) {
                refused({ServiceAnswer::Kind::refused, error});
            }
        }
    }
}

std::string PendingRequests::activity() const {
    return requests_.empty() ? "" : slowActivity(requests_.front().command.message);
}

}  // namespace orvalo
