#include "platform/foundation/loading/HTTPTransfer.h"

#include <libsoup/soup.h>
#include <algorithm>
#include <limits>
#include <utility>

#include "platform/foundation/loading/LoadingThread.h"
#include "platform/foundation/loading/URLError.h"

namespace orvalo {

namespace {

guint milliseconds(double seconds) {
    constexpr double longest = std::numeric_limits<guint>::max();
    return static_cast<guint>(std::min(seconds * 1000, longest));
}

bool isOfTheWeb(const URL& url) {
    const GText scheme(g_uri_parse_scheme(url.absoluteString().c_str()));
    return g_ascii_strcasecmp(scheme.get(), "http") == 0 ||
           g_ascii_strcasecmp(scheme.get(), "https") == 0;
}

constexpr auto uriFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

/// A request for the address; null when it names no server.
SoupMessage* newMessage(const URL& url) {
    const GUriPointer uri(g_uri_parse(url.absoluteString().c_str(), uriFlags, nullptr));
    const char* host = uri ? g_uri_get_host(uri.get()) : nullptr;
    if (host == nullptr || *host == '\0') {
        return nullptr;
    }
    return soup_message_new_from_uri("GET", uri.get());
}

/// The address of the response, after redirections.
std::optional<URL> origin(SoupMessage* message) {
    const GText text(g_uri_to_string(soup_message_get_uri(message)));
    return URL::string(text.get());
}

}  // namespace

void HTTPTransfer::start(const URLRequest& request, const URL& url, URLCompletion completion) {
    std::unique_ptr<HTTPTransfer> transfer(
        new HTTPTransfer(url, request.timeout(), std::move(completion)));
    LoadingThread::shared().perform([transfer = std::move(transfer)]() mutable {
        transfer.release()->send();  // It deletes itself from here on.
    });
}

HTTPTransfer::HTTPTransfer(URL url, double timeout, URLCompletion completion)
    : url_(std::move(url)),
      timeout_(timeout),
      completion_(std::move(completion)),
      cancellable_(g_cancellable_new()) {}

HTTPTransfer::~HTTPTransfer() {
    if (message_ != nullptr) {
        g_signal_handlers_disconnect_by_data(message_, this);
    }
    g_clear_object(&message_);
    g_clear_object(&stream_);
    g_object_unref(cancellable_);
}

void HTTPTransfer::send() {
    if (!isOfTheWeb(url_)) {
        end(urlError(URLErrorCode::unsupportedURL, url_));
        return;
    }
    message_ = newMessage(url_);
    if (message_ == nullptr) {
        end(urlError(URLErrorCode::badURL, url_));
        return;
    }
    g_signal_connect_swapped(message_, "got-headers",
                             G_CALLBACK(+[](HTTPTransfer* self) { self->restartClock(); }), this);
    restartClock();
    soup_session_send_async(
        LoadingThread::shared().session(), message_, G_PRIORITY_DEFAULT, cancellable_,
        [](GObject*, GAsyncResult* result, gpointer self) {
            static_cast<HTTPTransfer*>(self)->received(result);
        },
        this);
}

void HTTPTransfer::received(GAsyncResult* result) {
    GError* error = nullptr;
    stream_ = soup_session_send_finish(LoadingThread::shared().session(), result, &error);
    if (stream_ == nullptr) {
        fail(*GErrorPointer(error));
        return;
    }
    read();
}

void HTTPTransfer::read() {
    g_input_stream_read_async(
        stream_, piece_.data(), piece_.size(), G_PRIORITY_DEFAULT, cancellable_,
        [](GObject*, GAsyncResult* result, gpointer self) {
            static_cast<HTTPTransfer*>(self)->readMore(result);
        },
        this);
}

void HTTPTransfer::readMore(GAsyncResult* result) {
    GError* error = nullptr;
    const auto count = g_input_stream_read_finish(stream_, result, &error);
    if (count < 0) {
        fail(*GErrorPointer(error));
        return;
    }
    if (count == 0) {
        end(URLContents{std::move(data_),
                        std::make_shared<HTTPURLResponse>(origin(message_),
                                                          soup_message_get_status(message_))});
        return;
    }
    data_.insert(data_.end(), piece_.begin(), piece_.begin() + count);
    restartClock();
    read();
}

void HTTPTransfer::restartClock() {
    clock_.reset(g_timeout_source_new(milliseconds(timeout_)));
    g_source_set_callback(
        clock_.get(),
        [](gpointer data) -> gboolean {
            auto* self = static_cast<HTTPTransfer*>(data);
            self->isTimedOut_ = true;
            // Ends the pending operation, which then deletes this object.
            g_cancellable_cancel(self->cancellable_);
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(clock_.get(), LoadingThread::shared().context());
}

void HTTPTransfer::end(URLResult result) {
    completion_(std::move(result));
    delete this;
}

void HTTPTransfer::fail(const GError& error) {
    end(isTimedOut_ ? urlError(URLErrorCode::timedOut, url_) : urlError(error, url_));
}

}  // namespace orvalo
