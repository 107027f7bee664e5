#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "platform/foundation/URLResponse.h"

namespace orvalo {

/// The answer of a web server.
class HTTPURLResponse : public URLResponse {
  public:
    HTTPURLResponse(std::optional<URL> origin, std::int64_t status)
        : URLResponse(std::move(origin)), statusCode(status) {}

    /// The status of RFC 9110, such as 200 or 404.
    const std::int64_t statusCode;
};

}  // namespace orvalo
