#include "tests/testing/LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <sstream>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

namespace orvalo::testing {

namespace {

[[noreturn]] void fail(const char* call) {
    throw std::system_error(errno, std::generic_category(), call);
}

/// A socket bound to a free port of 127.0.0.1, and the port.
std::pair<int, std::uint16_t> boundSocket() {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        fail("socket");
    }
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof place;
    if (bind(socket, reinterpret_cast<sockaddr*>(&place), size) != 0 ||
        getsockname(socket, reinterpret_cast<sockaddr*>(&place), &size) != 0) {
        fail("bind");
    }
    return {socket, ntohs(place.sin_port)};
}

std::string addressAt(std::uint16_t port, const std::string& path) {
    return "http://127.0.0.1:" + std::to_string(port) + path;
}

/// The bytes that the client sends before the content; fewer when the client stops earlier.
std::string readHead(int socket) {
    constexpr std::string_view end = "\r\n\r\n";
    std::string head;
    std::array<char, 4096> piece{};
    while (head.find(end) == std::string::npos) {
        const auto count = recv(socket, piece.data(), piece.size(), 0);
        if (count <= 0) {
            break;
        }
        head.append(piece.data(), static_cast<std::size_t>(count));
    }
    return head;
}

}  // namespace

void LoopbackServer::Connection::send(const std::string& bytes) const {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto count = ::send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return;
        }
        sent += static_cast<std::size_t>(count);
    }
}

void LoopbackServer::Connection::answer(int status, const std::string& type,
                                        const std::string& content,
                                        const std::string& headers) const {
    send("HTTP/1.1 " + std::to_string(status) + " Answer\r\nContent-Type: " + type +
         "\r\nContent-Length: " + std::to_string(content.size()) + "\r\nConnection: close\r\n" +
         headers + "\r\n" + content);
}

void LoopbackServer::Connection::waitForEnd() const {
    std::array<char, 4096> ignored{};
    while (recv(socket_, ignored.data(), ignored.size(), 0) > 0) {
    }
}

LoopbackServer::LoopbackServer(Handler handler) : handler_(std::move(handler)) {
    std::tie(listener_, port_) = boundSocket();
    if (listen(listener_, SOMAXCONN) != 0) {
        fail("listen");
    }
    acceptor_ = std::thread([this] { accept(); });
}

LoopbackServer::~LoopbackServer() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        for (const int socket : sockets_) {
            shutdown(socket, SHUT_RDWR);
        }
    }
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (auto& servant : servants_) {
        servant.join();
    }
    for (const int socket : sockets_) {
        close(socket);
    }
    close(listener_);
}

std::string LoopbackServer::address(const std::string& path) const {
    return addressAt(port_, path);
}

std::vector<std::string> LoopbackServer::requestedPaths() const {
    const std::lock_guard lock(mutex_);
    return requestedPaths_;
}

std::string LoopbackServer::refusedAddress() {
    // Bound but not listening until the program ends, so that no other process gets the port.
    static const auto port = boundSocket().second;
    return addressAt(port, "/");
}

void LoopbackServer::accept() {
    for (;;) {
        const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(mutex_);
        if (socket < 0 || isEnding_) {
            if (socket >= 0) {
                close(socket);
            }
            return;
        }
        sockets_.push_back(socket);
        servants_.emplace_back([this, socket] { serve(socket); });
    }
}

void LoopbackServer::serve(int socket) {
    Request request;
    request.head = readHead(socket);
    std::istringstream(request.head) >> request.method >> request.path;
    if (!request.path.empty()) {
        {
            const std::lock_guard lock(mutex_);
            requestedPaths_.push_back(request.path);
        }
        handler_(request, Connection(socket));
    }
    shutdown(socket, SHUT_RDWR);
}

}  // namespace orvalo::testing
