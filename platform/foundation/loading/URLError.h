#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/NSError.h"
#include "platform/foundation/URL.h"

using GError = struct _GError;  // NOLINT(bugprone-reserved-identifier): GLib's own.

namespace orvalo {

/// Why an address could not be loaded. The codes of the domain "NSURLErrorDomain".
enum class URLErrorCode : std::int64_t {
    unknown = -1,
    badURL = -1000,
    timedOut = -1001,
    unsupportedURL = -1002,
    cannotFindHost = -1003,
    cannotConnectToHost = -1004,
    networkConnectionLost = -1005,
    httpTooManyRedirects = -1007,
    resourceUnavailable = -1008,
    notConnectedToInternet = -1009,
    badServerResponse = -1011,
    secureConnectionFailed = -1200,
    serverCertificateUntrusted = -1202,
};

/// The error of that code. Its text begins with the address, or "nil".
NSError urlError(URLErrorCode code, const std::optional<URL>& url);
/// The error for an error of the HTTP client. Its text begins with the address.
NSError urlError(const GError& error, const URL& url);

}  // namespace orvalo
