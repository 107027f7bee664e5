#pragma once

#include <utility>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URLRequest.h"

namespace orvalo {

/// What may lead to another page, or to a page in a new window: a load, a link, a script, a
/// redirection. Immutable.
class WKNavigationAction : public NSObject {
  public:
    explicit WKNavigationAction(URLRequest asked) : request(std::move(asked)) {}

    /// Its address is absent where the page names none, such as a script's window without a page.
    const URLRequest request;
};

}  // namespace orvalo
