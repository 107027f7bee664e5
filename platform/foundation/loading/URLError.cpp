#include "platform/foundation/loading/URLError.h"

#include <gio/gio.h>
#include <libsoup/soup.h>

#include <string>

namespace orvalo {

namespace {

NSError make(URLErrorCode code, const std::optional<URL>& url, const std::string& reason) {
    return {"NSURLErrorDomain", static_cast<std::int64_t>(code),
            (url ? url->absoluteString() : "nil") + ": " + reason};
}

const char* reason(URLErrorCode code) {
    switch (code) {
        case URLErrorCode::unknown:
            break;
        case URLErrorCode::badURL:
            return "The address is malformed.";
        case URLErrorCode::timedOut:
            return "The server took too long.";
        case URLErrorCode::unsupportedURL:
            return "Addresses of this kind cannot be loaded.";
        case URLErrorCode::cannotFindHost:
            return "There is no server of this name.";
        case URLErrorCode::cannotConnectToHost:
            return "The server accepts no connection.";
        case URLErrorCode::networkConnectionLost:
            return "The connection broke off.";
        case URLErrorCode::httpTooManyRedirects:
            return "The server redirects too often.";
        case URLErrorCode::resourceUnavailable:
            return "The server does not have it.";
        case URLErrorCode::notConnectedToInternet:
            return "The network cannot be reached.";
        case URLErrorCode::badServerResponse:
            return "The server's answer is malformed.";
        case URLErrorCode::secureConnectionFailed:
            return "No secure connection to the server can be made.";
        case URLErrorCode::serverCertificateUntrusted:
            return "The server's certificate is not trusted.";
    }
    return "The address cannot be loaded.";
}

URLErrorCode meaningOfTransport(int code) {
    switch (code) {
        case G_IO_ERROR_TIMED_OUT:
            return URLErrorCode::timedOut;
        case G_IO_ERROR_CONNECTION_REFUSED:
        case G_IO_ERROR_HOST_UNREACHABLE:
            return URLErrorCode::cannotConnectToHost;
        case G_IO_ERROR_NETWORK_UNREACHABLE:
            return URLErrorCode::notConnectedToInternet;
        case G_IO_ERROR_PARTIAL_INPUT:
        case G_IO_ERROR_CONNECTION_CLOSED:
            return URLErrorCode::networkConnectionLost;
        default:
            return URLErrorCode::unknown;
    }
}

URLErrorCode meaning(const GError& error) {
    if (error.domain == G_IO_ERROR) {
        return meaningOfTransport(error.code);
    }
    if (error.domain == G_RESOLVER_ERROR) {
        return URLErrorCode::cannotFindHost;
    }
    if (error.domain == G_TLS_ERROR) {
        return error.code == G_TLS_ERROR_BAD_CERTIFICATE ? URLErrorCode::serverCertificateUntrusted
                                                         : URLErrorCode::secureConnectionFailed;
    }
    if (error.domain == soup_session_error_quark()) {
        return error.code == SOUP_SESSION_ERROR_TOO_MANY_REDIRECTS
                   ? URLErrorCode::httpTooManyRedirects
                   : URLErrorCode::badServerResponse;
    }
    return URLErrorCode::unknown;
}

}  // namespace

NSError urlError(URLErrorCode code, const std::optional<URL>& url) {
    return make(code, url, reason(code));
}

NSError urlError(const GError& error, const URL& url) {
    const auto code = meaning(error);
    return make(code, url, code == URLErrorCode::unknown ? error.message : reason(code));
}

}  // namespace orvalo
