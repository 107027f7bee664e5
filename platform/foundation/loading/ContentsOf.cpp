#include "platform/foundation/loading/ContentsOf.h"

#include <glib.h>

#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include "platform/foundation/FileContents.h"
#include "platform/foundation/OneShot.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/loading/HTTPTransfer.h"
#include "platform/foundation/loading/URLError.h"

namespace orvalo {

namespace {

constexpr std::int64_t firstErrorStatus = 400;  // RFC 9110, section 15.
constexpr std::int64_t undecodableText = 261;   // Of the domain "NSCocoaErrorDomain".

URLResult waitFor(const URLRequest& request, const URL& url) {
    std::optional<URLResult> result;
    OneShot isDone;
    HTTPTransfer::start(request, url, [&result, &isDone](URLResult ended) {
        result = std::move(ended);
        isDone.signal();
    });
    isDone.wait();
    return *std::move(result);
}

}  // namespace

Data contentsOf(const URL& url) {
    if (url.isFileURL()) {
        return contentsOfFile(url.path());
    }
    auto result = waitFor(URLRequest{url}, url);
    if (const auto* error = std::get_if<NSError>(&result)) {
        throw *error;
    }
    auto& contents = std::get<URLContents>(result);
    const auto response = std::dynamic_pointer_cast<HTTPURLResponse>(contents.response);
    if (response && response->statusCode >= firstErrorStatus) {
        throw urlError(URLErrorCode::resourceUnavailable, url);
    }
    return std::move(contents.data);
}

std::string textContentsOf(const URL& url) {
    const auto content = contentsOf(url);
    std::string text(content.begin(), content.end());
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) == FALSE) {
        throw NSError("NSCocoaErrorDomain", undecodableText, url.path() + " is no text in UTF-8");
    }
    return text;
}

}  // namespace orvalo
