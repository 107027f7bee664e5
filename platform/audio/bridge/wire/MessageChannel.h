#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <vector>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// Sends and receives whole messages over a stream socket. Never blocks: keeps bytes that the
/// socket does not accept yet, and incomplete messages. One thread at a time.
class MessageChannel {
  public:
    /// socket: connected; becomes non-blocking.
    explicit MessageChannel(FileDescriptor socket);

    /// For poll().
    int descriptor() const { return socket_.get(); }
    /// Whether bytes wait until the socket accepts them.
    bool isWaiting() const { return !outgoing_.empty(); }

    /// Sends as much as the socket accepts; flush() sends the rest. passed: a descriptor that
    /// travels with the first byte, and stays open until isWaiting() is false; below 0 for none.
    void send(std::vector<std::byte> bytes, int passed = -1);
    void flush();

    /// Why receive() returned.
    enum class Result : std::uint8_t {
        waiting,  ///< No further message for now.
        closed,   ///< The peer closed the connection.
        broken,   ///< Invalid bytes; the channel cannot be used any more.
    };
    /// Passes each complete message to the handler: its type and its body, which lives until the
    /// handler returns. A handler that returns false breaks the channel.
    Result receive(
        const std::function<bool(std::uint32_t type, std::span<const std::byte>)>& handler);
    /// Whether the last message is incomplete.
    bool hasPart() const { return !incoming_.empty(); }
    /// The last descriptor received; none without one.
    FileDescriptor takePassed() { return std::move(passed_); }

  private:
    struct Outgoing {
        std::vector<std::byte> bytes;
        std::size_t sent = 0;
        int passed = -1;
    };

    bool sendSome(Outgoing& message);
    void keepPassed(const std::byte* data, std::size_t size);
    std::ptrdiff_t readSome();
    bool deliver(
        const std::function<bool(std::uint32_t type, std::span<const std::byte>)>& handler);

    FileDescriptor socket_;
    std::deque<Outgoing> outgoing_;
    std::vector<std::byte> incoming_;
    FileDescriptor passed_;
};

}  // namespace orvalo
