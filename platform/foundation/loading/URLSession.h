#pragma once

#include <functional>
#include <memory>
#include <variant>

#include "platform/foundation/Data.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/URLResponse.h"

namespace orvalo {

/// The whole content of an address, and its response (an HTTPURLResponse from a web server,
/// whatever the status).
struct URLContents {
    Data data;
    std::shared_ptr<URLResponse> response;
};

/// The content, or a transport error (URLError.h).
using URLResult = std::variant<URLContents, NSError>;

using URLCompletion = std::function<void(URLResult)>;

/// Loads from web servers (http, https) and files. Any thread.
class URLSession : public NSObject {
  public:
    /// The only session. It caches nothing and sends no cookies.
    static const std::shared_ptr<URLSession>& shared();

    /// Loads the whole content and returns at once. completion: called once, on a thread of the
    /// global queue. A server's response of any status is content; redirections are followed.
    /// Another scheme, or no address, fails with unsupportedURL.
    void data(const URLRequest& for_, URLCompletion completion);
};

}  // namespace orvalo
