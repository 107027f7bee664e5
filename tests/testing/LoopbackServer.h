#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvalo::testing {

/// A web server on 127.0.0.1, at a port of its own, for as long as the object lives. A connection
/// carries one request and is then closed; each is served on a thread of its own, so that an answer
/// can take its time.
class LoopbackServer {
  public:
    struct Request {
        std::string method;
        std::string path;  ///< As it was sent, with the query.
        std::string head;  ///< All lines before the content.
    };

    /// The way back to the client.
    class Connection {
      public:
        explicit Connection(int socket) : socket_(socket) {}

        /// Sends bytes as they are; those that the client no longer takes are lost.
        void send(const std::string& bytes) const;
        /// Sends a whole answer with its length; headers: further lines, each with its line end.
        void answer(int status, const std::string& type, const std::string& content,
                    const std::string& headers = "") const;
        /// Returns when the client, or the server's end, has closed the connection.
        void waitForEnd() const;

      private:
        int socket_;
    };

    using Handler = std::function<void(const Request&, const Connection&)>;

    /// handler: serves a request, on a thread that is not the caller's.
    explicit LoopbackServer(Handler handler);
    /// Ends the open connections and waits for their handlers.
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// The full address of a path, such as "http://127.0.0.1:40123/a.png" for "/a.png".
    std::string address(const std::string& path) const;
    /// The paths that were asked for so far, in the order of their arrival.
    std::vector<std::string> requestedPaths() const;

    /// An address at which nothing listens: connections are refused.
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
