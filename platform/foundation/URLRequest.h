#pragma once

#include <optional>

#include "platform/foundation/URL.h"

namespace orvalo {

/// Whether a cached response may be used.
enum class URLRequestCachePolicy {
    useProtocolCachePolicy = 0,  ///< As the protocol of the address defines.
};

/// A request to load an address. A value.
struct URLRequest {
    /// Absent for a request without an address.
    std::optional<URL> url;
    URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::useProtocolCachePolicy;
    static constexpr double defaultTimeout = 60;
    /// Seconds without progress after which loading fails. Values not above 0, and NaN, mean the
    /// default.
    double timeoutInterval = defaultTimeout;

    /// The effective time-out in seconds.
    double timeout() const { return timeoutInterval > 0 ? timeoutInterval : defaultTimeout; }
};

}  // namespace orvalo
