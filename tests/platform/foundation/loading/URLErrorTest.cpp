#include "platform/foundation/loading/URLError.h"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <libsoup/soup.h>

namespace orvalo {
namespace {

NSError meaning(GQuark domain, int code) {
    const GError error{domain, code, const_cast<char*>("The library's own words")};
    return urlError(error, *URL::string("http://example.org/"));
}

TEST(URLError, NamesTheAddress) {
    const auto error = urlError(URLErrorCode::timedOut, URL::string("http://example.org/"));
    EXPECT_EQ(error.description(),
              "Error Domain=NSURLErrorDomain Code=-1001 \"http://example.org/: The server took too "
              "long.\"");
    EXPECT_EQ(urlError(URLErrorCode::unsupportedURL, std::nullopt).localizedDescription(),
              "nil: Addresses of this kind cannot be loaded.");
}

TEST(URLError, MapsErrorsOfTheHTTPClient) {
    EXPECT_EQ(meaning(G_IO_ERROR, G_IO_ERROR_TIMED_OUT).code(), -1001);
    EXPECT_EQ(meaning(G_RESOLVER_ERROR, G_RESOLVER_ERROR_NOT_FOUND).code(), -1003);
    EXPECT_EQ(meaning(G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED).code(), -1004);
    EXPECT_EQ(meaning(G_IO_ERROR, G_IO_ERROR_HOST_UNREACHABLE).code(), -1004);
    EXPECT_EQ(meaning(G_IO_ERROR, G_IO_ERROR_CONNECTION_CLOSED).code(), -1005);
    EXPECT_EQ(meaning(G_IO_ERROR, G_IO_ERROR_NETWORK_UNREACHABLE).code(), -1009);
    EXPECT_EQ(meaning(SOUP_SESSION_ERROR, SOUP_SESSION_ERROR_REDIRECT_BAD_URI).code(), -1011);
    EXPECT_EQ(meaning(G_TLS_ERROR, G_TLS_ERROR_HANDSHAKE).code(), -1200);
    EXPECT_EQ(meaning(G_TLS_ERROR, G_TLS_ERROR_BAD_CERTIFICATE).code(), -1202);
}

TEST(URLError, KeepsTheTextOfOtherErrors) {
    const auto error = meaning(G_IO_ERROR, G_IO_ERROR_NO_SPACE);
    EXPECT_EQ(error.code(), -1);
    EXPECT_EQ(error.localizedDescription(), "http://example.org/: The library's own words");
}

}  // namespace
}  // namespace orvalo
