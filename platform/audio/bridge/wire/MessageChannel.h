#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <vector>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// Whole messages over a stream socket, without ever waiting: what cannot be sent yet waits here,
/// what has come in part is kept. One thread at a time.
class MessageChannel {
  public:
    /// Takes a connected stream socket, and makes it non-blocking.
    explicit MessageChannel(FileDescriptor socket);

    /// For poll(); below 0 once the channel is closed.
    int descriptor() const { return socket_.get(); }
    /// Whether something waits for the socket to take more.
    bool isWaiting() const { return !outgoing_.empty(); }

    /// Sends bytes as far as the socket takes them, the rest with flush(). passed: a descriptor
    /// that the other side gets with the first of these bytes; below 0 for none; it must stay open
    /// until isWaiting() is false.
    void send(std::vector<std::byte> bytes, int passed = -1);
    void flush();

    /// How reading ended.
    enum class Result : std::uint8_t {
        waiting,  ///< There is no more for now.
        closed,   ///< The other side is gone.
        broken,   ///< The other side broke the format; nothing more can be read.
    };
    /// Hands every whole message that is there to a handler, with its type; the bytes live until it
    /// returns. A handler that returns false breaks the channel.
    Result receive(
        const std::function<bool(std::uint32_t type, std::span<const std::byte>)>& handler);
    /// Whether a message has come in part; once the channel is closed, that it was cut off.
    bool hasPart() const { return !incoming_.empty(); }
    /// The last descriptor that came with a message; none when none came.
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
