#include "platform/foundation/loading/ContentsOf.h"

#include <optional>
#include <utility>
#include <variant>

#include "platform/foundation/HTTPURLResponse.h"
#include "platform/foundation/OneShot.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/loading/FileContents.h"
#include "platform/foundation/loading/HTTPTransfer.h"
#include "platform/foundation/loading/URLError.h"

namespace orvalo {

namespace {

constexpr std::int64_t firstErrorStatus = 400;  // RFC 9110, section 15.

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

}  // namespace orvalo
