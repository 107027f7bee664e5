#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvalo::testing {

/// A web server on 127.0.0.1, at a free port, while the object lives. Each connection carries one
/// request and has its own thread, so that a slow answer delays no other.
class LoopbackServer {
  public:
    struct Request {
        std::string method;
        std::string path;  ///< As sent, with the query.
        std::string head;  ///< All lines before the content.
    };

    /// Answers the client.
    class Connection {
      public:
        explicit Connection(int socket) : socket_(socket) {}

        /// Sends bytes as they are; drops them when the client has closed the connection.
        void send(const std::string& bytes) const;
        /// Sends a complete answer with its length. headers: further lines, each with its line end.
        void answer(int status, const std::string& type, const std::string& content,
                    const std::string& headers = "") const;
        /// Returns when the client or the server's destructor has closed the connection.
        void waitForEnd() const;

      private:
        int socket_;
    };

    using Handler = std::function<void(const Request&, const Connection&)>;

    /// handler: serves a request; called on threads of the server.
    explicit LoopbackServer(Handler handler);
    /// Closes the open connections and waits for their handlers.
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// The full address of a path, such as "http://127.0.0.1:40123/a.png" for "/a.png".
    std::string address(const std::string& path) const;
    /// The paths requested so far, in order of arrival.
    std::vector<std::string> requestedPaths() const;

    /// An address that refuses connections.
    static std::string refusedAddress();

  private:
    void accept();
    void serve(int socket);

    Handler handler_;
    int listener_;
    std::uint16_t port_;
    mutable std::mutex mutex_;
    std::vector<std::string> requestedPaths_;
    std::list<int> sockets_;  // Open until the end, so that no number is used twice.
    std::list<std::thread> servants_;
    bool isEnding_ = false;
    std::thread acceptor_;
};

}  // namespace orvalo::testing
