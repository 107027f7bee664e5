#include "app/HelpViewController.h"

#include <glib.h>

#include <algorithm>

#include "app/Site.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/URLResponse.h"
#include "platform/foundation/loading/ContentsOf.h"
#include "platform/web/WKNavigation.h"
#include "support/Unwrapped.h"

namespace orvalo {

namespace {

constexpr double kTimeout = 60;  // Seconds.

/// With ASCII letters in upper case.
std::string upperCased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), g_ascii_toupper);
    return text;
}

}  // namespace

HelpViewController::HelpViewController(const std::optional<std::string>& nibName,
                                       const std::shared_ptr<Bundle>& bundle)
    : UIViewController(nibName, bundle) {}

HelpViewController::HelpViewController(const NSCoder& coder) : UIViewController(coder) {}

void HelpViewController::onButtonExit(const std::shared_ptr<NSObject>& /*sender*/) {
    dismiss(true, [] {});
}

// NOLINTNEXTLINE(readability-make-member-function-const): actions are not const.
void HelpViewController::onInstalledButton(const std::shared_ptr<UIButton>& /*sender*/) {
    webView_->showInstalledSite();
}

void HelpViewController::webView(const std::shared_ptr<WKWebView>& /*webView*/,
                                 const std::shared_ptr<WKNavigationAction>& decidePolicyFor,
                                 std::function<void(WKNavigationActionPolicy)> decisionHandler) {
    print("navigationAction: ");
    if (const auto& url = decidePolicyFor->request.url) {
        print(url->absoluteString());
        decisionHandler(WKNavigationActionPolicy::allow);
    }
}

void HelpViewController::webView(const std::shared_ptr<WKWebView>& /*webView*/,
                                 const std::shared_ptr<WKNavigationResponse>& decidePolicyFor,
                                 std::function<void(WKNavigationResponsePolicy)> decisionHandler) {
    print("navigationResponse: ");
    const auto& url = decidePolicyFor->response->url;
    if (!url) {
        return;
    }
    print(url->absoluteString());
    const auto extension = upperCased(url->pathExtension());
    decisionHandler(extension.empty() || extension == "PDF" || extension == "HTML"
                        ? WKNavigationResponsePolicy::allow
                        : WKNavigationResponsePolicy::cancel);
}

std::shared_ptr<WKWebView> HelpViewController::webView(
    const std::shared_ptr<WKWebView>& /*webView*/,
    const std::shared_ptr<WKWebViewConfiguration>& /*createWebViewWith*/,
    const std::shared_ptr<WKNavigationAction>& for_,
    const std::shared_ptr<WKWindowFeatures>& /*windowFeatures*/) {
    print("createWebViewWith:");
    if (const auto& url = for_->request.url) {
        print(url->absoluteString());
    }
    return nullptr;
}

void HelpViewController::loadHelpHtml() {
    const auto resource = Bundle::main()->url("help", "html");
    const auto& file = unwrapped(resource);
    std::string text;
    try {
        text = textContentsOf(file);
    } catch (const NSError& error) {
        print(error.description());
        return;
    }
    webView_->loadHTMLString(text, file);
}

void HelpViewController::loadHelpPdf() {
    load(makersSite + "/DYNAMICS/");
}

void HelpViewController::navigateWeb() {
    load(makersSite + "/");
}

void HelpViewController::load(const std::string& address) const {
    const auto url = URL::string(address);
    webView_->load(
        URLRequest{unwrapped(url), URLRequestCachePolicy::useProtocolCachePolicy, kTimeout});
}

void HelpViewController::prepareInfo(const std::string& which) {
    identifier = which;
}

void HelpViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    webView_->setUIDelegate(shared(this));
    webView_->setNavigationDelegate(shared(this));
    if (const auto resources = Bundle::main()->resourceURL()) {
        webView_->setInstalledSite({makersSite, resources->appendingPathComponent("site")});
    }
}

void HelpViewController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
    if (identifier == "ShowHelp") {
        loadHelpPdf();
    } else if (identifier == "ShowInfo") {
        navigateWeb();
    }
}

void HelpViewController::didReceiveMemoryWarning() {
    UIViewController::didReceiveMemoryWarning();
}

}  // namespace orvalo
