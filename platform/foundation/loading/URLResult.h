#pragma once

#include <functional>
#include <memory>
#include <variant>

#include "platform/foundation/Data.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/URLResponse.h"

namespace orvalo {

/// What was loaded: all of it, and the answer that it came with (an HTTPURLResponse from a web
/// server, whatever its status).
struct URLContents {
    Data data;
    std::shared_ptr<URLResponse> response;
};

/// How loading ended: with the content, or with a transport error (URLError.h).
using URLResult = std::variant<URLContents, NSError>;

using URLCompletion = std::function<void(URLResult)>;

}  // namespace orvalo
