#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/MessageChannel.h"

namespace orvalo::testing {

/// The program effect-service of the stage at work, and the host's end of its socket. Killed and
/// awaited with the object.
class ServiceProgram {
  public:
    /// host: the process that it is told to be bound to.
    explicit ServiceProgram(pid_t host = getpid());
    ~ServiceProgram();
    ServiceProgram(const ServiceProgram&) = delete;
    ServiceProgram& operator=(const ServiceProgram&) = delete;

    pid_t id() const { return id_; }

    void send(const bridge::HostMessage& message, int passed = -1);
    void sendBytes(std::vector<std::byte> bytes, int passed = -1);
    /// The next message; nothing at the end, or after many seconds without one.
    std::optional<bridge::ServiceMessage> receive();
    /// The next message of that type; those before it are kept. Throws std::runtime_error without
    /// one.
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
    /// The text of the next Done, which has to have that number.
    std::string answer(std::uint32_t number);
    /// Messages of that type which came before others that were awaited, once.
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
    /// The exit status, or minus the signal's number. Throws std::runtime_error after many seconds.
    int waitForEnd();
    /// Whether it has ended, without waiting.
    bool hasEnded();
    /// What it has written to standard error so far.
    std::string standardError() const;

  private:
    bridge::ServiceMessage next();

    pid_t id_ = -1;
    std::optional<int> status_;
    FileDescriptor errors_;  // A file without a name.
    std::optional<MessageChannel> channel_;
    std::vector<bridge::ServiceMessage> waiting_;
    std::vector<bridge::ServiceMessage> passed_;
};

}  // namespace orvalo::testing
