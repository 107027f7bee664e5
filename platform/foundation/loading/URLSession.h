#pragma once

#include <memory>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/loading/URLResult.h"

namespace orvalo {

/// Loads what addresses lead to: web servers (http, https) and files. Any thread.
class URLSession : public NSObject {
  public:
    /// The one session; it keeps no answers and sends no cookies.
    static const std::shared_ptr<URLSession>& shared();

    /// Loads all of it and returns at once. completion: called once, on a thread of the global
    /// queue. A server's answer of any status is content; redirections are followed. A request of
    /// another scheme, or without an address, fails with unsupportedURL.
    void data(const URLRequest& for_, URLCompletion completion);
};

}  // namespace orvalo
