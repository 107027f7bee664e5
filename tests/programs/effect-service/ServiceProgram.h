#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/MessageChannel.h"

namespace orvalo::testing {

/// A running effect-service of the stage and the host's end of its socket. The destructor kills and
/// reaps it.
class ServiceProgram {
  public:
    /// host: the process ID that the service gets as its argument.
    explicit ServiceProgram(pid_t host = getpid());
    ~ServiceProgram();
    ServiceProgram(const ServiceProgram&) = delete;
    ServiceProgram& operator=(const ServiceProgram&) = delete;

    pid_t id() const { return id_; }

    void send(const bridge::HostMessage& message, int passed = -1);
    void sendBytes(std::vector<std::byte> bytes, int passed = -1);
    /// The next message; absent at the end, and after 30 s.
    std::optional<bridge::ServiceMessage> receive();
    /// The next message of that type; takePassed() returns the messages before it. Throws
    /// std::runtime_error when none arrives.
    template <typename Message>
    Message await() {
        while (true) {
            const auto message = next();
            if (const auto* wanted = std::get_if<Message>(&message)) {
                return *wanted;
            }
            passed_.push_back(message);
        }
    }
    /// The text of the next Done message; throws std::runtime_error when its number differs.
    std::string answer(std::uint32_t number);
    /// Removes and returns the messages of that type that await() skipped.
    template <typename Message>
    std::vector<Message> takePassed() {
        std::vector<Message> result;
        std::erase_if(passed_, [&result](const bridge::ServiceMessage& message) {
            const auto* wanted = std::get_if<Message>(&message);
            if (wanted != nullptr) {
                result.push_back(*wanted);
            }
            return wanted != nullptr;
        });
        return result;
    }

    void closeSocket() { channel_.reset(); }
    /// The exit status, or minus the signal. Throws std::runtime_error after 30 s.
    int waitForEnd();
    /// Whether the service has ended; does not wait.
    bool hasEnded();
    /// The service's standard error so far.
    std::string standardError() const;

  private:
    bridge::ServiceMessage next();

    pid_t id_ = -1;
    std::optional<int> status_;
    FileDescriptor errors_;  // An unnamed file.
    std::optional<MessageChannel> channel_;
    std::vector<bridge::ServiceMessage> waiting_;
    std::vector<bridge::ServiceMessage> passed_;
};

}  // namespace orvalo::testing
