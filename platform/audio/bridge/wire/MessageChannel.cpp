#include "platform/audio/bridge/wire/MessageChannel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "platform/audio/bridge/wire/BridgeMessages.h"

namespace orvalo {

namespace {

/// The control data for one descriptor.
struct PassedDescriptor {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> bytes{};
};

// Bounds one receive(), however much the peer sends.
constexpr int kMostReads = 64;

bool isTemporary(int code) {
    return code == EAGAIN || code == EWOULDBLOCK || code == EINTR;
}

}  // namespace

MessageChannel::MessageChannel(FileDescriptor socket) : socket_(std::move(socket)) {
    fcntl(socket_.get(), F_SETFL, fcntl(socket_.get(), F_GETFL) | O_NONBLOCK);
}

void MessageChannel::send(std::vector<std::byte> bytes, int passed) {
    outgoing_.push_back({std::move(bytes), 0, passed});
    flush();
}

void MessageChannel::flush() {
    while (!outgoing_.empty() && sendSome(outgoing_.front())) {
        outgoing_.pop_front();
    }
}

bool MessageChannel::sendSome(Outgoing& message) {
    while (message.sent < message.bytes.size()) {
        iovec part{message.bytes.data() + message.sent, message.bytes.size() - message.sent};
        msghdr header{};
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        PassedDescriptor control;
        if (message.passed >= 0) {
            header.msg_control = control.bytes.data();
            header.msg_controllen = control.bytes.size();
            auto* entry = CMSG_FIRSTHDR(&header);
            entry->cmsg_level = SOL_SOCKET;
            entry->cmsg_type = SCM_RIGHTS;
            entry->cmsg_len = CMSG_LEN(sizeof(int));
            std::memcpy(CMSG_DATA(entry), &message.passed, sizeof(int));
        }
        const auto sent = sendmsg(socket_.get(), &header, MSG_NOSIGNAL);
        if (sent < 0) {
            // After any other error the rest is dropped; receive() reports the closed connection.
            return !isTemporary(errno);
        }
        message.sent += static_cast<std::size_t>(sent);
        message.passed = -1;
    }
    return true;
}

MessageChannel::Result MessageChannel::receive(
    const std::function<bool(std::uint32_t type, std::span<const std::byte>)>& handler) {
    for (int read = 0; read < kMostReads; ++read) {
        const auto count = readSome();
        if (count == 0) {
            return Result::closed;
        }
        if (count < 0) {
            return isTemporary(errno) ? Result::waiting : Result::closed;
        }
        if (!deliver(handler)) {
            return Result::broken;
        }
    }
    return Result::waiting;
}

// The padded space for one descriptor may hold more: all but the last are closed.
void MessageChannel::keepPassed(const std::byte* data, std::size_t size) {
    for (std::size_t at = 0; at + sizeof(int) <= size; at += sizeof(int)) {
        int descriptor = -1;
        std::memcpy(&descriptor, data + at, sizeof(descriptor));
        passed_ = FileDescriptor(descriptor);
    }
}

std::ptrdiff_t MessageChannel::readSome() {
    std::array<std::byte, 65536> buffer;
    iovec part{buffer.data(), buffer.size()};
    PassedDescriptor control;
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control.bytes.data();
    header.msg_controllen = control.bytes.size();
    const auto count = recvmsg(socket_.get(), &header, MSG_CMSG_CLOEXEC);
    if (count <= 0) {
        return count;
    }
    for (auto* entry = CMSG_FIRSTHDR(&header); entry != nullptr;
         entry = CMSG_NXTHDR(&header, entry)) {
        if (entry->cmsg_level == SOL_SOCKET && entry->cmsg_type == SCM_RIGHTS) {
            keepPassed(reinterpret_cast<const std::byte*>(CMSG_DATA(entry)),
                       entry->cmsg_len - CMSG_LEN(0));
        }
    }
    incoming_.insert(incoming_.end(), buffer.begin(), buffer.begin() + count);
    return count;
}

bool MessageChannel::deliver(
    const std::function<bool(std::uint32_t type, std::span<const std::byte>)>& handler) {
    std::size_t done = 0;
    bool isSound = true;
    while (isSound) {
        const auto rest = std::span<const std::byte>(incoming_).subspan(done);
        bridge::Head head;
        if (rest.size() < sizeof(head)) {
            break;
        }
        std::memcpy(&head, rest.data(), sizeof(head));
        if (!head.isSound()) {
            return false;
        }
        if (rest.size() - sizeof(head) < head.length) {
            break;
        }
        isSound = handler(head.type, rest.subspan(sizeof(head), head.length));
        done += sizeof(head) + head.length;
    }
    incoming_.erase(incoming_.begin(), incoming_.begin() + static_cast<std::ptrdiff_t>(done));
    return isSound;
}

}  // namespace orvalo
