#include <gmock/gmock.h>

#include "platform/web/WKWebViewConfiguration.h"
#include "tests/platform/web/WebFixture.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;
using enum RecordingDelegate::Answer;

class NewWindowTest : public WebFixture {
  protected:
    const Site site{{{"/", titled("start", "<a href='/b' target='_blank'>b</a>")},
                     {"/b", titled("b")},
                     {"/next", titled("next")}}};

    void click() const { evaluate("document.querySelector('a').click()"); }

    void openStart() {
        loadWholly(site.address("/"), "start");
        delegate->calls.clear();
    }
};

TEST_F(NewWindowTest, ALinkIsAnActionAndThenAWindowRequest) {
    openStart();
    click();
    EXPECT_TRUE(waitUntil([this] { return delegate->calls.size() == 2; }));
    passTime(site, "/next");
    EXPECT_THAT(delegate->calls,
                ElementsAre("action " + site.address("/b"), "window " + site.address("/b")));
    EXPECT_EQ(title(), "start");
    EXPECT_THAT(site.requested(), ElementsAre("/", "/next"));
}

TEST_F(NewWindowTest, ARefusedLinkRequestsNoWindow) {
    openStart();
    delegate->onAction = [](const auto&) { return cancel; };
    click();
    EXPECT_TRUE(waitUntil([this] { return !delegate->calls.empty(); }));
    passTime(site, "/next");
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site.address("/b")));
    EXPECT_EQ(title(), "start");
}

TEST_F(NewWindowTest, AScriptRequestsWindowsAndNoneOpens) {
    const Site scripted(
        {{"/", titled("start",
                      "<script>opened = [window.open('/b'), window.open(), "
                      "window.open('/b', '_blank', 'width=9')].map(String)</script>")},
         {"/next", titled("next")}});
    EXPECT_TRUE(loadWholly(scripted.address("/"), "start"));
    EXPECT_EQ(evaluate("opened.join()"), "null,null,null");
    passTime(scripted, "/next");
    EXPECT_THAT(delegate->calls,
                ElementsAre("action " + scripted.address("/"), "response " + scripted.address("/"),
                            "window " + scripted.address("/b"), "window nil",
                            "window " + scripted.address("/b")));
    EXPECT_EQ(title(), "start");
    EXPECT_THAT(scripted.requested(), ElementsAre("/", "/next"));
}

TEST_F(NewWindowTest, WithoutADelegateNoWindowOpens) {
    view->setUIDelegate(nullptr);
    openStart();
    EXPECT_EQ(evaluate("String(window.open('/b'))"), "null");
    click();
    EXPECT_TRUE(waitUntil([this] { return !delegate->calls.empty(); }));
    passTime(site, "/next");
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site.address("/b")));
    EXPECT_THAT(site.requested(), ElementsAre("/", "/next"));
}

TEST_F(NewWindowTest, AViewFromTheDelegateShowsThePage) {
    std::shared_ptr<WKWebView> opened;
    const auto second = std::make_shared<RecordingDelegate>();
    delegate->onWindow = [&](const auto& configuration) {
        opened = std::make_shared<WKWebView>(configuration);
        opened->setNavigationDelegate(second);
        return opened;
    };
    openStart();
    click();
    EXPECT_TRUE(waitUntil([&second] { return second->calls.size() == 2; }));
    EXPECT_THAT(second->calls,
                ElementsAre("action " + site.address("/b"), "response " + site.address("/b")));
    EXPECT_EQ(title(), "start");

    auto* left = opened->widget();
    g_object_add_weak_pointer(G_OBJECT(left), reinterpret_cast<gpointer*>(&left));
    opened.reset();
    EXPECT_TRUE(waitUntil([&left] { return left == nullptr; }));
}

TEST_F(NewWindowTest, AViewWithAnotherConfigurationIsFatal) {
    EXPECT_DEATH(
        {
            delegate->onWindow = [](const auto&) {
                return std::make_shared<WKWebView>(std::make_shared<WKWebViewConfiguration>());
            };
            openStart();
            click();
            waitUntil([] { return false; });
        },
        "Fatal error: webView\\(createWebViewWith:\\) gave a view that was made without the given "
        "configuration\\.");
}

}  // namespace

}  // namespace orvalo::testing
