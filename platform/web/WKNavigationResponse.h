#pragma once

#include <memory>
#include <utility>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URLResponse.h"

namespace orvalo {

/// What has come back before any of the page is shown. Immutable.
class WKNavigationResponse : public NSObject {
  public:
    explicit WKNavigationResponse(std::shared_ptr<URLResponse> answer)
        : response(std::move(answer)) {}

    /// Never null; an HTTPURLResponse when a web server has answered.
    const std::shared_ptr<URLResponse> response;
};

}  // namespace orvalo
