#pragma once

#include <memory>
#include <utility>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/URLResponse.h"

namespace orvalo {

/// Identifies one load of a page.
class WKNavigation : public NSObject {};

/// A possible navigation, in the view or in a new window: a load, a link, a script or a
/// redirection. Immutable.
class WKNavigationAction : public NSObject {
  public:
    explicit WKNavigationAction(URLRequest asked) : request(std::move(asked)) {}

    /// Without an address when the page gives none, such as window.open() of a script.
    const URLRequest request;
};

/// The response to a navigation, before any of the page is shown. Immutable.
class WKNavigationResponse : public NSObject {
  public:
    explicit WKNavigationResponse(std::shared_ptr<URLResponse> received)
        : response(std::move(received)) {}

    /// Never null; an HTTPURLResponse from a web server.
    const std::shared_ptr<URLResponse> response;
};

}  // namespace orvalo
