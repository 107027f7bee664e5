#include "platform/web/WebAddress.h"

#include <gtest/gtest.h>

namespace orvalo {

namespace {

std::string address(const char* text) {
    return webAddress(text).value().absoluteString();
}

TEST(WebAddressTest, IsAbsentForANullOrEmptyText) {
    EXPECT_EQ(webAddress(nullptr), std::nullopt);
    EXPECT_EQ(webAddress(""), std::nullopt);
}

TEST(WebAddressTest, KeepsTheCharactersOfAnAddress) {
    for (const char* text :
         {"http://a.example/", "https://a.example:8443/b/c.pdf?d=e&f#g", "about:blank",
          "file:///a%20b/help.html", "data:text/html,%3Cb%3E", "http://[::1]/(a)!$'*+,;=:@~_.-"}) {
        EXPECT_EQ(address(text), text);
    }
}

TEST(WebAddressTest, EscapesOtherCharacters) {
    EXPECT_EQ(address("http://a.example/?b={c}|d^e`f\\g"),
              "http://a.example/?b=%7Bc%7D%7Cd%5Ee%60f%5Cg");
    EXPECT_EQ(address("http://a.example/100%"), "http://a.example/100%25");
    EXPECT_EQ(address("http://a.example/%4"), "http://a.example/%254");
    EXPECT_EQ(address("http://a.example/%zz/%41"), "http://a.example/%25zz/%41");
    EXPECT_EQ(address("http://a.example/\xC3\xA4 b"), "http://a.example/%C3%A4%20b");
}

TEST(WebAddressTest, ReturnsTheUnescapedPath) {
    EXPECT_EQ(webAddress("http://a.example/100%.PDF").value().pathExtension(), "PDF");
    EXPECT_EQ(webAddress("http://a.example/a|b.htm?c.d").value().pathExtension(), "htm");
}

}  // namespace

}  // namespace orvalo
