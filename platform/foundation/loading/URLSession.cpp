#include "platform/foundation/loading/URLSession.h"

#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FileContents.h"
#include "platform/foundation/loading/HTTPTransfer.h"
#include "platform/foundation/loading/URLError.h"

namespace orvalo {

namespace {

URLResult localResult(const std::optional<URL>& url) {
    if (!url) {
        return urlError(URLErrorCode::unsupportedURL, url);
    }
    try {
        return URLContents{contentsOfFile(url->path()), std::make_shared<URLResponse>(url)};
    } catch (const NSError& error) {
        return error;
    }
}

}  // namespace

const std::shared_ptr<URLSession>& URLSession::shared() {
    // Never destroyed: other threads may still use it while the process ends.
    static const auto& session = *new std::shared_ptr<URLSession>(std::make_shared<URLSession>());
    return session;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): given as the session's.
void URLSession::data(const URLRequest& for_, URLCompletion completion) {
    if (!for_.url || for_.url->isFileURL()) {
        DispatchQueue::global()->async(
            [url = for_.url, completion = std::move(completion)] { completion(localResult(url)); });
        return;
    }
    HTTPTransfer::start(for_, *for_.url, [completion = std::move(completion)](URLResult result) {
        DispatchQueue::global()->async(
            [completion, result = std::move(result)]() mutable { completion(std::move(result)); });
    });
}

}  // namespace orvalo
