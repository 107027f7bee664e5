#pragma once

#include <optional>
#include <utility>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// What is known of an answer beside its content. Immutable: any thread.
class URLResponse : public NSObject {
  public:
    explicit URLResponse(std::optional<URL> origin) : url(std::move(origin)) {}

    /// Where the content came from, after redirections.
    const std::optional<URL> url;
};

}  // namespace orvalo
