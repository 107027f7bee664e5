#include "platform/web/WKNavigationDelegate.h"

namespace orvalo {

void WKNavigationDelegate::webView(const std::shared_ptr<WKWebView>& /*webView*/,
                                   const std::shared_ptr<WKNavigationAction>& /*decidePolicyFor*/,
                                   std::function<void(WKNavigationActionPolicy)> decisionHandler) {
    decisionHandler(WKNavigationActionPolicy::allow);
}

void WKNavigationDelegate::webView(
    const std::shared_ptr<WKWebView>& /*webView*/,
    const std::shared_ptr<WKNavigationResponse>& /*decidePolicyFor*/,
    std::function<void(WKNavigationResponsePolicy)> decisionHandler) {
    decisionHandler(WKNavigationResponsePolicy::allow);
}

}  // namespace orvalo
