#include <gmock/gmock.h>

#include <fstream>

#include "tests/platform/web/WebFixture.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;

class LocalTextTest : public WebFixture {
  protected:
    LocalTextTest() {
        const auto place = folder.path() / "a place";
        std::filesystem::create_directory(place);
        std::ofstream(place / "style.css") << "body { color: rgb(1, 2, 3) }";
        std::ofstream(place / "other.html") << titled("other").content;
        std::ofstream(place / "image.svg")
            << "<svg xmlns='http://www.w3.org/2000/svg' width='17' height='11'/>";
        base = URL::fileURLWithPath((place / "help.html").string());
    }

    const TemporaryFolder folder;
    std::optional<URL> base;
    const std::string text = titled("help",
                                    "<link rel='stylesheet' href='style.css'><img src='image.svg'>"
                                    "<a href='other.html'>other</a>")
                                 .content;
};

TEST_F(LocalTextTest, RelativeLinksResolveInTheFilesFolder) {
    view->loadHTMLString(text, base);
    ASSERT_TRUE(waitForTitle("help"));
    EXPECT_THAT(delegate->calls, ElementsAre("action " + base->absoluteString()));
    EXPECT_EQ(evaluate("document.images[0].naturalWidth + 'x' + document.images[0].naturalHeight"),
              "17x11");
    EXPECT_EQ(evaluate("getComputedStyle(document.body).color"), "rgb(1, 2, 3)");
    evaluate("document.querySelector('a').click()");
    EXPECT_TRUE(waitForTitle("other"));
}

TEST_F(LocalTextTest, WithoutABaseNothingResolves) {
    view->loadHTMLString(text, std::nullopt);
    ASSERT_TRUE(waitForTitle("help"));
    EXPECT_THAT(delegate->calls, ElementsAre("action about:blank"));
    EXPECT_EQ(evaluate("document.images[0].naturalWidth"), "0");
}

TEST_F(LocalTextTest, RelativeLinksResolveAtAWebAddress) {
    const Site site({{"/guide/image.svg",
                      {.content = "<svg xmlns='http://www.w3.org/2000/svg' width='5' height='7'/>",
                       .type = "image/svg+xml"}}});
    view->loadHTMLString(titled("web", "<img src='image.svg'>").content,
                         URL::string(site.address("/guide/")));
    ASSERT_TRUE(waitForTitle("web"));
    EXPECT_EQ(evaluate("document.images[0].naturalWidth"), "5");
    EXPECT_THAT(site.requested(), ElementsAre("/guide/image.svg"));
}

TEST_F(LocalTextTest, TextIsUTF8) {
    view->loadHTMLString("<title>\xC3\xA4\xE2\x82\xAC</title>", base);
    EXPECT_TRUE(waitForTitle("\xC3\xA4\xE2\x82\xAC"));
}

}  // namespace

}  // namespace orvalo::testing
