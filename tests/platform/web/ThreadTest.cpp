#include <thread>

#include "platform/web/WKWebViewConfiguration.h"
#include "tests/platform/web/WebFixture.h"

namespace orvalo::testing {

namespace {

class ThreadTest : public WebFixture {
  protected:
    /// Expects that the operation on another thread is a fatal error that names it.
    static void expectRefusal(const std::string& operation, const std::function<void()>& perform) {
        EXPECT_DEATH(std::thread(perform).join(),
                     "Fatal error: " + operation +
                         " was called from a thread other than the main thread\\.");
    }
};

TEST_F(ThreadTest, RefusesOtherThreads) {
    expectRefusal("WKWebView\\.load", [this] { view->load({}); });
    expectRefusal("WKWebView\\.loadHTMLString", [this] { view->loadHTMLString("", std::nullopt); });
    expectRefusal("WKWebView\\.uiDelegate", [this] { view->setUIDelegate(nullptr); });
    expectRefusal("WKWebView\\.navigationDelegate",
                  [this] { view->setNavigationDelegate(nullptr); });
    expectRefusal("WKWebView", [] { WKWebView(std::make_shared<WKWebViewConfiguration>()); });
}

}  // namespace

}  // namespace orvalo::testing
