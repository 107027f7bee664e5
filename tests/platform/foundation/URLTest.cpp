#include "platform/foundation/URL.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace orvalo {
namespace {

TEST(URL, KeepsTheTextOfAWebAddress) {
    const auto url = URL::string("https://example.org/a%20b/c.PDF?q=%20#end");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->absoluteString(), "https://example.org/a%20b/c.PDF?q=%20#end");
    EXPECT_EQ(url->path(), "/a b/c.PDF");
    EXPECT_EQ(url->pathExtension(), "PDF");
    EXPECT_FALSE(url->isFileURL());
    EXPECT_EQ(URL::string("https://example.org")->path(), "");
    EXPECT_EQ(URL::string("http://[::1]:80/x")->path(), "/x");
}

TEST(URL, RefusesTextThatIsNoAddress) {
    for (const auto* text :
         {"", "no address", "example.org", "/a/b", "http://a b/", "http://a/%zz", "http://a:99999/",
          "http://a/\xc3\xa4", "1:2", "file:a", "file://elsewhere/a", "http://a/\n"}) {
        EXPECT_EQ(URL::string(text), std::nullopt) << text;
    }
}

TEST(URL, UnescapesAFilesPathByteForByte) {
    const auto url = URL::string("file:///a%20b/%FF.wav");
    ASSERT_TRUE(url);
    EXPECT_TRUE(url->isFileURL());
    EXPECT_EQ(url->path(), "/a b/\xff.wav");
    EXPECT_EQ(URL::string("file://localhost/a")->path(), "/a");
    EXPECT_TRUE(URL::string("FILE:///a")->isFileURL());
}

TEST(URL, EscapesAFilesPath) {
    const auto url = URL::fileURLWithPath("/a b/\xff#?%.m4a");
    EXPECT_EQ(url.absoluteString(), "file:///a%20b/%FF%23%3F%25.m4a");
    EXPECT_EQ(url.path(), "/a b/\xff#?%.m4a");
    EXPECT_TRUE(url.isFileURL());
    EXPECT_EQ(URL::string(url.absoluteString()), url);
}

TEST(URL, ResolvesARelativePathInTheWorkingDirectory) {
    const auto here = std::filesystem::current_path().string();
    EXPECT_EQ(URL::fileURLWithPath("a/b").path(), here + "/a/b");
    EXPECT_EQ(URL::fileURLWithPath("").path(), here);
}

TEST(URL, FindsThePathExtension) {
    const auto extension = [](const char* path) {
        return URL::fileURLWithPath(path).pathExtension();
    };
    EXPECT_EQ(extension("/a/1.m4a"), "m4a");
    EXPECT_EQ(extension("/a/1.tar.gz"), "gz");
    EXPECT_EQ(extension("/a.b/c"), "");
    EXPECT_EQ(extension("/a/c."), "");
    EXPECT_EQ(extension("/a/.hidden"), "");
    EXPECT_EQ(extension("/a/b.lv2/"), "lv2");
    EXPECT_EQ(extension("/"), "");
    EXPECT_EQ(URL::string("https://example.org")->pathExtension(), "");
    EXPECT_EQ(URL::string("https://example.org/a?b.pdf")->pathExtension(), "");
}

TEST(URL, AppendsAPathComponent) {
    EXPECT_EQ(URL::fileURLWithPath("/a").appendingPathComponent("b c").absoluteString(),
              "file:///a/b%20c");
    EXPECT_EQ(URL::fileURLWithPath("/a/").appendingPathComponent("b").path(), "/a/b");
    const auto web = URL::string("https://u@h:8/a%20b?q#f")->appendingPathComponent("x y");
    EXPECT_EQ(web.absoluteString(), "https://u@h:8/a%20b/x%20y?q#f");
    EXPECT_EQ(web.path(), "/a b/x y");
    EXPECT_EQ(URL::string("https://h")->appendingPathComponent("p/").absoluteString(),
              "https://h/p/");
}

TEST(URL, ComparesByValue) {
    EXPECT_EQ(URL::fileURLWithPath("/a"), URL::fileURLWithPath("/a"));
    EXPECT_NE(URL::fileURLWithPath("/a"), URL::fileURLWithPath("/b"));
}

TEST(URL, DescribesAnOptionalAddress) {
    EXPECT_EQ(description(URL::fileURLWithPath("/a b")), "Optional(file:///a%20b)");
    EXPECT_EQ(description(std::nullopt), "nil");
    EXPECT_EQ(description(std::vector<URL>{}), "[]");
    EXPECT_EQ(description(std::vector{URL::fileURLWithPath("/a b"), URL::fileURLWithPath("/c")}),
              "[file:///a%20b, file:///c]");
}

}  // namespace
}  // namespace orvalo
