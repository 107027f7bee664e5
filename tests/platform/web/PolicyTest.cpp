#include <gmock/gmock.h>

#include "tests/platform/web/WebFixture.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum RecordingDelegate::Answer;

class PolicyTest : public WebFixture {};

TEST_F(PolicyTest, AsksForTheActionAndThenForTheResponse) {
    const Site site({{"/", titled("start")}});
    EXPECT_TRUE(loadWholly(site.address("/"), "start"));
    EXPECT_THAT(delegate->calls,
                ElementsAre("action " + site.address("/"), "response " + site.address("/")));
    EXPECT_THAT(delegate->statuses, ElementsAre(200));
}

TEST_F(PolicyTest, PassesTheStatusOfAResponse) {
    const Site site({{"/gone", {.content = "<title>gone</title>", .status = 404}}});
    EXPECT_TRUE(loadWholly(site.address("/gone"), "gone"));
    EXPECT_THAT(delegate->statuses, ElementsAre(404));
}

TEST_F(PolicyTest, AsksAgainForARedirection) {
    const Site site({{"/old", redirection("/new")}, {"/new", titled("new")}});
    load(site.address("/old"));
    EXPECT_TRUE(waitForTitle("new"));
    EXPECT_THAT(delegate->calls,
                ElementsAre("action " + site.address("/old"), "action " + site.address("/new"),
                            "response " + site.address("/new")));
}

TEST_F(PolicyTest, ARefusedRedirectionIsNotFollowed) {
    const Site site({{"/", titled("start")}, {"/old", redirection("/new")}});
    loadWholly(site.address("/"), "start");
    delegate->calls.clear();
    delegate->onAction = [&site](const auto& address) {
        return address == site.address("/new") ? cancel : allow;
    };
    load(site.address("/old"));
    EXPECT_TRUE(waitUntil([this] { return delegate->calls.size() == 2; }));
    EXPECT_TRUE(waitForTitle("start"));
    EXPECT_THAT(delegate->calls,
                ElementsAre("action " + site.address("/old"), "action " + site.address("/new")));
    EXPECT_THAT(site.requested(), ElementsAre("/", "/old"));
}

TEST_F(PolicyTest, ALinkIsAnActionLikeALoad) {
    const Site site(
        {{"/", titled("start", "<a href='page.html'>page</a>")}, {"/page.html", titled("page")}});
    loadWholly(site.address("/"), "start");
    delegate->calls.clear();
    evaluate("document.querySelector('a').click()");
    EXPECT_TRUE(waitForTitle("page"));
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site.address("/page.html"),
                                             "response " + site.address("/page.html")));
}

TEST_F(PolicyTest, AFrameIsAnActionAfterItsPage) {
    const Site site(
        {{"/", titled("start", "<iframe src='/frame'></iframe>")}, {"/frame", titled("frame")}});
    EXPECT_TRUE(loadWholly(site.address("/"), "start"));
    EXPECT_THAT(
        delegate->calls,
        ElementsAre("action " + site.address("/"), "response " + site.address("/"),
                    "action " + site.address("/frame"), "response " + site.address("/frame")));
}

TEST_F(PolicyTest, ARefusedActionSendsNoRequest) {
    const Site site({{"/", titled("start")}, {"/secret", titled("secret")}});
    loadWholly(site.address("/"), "start");
    delegate->onAction = [](const auto&) { return cancel; };
    load(site.address("/secret"));
    EXPECT_TRUE(waitUntil([this] { return delegate->calls.size() == 3; }));
    passTime(site, "/");
    EXPECT_EQ(title(), "start");
    EXPECT_THAT(site.requested(), ElementsAre("/", "/"));
}

TEST_F(PolicyTest, ARefusedResponseLeavesTheViewOnItsPage) {
    const Site site({{"/", titled("start", "<a href='a.jpg'>picture</a>")},
                     {"/a.jpg", {.content = "picture", .type = "image/jpeg"}},
                     {"/b.htm", titled("page")}});
    loadWholly(site.address("/"), "start");
    delegate->calls.clear();
    delegate->onResponse = [](const auto&) { return cancel; };
    for (const std::string path : {"/a.jpg", "/b.htm"}) {
        load(site.address(path));
        EXPECT_TRUE(waitUntil([this, path] {
            return !delegate->calls.empty() && delegate->calls.back().starts_with("response") &&
                   delegate->calls.back().ends_with(path) &&
                   webkit_web_view_is_loading(engine()) == FALSE;
        }));
        EXPECT_EQ(title(), "start");
        EXPECT_EQ(webkit_web_view_get_uri(engine()), site.address("/"));
        EXPECT_EQ(evaluate("document.body.textContent"), "picture");
    }
    EXPECT_THAT(
        delegate->calls,
        ElementsAre("action " + site.address("/a.jpg"), "response " + site.address("/a.jpg"),
                    "action " + site.address("/b.htm"), "response " + site.address("/b.htm")));
}

TEST_F(PolicyTest, ADocumentIsOneResponseWithoutItsViewer) {
    const Site site({{"/a.pdf", {.content = "%PDF-1.4\n%%EOF\n", .type = "application/pdf"}}});
    load(site.address("/a.pdf"));
    EXPECT_TRUE(waitUntil([this, &site] {
        return webkit_web_view_is_loading(engine()) == FALSE &&
               webkit_web_view_get_uri(engine()) == site.address("/a.pdf");
    }));
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site.address("/a.pdf"),
                                             "response " + site.address("/a.pdf")));
    EXPECT_EQ(evaluate("document.URL"), site.address("/a.pdf"));
}

TEST_F(PolicyTest, WithoutADelegateEverythingIsAllowed) {
    const Site site({{"/", titled("start")}});
    view->setNavigationDelegate(nullptr);
    EXPECT_EQ(view->navigationDelegate(), nullptr);
    EXPECT_TRUE(loadWholly(site.address("/"), "start"));
    EXPECT_THAT(delegate->calls, IsEmpty());
}

TEST_F(PolicyTest, ADelegateThatOverridesNothingAllowsEverything) {
    class Indifferent : public WKNavigationDelegate, public WKUIDelegate {};
    const Site site({{"/", titled("start", "<a href='/b' target='_blank'>b</a>")}});
    const auto indifferent = std::make_shared<Indifferent>();
    view->setNavigationDelegate(indifferent);
    view->setUIDelegate(indifferent);
    EXPECT_TRUE(loadWholly(site.address("/"), "start"));
    evaluate("document.querySelector('a').click()");
    passTime(site, "/");
    EXPECT_THAT(site.requested(), ElementsAre("/", "/"));
}

TEST_F(PolicyTest, DelegatesAreNotKeptAlive) {
    const Site site({{"/", titled("start")}});
    EXPECT_EQ(view->navigationDelegate(), delegate);
    EXPECT_EQ(view->uiDelegate(), delegate);
    const std::weak_ptr weak = delegate;
    delegate.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(view->navigationDelegate(), nullptr);
    EXPECT_EQ(view->uiDelegate(), nullptr);
    EXPECT_TRUE(loadWholly(site.address("/"), "start"));
}

}  // namespace

}  // namespace orvalo::testing
