#pragma once

#include <array>
#include <cstddef>

#include "platform/foundation/Data.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/loading/URLSession.h"

using GAsyncResult = struct _GAsyncResult;  // NOLINT(bugprone-reserved-identifier): GLib's own.
using GCancellable = struct _GCancellable;  // NOLINT(bugprone-reserved-identifier): GLib's own.
using GInputStream = struct _GInputStream;  // NOLINT(bugprone-reserved-identifier): GLib's own.
using SoupMessage = struct _SoupMessage;    // NOLINT(bugprone-reserved-identifier): libsoup's own.

namespace orvalo {

/// One request to a web server, with its redirections. Works on the loading thread and deletes
/// itself there.
class HTTPTransfer {
  public:
    /// Starts a request and returns at once. url: the request's address. completion: called once,
    /// on the loading thread; must not block. Any thread but the loading thread.
    static void start(const URLRequest& request, const URL& url, URLCompletion completion);

    ~HTTPTransfer();
    HTTPTransfer(const HTTPTransfer&) = delete;
    HTTPTransfer& operator=(const HTTPTransfer&) = delete;

  private:
    HTTPTransfer(URL url, double timeout, URLCompletion completion);

    void send();
    void received(GAsyncResult* result);
    void read();
    void readMore(GAsyncResult* result);
    /// Restarts the time-out.
    void restartClock();
    void end(URLResult result);
    void fail(const GError& error);

    static constexpr std::size_t pieceSize = std::size_t{64} * 1024;

    const URL url_;
    const double timeout_;  // Seconds, above 0.
    URLCompletion completion_;
    SoupMessage* message_ = nullptr;
    GCancellable* cancellable_;
    GInputStream* stream_ = nullptr;
    GSourcePointer clock_;
    bool isTimedOut_ = false;
    std::array<std::uint8_t, pieceSize> piece_{};
    Data data_;
};

}  // namespace orvalo
