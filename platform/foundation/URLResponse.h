#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// Describes what was loaded, without the content. Immutable: any thread.
class URLResponse : public NSObject {
  public:
    explicit URLResponse(std::optional<URL> origin) : url(std::move(origin)) {}

    /// The address of the content, after redirections.
    const std::optional<URL> url;
};

/// The response of a web server.
class HTTPURLResponse : public URLResponse {
  public:
    HTTPURLResponse(std::optional<URL> origin, std::int64_t status)
        : URLResponse(std::move(origin)), statusCode(status) {}

    /// The status of RFC 9110, such as 200 or 404.
    const std::int64_t statusCode;
};

}  // namespace orvalo
