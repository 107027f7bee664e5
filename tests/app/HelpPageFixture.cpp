#include "tests/app/HelpPageFixture.h"

#include <webkit/webkit.h>

#include "platform/foundation/Bundle.h"
#include "platform/web/WKWebViewConfiguration.h"
#include "platform/web/WebSandbox.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

HelpPageFixture::HelpPageFixture() {
    std::filesystem::remove_all(resources());
    // The sandbox is not under test, and some machines cannot create it.
    if (sandboxProblem()) {
        g_setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1", TRUE);
    }
    page = std::make_shared<WKWebView>(std::make_shared<WKWebViewConfiguration>());
    screen->webView_.connect(page);
    screen->view()->addSubview(page);
    page->setFrame({0, 0, 640, 480});
    window = std::make_shared<UIWindow>(gtk_window_new());
    window->setRootViewController(presenter);
    window->makeKeyAndVisible();
}

HelpPageFixture::~HelpPageFixture() {
    std::filesystem::remove_all(resources());
}

std::filesystem::path HelpPageFixture::resources() {
    return std::filesystem::path(Bundle::main()->dataURL().path()) / "orvalo";
}

void HelpPageFixture::present() const {
    bool isShown = false;
    presenter->present(screen, false, [&isShown] { isShown = true; });
    EXPECT_TRUE(waitUntil([&isShown] { return isShown; }));
}

void HelpPageFixture::dismiss() const {
    bool isGone = false;
    presenter->dismiss(false, [&isGone] { isGone = true; });
    EXPECT_TRUE(waitUntil([&isGone] { return isGone; }));
}

bool HelpPageFixture::waitForTitle(const std::string& title) const {
    return waitUntil([this, &title] {
        auto* engine = WEBKIT_WEB_VIEW(page->widget());
        const char* shown = webkit_web_view_get_title(engine);
        return webkit_web_view_is_loading(engine) == FALSE && shown != nullptr && shown == title;
    });
}

Lines HelpPageFixture::requested() const {
    auto paths = loopbackSite().requested();
    paths.erase(paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(requestedBefore_));
    return paths;
}

Lines HelpPageFixture::linesOf(const std::string& path) {
    const auto address = loopbackSite().address(path);
    return {"navigationAction: ", address, "navigationResponse: ", address};
}

}  // namespace orvalo::testing
