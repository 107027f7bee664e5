#pragma once

#include <optional>

#include "platform/foundation/URL.h"

namespace orvalo {

/// Whether what is kept of earlier answers may be used.
enum class URLRequestCachePolicy {
    useProtocolCachePolicy = 0,  ///< As the address's own protocol says.
};

/// What is asked for when an address is loaded. A value.
struct URLRequest {
    /// Absent for a request that leads nowhere.
    std::optional<URL> url;
    URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::useProtocolCachePolicy;
    static constexpr double defaultTimeout = 60;
    /// Seconds without any progress after which loading fails; what is not above 0, or no number,
    /// counts as the default.
    double timeoutInterval = defaultTimeout;

    /// The seconds that count.
    double timeout() const { return timeoutInterval > 0 ? timeoutInterval : defaultTimeout; }
};

}  // namespace orvalo
